#include "tools/xpic/file_content.h"

#include <fstream>
#include <iterator>

namespace velmora {

std::optional<std::string> ReadFileContent(const std::filesystem::path& file) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return stream ? std::optional(std::move(content)) : std::nullopt;
}

}  // namespace velmora
