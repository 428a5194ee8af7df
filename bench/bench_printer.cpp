#include "bench/bench_printer.h"

#include "bench/bench.h"
#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "tools/velmora/driver_package.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {

OwnedPrinter InstallDescription(const host::Machine& machine, const std::string& name,
                                const std::vector<std::byte>& description) {
    InstallPrinter(machine, FindBuiltFiles(ToolsFolder() / "velmora"),
                   {name + ".json", description, name + ".XPI", name, name}, name);
    return OpenNamedPrinter(name);
}

void ReadWholeDescription(const WCHAR* path) {
    const OwnedFile file(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD size = GetFileSize(file.Get(), nullptr);
    const auto bytes = HeapOwner<char>::AllocateSize(size);
    DWORD arrived = 0;
    ReadFile(file.Get(), bytes.Get(), size, &arrived, nullptr);
    Require(arrived == size && size > 0, "the description file reads short");
}

}  // namespace velmora
