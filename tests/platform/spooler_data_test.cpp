// Printer data: types, sizes, missing values, enumeration.

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

using PrinterDataTest = SpoolerTest;

TEST_F(PrinterDataTest, ValuesKeepTypeAndBytes) {
    const struct {
        const char16_t* name;
        DWORD type;
        std::string bytes;
    } values[] = {
        {u"Text", REG_SZ, std::string("a\0", 2)},  // without its terminator
        {u"Bytes", REG_BINARY, std::string("\xFF\x00\x80", 3)},
        {u"Empty", REG_BINARY, ""},
        {u"Strange type", 1234, "xy"},
        {u"tEXT", REG_DWORD, "1234"},  // replaces the first, type and all
    };
    for (const auto& value : values) {
        SCOPED_TRACE(Shown(value.name));
        EXPECT_TRUE(SetData(printer_, value.name, value.type, value.bytes));
        DWORD type = kUntouched;
        EXPECT_EQ(GetData(printer_, value.name, &type), value.bytes);
        EXPECT_EQ(type, value.type);
    }
    EXPECT_EQ(GetData(printer_, u"TEXT"), "1234");
}

TEST_F(PrinterDataTest, RefusedCalls) {
    std::u16string name = u"x";
    DWORD needed = 0;
    BYTE byte = 0;
    const auto get = [&](LPWSTR value, BYTE* buffer, DWORD size, DWORD* place) {
        return Succeeds(GetPrinterDataW(printer_, value, nullptr, buffer, size, place));
    };
    const auto set = [&](LPWSTR value, BYTE* buffer) {
        return Succeeds(SetPrinterDataW(printer_, value, REG_BINARY, buffer, 1));
    };
    ExpectErrors({
        {"set", [&] { return SetData(printer_, name, REG_BINARY, "12"); }},
        {"no place for the size", [&] { return get(name.data(), &byte, 1, nullptr); }, RPC_X_NULL_REF_POINTER},
        {"get without a buffer", [&] { return get(name.data(), nullptr, 2, &needed); }, ERROR_INVALID_USER_BUFFER},
        {"set without bytes", [&] { return set(name.data(), nullptr); }, ERROR_INVALID_USER_BUFFER},
        {"set without a name", [&] { return set(nullptr, &byte); }, RPC_X_NULL_REF_POINTER},
        {"delete without a name", [&] { return Succeeds(DeletePrinterDataW(printer_, nullptr)); },
         RPC_X_NULL_REF_POINTER},
    });
    machine_->SetMayWritePrinterData(false);
    ExpectErrors({
        {"set a new one", [&] { return SetData(printer_, u"New", REG_BINARY, "2"); }, ERROR_ACCESS_DENIED},
        {"set", [&] { return SetData(printer_, name, REG_BINARY, "2"); }, ERROR_ACCESS_DENIED},
        {"delete", [&] { return DeleteData(printer_, name); }, ERROR_ACCESS_DENIED},
        {"get what wasn't set", [&] { return GetData(printer_, u"New").has_value(); }, ERROR_FILE_NOT_FOUND},
    });
    EXPECT_EQ(GetData(printer_, name), "12");
}

TEST_F(PrinterDataTest, Enumeration) {
    WCHAR name[32];
    BYTE data[32];
    DWORD nameSize = kUntouched;
    DWORD type = 0;
    DWORD dataSize = kUntouched;
    const auto sizes = [&] {
        EXPECT_EQ(EnumPrinterDataW(printer_, 5, nullptr, 0, &nameSize, nullptr, nullptr, 0, &dataSize), 0u);
        return std::pair(nameSize, dataSize);
    };
    EXPECT_EQ(sizes(), std::pair(0u, 0u));
    SetData(printer_, u"Short", REG_BINARY, "0123456789");
    SetData(printer_, u"A longer name", REG_DWORD, "1234");
    EXPECT_EQ(sizes(), std::pair(28u, 10u));  // bytes, with the name's terminator
    const struct {
        DWORD index, nameBytes, dataBytes, result;
        std::pair<DWORD, DWORD> needed;
    } cases[] = {
        {1, 64, 32, ERROR_SUCCESS, {28, 4}},        {0, 12, 10, ERROR_SUCCESS, {12, 10}},
        {0, 11, 10, ERROR_MORE_DATA, {12, 10}},     {0, 12, 9, ERROR_MORE_DATA, {12, 10}},
        {2, 64, 32, ERROR_NO_MORE_ITEMS, {12, 10}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        EXPECT_EQ(
            EnumPrinterDataW(printer_, c.index, name, c.nameBytes, &nameSize, &type, data, c.dataBytes, &dataSize),
            c.result);
        EXPECT_EQ(std::pair(nameSize, dataSize), c.needed);
        if (c.result == ERROR_SUCCESS) {
            EXPECT_EQ(std::u16string(name), c.index == 1 ? u"A longer name" : u"Short");
            EXPECT_EQ(type, c.index == 1 ? DWORD{REG_DWORD} : DWORD{REG_BINARY});
            EXPECT_EQ(data[3], c.index == 1 ? '4' : '3');
        }
    }
    EXPECT_EQ(EnumPrinterDataW(printer_, 0, name, 12, &nameSize, &type, nullptr, 0, nullptr), DWORD{ERROR_SUCCESS});
}

}  // namespace
}  // namespace host
