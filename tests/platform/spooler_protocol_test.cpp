// What all calls of the spooler that fill a caller's buffer have in common, and faults asked for by name.
#include <winsplp.h>

#include <algorithm>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

struct SizedCase {
    const char* name;
    bool hasCount;
    BOOL (*call)(HANDLE printer, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned);
    DWORD level;
};

const SizedCase kSizedCalls[] = {
    {"GetPrinterW", false,
     [](HANDLE printer, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD) {
         return GetPrinterW(printer, level, buffer, size, needed);
     },
     2},
    {"GetPrinterDriverW", false,
     [](HANDLE printer, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD) {
         return GetPrinterDriverW(printer, nullptr, level, buffer, size, needed);
     },
     3},
    {"GetPrinterDriverDirectoryW", false,
     [](HANDLE, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD) {
         return GetPrinterDriverDirectoryW(nullptr, nullptr, level, buffer, size, needed);
     },
     1},
    {"GetPrintProcessorDirectoryW", false,
     [](HANDLE, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD) {
         return GetPrintProcessorDirectoryW(nullptr, nullptr, level, buffer, size, needed);
     },
     1},
    {"EnumFormsW", true,
     [](HANDLE printer, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
         return EnumFormsW(printer, level, buffer, size, needed, returned);
     },
     1},
    {"EnumPrintProcessorsW", true,
     [](HANDLE, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
         return EnumPrintProcessorsW(nullptr, nullptr, level, buffer, size, needed, returned);
     },
     1},
    {"EnumPrintersW", true,
     [](HANDLE, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
         return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, level, buffer, size, needed, returned);
     },
     2},
    {"EnumPrinterDriversW", true,
     [](HANDLE, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
         return EnumPrinterDriversW(nullptr, nullptr, level, buffer, size, needed, returned);
     },
     3},
};

TEST_F(SpoolerTest, SizedCallsFillTheBufferOrTellItsSize) {
    for (const SizedCase& sized : kSizedCalls) {
        SCOPED_TRACE(sized.name);
        DWORD needed = kUntouched;
        DWORD returned = kUntouched;
        EXPECT_FALSE(sized.call(printer_, sized.level, nullptr, 0, &needed, &returned));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
        ASSERT_GT(needed, 0u);
        ASSERT_LT(needed, 100000u);
        EXPECT_EQ(returned, sized.hasCount ? 0 : kUntouched);

        const std::vector<BYTE> blank(needed + 16, 0xEE);
        std::vector<BYTE> buffer = blank;
        DWORD again = 0;
        EXPECT_FALSE(sized.call(printer_, sized.level, buffer.data(), needed - 1, &again, &returned));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
        EXPECT_EQ(again, needed);
        EXPECT_EQ(buffer, blank);

        EXPECT_TRUE(sized.call(printer_, sized.level, buffer.data(), needed, &again, &returned));
        EXPECT_EQ(again, needed);
        EXPECT_TRUE(std::equal(buffer.begin() + needed, buffer.end(), blank.begin()));
        EXPECT_EQ(returned != kUntouched && returned > 0, sized.hasCount);

        EXPECT_FALSE(sized.call(printer_, sized.level, nullptr, needed, &again, &returned));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_USER_BUFFER});
        EXPECT_FALSE(sized.call(printer_, sized.level, buffer.data(), needed, nullptr, &returned));
        EXPECT_EQ(GetLastError(), DWORD{RPC_X_NULL_REF_POINTER});
        EXPECT_FALSE(sized.call(printer_, 77, buffer.data(), needed, &again, &returned));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_LEVEL});
    }
}

TEST_F(SpoolerTest, StructuresComeFirstAndTheirTextsBehindThem) {
    DWORD count = 0;
    const auto forms =
        ReadSized([this](LPBYTE buffer, DWORD size, LPDWORD needed,
                         LPDWORD returned) { return EnumFormsW(printer_, 1, buffer, size, needed, returned); },
                  &count);
    ASSERT_TRUE(forms);
    const auto* const infos = reinterpret_cast<const FORM_INFO_1W*>(forms->data());
    const BYTE* place = forms->data() + count * sizeof(FORM_INFO_1W);
    for (DWORD i = 0; i < count; ++i) {
        const BYTE* const name = reinterpret_cast<const BYTE*>(infos[i].pName);
        EXPECT_EQ(name, place);
        place = name + (std::u16string_view(infos[i].pName).size() + 1) * sizeof(WCHAR);
    }
    EXPECT_EQ(place, forms->data() + forms->size());
}

