// The language modules as they are built: they hold the same resources, and each is found by its language.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>

#include "driver/entry/resource_module.h"
#include "platform/kernel/text.h"
#include "platform/resources/resource_file.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr uint16_t kStringType = 6;    // RT_STRING (winuser.h)
constexpr uint16_t kVersionType = 16;  // RT_VERSION
constexpr unsigned kStringsPerBlock = 16;
constexpr const char* kSettingsExtension = "string 2420";
constexpr const char* kLanguage = "string 2500";

// Resources by type and id, "string 2000", "type 5, 101"; of strings, which don't stand alone in a file, their text.
using Resources = std::map<std::string, std::optional<std::u16string>>;

std::string NameOf(const host::ResourceKey& key) {
    return key.text.empty() ? std::to_string(key.id) : "\"" + host::ToUtf8(key.text) + "\"";
}

// A block of strings: each its length and its characters. An id without a string has length 0.
void AddStrings(const host::ResourceEntry& block, Resources& resources) {
    const unsigned first = (block.name.id - 1u) * kStringsPerBlock;
    size_t at = 0;
    for (unsigned i = 0; i < kStringsPerBlock && at + 2 <= block.data.size(); ++i) {
        const size_t length = block.data[at] | block.data[at + 1] << 8;
        std::u16string text(std::min(length, (block.data.size() - at) / 2 - 1), u'\0');
        std::copy_n(block.data.data() + at + 2, text.size() * 2, reinterpret_cast<uint8_t*>(text.data()));
        at += 2 + text.size() * 2;
        if (!text.empty()) {
            resources["string " + std::to_string(first + i)] = text;
        }
    }
}

Resources ResourcesOf(const std::string& module) {
    const auto file = host::ParseResourceFile(module);
    Resources resources;
    if (!file) {
        ADD_FAILURE() << "no compiled resources";
        return resources;
    }
    for (const host::ResourceEntry& entry : file->Entries()) {
        if (entry.type.text.empty() && entry.type.id == kStringType) {
            AddStrings(entry, resources);
        } else if (!entry.type.text.empty() || entry.type.id != kVersionType) {
            resources["type " + NameOf(entry.type) + ", " + NameOf(entry.name)] = std::nullopt;
        }
    }
    return resources;
}

// What a text is formatted with, "%d %s".
std::string FormatsOf(const std::u16string& text) {
    std::string formats;
    for (size_t at = text.find(u'%'); at < text.size(); at = text.find(u'%', at)) {
        const size_t end = text.find_first_not_of(u"0123456789.-+ #lhw", at + 1);
        if (end < text.size() && text[end] != u'%') {
            formats += (formats.empty() ? "" : " ") + host::ToUtf8(text.substr(at, end + 1 - at));
        }
        at = end < text.size() ? end + 1 : end;
    }
    return formats;
}

// How a module differs from the one whose resources it should have, a line each.
std::vector<std::string> Differences(const std::string& module, const std::string& model) {
    const Resources own = ResourcesOf(module);
    const Resources wanted = ResourcesOf(model);
    std::vector<std::string> lines;
    for (const auto& [name, text] : wanted) {
        const auto found = own.find(name);
        if (found == own.end()) {
            lines.push_back(name + " is missing");
        } else if (text && FormatsOf(*text) != FormatsOf(*found->second)) {
            lines.push_back(name + " has the formats \"" + FormatsOf(*found->second) + "\" for \"" + FormatsOf(*text) +
                            "\"");
        }
    }
    for (const auto& resource : own) {
        if (!wanted.contains(resource.first)) {
            lines.push_back(resource.first + " is in this module only");
        }
    }
    return lines;
}

std::string ReadModule(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

constexpr const char* kModules[] = {VELMORA_LANGUAGE_MODULES};

TEST(LanguageModules, DifferencesAreTold) {
    const std::string model = StringModule({{7, u"%d of 100%%"}, {8, u"Eight"}, {40, u"%s: %5.1f"}});
    EXPECT_EQ(Differences(model, model), std::vector<std::string>());
    EXPECT_EQ(Differences(StringModule({{7, u"100 % von %d"}, {8, u""}, {40, u"%5.1f: %s"}, {41, u"More"}}), model),
              (std::vector<std::string>{"string 40 has the formats \"%5.1f %s\" for \"%s %5.1f\"",
                                        "string 7 has the "
                                        "formats \"% v %d\" for \"%d\"",
                                        "string 8 is missing", "string 41 is in this module only"}));
    EXPECT_EQ(Differences(VersionedFile(u"1.0"), VersionedFile(u"2.0")), std::vector<std::string>());
}

TEST(LanguageModules, HoldTheSameResources) {
    const std::string english = ReadModule(kModules[0]);
    ASSERT_GT(std::size(kModules), 1u);
    EXPECT_GE(ResourcesOf(english).size(), 42u);
    for (const std::filesystem::path module : kModules) {
        SCOPED_TRACE(module.filename());
        const std::string code = module.stem().string().substr(4);
        // Japanese has two built-in watermarks fewer.
        const Texts missing = code == "JAPA" ? Texts{"string 2496 is missing", "string 2497 is missing"} : Texts();
        EXPECT_EQ(Differences(ReadModule(module), english), missing);
        Resources resources = ResourcesOf(ReadModule(module));
        EXPECT_EQ(resources[kSettingsExtension], u"ini") << "a user who changes the language keeps the settings";
        EXPECT_EQ(host::ToUtf8(resources[kLanguage].value_or(u"")), code);
    }
}

class LanguageModule : public MachineTest {
  protected:
    void SetUp() override {
        DriverPackage package = PackageOf("");
        package.dependent.clear();
        for (const std::filesystem::path module : kModules) {
            package.dependent.push_back({module.filename().u16string(), ReadModule(module)});
        }
        Install(package);
    }

    std::string TextOf(LANGID language, UINT id) {
        machine_.SetLanguage(language);
        const OwnedModule module = LoadResourceModule(Printer(), nullptr);
        WCHAR text[64] = {};
        LoadStringW(module.Get(), id, text, ARRAYSIZE(text));
        return ToText(text);
    }
};

TEST_F(LanguageModule, IsTheOneOfTheUsersLanguage) {
    constexpr struct {
        LANGID language;
        const char* envelope;
        const char* customSize;
    } kCases[] = {
        {MAKELANGID(LANG_ENGLISH, 1), "Envelope #10", "Custom size"},
        {MAKELANGID(LANG_GERMAN, 1), "Umschlag Nr. 10", "Benutzerdefiniert"},
        {MAKELANGID(LANG_JAPANESE, 1), "封筒 10号", "ユーザー定義サイズ"},
        {MAKELANGID(LANG_FRENCH, 1), "Envelope #10", "Custom size"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(TextOf(c.language, 2024), c.envelope);
        EXPECT_EQ(TextOf(c.language, 2117), c.customSize);
    }
}

}  // namespace
}  // namespace velmora
