// Files as the tools read them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// Why a command shouldn't write to `output`: it is one of the files that it reads, or no file can be made there.
// Nothing where it should.
std::optional<std::string> OutputFault(const std::filesystem::path& output,
                                       const std::vector<std::filesystem::path>& inputs);

// A source begins with an object or a comment; a description file, whose first words nobody reads, hardly does so.
bool LooksLikeSource(std::string_view content);

// All bytes of a file. Nothing for what can't be read, folders among it.
std::optional<std::string> ReadFileContent(const std::filesystem::path& file);

}  // namespace velmora
