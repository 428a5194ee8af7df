// Files as the tools read them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velmora {

// All bytes of a file. Nothing for what can't be read, folders among it.
std::optional<std::string> ReadFileContent(const std::filesystem::path& file);

}  // namespace velmora