TEST_F(SpoolerTest, AHandleOfNothingIsRefused) {
    const HANDLE closed = Open(u"Probe");
    ASSERT_TRUE(ClosePrinter(closed));
    std::u16string name = u"x";
    FORM_INFO_1W form = {FORM_USER, name.data(), {1, 1}, {0, 0, 1, 1}};
    DWORD number = 0;
    const auto byLastError = [](BOOL result) { return result ? ERROR_SUCCESS : GetLastError(); };
    for (const HANDLE handle : {HANDLE{nullptr}, HANDLE{INVALID_HANDLE_VALUE}, closed}) {
        const DWORD errors[] = {
            byLastError(ClosePrinter(handle)),
            byLastError(GetPrinterW(handle, 2, nullptr, 0, &number)),
            byLastError(SetPrinterW(handle, 2, nullptr, 0)),
            byLastError(DeletePrinter(handle)),
            byLastError(GetPrinterDriverW(handle, nullptr, 3, nullptr, 0, &number)),
            byLastError(EnumFormsW(handle, 1, nullptr, 0, &number, &number)),
            byLastError(AddFormW(handle, 1, reinterpret_cast<BYTE*>(&form))),
            byLastError(DeleteFormW(handle, name.data())),
            byLastError(PrinterProperties(nullptr, handle)),
            byLastError(DevQueryPrint(handle, nullptr, &number)),
            byLastError(DocumentPropertiesW(nullptr, handle, name.data(), nullptr, nullptr, 0) >= 0),
            GetPrinterDataW(handle, name.data(), nullptr, nullptr, 0, &number),
            SetPrinterDataW(handle, name.data(), REG_BINARY, nullptr, 0),
            DeletePrinterDataW(handle, name.data()),
            EnumPrinterDataW(handle, 0, nullptr, 0, &number, nullptr, nullptr, 0, &number),
        };
        for (size_t i = 0; i < std::size(errors); ++i) {
            EXPECT_EQ(errors[i], DWORD{ERROR_INVALID_HANDLE}) << "call " << i;
        }
    }
}

// Every call fails with the error asked for, once, and does nothing.
TEST_F(SpoolerTest, FaultsAskedForByName) {
    WriteOnDrive(machine_, "Windows/System32/spool/prtprocs/x64/p.dll", "processor");
    std::u16string name = u"x";
    std::u16string processorFile = u"p.dll";
    FORM_INFO_1W form = {FORM_USER, name.data(), {1, 1}, {0, 0, 1, 1}};
    DWORD number = 0;
    std::vector<BYTE> info = Info2();
    const auto byLastError = [](BOOL result) { return result ? ERROR_SUCCESS : GetLastError(); };
    HANDLE opened = nullptr;

    struct FaultCase {
        const char* call;
        std::function<DWORD()> run;
    };
    std::vector<FaultCase> cases = {
        {"SetPrinterW", [&] { return byLastError(SetPrinterW(printer_, 2, info.data(), 0)); }},
        {"SetPrinterDataW", [&] { return SetPrinterDataW(printer_, name.data(), REG_BINARY, nullptr, 0); }},
        {"GetPrinterDataW", [&] { return GetPrinterDataW(printer_, name.data(), nullptr, nullptr, 0, &number); }},
        {"EnumPrinterDataW",
         [&] { return EnumPrinterDataW(printer_, 0, nullptr, 0, &number, nullptr, nullptr, 0, &number); }},
        {"DeletePrinterDataW", [&] { return DeletePrinterDataW(printer_, name.data()); }},
        {"AddFormW", [&] { return byLastError(AddFormW(printer_, 1, reinterpret_cast<BYTE*>(&form))); }},
        {"DeleteFormW", [&] { return byLastError(DeleteFormW(printer_, name.data())); }},
        {"AddPrintProcessorW",
         [&] { return byLastError(AddPrintProcessorW(nullptr, nullptr, processorFile.data(), name.data())); }},
        {"AddPrinterDriverExW", [&] { return byLastError(DriverRequest{.name = u"x"}.Add()); }},
        {"DeletePrinterDriverExW",
         [&] { return byLastError(DeletePrinterDriverExW(nullptr, nullptr, name.data(), 0, 0)); }},
        {"AddPrinterW", [&] { return byLastError((opened = PrinterRequest{.name = u"x"}.Add()) != nullptr); }},
        {"DeletePrinter", [&] { return byLastError(DeletePrinter(opened)); }},
        {"ClosePrinter", [&] { return byLastError(ClosePrinter(opened)); }},
        {"OpenPrinterW", [&] { return byLastError((opened = Open(u"Probe")) != nullptr); }},
    };
    for (const SizedCase& sized : kSizedCalls) {
        cases.push_back({sized.name, [&] {
                             std::vector<BYTE> buffer(20000);
                             return byLastError(sized.call(printer_, sized.level, buffer.data(),
                                                           static_cast<DWORD>(buffer.size()), &number, &number));
                         }});
    }
    for (const FaultCase& fault : cases) {
        SCOPED_TRACE(fault.call);
        FailCall(fault.call, 4321);
        EXPECT_EQ(fault.run(), 4321u);
        EXPECT_EQ(fault.run(), DWORD{ERROR_SUCCESS});
    }
    EXPECT_TRUE(ClosePrinter(opened));
}

}  // namespace
}  // namespace host
