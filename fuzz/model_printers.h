// What fuzz targets have in common: printers of the project's models, and device modes with anything in their fields.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "driver/devdesc/description_file.h"
#include "driver/devmode/private_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"
#include "tests/driver/package.h"

namespace fuzz {

// Ends the run as a fault does, with the names of what was repaired.
[[noreturn]] void Stop(const char* what, const velmora::ValidationReport& report);

// The sources of the project's models, in the order of their names.
std::vector<std::filesystem::path> ModelSources();

// A printer of a model, named after it, with the model in hand. `package`: the driver but for its description file.
struct ModelPrinter {
    explicit ModelPrinter(const std::filesystem::path& source,
                          driver_test::DriverPackage package = driver_test::PackageOf(""));

    driver_test::WideText name;
    velmora::OwnedPrinter printer;
    velmora::HeapOwner<velmora::DeviceModel> model;
    velmora::PrivateFacts facts;
    velmora::VelmoraDevMode valid;  // its default device mode
};

#pragma pack(push, 1)
// A change of a device mode; any bytes are one.
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

void Apply(const Edit& edit, velmora::VelmoraDevMode* devMode);

}  // namespace fuzz
