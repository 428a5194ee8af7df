// The model compiler: from a model source (JSON, docs/models.md) to a description file (".XPI").
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/xpic/diagnostic.h"
#include "tools/xpic/model_source.h"
#include "tools/xpic/source_document.h"
#include "tools/xpic/string_pools.h"

namespace velmora {

struct CompileResult {
    std::vector<std::byte> bytes;         // the description file; empty when there are diagnostics
    std::vector<Diagnostic> diagnostics;  // in the order of the source
    std::optional<ModelSource> model;     // what the source says, when its own text is faultless
    SourceDocument document;              // where it says it

    bool Succeeded() const { return diagnostics.empty(); }
    // UTF-8, empty where the source gives none.
    std::string ModelName() const { return model ? model->modelName : std::string(); }
};

// A file that can't be read is a diagnostic too. Throws only what memory or a missing code page of the system brings.
CompileResult CompileModel(const std::filesystem::path& source);

// `file` is named in messages; its folder is where files named in the source are looked for.
CompileResult CompileModelText(std::string_view text, const std::filesystem::path& file);

// The description file of a model in the compiler's own arrangement. Empty, with what is wrong in `faults`, for a model
// beyond the format's limits.
Bytes BuildDescription(const ModelSource& model, LimitFaults& faults);

// Puts the bytes under the name in one step: on failure, which is thrown as std::filesystem::filesystem_error, whatever
// was there before is still there.
void WriteFileAtomically(const std::filesystem::path& file, const std::vector<std::byte>& bytes);

}  // namespace velmora
