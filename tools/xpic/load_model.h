// From the text of a model source to a checked model.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "tools/xpic/diagnostic.h"
#include "tools/xpic/model_source.h"

namespace velmora {

// `file` is named in messages, and files named in the source are looked for in its folder. Nothing, with every fault in
// `diagnostics` (unsorted), unless the source is faultless.
std::optional<ModelSource> LoadModelSource(std::string_view text, const std::filesystem::path& file,
                                           std::vector<Diagnostic>& diagnostics);

}  // namespace velmora
