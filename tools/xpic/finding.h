// What the checker has to say about a model.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/xpic/diagnostic.h"

namespace velmora {

enum class Severity {
    kNote,     // works, but may not be meant
    kWarning,  // legal, but will hurt
    kError,    // the description file isn't well formed: readers get something else than what is there
};

struct Finding {
    Severity severity;
    std::string_view code;  // "paper-without-margins"
    std::string path;       // of the record or value, by its place in a source: "$.papers[3]"
    std::string what;       // "\"Banner\" has no margins in landscape"
    std::string why;        // "its printable area is then a quarter inch smaller on each side"
    std::string file;       // where the source says it; empty for what was found in a description file
    Position position;
};
using Findings = std::vector<Finding>;

}  // namespace velmora
