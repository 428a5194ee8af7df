// A machine with one printer, installed by the published calls from a package of small text files.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/host.h"

namespace host {

inline constexpr char16_t kPackageFolder[] = u"C:\\Package\\";
inline constexpr char16_t kInstalledFolder[] = u"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\";
inline constexpr DWORD kUntouched = 0xCDCDCDCD;

// Writes a text file below a machine's drive; `path` uses "/" and has no letter.
inline void WriteOnDrive(const Machine& machine, const std::filesystem::path& path, const std::string& text) {
    const std::filesystem::path file = machine.Drive() / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

inline std::string ReadOnDrive(const Machine& machine, const std::filesystem::path& path) {
    std::ifstream stream(machine.Drive() / path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
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
        info.pName = Pointer(name);
        info.pEnvironment = Pointer(environment);
        info.pDriverPath = Pointer(driverPath);
        info.pDataFile = Pointer(dataFile);
        info.pConfigFile = Pointer(configFile);
        info.pHelpFile = Pointer(helpFile);
        info.pDependentFiles = Pointer(dependent);
        return AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info), flags) != FALSE;
    }

    static LPWSTR Pointer(std::u16string& text) { return text.empty() ? nullptr : text.data(); }
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
        info.pPrinterName = DriverRequest::Pointer(name);
        info.pDriverName = DriverRequest::Pointer(driverName);
        info.pPortName = DriverRequest::Pointer(portName);
        info.pPrintProcessor = DriverRequest::Pointer(printProcessor);
        info.pComment = DriverRequest::Pointer(comment);
        info.pDevMode = deviceMode;
        return AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info));
    }
};

// Opens by name; null, and the last error set, on failure.
inline HANDLE Open(std::u16string name, ACCESS_MASK access = PRINTER_ALL_ACCESS) {
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
    HANDLE printer = nullptr;
    return OpenPrinterW(name.data(), &printer, &defaults) ? printer : nullptr;
}

using SizedCall = std::function<BOOL(LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned)>;

// What a sized call fills in, or nothing where it fails. Its pointers lead into the block, which is moved, not copied.
inline std::optional<std::vector<BYTE>> ReadSized(const SizedCall& call, DWORD* count = nullptr) {
    DWORD needed = 0;
    DWORD returned = 0;
    if (!call(nullptr, 0, &needed, &returned) && GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        return std::nullopt;
    }
    std::vector<BYTE> buffer(needed);
    if (!call(buffer.data(), needed, &needed, &returned)) {
        return std::nullopt;
    }
    if (count) {
        *count = returned;
    }
    return buffer;
}

class SpoolerTest : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* file : {"core.dll", "model.dat", "config.dll", "one.dll", "two.ini", "help.hlp"}) {
            WriteOnDrive(machine_, std::filesystem::path("Package") / file, std::string("content of ") + file);
        }
        ASSERT_TRUE(DriverRequest().Add()) << GetLastError();
        printer_ = PrinterRequest().Add();
        ASSERT_NE(printer_, nullptr) << GetLastError();
    }

    void TearDown() override {
        if (printer_) {
            EXPECT_TRUE(ClosePrinter(printer_));
        }
        EXPECT_EQ(StillOpen(), std::vector<std::string>());
    }

    std::vector<BYTE> Info2() {
        auto info = ReadSized([this](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD) {
            return GetPrinterW(printer_, 2, buffer, size, needed);
        });
        EXPECT_TRUE(info) << GetLastError();
        return info ? std::move(*info) : std::vector<BYTE>(sizeof(PRINTER_INFO_2W));
    }

    std::vector<BYTE> Driver3() {
        auto info = ReadSized([this](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD) {
            return GetPrinterDriverW(printer_, nullptr, 3, buffer, size, needed);
        });
        EXPECT_TRUE(info) << GetLastError();
        return info ? std::move(*info) : std::vector<BYTE>(sizeof(DRIVER_INFO_3W));
    }

    Machine machine_;
    HANDLE printer_ = nullptr;
};

}  // namespace host
