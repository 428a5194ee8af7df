#include "tools/velmora/devmode_file.h"

#include <cstring>
#include <optional>
#include <span>
#include <string>

#include "tools/velmora/command_error.h"
#include "tools/velmora/output_file.h"
#include "tools/xpic/file_content.h"

namespace velmora {

VelmoraDevMode ReadDevModeFile(const std::filesystem::path& file) {
    const std::optional<std::string> content = ReadFileContent(file);
    if (!content) {
        throw CommandError(file.string() + " can't be read");
    }
    VelmoraDevMode devMode;
    if (content->size() != sizeof(devMode)) {
        throw CommandError(file.string() + " has " + std::to_string(content->size()) +
                           " bytes; expected a device mode of " + std::to_string(sizeof(devMode)) +
                           ", as velmora devmode PRINTER -o FILE writes it");
    }
    memcpy(&devMode, content->data(), sizeof(devMode));
    return devMode;
}

void WriteDevModeFile(const std::filesystem::path& file, const VelmoraDevMode& devMode,
                      const std::vector<std::filesystem::path>& inputs) {
    WriteOutputFile(file, std::as_bytes(std::span(&devMode, 1)), inputs);
}

}  // namespace velmora
