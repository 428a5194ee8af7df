// Wine: it loads libraries of Windows' own format, and drivers whose library it can ask.
#include <windows.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

#include "tests/contract/wine_stand_ins.h"
#include "tests/driver/host_files.h"

namespace driver_test {
namespace {

std::string ReadFileBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("can't read " + path.string());
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

// What stands in front of a resource whose type and name are numbers.
struct ResourceHeader {
    uint32_t dataSize;
    uint32_t headerSize;
    uint16_t typeMark, type;  // mark 0xFFFF: a number follows
    uint16_t nameMark, name;
    uint32_t dataVersion;
    uint16_t memoryFlags;
    uint16_t language;
    uint32_t version;
    uint32_t characteristics;
};
static_assert(sizeof(ResourceHeader) == 32);

std::string MakeModule(const std::string& resources) {
    const std::filesystem::path file = L"C:\\VelmoraModule.dll";
    std::filesystem::copy_file(VELMORA_MODULE, file, std::filesystem::copy_options::overwrite_existing);
    const HANDLE update = BeginUpdateResourceW(file.c_str(), TRUE);
    ResourceHeader header;
    for (size_t at = 0; at + sizeof(header) <= resources.size();) {
        memcpy(&header, resources.data() + at, sizeof(header));
        at += sizeof(header);
        if (header.type != 0) {
            UpdateResourceW(update, MAKEINTRESOURCEW(header.type), MAKEINTRESOURCEW(header.name), header.language,
                            const_cast<char*>(resources.data()) + at, header.dataSize);
        }
        at += (header.dataSize + 3) / 4 * 4;
    }
    if (!EndUpdateResourceW(update, FALSE)) {
        throw std::runtime_error("resources can't be put into a library");
    }
    std::string module = ReadFileBytes(file);
    std::filesystem::remove(file);
    return module;
}

}  // namespace

std::filesystem::path DrivePath(const WideText& path) {
    return path;
}

std::string ModuleOf(const std::string& resources) {
    static std::map<std::string, std::string> modules;
    std::string& module = modules[resources];
    if (module.empty()) {
        module = MakeModule(resources);
    }
    return module;
}

std::string ConfigurationFile() {
    static const std::string library = ReadFileBytes(VELMORA_LIBRARY);
    return library;
}

void MendCalls(HANDLE printer) {
    contract::ProbeCalls(printer);
    contract::ForgetPrinter(printer);
    contract::PutStandIns(GetModuleHandleW(nullptr));
}

std::optional<std::vector<std::string>> WhatIsOpen() {
    return std::nullopt;
}

}  // namespace driver_test
