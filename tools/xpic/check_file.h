// Judges a file: a model source or a description file.
#pragma once

#include <filesystem>

#include "tools/xpic/finding.h"

namespace velmora {

// A source's findings have their places and are in their order; what the compiler refuses is among them as errors of
// the code "refused". Those of a description file are in the order of its tables. A file that is neither, or can't be
// read, is an error too. Throws only what memory or a missing code page of the system brings.
Findings CheckFile(const std::filesystem::path& file);

}  // namespace velmora
