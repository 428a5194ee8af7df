#include "platform/resources/resource_file.h"

#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

class ResourcesTest : public KernelTest {
  protected:
    ResourcesTest() {
        std::filesystem::create_directories(TheMachine().Drive() / "t");
        std::filesystem::copy_file(VELMORA_PROBE_RESOURCES, TheMachine().Drive() / "t/words.dll");
        module_ = LoadLibraryW(u"C:\\t\\words.dll");
        EXPECT_NE(module_, nullptr);
    }
    void TearDown() override {
        FreeLibrary(module_);
        KernelTest::TearDown();
    }
    std::string DataOf(HRSRC resource) {
        const auto* data = static_cast<const char*>(LockResource(LoadResource(module_, resource)));
        return {data, SizeofResource(module_, resource)};
    }

    HMODULE module_ = nullptr;
};

TEST_F(ResourcesTest, Strings) {
    WCHAR buffer[32];
    EXPECT_EQ(LoadStringW(module_, 2000, buffer, 32), 5);
    EXPECT_EQ(std::u16string(buffer), u"First");
    EXPECT_EQ(LoadStringW(module_, 2000, buffer, 6), 5);
    EXPECT_EQ(LoadStringW(module_, 2000, buffer, 5), 4);
    EXPECT_EQ(std::u16string(buffer), u"Firs");
    EXPECT_EQ(LoadStringW(module_, 2001, buffer, 32), 8);
    EXPECT_EQ(std::u16string(buffer), u"Zweite \u00E4");
    EXPECT_EQ(LoadStringW(module_, 2003, buffer, 32), 11);
    // A gap in a block is the empty string; a missing block leaves the buffer.
    EXPECT_EQ(LoadStringW(module_, 2002, buffer, 32), 0);
    EXPECT_EQ(buffer[0], 0);
    buffer[0] = u'#';
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(LoadStringW(module_, 3000, buffer, 32), 0); }),
              DWORD{ERROR_RESOURCE_NAME_NOT_FOUND});
    EXPECT_EQ(buffer[0], u'#');
    const WCHAR* text = nullptr;
    EXPECT_EQ(LoadStringW(module_, 2003, reinterpret_cast<LPWSTR>(&text), 0), 11);
    EXPECT_EQ(std::u16string(text, 11), u"After a gap");
    EXPECT_EQ(LoadStringW(nullptr, 2000, buffer, 32), 0);
}

TEST_F(ResourcesTest, ByIdAndByName) {
    const struct {
        LPCWSTR type;
        LPCWSTR name;
        const char* data;  // null: not there
        DWORD error;
    } cases[] = {
        {RT_RCDATA, MAKEINTRESOURCEW(7),
         "\x34\x12"
         "abc",
         0},
        {u"#10", u"#7",
         "\x34\x12"
         "abc",
         0},
        {RT_RCDATA, u"named", "\x01", 0},
        {u"Special", MAKEINTRESOURCEW(8), "special", 0},
        {RT_RCDATA, MAKEINTRESOURCEW(8), nullptr, ERROR_RESOURCE_NAME_NOT_FOUND},
        {RT_DIALOG, MAKEINTRESOURCEW(7), nullptr, ERROR_RESOURCE_TYPE_NOT_FOUND},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        HRSRC found = nullptr;
        const DWORD error = FailureOf([&] { return found = FindResourceW(module_, c.name, c.type); });
        EXPECT_EQ(error, c.error);
        if (c.data != nullptr) {
            EXPECT_EQ(DataOf(found).substr(0, strlen(c.data)), c.data);
        }
    }
    // A handle of another module is none.
    const HMODULE kernel = GetModuleHandleW(u"kernel32");
    const HRSRC found = FindResourceW(module_, MAKEINTRESOURCEW(7), RT_RCDATA);
    EXPECT_EQ(LoadResource(kernel, found), nullptr);
    EXPECT_EQ(SizeofResource(kernel, found), 0u);
}

TEST_F(ResourcesTest, ByLanguage) {
    const struct {
        LANGID user;
        WORD name;
        const char* data;
    } cases[] = {
        {0x0407, 9, "german"},  {0x0409, 9, "english"},       {0x0411, 9, "neutral"},
        {0x0C07, 9, "neutral"}, {0x0411, 10, "english only"},
    };
    for (const auto& c : cases) {
        TheMachine().SetLanguage(c.user);
        EXPECT_EQ(DataOf(FindResourceW(module_, MAKEINTRESOURCEW(c.name), RT_RCDATA)), c.data) << c.user;
    }
    EXPECT_EQ(DataOf(FindResourceExW(module_, RT_RCDATA, MAKEINTRESOURCEW(9), 0x0407)), "german");
}

