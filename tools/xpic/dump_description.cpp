#include "tools/xpic/dump_description.h"

#include <algorithm>

#include "tools/xpic/compile.h"
#include "tools/xpic/read_description.h"
#include "tools/xpic/record_names.h"

namespace velmora {

Dump DumpDescription(std::span<const std::byte> file, const std::string& comment, const std::string& fileStem) {
    DescriptionReading reading = ReadDescription(file);
    Dump dump{std::move(reading.findings), {}};
    if (!reading.model || HasErrors(dump.findings)) {
        return dump;
    }
    MakeNames(*reading.model);
    SourceStyle style{comment, fileStem, nullptr};
    LimitFaults faults;
    const Bytes own = BuildDescription(*reading.model, faults);
    const FileLayout layout = FindLayout(own, Bytes(file.begin(), file.end()));
    if (!std::equal(own.begin(), own.end(), file.begin(), file.end())) {
        style.layout = &layout;
    }
    dump.source = WriteSource(*reading.model, style);
    return dump;
}

}  // namespace velmora
