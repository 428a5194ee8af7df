#include "tools/velmora/machine_settings.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <limits>

#include "driver/entry/resource_module.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {
namespace {

constexpr UINT kWesternCodePage = 1252;
constexpr UINT kJapaneseCodePage = 932;

// The whole text as a number of this type; empty where it is none.
template <class Number>
std::optional<Number> ParseNumber(std::string_view text, int base) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<LANGID> FindLanguageCode(const std::string& code) {
    constexpr WORD kMostPrimary = 0x3FF;
    constexpr WORD kMostSublanguage = 0x3F;
    const std::u16string wanted = host::FoldCase(host::ToWide(code));
    for (WORD primary = LANG_NEUTRAL + 1; primary <= kMostPrimary; ++primary) {
        for (WORD sublanguage = 1; sublanguage <= kMostSublanguage; ++sublanguage) {
            const WCHAR* const known = LanguageCode(primary, sublanguage);
            if (!known) {
                break;
            }
            // English itself stands before the languages that are served in it.
            if (host::FoldCase(known) == wanted) {
                return MAKELANGID(primary, sublanguage);
            }
        }
    }
    return std::nullopt;
}

}  // namespace

void Apply(const MachineSettings& settings, host::Machine& machine) {
    if (settings.language) {
        machine.SetLanguage(*settings.language);
        machine.SetAnsiCodePage(PRIMARYLANGID(*settings.language) == LANG_JAPANESE ? kJapaneseCodePage
                                                                                   : kWesternCodePage);
    }
    if (settings.isMetric) {
        machine.SetMetric(*settings.isMetric);
    }
    if (settings.systemVersion) {
        machine.SetSystemVersion(settings.systemVersion->major, settings.systemVersion->minor);
    }
    if (settings.computerName) {
        machine.SetComputerName(host::ToWide(*settings.computerName));
    }
}

std::optional<LANGID> ParseLanguage(const std::string& text) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        return ParseNumber<LANGID>(std::string_view(text).substr(2), 16);
    }
    if (const Language* const language = FindLanguage(text)) {
        return MAKELANGID(language->primaryId, SUBLANG_DEFAULT);
    }
    return FindLanguageCode(text);
}

std::optional<bool> ParseMeasurement(const std::string& text) {
    if (text == "metric" || text == "us") {
        return text == "metric";
    }
    return std::nullopt;
}

std::optional<MachineSettings::Version> ParseVersion(const std::string& text) {
    const size_t dot = text.find('.');
    const std::optional<DWORD> major = ParseNumber<DWORD>(std::string_view(text).substr(0, dot), 10);
    const std::optional<DWORD> minor =
        dot == text.npos ? 0 : ParseNumber<DWORD>(std::string_view(text).substr(dot + 1), 10);
    if (!major || !minor) {
        return std::nullopt;
    }
    return MachineSettings::Version{*major, *minor};
}

std::optional<std::string> ParseComputerName(const std::string& text) {
    constexpr size_t kMostCharacters = 15;  // MAX_COMPUTERNAME_LENGTH (winbase.h)
    const bool isName =
        !text.empty() && text.size() <= kMostCharacters &&
        std::ranges::all_of(text, [](unsigned char c) { return std::isalnum(c) || c == '-' || c == '_'; });
    return isName ? std::optional(text) : std::nullopt;
}

std::filesystem::path DefaultMachineFolder() {
    const auto variable = [](const char* name) -> std::filesystem::path {
        const char* const value = std::getenv(name);
        return value ? value : "";
    };
    // Relative paths are to be ignored, as the base directory rules demand.
    std::filesystem::path data = variable("XDG_DATA_HOME");
    if (!data.is_absolute()) {
        const std::filesystem::path home = variable("HOME");
        if (!home.is_absolute()) {
            throw CommandError(
                "neither XDG_DATA_HOME nor HOME names a folder for the machine; name one with --machine");
        }
        data = home / ".local" / "share";
    }
    return data / "velmora" / "machine";
}

}  // namespace velmora
