// Device modes with anything in their fields: both validations as callers run them, the conversion and the document
// properties without a window. No access outside the 4088 bytes; what is accepted is accepted again as it is; what the
// driver gives is accepted; nothing is left open.
//
// An input is a byte that chooses one of the project's models, and edits of that model's default device mode.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "driver/entry/driver_interface.h"
#include "fuzz/model_printers.h"
#include "fuzz/stop.h"
#include "platform/host.h"

namespace {

using namespace fuzz;     // NOLINT(google-build-using-namespace): the targets' kit
using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test

// The bit of an input's first byte by which the exports are called too, which takes most of an input's time.
constexpr uint8_t kCallsExports = 0x80;

struct Printers {
    host::Machine machine;
    std::vector<ModelPrinter> models;

    Printers() {
        for (const std::filesystem::path& source : ModelSources()) {
            models.emplace_back(source);
        }
    }
};

// Both parts, as callers check them; stops where repairs are made of a device mode that was accepted before.
bool Check(const ModelPrinter& target, VelmoraDevMode* devMode, bool wasAccepted) {
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

void Convert(ModelPrinter& target, const VelmoraDevMode& edited, bool isValid, const VelmoraDevMode& repaired) {
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

void AnswerDocumentProperties(ModelPrinter& target, const VelmoraDevMode& edited) {
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
    static Printers printers;
    if (size == 0) {
        return 0;
    }
    ModelPrinter& target = printers.models[(data[0] & ~kCallsExports) % printers.models.size()];
    const auto devMode = std::make_unique<VelmoraDevMode>(target.valid);
    for (size_t i = 1; i + sizeof(Edit) <= size; i += sizeof(Edit)) {
        Edit edit;
        memcpy(&edit, data + i, sizeof(edit));
        Apply(edit, devMode.get());
    }
    const VelmoraDevMode edited = *devMode;
    const OpenCheck open;
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
    return 0;
}
