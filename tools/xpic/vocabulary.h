// The words of a model source: enumerations and languages.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace velmora {

struct Word {
    std::string_view name;
    int64_t value;
};
using Words = std::span<const Word>;

extern const Words kPdlWords;           // DeviceModel.pdlType
extern const Words kColorWords;         // DeviceModel.colorCapability
extern const Words kJobNameWords;       // bits of DeviceModel.jobNameFlags
extern const Words kDescriptionWords;   // bits of DeviceModel.descriptionFlags
extern const Words kIcmIntentWords;     // dmICMIntent
extern const Words kIcmOfferWords;      // DeviceModel.icmIntentFlags
extern const Words kImageModeWords;     // device-mode imageMode, a raster format
extern const Words kOptionFlagWords;    // bits of DeviceModel.defaultOptionFlags
extern const Words kBinWords;           // dmDefaultSource, DMBIN_ (wingdi.h)
extern const Words kMediaWords;         // dmMediaType, DMMEDIA_ (wingdi.h)
extern const Words kOrientationWords;   // bits of MarginRecord.orientationMask
extern const Words kTrayOptionWords;    // bit numbers of DeviceInfo.installedOptions
extern const Words kDeviceOptionWords;  // bit numbers of DeviceInfo.optionFlags
extern const Words kColorGroupWords;    // PresetSettingRecord.group

// A language that texts can be given in.
struct Language {
    std::string_view code;     // ISO 639-1
    uint16_t primaryId;        // PRIMARYLANGID, LANG_ (winnt.h)
    const char* ansiEncoding;  // the language's ANSI code page, by its iconv name
};
extern const std::span<const Language> kLanguages;

// Null for an unknown code.
const Language* FindLanguage(std::string_view code);

// The code page of what isn't localised: names, texts, font names.
inline constexpr const char* kFixedTextEncoding = "CP1252";

}  // namespace velmora
