#include "driver/entry/resource_module.h"

#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

TEST(LanguageCodes, RowsEndsAndHoles) {
    constexpr struct {
        WORD primary;
        WORD sublanguage;
        const char* code;  // "" for none
    } kCases[] = {
        {0, 0, "NEUT"}, {0, 2, "NEUT"},  {0, 3, ""},  {1, 0, ""},      {1, 1, "SAUD"}, {1, 16, "QATA"},
        {1, 17, ""},    {9, 1, "ENUS"},  {9, 12, ""}, {22, 2, "PORT"}, {32, 2, ""},    {40, 1, "FARS"},
        {56, 0, ""},    {56, 1, "FAER"}, {57, 1, ""}, {1023, 1, ""},   {17, 63, ""},
    };
    for (const auto& c : kCases) {
        const WCHAR* code = LanguageCode(c.primary, c.sublanguage);
        EXPECT_EQ(ToText(code ? code : TEXT("")), c.code) << c.primary << "." << c.sublanguage;
    }
}

class ResourceModule : public MachineTest {
  protected:
    // String 1 of each module is its language's code.
    static DriverPackage Languages(const std::vector<WideText>& codes) {
        DriverPackage package = PackageOf("");
        package.dependent.clear();
        for (const WideText& code : codes) {
            package.dependent.push_back({TEXT("KV62") + code + TEXT(".DLL"), StringModule({{1, code}})});
            package.dependent.push_back({TEXT("KV62") + code + TEXT(".CHM"), "help"});
        }
        return package;
    }

    std::string Loaded(LANGID language, ResourceContext* context = nullptr) {
        machine_.SetLanguage(language);
        const OwnedModule module = LoadResourceModule(Printer(), context);
        WCHAR text[8] = {};
        if (module) {
            LoadStringW(module.Get(), 1, text, ARRAYSIZE(text));
        }
        return ToText(text);
    }
};

TEST_F(ResourceModule, FollowsTheUsersLanguageOrIsEnglish) {
    Install(Languages({TEXT("GERM"), TEXT("GSWI"), TEXT("FREN"), TEXT("ENUK"), TEXT("ENUS")}));
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 1)), "GERM");
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 2)), "GSWI");
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 3)), "ENUS");  // GAUS isn't in the package
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 0)), "ENUS");  // no code
    EXPECT_EQ(Loaded(MAKELANGID(LANG_ENGLISH, 2)), "ENUK");
    EXPECT_EQ(Loaded(MAKELANGID(0x91, 1)), "ENUS");  // beyond the table
    EXPECT_EQ(Loaded(MAKELANGID(LANG_JAPANESE, 1)), "ENUS");
}

TEST_F(ResourceModule, APrinterDataValueMayNameIt) {
    Install(Languages({TEXT("GERM"), TEXT("FREN"), TEXT("ENUS")}));
    SetString(Printer(), TEXT("GERM"), TEXT("kv62fren.dll"));
    SetString(Printer(), TEXT("GERMhelp"), TEXT("kv62fren.chm"));
    ResourceContext context;
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 1), &context), "FREN");
    EXPECT_EQ(ToText(context.helpPath).substr(ToText(context.helpPath).rfind('\\') + 1), "KV62FREN.CHM");
}

TEST_F(ResourceModule, TheContextSaysWhatIsUsed) {
    Install(Languages({TEXT("GERM"), TEXT("ENUS")}));
    ResourceContext context;
    machine_.SetDecimalSeparator(TEXT(","));
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 1), &context), "GERM");
    EXPECT_EQ(ValueOf(context.language), LANG_GERMAN);
    EXPECT_EQ(ValueOf(context.sublanguage), 1);
    EXPECT_EQ(ToText(context.decimalSeparator), ",");
    WideText help = InstalledPath(TEXT("KV62GERM.CHM"));
    CharUpperW(help.data());
    EXPECT_EQ(ToText(context.helpPath), ToText(help));

    machine_.SetDecimalSeparator(TEXT("123456789"));
    EXPECT_EQ(Loaded(MAKELANGID(LANG_FRENCH, 2), &context), "ENUS");
    EXPECT_EQ(ValueOf(context.language), LANG_ENGLISH);
    EXPECT_EQ(ValueOf(context.sublanguage), 1);
    EXPECT_EQ(ToText(context.decimalSeparator), "1234567");
    EXPECT_NE(ToText(context.helpPath).find("KV62ENUS.CHM"), std::string::npos);
}

TEST_F(ResourceModule, AModuleThatDoesNotLoadIsReplaced) {
    DriverPackage package = Languages({TEXT("ENUS")});
    package.dependent.push_back({TEXT("KV62GERM.DLL"), "no library"});
    Install(package);
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 1)), "ENUS");
}

TEST_F(ResourceModule, NoneAtAll) {
    Install(Languages({}));
    ResourceContext context;
    memset(&context, 0x55, sizeof(context));
    EXPECT_EQ(Loaded(MAKELANGID(LANG_GERMAN, 1), &context), "");
    EXPECT_EQ(ValueOf(context.helpPath[0]), 0);
    EXPECT_EQ(ValueOf(context.language), LANG_ENGLISH);
    EXPECT_EQ(ToText(context.decimalSeparator), ".");
}

}  // namespace
}  // namespace velmora
