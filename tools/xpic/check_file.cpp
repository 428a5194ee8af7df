#include "tools/xpic/check_file.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "tools/xpic/check_model.h"
#include "tools/xpic/compile.h"
#include "tools/xpic/file_content.h"
#include "tools/xpic/read_description.h"

namespace velmora {
namespace {

bool HasExtension(const std::filesystem::path& file, std::string_view lowerCase) {
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension == lowerCase;
}

Findings CheckSource(std::string_view content, const std::filesystem::path& file) {
    const CompileResult result = CompileModelText(content, file);
    Findings findings;
    for (const Diagnostic& diagnostic : result.diagnostics) {
        AddFinding(findings, "refused", diagnostic.path,
                   "found " + diagnostic.found + ", expected " + diagnostic.expected);
        findings.back().file = diagnostic.file;
        findings.back().position = diagnostic.position;
    }
    if (!result.Succeeded()) {
        return findings;
    }
    findings = CheckModel(*result.model);
    for (Finding& finding : findings) {
        const SourcePlace place = result.document.Locate(finding.path);
        finding.file = result.document.FileName(place);
        finding.position = place.position;
        finding.path = place.path;
    }
    // The source itself comes before what it includes.
    const std::string own = file.string();
    std::stable_sort(findings.begin(), findings.end(), [&](const Finding& a, const Finding& b) {
        const auto key = [&](const Finding& finding) {
            return std::tuple(finding.file != own, std::string_view(finding.file), finding.position.line,
                              finding.position.column);
        };
        return key(a) < key(b);
    });
    return findings;
}

Findings CheckDescription(DescriptionReading reading) {
    if (reading.model && !HasErrors(reading.findings)) {
        Findings judged = CheckModel(*reading.model);
        std::move(judged.begin(), judged.end(), std::back_inserter(reading.findings));
    }
    return std::move(reading.findings);
}

}  // namespace

Findings CheckFile(const std::filesystem::path& file) {
    const std::optional<std::string> content = ReadFileContent(file);
    if (!content) {
        Findings findings;
        AddFinding(findings, "unreadable", std::string(kRootPath), "no file that can be read");
        return findings;
    }
    const bool isDescription = HasExtension(file, ".xpi");
    if (HasExtension(file, ".json") || (!isDescription && LooksLikeSource(*content))) {
        return CheckSource(*content, file);
    }
    DescriptionReading reading =
        ReadDescription(std::as_bytes(std::span<const char>(content->data(), content->size())));
    if (!isDescription && !reading.model) {
        Findings findings;
        AddFinding(findings, "unreadable", std::string(kRootPath), "neither a model source nor a description file");
        return findings;
    }
    return CheckDescription(std::move(reading));
}

}  // namespace velmora
