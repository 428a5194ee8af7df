#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

class RegistryTest : public KernelTest {
  protected:
    static HKEY Create(HKEY root, const char16_t* path, REGSAM access = KEY_ALL_ACCESS, DWORD* disposition = nullptr) {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(root, path, 0, nullptr, 0, access, nullptr, &key, disposition), ERROR_SUCCESS);
        return key;
    }
    static LSTATUS Set(HKEY key, const char16_t* name, std::u16string_view text) {
        return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.data()),
                              static_cast<DWORD>(text.size() * 2));
    }
    static LSTATUS Query(HKEY key, const char16_t* name) {
        return RegQueryValueExW(key, name, nullptr, nullptr, nullptr, nullptr);
    }
};

TEST_F(RegistryTest, KeysAreFoundWhateverTheirCase) {
    DWORD disposition = 0;
    const HKEY made = Create(HKEY_LOCAL_MACHINE, u"Software\\Maker\\Product", KEY_ALL_ACCESS, &disposition);
    EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
    const HKEY parent = Create(HKEY_LOCAL_MACHINE, u"SOFTWARE\\maker", KEY_READ, &disposition);
    EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
    RegCloseKey(Create(HKEY_CLASSES_ROOT, u"http"));
    const struct {
        HKEY root;
        const char16_t* path;
        LSTATUS result;
    } cases[] = {
        {HKEY_LOCAL_MACHINE, u"software\\MAKER\\product\\", ERROR_SUCCESS},
        {parent, u"Product", ERROR_SUCCESS},
        {HKEY_LOCAL_MACHINE, u"Software\\Classes\\HTTP", ERROR_SUCCESS},  // classes are a part of the software
        {HKEY_LOCAL_MACHINE, u"Software\\Maker\\Other", ERROR_FILE_NOT_FOUND},
        {HKEY_LOCAL_MACHINE, u"\\Software", ERROR_BAD_PATHNAME},
    };
    for (const auto& c : cases) {
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyExW(c.root, c.path, 0, KEY_READ, &key), c.result) << "row " << &c - cases;
        EXPECT_EQ(key && RegCloseKey(key) == ERROR_SUCCESS, c.result == ERROR_SUCCESS) << "row " << &c - cases;
    }
    EXPECT_EQ(StillOpen(), (Lines{"registry key HKEY_LOCAL_MACHINE\\Software\\Maker\\Product",
                                  "registry key HKEY_LOCAL_MACHINE\\SOFTWARE\\maker"}));
    HKEY refused = nullptr;
    EXPECT_EQ(RegCreateKeyExW(parent, u"New", 0, nullptr, 0, KEY_READ, nullptr, &refused, nullptr),
              ERROR_ACCESS_DENIED);
    RegCloseKey(made);
    RegCloseKey(parent);
    EXPECT_EQ(RegCloseKey(made), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), ERROR_SUCCESS);
}

TEST_F(RegistryTest, ValuesFollowTheSizeProtocol) {
    const HKEY key = Create(HKEY_CURRENT_USER, u"Software\\V");
    EXPECT_EQ(Set(key, u"Name", std::u16string_view(u"ab\0", 3)), ERROR_SUCCESS);
    WCHAR data[8] = {0x55};
    const struct {
        WCHAR* buffer;
        DWORD size;
        LSTATUS result;
        WCHAR first;
    } cases[] = {{nullptr, 0, ERROR_SUCCESS, 0x55}, {data, 5, ERROR_MORE_DATA, 0x55}, {data, 6, ERROR_SUCCESS, u'a'}};
    for (const auto& c : cases) {
        DWORD type = 0;
        DWORD size = c.size;
        EXPECT_EQ(RegQueryValueExW(key, u"NAME", nullptr, &type, reinterpret_cast<BYTE*>(c.buffer), &size), c.result);
        EXPECT_EQ(type, DWORD{REG_SZ}) << c.size;
        EXPECT_EQ(size, 6u) << c.size;
        EXPECT_EQ(data[0], c.first) << c.size;
    }
    BYTE byte = 0;
    EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, nullptr, &byte, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(Query(key, nullptr), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegSetValueExW(key, nullptr, 0, REG_DWORD, nullptr, 0), ERROR_SUCCESS);  // the unnamed value
    EXPECT_EQ(Query(key, u""), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key, u"nAME"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key, u"Name"), ERROR_FILE_NOT_FOUND);
    FailCall("RegSetValueExW", ERROR_DISK_FULL);
    EXPECT_EQ(Set(key, u"v", u"y"), ERROR_DISK_FULL);
    RegCloseKey(key);
    EXPECT_EQ(Query(key, u""), ERROR_INVALID_HANDLE);
}

TEST_F(RegistryTest, AnsiCallsTellTextsInTheCodePage) {
    const HKEY made = Create(HKEY_CLASSES_ROOT, u"Kl\u00E4sse");
    Set(made, u"", std::u16string_view(u"\u00FCx\0", 3));
    RegSetValueExW(made, u"n", 0, REG_BINARY, reinterpret_cast<const BYTE*>("\xFC\0\1"), 3);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CLASSES_ROOT, "KL\xC4SSE", 0, KEY_READ, &key), ERROR_SUCCESS);
    char data[4] = {};
    const auto query = [&](const char* name, DWORD size, DWORD* needed) {
        *needed = size;
        return RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(data), needed);
    };
    DWORD needed = 0;
    EXPECT_EQ(query(nullptr, 2, &needed), ERROR_MORE_DATA);
    EXPECT_EQ(needed, 3u);
    EXPECT_EQ(query(nullptr, 3, &needed), ERROR_SUCCESS);
    EXPECT_STREQ(data, "\xFCx");
    EXPECT_EQ(query("n", 4, &needed), ERROR_SUCCESS);
    EXPECT_EQ(std::string(data, needed), std::string("\xFC\0\1", 3));
    RegCloseKey(key);
    RegCloseKey(made);
}

TEST_F(RegistryTest, KeysGiveOnlyTheRightsThatWereAskedFor) {
    const HKEY writer = Create(HKEY_LOCAL_MACHINE, u"Software\\R", KEY_SET_VALUE);
    const HKEY reader = Create(HKEY_LOCAL_MACHINE, u"Software\\R", KEY_READ);
    EXPECT_EQ(Set(reader, u"v", u"x"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteValueW(reader, u"v"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Set(writer, u"v", u"x"), ERROR_SUCCESS);
    EXPECT_EQ(Query(writer, u"v"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Query(reader, u"v"), ERROR_SUCCESS);
    RegCloseKey(reader);
    RegCloseKey(writer);
}

}  // namespace
}  // namespace host
