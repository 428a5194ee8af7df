// The model compiler on any text as a model source: no crash, the same result each time, and every fault told with a
// place of the text and with words. What compiles is read back, checked, and dumped to a source of the same bytes.
//
// Seeds are the project's model sources. An input stands where they do, so that it includes and names the same files.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "driver/devdesc/description_format.h"
#include "tools/xpic/check_model.h"
#include "tools/xpic/compile.h"
#include "tools/xpic/dump_description.h"

namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the compiler under test

const std::string kFile = VELMORA_MODELS_SOURCE_DIR "/fuzzed.json";

[[noreturn]] void Stop(const char* what, const std::string& detail = {}) {
    fprintf(stderr, "%s: %s\n", what, detail.c_str());
    abort();
}

// True where the text has this line, and the line this column or ends before it.
bool HoldsPosition(std::string_view text, const Position& position) {
    size_t begin = 0;
    for (size_t line = 1; line < position.line; ++line) {
        begin = text.find('\n', begin);
        if (begin == text.npos) {
            return false;
        }
        ++begin;
    }
    const std::string_view line = text.substr(begin, text.substr(begin).find('\n'));
    const auto characters = std::ranges::count_if(line, [](char byte) { return (byte & 0xC0) != 0x80; });
    return position.column >= 1 && position.column <= static_cast<size_t>(characters) + 1;
}

// A name, a number or a phrase: something to read, on one line.
bool IsPhrase(std::string_view text) {
    return !text.empty() && text.find('\n') == text.npos && text.front() != ' ' && text.back() != ' ';
}

void CheckDiagnostic(const Diagnostic& diagnostic, std::string_view text) {
    const std::string line = FormatDiagnostic(diagnostic);
    if (diagnostic.position.line == 0 ? diagnostic.position.column != 0
                                      : diagnostic.file == kFile && !HoldsPosition(text, diagnostic.position)) {
        Stop("a fault outside the text", line);
    }
    if (diagnostic.file.empty() || !diagnostic.path.starts_with("$") || !IsPhrase(diagnostic.found) ||
        !IsPhrase(diagnostic.expected) || line.find('\n') != line.npos) {
        Stop("a fault without words", line);
    }
}

std::vector<std::string> Lines(const CompileResult& result) {
    std::vector<std::string> lines;
    for (const Diagnostic& diagnostic : result.diagnostics) {
        lines.push_back(FormatDiagnostic(diagnostic));
    }
    return lines;
}

void CheckFindings(const Findings& findings) {
    for (const Finding& finding : findings) {
        const std::string line = FormatFinding(finding, kFile);
        if (!finding.path.starts_with("$") || !IsPhrase(finding.what) || !IsPhrase(finding.why) ||
            line.find('\n') != line.npos) {
            Stop("a finding without words", line);
        }
    }
}

void CheckCompiled(const CompileResult& result) {
    CheckFindings(CheckModel(*result.model));
    const Dump dump = DumpDescription(result.bytes, "", "");
    CheckFindings(dump.findings);
    const auto error = std::ranges::find(dump.findings, Severity::kError, &Finding::severity);
    if (error != dump.findings.end()) {
        Stop("a compiled model isn't well formed", FormatFinding(*error, kFile));
    }
    const CompileResult again = CompileModelText(dump.source.text, kFile);
    if (!again.Succeeded()) {
        Stop("the dump doesn't compile", FormatDiagnostic(again.diagnostics.front()));
    }
    if (again.bytes != result.bytes) {
        Stop("the dump compiles to another file", dump.source.text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const CompileResult result = CompileModelText(text, kFile);
    for (const Diagnostic& diagnostic : result.diagnostics) {
        CheckDiagnostic(diagnostic, text);
    }
    if (result.Succeeded() != (result.bytes.size() > sizeof(DescriptionFileHeader))) {
        Stop("neither a description file nor a fault, or both");
    }
    const CompileResult again = CompileModelText(text, kFile);
    if (again.bytes != result.bytes || Lines(again) != Lines(result)) {
        Stop("another result the second time");
    }
    if (result.Succeeded()) {
        CheckCompiled(result);
    }
    return 0;
}
