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
};

TEST_F(RegistryTest, KeysAreFoundWhateverTheirCase) {
    DWORD disposition = 0;
    const HKEY made = Create(HKEY_LOCAL_MACHINE, u"Software\\Maker\\Product", KEY_ALL_ACCESS, &disposition);
    EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
    const HKEY parent = Create(HKEY_LOCAL_MACHINE, u"SOFTWARE\\maker", KEY_READ, &disposition);
    EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
    const struct {
        HKEY root;
        const char16_t* path;
        LSTATUS result;
    } cases[] = {
        {HKEY_LOCAL_MACHINE, u"software\\MAKER\\product\\", ERROR_SUCCESS},
        {parent, u"Product", ERROR_SUCCESS},
        {parent, u"", ERROR_SUCCESS},
        {parent, nullptr, ERROR_SUCCESS},
        {HKEY_LOCAL_MACHINE, u"System\\CurrentControlSet\\Control\\Print\\Printers", ERROR_SUCCESS},
        {HKEY_CURRENT_USER, u"Software\\Maker", ERROR_FILE_NOT_FOUND},
        {HKEY_LOCAL_MACHINE, u"Software\\Maker\\Other", ERROR_FILE_NOT_FOUND},
        {HKEY_LOCAL_MACHINE, u"\\Software", ERROR_BAD_PATHNAME},
        {nullptr, u"Software", ERROR_INVALID_HANDLE},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyExW(c.root, c.path, 0, KEY_READ, &key), c.result);
        EXPECT_EQ(key != nullptr, c.result == ERROR_SUCCESS);
        if (key != nullptr) {
            EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
        }
    }
    EXPECT_EQ(StillOpen(), (std::vector<std::string>{"registry key HKEY_LOCAL_MACHINE\\Software\\Maker\\Product",
                                                     "registry key HKEY_LOCAL_MACHINE\\SOFTWARE\\maker"}));
    HKEY refused = nullptr;
    EXPECT_EQ(RegCreateKeyExW(parent, u"New", 0, nullptr, 0, KEY_READ, nullptr, &refused, nullptr),
              ERROR_ACCESS_DENIED);
    RegCloseKey(made);
    RegCloseKey(parent);
    EXPECT_EQ(RegCloseKey(made), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), ERROR_SUCCESS);
    // Classes are a part of the machine's software.
    RegCloseKey(Create(HKEY_CLASSES_ROOT, u"http"));
    HKEY classes = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"Software\\Classes\\HTTP", 0, KEY_READ, &classes), ERROR_SUCCESS);
    RegCloseKey(classes);
}

TEST_F(RegistryTest, ValuesFollowTheSizeProtocol) {
    const HKEY key = Create(HKEY_CURRENT_USER, u"Software\\V");
    EXPECT_EQ(Set(key, u"Name", std::u16string_view(u"ab\0", 3)), ERROR_SUCCESS);
    BYTE data[16] = {0x55};
    DWORD type = 0;
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(key, u"NAME", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_EQ(size, 6u);
    size = 5;
    EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, &type, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(data[0], 0x55);
    EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, &type, data, &size), ERROR_SUCCESS);
    EXPECT_EQ(std::u16string_view(reinterpret_cast<const char16_t*>(data)), u"ab");
    EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegQueryValueExW(key, u"Name", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(key, nullptr, nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegSetValueExW(key, nullptr, 0, REG_DWORD, nullptr, 0), ERROR_SUCCESS);  // the unnamed value
    size = 9;
    EXPECT_EQ(RegQueryValueExW(key, u"", nullptr, &type, data, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(RegDeleteValueW(key, u"nAME"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key, u"Name"), ERROR_FILE_NOT_FOUND);
    RegCloseKey(key);
    EXPECT_EQ(RegQueryValueExW(key, u"", nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_HANDLE);
}

TEST_F(RegistryTest, KeysGiveOnlyTheRightsThatWereAskedFor) {
    RegCloseKey(Create(HKEY_LOCAL_MACHINE, u"Software\\R"));
    const HKEY reader = Create(HKEY_LOCAL_MACHINE, u"Software\\R", KEY_READ);
    EXPECT_EQ(Set(reader, u"v", u"x"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteValueW(reader, u"v"), ERROR_ACCESS_DENIED);
    const HKEY writer = Create(HKEY_LOCAL_MACHINE, u"Software\\R", KEY_SET_VALUE);
    EXPECT_EQ(Set(writer, u"v", u"x"), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExW(writer, u"v", nullptr, nullptr, nullptr, nullptr), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegQueryValueExW(reader, u"v", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    FailCall("RegSetValueExW", ERROR_DISK_FULL);
    EXPECT_EQ(Set(writer, u"v", u"y"), ERROR_DISK_FULL);
    RegCloseKey(reader);
    RegCloseKey(writer);
}

}  // namespace
}  // namespace host
