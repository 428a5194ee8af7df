// From the text of a model source to a checked model.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "tools/xpic/diagnostic.h"
#include "tools/xpic/model_source.h"
#include "tools/xpic/source_document.h"

namespace velmora {

// `file` is named in messages, and files named in the source are looked for in its folder. Nothing, with every fault in
// `diagnostics` (unsorted), unless the source is faultless. `document` receives what was read, for the places of
// values; `knownKeys`, unless it is null, the keys that a source may have in each of its objects.
std::optional<ModelSource> LoadModelSource(std::string_view text, const std::filesystem::path& file,
                                           SourceDocument& document, std::vector<Diagnostic>& diagnostics,
                                           KnownKeys* knownKeys = nullptr);

}  // namespace velmora
