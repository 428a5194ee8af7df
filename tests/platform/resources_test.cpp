#include "platform/resources/resource_file.h"

#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

constexpr char16_t kWords[] = u"C:\\t\\words.dll";

class ResourcesTest : public KernelTest {
  protected:
    ResourcesTest() {
        Put("t/text.txt", "no resources");
        std::filesystem::copy_file(VELMORA_PROBE_RESOURCES, machine_->Drive() / "t/words.dll");
        module_ = LoadLibraryW(kWords);
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

// A gap in a block is the empty string; a missing block leaves the buffer.
TEST_F(ResourcesTest, Strings) {
    const struct {
        UINT id;
        int size;
        std::u16string text;
    } cases[] = {{2000, 6, u"First"},
                 {2000, 5, u"Firs"},
                 {2001, 32, u"Zweite \u00E4"},
                 {2002, 32, u""},
                 {2003, 32, u"After a gap"}};
    WCHAR buffer[32];
    for (const auto& c : cases) {
        EXPECT_EQ(LoadStringW(module_, c.id, buffer, c.size), static_cast<int>(c.text.size()));
        EXPECT_EQ(std::u16string(buffer), c.text);
    }
    EXPECT_EQ(FailureOf([&] { return LoadStringW(module_, 3000, buffer, 32); }), ERROR_RESOURCE_NAME_NOT_FOUND);
    EXPECT_EQ(std::u16string(buffer), u"After a gap");
    const WCHAR* text = nullptr;
    EXPECT_EQ(LoadStringW(module_, 2003, reinterpret_cast<LPWSTR>(&text), 0), 11);
    EXPECT_EQ(std::u16string(text, 11), u"After a gap");
    EXPECT_EQ(LoadStringW(nullptr, 2000, buffer, 32), 0);
}

TEST_F(ResourcesTest, ByIdNameAndLanguage) {
    const struct {
        LANGID user;
        LPCWSTR type, name;
        const char* data;  // begins so
    } found[] = {
        {0x0409, RT_RCDATA, MAKEINTRESOURCEW(7),
         "\x34\x12"
         "abc"},
        {0x0409, u"#10", u"#7",
         "\x34\x12"
         "abc"},
        {0x0409, RT_RCDATA, u"named", "\x01"},
        {0x0409, u"Special", MAKEINTRESOURCEW(8), "special"},
        {0x0407, RT_RCDATA, MAKEINTRESOURCEW(9), "german"},
        {0x0409, RT_RCDATA, MAKEINTRESOURCEW(9), "english"},
        {0x0C07, RT_RCDATA, MAKEINTRESOURCEW(9), "neutral"},
        {0x0411, RT_RCDATA, MAKEINTRESOURCEW(10), "english only"},
    };
    for (const auto& c : found) {
        machine_->SetLanguage(c.user);
        EXPECT_EQ(DataOf(FindResourceW(module_, c.name, c.type)).find(c.data), 0u) << c.data;
    }
    ExpectErrors({
        {"no name", [&] { return FindResourceW(module_, u"x", RT_RCDATA); }, ERROR_RESOURCE_NAME_NOT_FOUND},
        {"no type", [&] { return FindResourceW(module_, u"x", RT_DIALOG); }, ERROR_RESOURCE_TYPE_NOT_FOUND},
    });
    // A handle of another module is none.
    const HRSRC own = FindResourceW(module_, MAKEINTRESOURCEW(7), RT_RCDATA);
    EXPECT_EQ(LoadResource(GetModuleHandleW(u"kernel32"), own), nullptr);
    EXPECT_EQ(SizeofResource(GetModuleHandleW(u"kernel32"), own), 0u);
}

TEST_F(ResourcesTest, VersionOfAFile) {
    DWORD zero = 7;
    const DWORD size = GetFileVersionInfoSizeW(u"C:\\t\\WORDS.dll", &zero);
    ASSERT_GT(size, 100u);
    EXPECT_EQ(zero, 0u);
    std::vector<char> block(size);
    ASSERT_TRUE(GetFileVersionInfoW(kWords, 0, size, block.data()));
    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), u"\\VarFileInfo\\Translation", &value, &length));
    EXPECT_EQ(std::string_view(static_cast<char*>(value), length), std::string_view("\x09\x04\xE4\x04", 4));
    ASSERT_TRUE(VerQueryValueW(block.data(), u"\\StringFileInfo\\040904e4\\fileversion", &value, &length));
    EXPECT_EQ(std::u16string(static_cast<char16_t*>(value)), u"10.0.5.3");
    EXPECT_EQ(length, 9u);
    ASSERT_TRUE(VerQueryValueW(block.data(), u"\\", &value, &length));
    EXPECT_EQ(length, sizeof(VS_FIXEDFILEINFO));
    EXPECT_EQ(static_cast<VS_FIXEDFILEINFO*>(value)->dwFileVersionMS, 10u << 16);
    for (const char16_t* path : {u"\\StringFileInfo\\04090000\\FileVersion", u"\\StringFileInfo\\040904E4\\Nothing",
                                 u"\\Other", u"\\VarFileInfo\\Translation\\x"}) {
        EXPECT_EQ(FailureOf([&] { return VerQueryValueW(block.data(), path, &value, &length); }),
                  ERROR_RESOURCE_TYPE_NOT_FOUND)
            << Shown(path);
    }
    // A shorter buffer holds the beginning; what doesn't lie in it isn't found, and never read.
    for (DWORD shorter = 6; shorter < size; ++shorter) {
        std::vector<char> part(shorter);
        ASSERT_TRUE(GetFileVersionInfoW(kWords, 0, shorter, part.data()));
        if (VerQueryValueW(part.data(), u"\\StringFileInfo\\040904E4\\CompanyName", &value, &length)) {
            EXPECT_LE(static_cast<char*>(value) + 2 * length, part.data() + shorter);
        }
    }
    ExpectErrors({
        {"missing", [&] { return GetFileVersionInfoSizeW(u"C:\\t\\none.dll", &zero); }, ERROR_FILE_NOT_FOUND},
        {"a text", [&] { return GetFileVersionInfoSizeW(u"C:\\t\\text.txt", &zero); }, ERROR_RESOURCE_DATA_NOT_FOUND},
        {"no folder", [&] { return GetFileVersionInfoW(u"C:\\x\\none.dll", 0, size, block.data()); },
         ERROR_PATH_NOT_FOUND},
    });
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