TEST_F(ResourcesTest, VersionOfAFile) {
    DWORD zero = 7;
    const DWORD size = GetFileVersionInfoSizeW(u"C:\\t\\WORDS.dll", &zero);
    ASSERT_GT(size, 100u);
    EXPECT_EQ(zero, 0u);
    std::vector<char> block(size);
    ASSERT_TRUE(GetFileVersionInfoW(u"C:\\t\\words.dll", 0, size, block.data()));
    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), u"\\VarFileInfo\\Translation", &value, &length));
    EXPECT_EQ(length, 4u);
    EXPECT_EQ(std::string_view(static_cast<char*>(value), 4), std::string_view("\x09\x04\xE4\x04", 4));
    ASSERT_TRUE(VerQueryValueW(block.data(), u"\\StringFileInfo\\040904e4\\fileversion", &value, &length));
    EXPECT_EQ(std::u16string(static_cast<char16_t*>(value)), u"10.0.5.3");
    EXPECT_EQ(length, 9u);
    ASSERT_TRUE(VerQueryValueW(block.data(), u"\\", &value, &length));
    EXPECT_EQ(length, sizeof(VS_FIXEDFILEINFO));
    EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwFileVersionMS, 10u << 16);
    for (const char16_t* path : {u"\\StringFileInfo\\04090000\\FileVersion", u"\\StringFileInfo\\040904E4\\Nothing",
                                 u"\\Other", u"\\VarFileInfo\\Translation\\x"}) {
        EXPECT_EQ(FailureOf([&] { return VerQueryValueW(block.data(), path, &value, &length); }),
                  DWORD{ERROR_RESOURCE_TYPE_NOT_FOUND});
    }
    // A shorter buffer holds the beginning; what doesn't lie in it isn't found, and never read.
    for (DWORD shorter = 6; shorter < size; ++shorter) {
        std::vector<char> part(shorter);
        ASSERT_TRUE(GetFileVersionInfoW(u"C:\\t\\words.dll", 0, shorter, part.data()));
        if (VerQueryValueW(part.data(), u"\\StringFileInfo\\040904E4\\CompanyName", &value, &length)) {
            EXPECT_LE(static_cast<char*>(value) + 2 * length, part.data() + shorter);
        }
    }
}

TEST_F(ResourcesTest, FilesWithoutAVersion) {
    Put("t/text.txt", "no resources");
    const struct {
        const char16_t* file;
        DWORD error;
    } cases[] = {
        {u"C:\\t\\none.dll", ERROR_FILE_NOT_FOUND},
        {u"C:\\x\\none.dll", ERROR_PATH_NOT_FOUND},
        {u"C:\\t\\text.txt", ERROR_RESOURCE_DATA_NOT_FOUND},
    };
    char buffer[8];
    for (const auto& c : cases) {
        DWORD zero = 0;
        EXPECT_EQ(FailureOf([&] { return GetFileVersionInfoSizeW(c.file, &zero); }), c.error);
        EXPECT_EQ(FailureOf([&] { return GetFileVersionInfoW(c.file, 0, 8, buffer); }), c.error);
    }
}

// Only whole files are taken: no cut and no changed size may lead a read outside.
TEST_F(ResourcesTest, BrokenFilesAreRefused) {
    const std::string whole = Get("t/words.dll");
    ASSERT_NE(ParseResourceFile(whole), nullptr);
    size_t accepted = 0;
    for (size_t length = 0; length < whole.size(); ++length) {
        accepted += ParseResourceFile(std::string(whole, 0, length)) != nullptr ? 1 : 0;
    }
    EXPECT_LT(accepted, 40u);  // where it is cut between two entries, or in the last one's padding
    for (size_t at = 32; at + 4 <= whole.size(); at += 4) {
        std::string broken = whole;
        broken.replace(at, 4, "\xFF\xFF\xFF\x7F");
        ParseResourceFile(broken);
    }
}

}  // namespace
}  // namespace host
