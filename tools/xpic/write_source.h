// From a model to a source that says it: the inverse of loading.
#pragma once

#include <string>
#include <vector>

#include "tools/xpic/layout.h"
#include "tools/xpic/model_source.h"

namespace velmora {

struct SourceStyle {
    std::string comment;  // the first line, without its slashes; empty for none
    // What the names of files beside the source begin with, into which large data goes. Empty: all stands in the
    // source.
    std::string fileStem;
    const FileLayout* layout = nullptr;  // null: the compiler's own
};

// A file that the source names, by its name in the source's folder.
struct DataFile {
    std::string name;
    Bytes bytes;
};

struct WrittenSource {
    std::string text;  // JSON with comments, UTF-8
    std::vector<DataFile> files;
};

// For people: only what differs from what the loader takes for granted, names and words where it knows any. Loading it
// gives an equal model. Records must have names of their own (record_names.h). Throws std::bad_optional_access for
// texts that their code page has no characters for.
WrittenSource WriteSource(const ModelSource& model, const SourceStyle& style = {});

}  // namespace velmora
