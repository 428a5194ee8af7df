// Writes a model source for people to read.
#pragma once

#include <string>
#include <string_view>

#include "tools/xpic/source_document.h"

namespace velmora {

// The object `root` under a comment line (none for an empty comment). A record stands on one line while it stays
// within 120 characters, else its members are filled into lines of that width; so are lists of plain values. Only a
// text longer than a line exceeds it.
std::string PrintSource(const Json& root, std::string_view comment);

}  // namespace velmora
