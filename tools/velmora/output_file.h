// Files that commands make of other files.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

namespace velmora {

// Replaces the file once all bytes are there, or throws and leaves it as it was: a CommandError where no file can be
// made or it is one of `inputs`, the files that were read. An empty name among those names none.
void WriteOutputFile(const std::filesystem::path& file, std::span<const std::byte> bytes,
                     const std::vector<std::filesystem::path>& inputs);

}  // namespace velmora
