// A machine with one printer, installed by the published calls from a package of small text files.
#pragma once

#include <winspool.h>

#include "tests/platform/kernel_fixture.h"

namespace host {

inline constexpr char16_t kInstalledFolder[] = u"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\";
inline constexpr char kProcessorFolder[] = "Windows/System32/spool/prtprocs/x64";
inline constexpr DWORD kUntouched = 0xCDCDCDCD;

inline LPWSTR PointerOrNull(std::u16string& text) {
    return text.empty() ? nullptr : text.data();
}

// A DRIVER_INFO_3 and the texts that it points at. An empty text is a null pointer.
struct DriverRequest {
    std::u16string name = u"Probe Driver";
    std::u16string environment = {};
    std::u16string driverPath = u"C:\\Package\\core.dll";
    std::u16string dataFile = u"C:\\Package\\model.dat";
    std::u16string configFile = u"C:\\Package\\config.dll";
    std::u16string helpFile = {};
    std::vector<std::u16string> dependentFiles = {u"C:\\Package\\one.dll", u"C:\\Package\\two.ini"};
    DWORD version = 3;

    bool Add(DWORD flags = APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY) {
        std::u16string dependent;
        for (const std::u16string& file : dependentFiles) {
            dependent += file;
            dependent.push_back(0);
        }
        DRIVER_INFO_3W info = {};
        info.cVersion = version;
        info.pName = PointerOrNull(name);
        info.pEnvironment = PointerOrNull(environment);
        info.pDriverPath = PointerOrNull(driverPath);
        info.pDataFile = PointerOrNull(dataFile);
        info.pConfigFile = PointerOrNull(configFile);
        info.pHelpFile = PointerOrNull(helpFile);
        info.pDependentFiles = PointerOrNull(dependent);
        return AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info), flags) != FALSE;
    }
};

// A PRINTER_INFO_2 likewise.
struct PrinterRequest {
    std::u16string name = u"Probe";
    std::u16string driverName = u"Probe Driver";
    std::u16string portName = u"FILE:";
    std::u16string printProcessor = u"winprint";
    std::u16string comment = {};
    DEVMODEW* deviceMode = nullptr;

    HANDLE Add() {
        PRINTER_INFO_2W info = {};
        info.pPrinterName = PointerOrNull(name);
        info.pDriverName = PointerOrNull(driverName);
        info.pPortName = PointerOrNull(portName);
        info.pPrintProcessor = PointerOrNull(printProcessor);
        info.pComment = PointerOrNull(comment);
        info.pDevMode = deviceMode;
        return AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info));
    }
};

// A device mode with a private part of an odd size.
struct OddDevMode {
    OddDevMode() {
        publicPart.dmSize = sizeof(DEVMODEW);
        publicPart.dmDriverExtra = sizeof(privatePart);
    }
    DEVMODEW publicPart = {};
    BYTE privatePart[7] = {'p', 'r', 'i', 'v', 'a', 't', 'e'};
};

// Opens by name; null, and the last error set, on failure.
inline HANDLE Open(std::u16string name, ACCESS_MASK access = PRINTER_ALL_ACCESS) {
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
    HANDLE printer = nullptr;
    return OpenPrinterW(name.data(), &printer, &defaults) ? printer : nullptr;
}

// For calls that return their error: leaves it as the last error.
inline bool Succeeds(DWORD result) {
    SetLastError(result);
    return result == ERROR_SUCCESS;
}

inline bool SetData(HANDLE printer, std::u16string name, DWORD type, std::string bytes) {
    return Succeeds(SetPrinterDataW(printer, name.data(), type, reinterpret_cast<BYTE*>(bytes.data()),
                                    static_cast<DWORD>(bytes.size())));
}

// The value and, where asked for, its type; nothing where the call fails.
inline std::optional<std::string> GetData(HANDLE printer, std::u16string name, DWORD* type = nullptr) {
    std::string bytes(256, '\0');
    DWORD needed = kUntouched;
    if (!Succeeds(GetPrinterDataW(printer, name.data(), type, reinterpret_cast<BYTE*>(bytes.data()), 256, &needed))) {
        return std::nullopt;
    }
    return bytes.substr(0, needed);
}

inline bool DeleteData(HANDLE printer, std::u16string name) {
    return Succeeds(DeletePrinterDataW(printer, name.data()));
}

