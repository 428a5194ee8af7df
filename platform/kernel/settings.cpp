#include "platform/kernel/settings.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "platform/kernel/store.h"
#include "platform/kernel/text.h"

namespace host {

bool CaseLess::operator()(const std::u16string& a, const std::u16string& b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char16_t x, char16_t y) { return UpperCase(x) < UpperCase(y); });
}

namespace {

std::map<std::u16string, std::u16string, CaseLess>& Environment() {
    static auto& environment = *new std::map<std::u16string, std::u16string, CaseLess>(Settings().variables);
    return environment;
}

void Clear() {
    CurrentSettings() = Settings();
    Environment() = CurrentSettings().variables;
}

nlohmann::json Save() {
    const Settings& settings = CurrentSettings();
    nlohmann::json variables = nlohmann::json::object();
    for (const auto& [name, value] : settings.variables) {
        variables[ToUtf8(name)] = ToUtf8(value);
    }
    return {
        {"language", settings.language},
        {"metric", settings.metric},
        {"decimalSeparator", ToUtf8(settings.decimalSeparator)},
        {"ansiCodePage", settings.ansiCodePage},
        {"computerName", ToUtf8(settings.computerName)},
        {"majorVersion", settings.majorVersion},
        {"minorVersion", settings.minorVersion},
        {"tickCount", settings.tickCount},
        {"variables", variables},
        {"grantedPrinterAccess", settings.grantedPrinterAccess},
        {"mayWritePrinterData", settings.mayWritePrinterData},
    };
}

void Load(const nlohmann::json& saved) {
    Settings settings;
    settings.language = saved.at("language").get<LANGID>();
    settings.metric = saved.at("metric").get<bool>();
    settings.decimalSeparator = ToWide(saved.at("decimalSeparator").get<std::string>());
    settings.ansiCodePage = saved.at("ansiCodePage").get<UINT>();
    if (settings.ansiCodePage != 1252 && settings.ansiCodePage != 932) {
        throw std::runtime_error("ansiCodePage is neither 1252 nor 932");
    }
    settings.computerName = ToWide(saved.at("computerName").get<std::string>());
    settings.majorVersion = saved.at("majorVersion").get<DWORD>();
    settings.minorVersion = saved.at("minorVersion").get<DWORD>();
    settings.tickCount = saved.at("tickCount").get<DWORD>();
    settings.variables.clear();
    for (const auto& [name, value] : saved.at("variables").items()) {
        settings.variables[ToWide(name)] = ToWide(value.get<std::string>());
    }
    settings.grantedPrinterAccess = saved.at("grantedPrinterAccess").get<DWORD>();
    settings.mayWritePrinterData = saved.at("mayWritePrinterData").get<bool>();
    CurrentSettings() = settings;
    Environment() = settings.variables;
}

[[maybe_unused]] const bool registered = [] {
    RegisterSection({"settings", Clear, Save, Load});
    return true;
}();

}  // namespace

Settings& CurrentSettings() {
    static Settings& settings = *new Settings;
    return settings;
}

std::map<std::u16string, std::u16string, CaseLess>& ProcessEnvironment() {
    return Environment();
}

}  // namespace host
