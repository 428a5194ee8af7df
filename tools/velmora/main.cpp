// velmora, the workbench: printers of the real driver on a machine of the platform layer.
#include <exception>
#include <filesystem>
#include <iostream>

#include "tools/velmora/command_line.h"

int main(int argc, char** argv) {
    try {
        const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
        return velmora::RunCommandLine({argv + 1, argv + argc}, program.parent_path(), std::cout, std::cerr);
    } catch (const std::exception& error) {
        std::cerr << "velmora: " << error.what() << "\n";
        return velmora::kFailed;
    }
}
