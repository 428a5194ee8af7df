// A source that builds on other files: what a family of models shares.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "tools/xpic/source_document.h"

namespace velmora {

// Parses the text of `file` and joins it with the files of its "include" (a name or an array of names, from the
// folder of the file that says it), which may include others. What the including file says goes on top:
// - objects are joined key by key;
// - records (objects with a "name", and plain texts among the root's papers) stand behind the included ones, or in the
//   place of the included one with the same name, joined key by key; "omit": true leaves the included one out;
// - margins and constraints stand before the included ones, up to an element of null, which drops the rest;
// - of everything else, other arrays too, the including file's takes the place of the included.
// False, with what is wrong added to `diagnostics`.
bool ReadSource(std::string_view text, const std::filesystem::path& file, SourceDocument& document,
                std::vector<Diagnostic>& diagnostics);

}  // namespace velmora
