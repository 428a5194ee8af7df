// The language modules as they are built: they hold the same resources.
#include <map>
#include <optional>

#include "platform/kernel/text.h"
#include "tests/driver/built_modules.h"
#include "tests/driver/machine.h"
#include "tests/driver/module_resources.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr unsigned kSettingsExtension = 2420;  // string ids
constexpr unsigned kLanguage = 2500;

// Resources by type and id, "string 2000", "dialog 1004"; of strings, which don't stand alone in a file, their text.
using Resources = std::map<std::string, std::optional<std::u16string>>;

Resources ResourcesOf(const std::string& module) {
    const ModuleResources content = ReadModuleResources(module);
    Resources resources;
    for (const auto& [id, text] : content.strings) {
        resources["string " + std::to_string(id)] = text;
    }
    for (const auto& dialog : content.dialogs) {
        resources["dialog " + std::to_string(dialog.first)] = std::nullopt;
    }
    for (const std::string& other : content.others) {
        resources[other] = std::nullopt;
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

TEST(LanguageModules, HoldTheSameResources) {
    const std::vector<PackageFile> modules = BuiltLanguageModules();
    ASSERT_GT(modules.size(), 1u);
    for (const PackageFile& module : modules) {
        const std::string name = host::ToUtf8(module.name);
        SCOPED_TRACE(name);
        const std::string code = name.substr(4, 4);
        // Japanese has two built-in watermarks fewer.
        const Texts missing = code == "JAPA" ? Texts{"string 2496 is missing", "string 2497 is missing"} : Texts();
        EXPECT_EQ(Differences(module.bytes, modules[0].bytes), missing);
        auto strings = ReadModuleResources(module.bytes).strings;
        EXPECT_EQ(strings[kSettingsExtension], u"ini") << "a user who changes the language keeps the settings";
        EXPECT_EQ(host::ToUtf8(strings[kLanguage]), code);
        EXPECT_TRUE(ResourcesOf(module.bytes).contains("type 2, \"ABOUT_LOGO\""));
    }
}

}  // namespace
}  // namespace velmora
