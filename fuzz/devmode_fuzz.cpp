// Device modes with anything in their fields: both validations as callers run them, the conversion and the document
// properties without a window. No access outside the 4088 bytes; what is accepted is accepted again as it is; what the
// driver gives is accepted; nothing is left open.
//
// An input is a byte that chooses one of the project's models, and edits of that model's default device mode.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "driver/devdesc/description_file.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/driver_interface.h"
#include "platform/host.h"
#include "tests/driver/package.h"
#include "tools/xpic/compile.h"

namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test

#pragma pack(push, 1)
struct Edit {
    uint8_t kind;
    uint16_t place;
    uint8_t element;
    int32_t value;
};
#pragma pack(pop)

enum EditKind : uint8_t {
    kNumber,    // of the field at `place`, in both tables of fields as one
    kLimit,     // the same: a number at the end of a range of valid values, or next to it
    kByte,      // of the device mode, at `place`
    kEditKinds  // their count
};

// The bit of an input's first byte by which the exports are called too, which takes most of an input's time.
constexpr uint8_t kCallsExports = 0x80;

[[noreturn]] void Stop(const char* what, const ValidationReport& report = {}) {
    fprintf(stderr, "%s\n", what);
    for (const char* repaired : report.repaired) {
        fprintf(stderr, "  %s\n", repaired ? repaired : "-");
    }
    abort();
}

// A printer of one of the models.
struct Target {
    driver_test::WideText name;
    OwnedPrinter printer;
    HeapOwner<DeviceModel> model;
    PrivateFacts facts;
    VelmoraDevMode valid;

    Target(const std::filesystem::path& source) : name(source.stem().u16string()) {
        const CompileResult compiled = CompileModel(source);
        if (!compiled.Succeeded()) {
            Stop("a project model doesn't compile");
        }
        driver_test::DriverPackage package =
            driver_test::PackageOf({reinterpret_cast<const char*>(compiled.bytes.data()), compiled.bytes.size()});
        package.driverName = name;
        package.data.name = name + u".XPI";
        driver_test::InstallPrinter(package, name);
        printer = driver_test::OpenWithAllAccess(name);
        const OwnedFile file = OpenDescriptionFile(printer.Get());
        model = LoadDeviceModel(file.Get());
        facts = ReadPrivateFacts(printer.Get(), file.Get());
        BuildDefaultDevMode(printer.Get(), name.c_str(), &valid);
    }
};

struct Targets {
    host::Machine machine;
    std::vector<Target> models;

    Targets() {
        std::set<std::filesystem::path> sources;
        for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MODELS_SOURCE_DIR)) {
            const std::string name = entry.path().filename().string();
            if (name.ends_with(".json") && !name.ends_with("schema.json")) {
                sources.insert(entry.path());
            }
        }
        for (const std::filesystem::path& source : sources) {
            models.emplace_back(source);
        }
    }
};

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

// Both parts, as callers check them; stops where repairs are made of a device mode that was accepted before.
bool Check(const Target& target, VelmoraDevMode* devMode, bool wasAccepted) {
    ValidationReport report;
    CheckPublicDevMode(target.printer.Get(), *target.model, &devMode->publicPart, &report);
    if (wasAccepted && (report.repairs != 0 || report.rejectedBy)) {
        Stop("an accepted public part is repaired", report);
    }
    if (!report.IsAccepted()) {
        return false;
    }
    report = {};
    CheckPrivateDevMode(target.facts, *target.model, &devMode->privatePart, &report);
    if (wasAccepted && (report.repairs != 0 || report.rejectedBy)) {
        Stop("an accepted private part is repaired", report);
    }
    return report.IsAccepted();
}

void Convert(Target& target, const VelmoraDevMode& edited, bool isValid, const VelmoraDevMode& repaired) {
    const auto input = std::make_unique<VelmoraDevMode>(edited);
    const auto output = std::make_unique<VelmoraDevMode>();
    LONG needed = kDevModeSize;
    if (!DrvConvertDevMode(target.name.data(), &input->publicPart, &output->publicPart, &needed, 0)) {
        Stop("the conversion fails");
    }
    if (memcmp(output.get(), isValid ? &repaired : &target.valid, sizeof(*output)) != 0) {
        Stop("the conversion gives neither the input nor the default device mode");
    }
}

void AnswerDocumentProperties(Target& target, const VelmoraDevMode& edited) {
    const auto input = std::make_unique<VelmoraDevMode>(edited);
    const auto output = std::make_unique<VelmoraDevMode>(target.valid);
    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = target.printer.Get();
    header.pszPrinterName = target.name.data();
    header.pdmIn = &input->publicPart;
    header.pdmOut = &output->publicPart;
    header.cbOut = kDevModeSize;
    header.fMode = DM_IN_BUFFER | DM_OUT_BUFFER;
    if (DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)) != 1) {
        Stop("the document properties aren't answered");
    }
    if (!Check(target, output.get(), false)) {
        Stop("the document properties give a device mode that isn't accepted");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Targets targets;
    if (size == 0) {
        return 0;
    }
    Target& target = targets.models[(data[0] & ~kCallsExports) % targets.models.size()];
    const auto devMode = std::make_unique<VelmoraDevMode>(target.valid);
    for (size_t i = 1; i + sizeof(Edit) <= size; i += sizeof(Edit)) {
        Edit edit;
        memcpy(&edit, data + i, sizeof(edit));
        Apply(edit, devMode.get());
    }
    const VelmoraDevMode edited = *devMode;
    const size_t open = host::StillOpen().size();
    const bool isAccepted = Check(target, devMode.get(), false);
    if (isAccepted) {
        const VelmoraDevMode once = *devMode;
        Check(target, devMode.get(), true);
        if (memcmp(&once, devMode.get(), sizeof(once)) != 0) {
            Stop("an accepted device mode changes");
        }
    }
    if ((data[0] & kCallsExports) != 0) {
        Convert(target, edited, isAccepted, *devMode);
        AnswerDocumentProperties(target, edited);
    }
    if (host::StillOpen().size() != open) {
        Stop("something is left open");
    }
    return 0;
}
