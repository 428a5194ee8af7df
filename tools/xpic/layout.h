// Another arrangement of a model's description file. The source says the model, and the compiler has one way to lay it
// out; a file of another compiler may order, share and pad its tables otherwise. The layout says how to rearrange what
// the compiler makes into that file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/xpic/model_source.h"
#include "tools/xpic/source_reader.h"

namespace velmora {

// The arrangement that makes `file` of `own`. Takes n log n time in their sizes.
FileLayout FindLayout(const Bytes& own, const Bytes& file);

// Nothing when `own` isn't what the pieces were cut from.
std::optional<Bytes> ApplyLayout(const FileLayout& layout, const Bytes& own);

// As sources write it: {"of": {"size": N, "crc32": "HEX"}, "size": N, "pieces": [[start, length], "HEX", …]}.
Json WriteLayout(const FileLayout& layout);
// Reports what is wrong with it.
FileLayout ReadLayout(SourceContext& context, const SourceValue& value);

// The size and checksum of a compiler's output, as messages show them.
std::string DescribeOutput(const Bytes& own);

}  // namespace velmora
