// From a description file back to a source that compiles to the same bytes.
#pragma once

#include <span>
#include <string>

#include "tools/xpic/finding.h"
#include "tools/xpic/write_source.h"

namespace velmora {

struct Dump {
    // Of the reader. With an error there is no source.
    Findings findings;
    WrittenSource source;
};

// `comment` and `fileStem` are as in SourceStyle. What the source says is the whole model: a layout beside it only
// arranges it as the file does.
Dump DumpDescription(std::span<const std::byte> file, const std::string& comment, const std::string& fileStem);

}  // namespace velmora
