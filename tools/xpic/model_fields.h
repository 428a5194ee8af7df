// The plain numbers of the device block: by which key a source gives each, and what it is without.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "tools/xpic/model_source.h"
#include "tools/xpic/source_reader.h"

namespace velmora {

enum class ScalarKind { kInteger, kMillimetres, kWord, kFlag };

// A plain number of the device block. Its value is added bit by bit, so several rows may share a byte of flags.
struct ScalarField {
    std::string_view key;
    ScalarKind kind;
    size_t offset;  // in DeviceModel
    size_t width;
    std::optional<Range> range;       // of numbers; millimetres in 0.1 mm; a flag's bit value
    std::optional<int64_t> fallback;  // none: the key is required
    Words words;
};

extern const std::span<const ScalarField> kModelFields;       // members of the root
extern const std::span<const ScalarField> kCustomSizeFields;  // of "customSizes", and so on
extern const std::span<const ScalarField> kExtraOptionFields;
extern const std::span<const ScalarField> kMemoryFields;

void AddScalar(DeviceModel& device, const ScalarField& field, int64_t value);
// What was added; other rows' bits of the same byte aren't in it.
int64_t ScalarOf(const DeviceModel& device, const ScalarField& field);

// Bit 0 of three bytes says that the model can have a duplex unit.
void SetDuplexUnit(DeviceModel& device);
bool HasDuplexUnit(const DeviceModel& device);

// What new device modes begin with where the source doesn't say it: the first tray, medium and color mode, and the
// second resolution if there is one.
void SetDefaults(ModelSource& model);

}  // namespace velmora
