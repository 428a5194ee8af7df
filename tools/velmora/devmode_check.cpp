#include "tools/velmora/devmode_check.h"

#include <algorithm>

#include "tools/velmora/field_report.h"

namespace velmora {
namespace {

// The check that rejected, with what its field has to hold.
std::string Rejection(const std::string& name) {
    for (const auto& part : {PublicFields(), PrivateFields()}) {
        const auto field = std::ranges::find(part, name, &FieldDescriptor::name);
        if (field != part.end()) {
            return name + " (valid: " + ValidValues(*field) + ")";
        }
    }
    return name;
}

}  // namespace

DevModeCheck CheckDevMode(const PrinterModel& model, const VelmoraDevMode& devMode) {
    DevModeCheck check = {{}, {}, devMode};
    ValidatePublicDevMode(model.Printer(), &check.repaired.publicPart, &*model, &check.publicPart);
    ValidatePrivateDevMode(model.Printer(), &check.repaired.privatePart, model.File(), &*model, &check.privatePart);
    return check;
}

std::string Describe(const ValidationReport& report) {
    std::string text = report.IsAccepted() ? "accepted" : "rejected";
    text += report.rejectedBy ? " by " + Rejection(report.rejectedBy) : "";
    if (report.repairs > 0) {
        text += " after " + std::to_string(report.repairs) + (report.repairs == 1 ? " repair" : " repairs");
        const char* separator = ": ";
        for (const char* name : report.RepairedNames()) {
            text += std::string(separator) + name;
            separator = ", ";
        }
    }
    return text;
}

std::string DescribeRejection(const DevModeCheck& check, const std::string& name) {
    return name + " isn't taken:\n  public part: " + Describe(check.publicPart) +
           "\n  private part: " + Describe(check.privatePart);
}

Json ToJson(const ValidationReport& report) {
    Json names = Json::array();
    for (const char* name : report.RepairedNames()) {
        names.push_back(name);
    }
    return {{"accepted", report.IsAccepted()},
            {"repairs", report.repairs},
            {"repaired", names},
            {"rejectedBy", report.rejectedBy ? Json(report.rejectedBy) : Json()}};
}

}  // namespace velmora
