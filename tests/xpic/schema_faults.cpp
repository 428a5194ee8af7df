#include "tests/xpic/schema_faults.h"

#include <stdlib.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace velmora {
namespace {

namespace fs = std::filesystem;

std::string Quoted(const fs::path& path) {
    return "'" + path.string() + "' ";
}

std::string OutputOf(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::system_error(errno, std::generic_category(), "popen");
    }
    std::string output;
    std::array<char, 4096> part;
    while (const size_t size = fread(part.data(), 1, part.size(), pipe)) {
        output.append(part.data(), size);
    }
    if (pclose(pipe) != 0) {
        throw std::runtime_error("failed (python3-jsonschema must be installed): " + command);
    }
    return output;
}

}  // namespace

PlacesByFile SchemaFaults(std::string_view schema, const std::vector<fs::path>& sources) {
    std::string command = Quoted(VELMORA_SCHEMA_FAULTS) + Quoted(fs::path(VELMORA_MODELS_SOURCE_DIR) / schema);
    for (const fs::path& source : sources) {
        command += Quoted(source);
    }
    PlacesByFile places;
    std::istringstream lines(OutputOf(command));
    for (std::string line; std::getline(lines, line);) {
        const size_t tab = line.find('\t');
        places[line.substr(0, tab)].insert(line.substr(tab + 1));
    }
    return places;
}

PlacesByFile SchemaFaultsOfTexts(std::string_view schema, const std::vector<std::string>& sources) {
    std::string folder = (fs::temp_directory_path() / "velmora-schema-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), folder);
    }
    std::vector<fs::path> files;
    for (const std::string& source : sources) {
        files.push_back(fs::path(folder) / std::to_string(files.size()));
        std::ofstream(files.back(), std::ios::binary) << source;
    }
    PlacesByFile places = SchemaFaults(schema, files);
    fs::remove_all(folder);
    return places;
}

}  // namespace velmora
