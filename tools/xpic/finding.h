// What the reader of description files and the checker have to say about a model.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/xpic/diagnostic.h"
#include "tools/xpic/finding_kinds.h"

namespace velmora {

struct Finding {
    Severity severity;
    std::string_view code;  // "paper-without-margins"
    std::string path;       // of the record or value, by its place in a source: "$.papers[3]"
    std::string what;       // "\"Banner\" has no margins in landscape"
    std::string_view why;   // "its printable area is then taken a quarter inch inside each edge"
    std::string file;       // where the source says it; empty for what was found in a description file
    Position position;
};
using Findings = std::vector<Finding>;

void AddFinding(Findings& findings, FindingCode code, std::string path, std::string what);

bool HasErrors(const Findings& findings);

// "error", "warning", "note".
std::string_view NameOf(Severity severity);

// "FILE:LINE:COLUMN: LEVEL: PATH: WHAT: WHY [CODE]" on one line, without a line end. `file` is the one that was
// checked: it is named where the finding names none, and beside an included one.
std::string FormatFinding(const Finding& finding, std::string_view file);

}  // namespace velmora