inline bool AddForm(HANDLE printer, std::u16string name, DWORD flags = FORM_USER, SIZEL size = {10, 20},
                    RECTL area = {1, 2, 9, 18}) {
    FORM_INFO_1W form = {flags, name.data(), size, area};
    return AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form));
}

inline bool DeleteForm(HANDLE printer, std::u16string name) {
    return DeleteFormW(printer, name.data());
}

inline bool AddProcessor(std::u16string file, std::u16string name) {
    return AddPrintProcessorW(nullptr, nullptr, file.data(), name.data());
}

// The calls that fill a caller's buffer.
struct SizedCall {
    const char* name;
    DWORD level;
    bool hasCount;
    BOOL (*call)(HANDLE printer, DWORD level, BYTE* buffer, DWORD size, DWORD* needed, DWORD* returned);
};

inline constexpr SizedCall kSizedCalls[] = {
    {"GetPrinterW", 2, false, [](auto p, auto l, auto b, auto s, auto n, auto) { return GetPrinterW(p, l, b, s, n); }},
    {"GetPrinterDriverW", 3, false,
     [](auto p, auto l, auto b, auto s, auto n, auto) { return GetPrinterDriverW(p, nullptr, l, b, s, n); }},
    {"GetPrinterDriverDirectoryW", 1, false,
     [](auto, auto l, auto b, auto s, auto n, auto) {
         return GetPrinterDriverDirectoryW(nullptr, nullptr, l, b, s, n);
     }},
    {"GetPrintProcessorDirectoryW", 1, false,
     [](auto, auto l, auto b, auto s, auto n, auto) {
         return GetPrintProcessorDirectoryW(nullptr, nullptr, l, b, s, n);
     }},
    {"EnumFormsW", 1, true,
     [](auto p, auto l, auto b, auto s, auto n, auto c) { return EnumFormsW(p, l, b, s, n, c); }},
    {"EnumPrintProcessorsW", 1, true,
     [](auto, auto l, auto b, auto s, auto n, auto c) {
         return EnumPrintProcessorsW(nullptr, nullptr, l, b, s, n, c);
     }},
    {"EnumPrintersW", 2, true,
     [](auto, auto l, auto b, auto s, auto n, auto c) { return EnumPrintersW(6, nullptr, l, b, s, n, c); }},
    {"EnumPrinterDriversW", 3, true,
     [](auto, auto l, auto b, auto s, auto n, auto c) { return EnumPrinterDriversW(nullptr, nullptr, l, b, s, n, c); }},
};

// What a sized call fills in: `count` structures, and behind them what they point at.
template <class Info>
struct Block {
    const Info* begin() const { return reinterpret_cast<const Info*>(bytes.data()); }
    const Info* end() const { return begin() + count; }
    const Info* operator->() const { return begin(); }

    std::vector<BYTE> bytes;
    DWORD count = 0;
};

template <class Info>
Block<Info> Read(HANDLE printer, std::string_view name) {
    Block<Info> block;
    for (const SizedCall& sized : kSizedCalls) {
        if (sized.name == name) {
            DWORD needed = 0;
            block.count = sized.hasCount ? 0 : 1;
            sized.call(printer, sized.level, nullptr, 0, &needed, &block.count);
            block.bytes.resize(needed);
            EXPECT_TRUE(sized.call(printer, sized.level, block.bytes.data(), needed, &needed, &block.count)) << name;
        }
    }
    return block;
}

class SpoolerTest : public KernelTest {
  protected:
    void SetUp() override {
        for (const char* file : {"core.dll", "model.dat", "config.dll", "one.dll", "two.ini", "help.hlp"}) {
            Put(std::filesystem::path("Package") / file, std::string("content of ") + file);
        }
        ASSERT_TRUE(DriverRequest().Add()) << GetLastError();
        printer_ = PrinterRequest().Add();
        ASSERT_NE(printer_, nullptr) << GetLastError();
    }

    void TearDown() override {
        EXPECT_TRUE(ClosePrinter(printer_));
        KernelTest::TearDown();
    }

    Block<PRINTER_INFO_2W> Info2() { return Read<PRINTER_INFO_2W>(printer_, "GetPrinterW"); }

    HANDLE printer_ = nullptr;
};

}  // namespace host
