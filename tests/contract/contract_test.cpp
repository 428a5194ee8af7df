#include "tests/contract/contract_test.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

namespace contract {
namespace {

constexpr unsigned char kPattern = 0xA5;

}  // namespace

DevModeBuffer::DevModeBuffer() : content(std::make_unique<velmora::VelmoraDevMode>()) {
    memset(content.get(), kPattern, sizeof(*content));
}

bool DevModeBuffer::Untouched() const {
    const auto* bytes = reinterpret_cast<const unsigned char*>(content.get());
    return std::all_of(bytes, bytes + sizeof(*content), [](unsigned char byte) { return byte == kPattern; });
}

DevModeBuffer DefaultDevMode(const InstalledPrinter& printer, const WideText& printerName) {
    DevModeBuffer buffer;
    WideText name = printerName;
    LONG size = sizeof(velmora::VelmoraDevMode);
    EXPECT_TRUE(printer.Driver().DrvConvertDevMode(name.data(), nullptr, buffer.Get(), &size, 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(size, 4088);
    return buffer;
}

WideText FileName(const WideText& path) {
    return path.substr(path.rfind(TEXT('\\')) + 1);
}

WideText Variable(const WCHAR* name) {
    WCHAR value[MAX_PATH] = {};
    GetEnvironmentVariableW(name, value, MAX_PATH);
    return value;
}

WideText ComputerName() {
    WCHAR name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    GetComputerNameW(name, &length);
    return name;
}

std::string ContentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace contract
