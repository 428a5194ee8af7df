#include "fuzz/model_printers.h"

#include <algorithm>
#include <cstring>

#include "driver/devmode/default_devmode.h"
#include "driver/devmode/devmode_fields.h"
#include "fuzz/stop.h"
#include "tools/xpic/compile.h"

namespace fuzz {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test

void Stop(const char* what, const ValidationReport& report) {
    std::string detail = report.rejectedBy ? std::string("rejected by ") + report.rejectedBy : "";
    for (const char* repaired : report.repaired) {
        detail += std::string(detail.empty() ? "" : ", ") + (repaired ? repaired : "-");
    }
    Stop(what, detail);
}

std::vector<std::filesystem::path> ModelSources() {
    std::vector<std::filesystem::path> sources;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MODELS_SOURCE_DIR)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".json") && !name.ends_with("schema.json")) {
            sources.push_back(entry.path());
        }
    }
    std::ranges::sort(sources);
    return sources;
}

ModelPrinter::ModelPrinter(const std::filesystem::path& source, driver_test::DriverPackage package)
    : name(source.stem().u16string()) {
    const CompileResult compiled = CompileModel(source);
    if (!compiled.Succeeded()) {
        Stop("a project model doesn't compile");
    }
    package.driverName = name;
    package.data = {name + u".XPI", {reinterpret_cast<const char*>(compiled.bytes.data()), compiled.bytes.size()}};
    driver_test::InstallPrinter(package, name);
    printer = driver_test::OpenWithAllAccess(name);
    const OwnedFile file = OpenDescriptionFile(printer.Get());
    model = LoadDeviceModel(file.Get());
    facts = ReadPrivateFacts(printer.Get(), file.Get());
    BuildDefaultDevMode(printer.Get(), name.c_str(), &valid);
}

void Apply(const Edit& edit, VelmoraDevMode* devMode) {
    auto* const bytes = reinterpret_cast<char*>(devMode);
    if (edit.kind % kEditKinds == kByte) {
        bytes[edit.place % sizeof(*devMode)] = static_cast<char>(edit.value);
        return;
    }
    size_t index = edit.place % (PublicFields().size() + PrivateFields().size());
    const bool isPublic = index < PublicFields().size();
    index -= isPublic ? 0 : PublicFields().size();
    const FieldDescriptor& field = isPublic ? PublicFields()[index] : PrivateFields()[index];
    char* const part = isPublic ? bytes : bytes + offsetof(VelmoraDevMode, privatePart);
    if (field.kind != FieldKind::kUnsigned && field.kind != FieldKind::kSigned) {
        // From the element to the end, as a text that isn't terminated would be.
        const size_t begin = edit.element % field.width;
        memset(part + field.offset + begin, edit.value, field.width - begin);
        return;
    }
    int64_t number = edit.value;
    if (edit.kind % kEditKinds == kLimit && !field.accepted.empty()) {
        const auto chosen = static_cast<uint32_t>(edit.value);
        const ValueRange& range = field.accepted[chosen / 4 % field.accepted.size()];
        const int64_t limits[] = {range.low - 1, range.low, range.high, range.high + 1};
        number = limits[chosen % 4];
    }
    WriteFieldNumber(field, part, edit.element % field.count, number);
}

}  // namespace fuzz
