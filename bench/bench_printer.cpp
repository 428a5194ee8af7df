#include "bench/bench_printer.h"

#include "bench/bench.h"
#include "tools/velmora/driver_package.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {

OwnedPrinter InstallDescription(const host::Machine& machine, const std::string& name,
                                const std::vector<std::byte>& description) {
    InstallPrinter(machine, FindBuiltFiles(ToolsFolder() / "velmora"),
                   {name + ".json", description, name + ".XPI", name, name}, name);
    return OpenNamedPrinter(name);
}

}  // namespace velmora
