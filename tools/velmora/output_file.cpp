#include "tools/velmora/output_file.h"

#include <optional>
#include <string>

#include "tools/velmora/command_error.h"
#include "tools/xpic/compile.h"
#include "tools/xpic/file_content.h"

namespace velmora {

void WriteOutputFile(const std::filesystem::path& file, std::span<const std::byte> bytes,
                     const std::vector<std::filesystem::path>& inputs) {
    if (const std::optional<std::string> fault = OutputFault(file, inputs)) {
        throw CommandError(*fault);
    }
    WriteFileAtomically(file, {bytes.begin(), bytes.end()});
}

}  // namespace velmora
