#include "tools/xpic/file_content.h"

#include <fstream>
#include <sstream>

namespace velmora {

std::optional<std::string> OutputFault(const std::filesystem::path& output,
                                       const std::vector<std::filesystem::path>& inputs) {
    std::error_code error;
    const std::string name = output.string();
    for (const std::filesystem::path& input : inputs) {
        if (std::filesystem::equivalent(output, input, error)) {
            return name + " would be written over " + input.string() + ", which is read: name another file";
        }
    }
    if (std::filesystem::is_directory(output, error) || !output.has_filename()) {
        return name + " can't be written: it names a folder, expected a file";
    }
    const std::filesystem::path folder = output.has_parent_path() ? output.parent_path() : ".";
    if (!std::filesystem::is_directory(folder, error)) {
        return name + " can't be written: there is no folder " + folder.string();
    }
    return std::nullopt;
}

bool LooksLikeSource(std::string_view content) {
    const size_t first = content.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    return first != std::string_view::npos && (content[first] == '{' || content[first] == '/');
}

std::optional<std::string> ReadFileContent(const std::filesystem::path& file) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return stream ? std::optional(std::move(content).str()) : std::nullopt;
}

}  // namespace velmora
