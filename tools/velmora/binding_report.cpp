#include "tools/velmora/binding_report.h"

#include <string>

#include "tools/velmora/devmode_names.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

std::string NameOptions(DWORD options) {
    return HexNumber(options) + ((options & SHIMOPTS_NOSNAPSHOT) != 0 ? " SHIMOPTS_NOSNAPSHOT" : "");
}

}  // namespace

std::vector<Table> ReportBinding(const ProviderBinding& binding) {
    std::vector<std::string> versions;
    for (const INT version : binding.versions) {
        versions.push_back(std::to_string(version));
    }
    Table answers = {"", "answers", {{"Call", "call"}, {"Gives", "what"}, {"Value", "value"}}};
    const auto add = [&](const char* call, const char* what, Cell value) {
        answers.rows.push_back({TextCell(call), TextCell(what), std::move(value)});
    };
    add("GetSupportedVersions", "versions", ListCell(versions));
    add("BindPrinter", "options", TextCell(NameOptions(binding.options)));
    add("BindPrinter", "device mode fields", TextCell(NameFieldBits(binding.devModeFields)));
    add("BindPrinter", "namespaces", NumberCell(static_cast<int64_t>(binding.namespaces.size())));
    add("QueryDeviceNamespace", "device namespace", TextCell(binding.deviceNamespace));
    add("DllCanUnloadNow", "the library may go", TextCell(binding.mayUnload ? "yes" : "no"));

    Table namespaces = {"Namespaces", "namespaces", {{"No.", "number"}, {"Namespace", "namespace"}}};
    for (const std::string& name : binding.namespaces) {
        namespaces.rows.push_back({NumberCell(static_cast<int64_t>(namespaces.rows.size() + 1)), TextCell(name)});
    }
    return {std::move(answers), std::move(namespaces)};
}

Json ToJson(const ProviderBinding& binding) {
    return {{"versions", binding.versions},
            {"options", binding.options},
            {"optionsName", NameOptions(binding.options)},
            {"devModeFields", binding.devModeFields},
            {"devModeFieldsName", NameFieldBits(binding.devModeFields)},
            {"namespaces", binding.namespaces},
            {"deviceNamespace", binding.deviceNamespace},
            {"mayUnload", binding.mayUnload},
            {"leftOpen", binding.leftOpen}};
}

}  // namespace velmora
