// What calls of the spooler have in common: the protocol of sizes, handles of nothing, faults asked for by name.
#include <winsplp.h>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

TEST_F(SpoolerTest, SizedCallsFillTheBufferOrTellItsSize) {
    for (const SizedCall& sized : kSizedCalls) {
        SCOPED_TRACE(sized.name);
        DWORD needed = 0;
        DWORD returned = kUntouched;
        const auto call = [&](BYTE* buffer, DWORD size) {
            return sized.call(printer_, sized.level, buffer, size, &needed, &returned);
        };
        EXPECT_EQ(FailureOf([&] { return call(nullptr, 0); }), ERROR_INSUFFICIENT_BUFFER);
        ASSERT_GT(needed, 0u);
        ASSERT_LT(needed, 100000u);
        EXPECT_EQ(returned, sized.hasCount ? 0 : kUntouched);

        const DWORD size = needed;
        const std::vector<BYTE> blank(size + 16, 0xEE);
        std::vector<BYTE> buffer = blank;
        EXPECT_EQ(FailureOf([&] { return call(buffer.data(), size - 1); }), ERROR_INSUFFICIENT_BUFFER);
        EXPECT_EQ(needed, size);
        EXPECT_EQ(buffer, blank);
        EXPECT_TRUE(call(buffer.data(), size));
        EXPECT_EQ(needed, size);
        EXPECT_TRUE(std::equal(buffer.begin() + size, buffer.end(), blank.begin()));
        EXPECT_EQ(returned != kUntouched && returned > 0, sized.hasCount);

        BYTE* const data = buffer.data();
        ExpectErrors({
            {"no buffer", [&] { return call(nullptr, size); }, ERROR_INVALID_USER_BUFFER},
            {"no place for the size", [&] { return sized.call(printer_, sized.level, data, size, nullptr, &returned); },
             RPC_X_NULL_REF_POINTER},
            {"level", [&] { return sized.call(printer_, 77, data, size, &needed, &returned); }, ERROR_INVALID_LEVEL},
        });
    }
}

TEST_F(SpoolerTest, StructuresComeFirstAndTheirTextsBehindThem) {
    const auto forms = Read<FORM_INFO_1W>(printer_, "EnumFormsW");
    const BYTE* place = reinterpret_cast<const BYTE*>(forms.end());
    for (const FORM_INFO_1W& form : forms) {
        EXPECT_EQ(reinterpret_cast<const BYTE*>(form.pName), place);
        place += (std::u16string_view(form.pName).size() + 1) * sizeof(WCHAR);
    }
    EXPECT_EQ(place, forms.bytes.data() + forms.bytes.size());
}

// Calls that take a printer, in an order in which all succeed on a new one.
std::vector<CallRow> PrinterCalls(const HANDLE& printer, BYTE* info, DWORD* number) {
    return {
        {"SetPrinterW", [=, &printer] { return SetPrinterW(printer, 2, info, 0); }},
        {"SetPrinterDataW", [&printer] { return SetData(printer, u"x", REG_BINARY, ""); }},
        {"GetPrinterDataW", [&printer] { return GetData(printer, u"x").has_value(); }},
        {"EnumPrinterDataW",
         [=, &printer] {
             return Succeeds(EnumPrinterDataW(printer, 0, nullptr, 0, number, nullptr, nullptr, 0, number));
         }},
        {"DeletePrinterDataW", [&printer] { return DeleteData(printer, u"x"); }},
        {"AddFormW", [&printer] { return AddForm(printer, u"x"); }},
        {"DeleteFormW", [&printer] { return DeleteForm(printer, u"x"); }},
        {"DeletePrinter", [&printer] { return DeletePrinter(printer); }},
        {"ClosePrinter", [&printer] { return ClosePrinter(printer); }},
    };
}

TEST_F(SpoolerTest, AHandleOfNothingIsRefused) {
    const HANDLE closed = Open(u"Probe");
    ASSERT_TRUE(ClosePrinter(closed));
    DWORD number = 0;
    std::u16string name = u"x";
    for (const HANDLE handle : {HANDLE{nullptr}, HANDLE{INVALID_HANDLE_VALUE}, closed}) {
        std::vector<CallRow> rows = PrinterCalls(handle, nullptr, &number);
        rows.insert(rows.end(),
                    {{"GetPrinterW", [&] { return GetPrinterW(handle, 2, nullptr, 0, &number); }},
                     {"GetPrinterDriverW", [&] { return GetPrinterDriverW(handle, nullptr, 3, nullptr, 0, &number); }},
                     {"EnumFormsW", [&] { return EnumFormsW(handle, 1, nullptr, 0, &number, &number); }},
                     {"PrinterProperties", [&] { return PrinterProperties(nullptr, handle); }},
                     {"DevQueryPrint", [&] { return DevQueryPrint(handle, nullptr, &number); }},
                     {"DocumentPropertiesW",
                      [&] { return DocumentPropertiesW(nullptr, handle, name.data(), nullptr, nullptr, 0) >= 0; }}});
        for (const CallRow& row : rows) {
            EXPECT_EQ(FailureOf(row.call), ERROR_INVALID_HANDLE) << row.what;
        }
    }
}

// Every call fails with the error asked for, once, and does nothing.
TEST_F(SpoolerTest, FaultsAskedForByName) {
    Put(std::string(kProcessorFolder) + "/p.dll", "processor");
    HANDLE added = nullptr;
    DWORD number = 0;
    std::vector<BYTE> buffer(20000);
    auto info = Info2();
    std::u16string newName = u"New";
    reinterpret_cast<PRINTER_INFO_2W*>(info.bytes.data())->pPrinterName = newName.data();
    std::vector<CallRow> rows = {
        {"AddPrintProcessorW", [] { return AddProcessor(u"p.dll", u"x"); }},
        {"AddPrinterDriverExW", [] { return DriverRequest{.name = u"x"}.Add(); }},
        {"DeletePrinterDriverExW",
         [name = std::u16string(u"x")]() mutable {
             return DeletePrinterDriverExW(nullptr, nullptr, name.data(), 0, 0);
         }},
        {"OpenPrinterW",
         [] {
             const HANDLE opened = Open(u"Probe");
             return opened && ClosePrinter(opened);
         }},
        {"AddPrinterW", [&] { return (added = PrinterRequest{.name = u"x"}.Add()) != nullptr; }},
    };
    const std::vector<CallRow> calls = PrinterCalls(added, info.bytes.data(), &number);
    rows.insert(rows.end(), calls.begin(), calls.end());
    for (const SizedCall& sized : kSizedCalls) {
        rows.push_back(
            {sized.name, [&] { return sized.call(printer_, sized.level, buffer.data(), 20000, &number, &number); }});
    }
    for (const CallRow& row : rows) {
        FailCall(row.what, 4321);
        EXPECT_EQ(FailureOf(row.call), 4321) << row.what;
        EXPECT_EQ(FailureOf(row.call), ERROR_SUCCESS) << row.what;
    }
}

}  // namespace
}  // namespace host
