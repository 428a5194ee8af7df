#include "tools/xpic/finding.h"

#include <algorithm>

namespace velmora {

void AddFinding(Findings& findings, FindingCode code, std::string path, std::string what) {
    const FindingKind& kind = *code.kind;
    findings.push_back({kind.severity, kind.code, std::move(path), std::move(what), kind.why, {}, {}});
}

bool HasErrors(const Findings& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity == Severity::kError; });
}

std::string_view NameOf(Severity severity) {
    constexpr std::string_view kNames[] = {"note", "warning", "error"};
    return kNames[static_cast<size_t>(severity)];
}

std::string FormatFinding(const Finding& finding, std::string_view file) {
    std::string line = finding.file.empty() ? std::string(file) : finding.file;
    if (finding.position.line != 0) {
        line.append(":").append(std::to_string(finding.position.line));
        line.append(":").append(std::to_string(finding.position.column));
    }
    line.append(": ").append(NameOf(finding.severity)).append(": ").append(finding.path).append(": ");
    line.append(finding.what).append(": ").append(finding.why);
    line.append(" [").append(finding.code).append("]");
    if (!finding.file.empty() && finding.file != file) {
        line.append(", included by ").append(file);
    }
    return line;
}

}  // namespace velmora
