#include "driver/ptprovider/output_features.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr UINT kDuplexString = 3301;
constexpr PlainOption kDuplexOptions[] = {
    {TEXT("OneSided"), DMDUP_SIMPLEX, 3302},
    {TEXT("TwoSidedLongEdge"), DMDUP_VERTICAL, 3303},
    {TEXT("TwoSidedShortEdge"), DMDUP_HORIZONTAL, 3304},
};
constexpr Keyword kDuplexMode = PublicKeyword(TEXT("DuplexMode"));
constexpr Keyword kAutomatic = PublicKeyword(TEXT("Automatic"));

constexpr UINT kOutputColorString = 1111;
// What an option of the output colour is on, by the model's colour capability, and what it reads as.
struct ColorOption {
    PlainOption option;
    bool isFor[3];  // monochrome, colour, colour of the second kind
};
constexpr ColorOption kColorOptions[] = {
    {{TEXT("Color"), DMCOLOR_COLOR, 3305}, {false, true, true}},
    {{TEXT("Grayscale"), DMCOLOR_MONOCHROME, 3306}, {false, true, false}},
    {{TEXT("Monochrome"), DMCOLOR_MONOCHROME, 3306}, {true, false, false}},
};

bool CanHaveDuplexUnit(const DeviceModel& model) {
    constexpr uint8_t kDuplexUnit = 1u << 0;
    return ((model.jobNameFlags | model.duplexFlagsA | model.duplexFlagsB) & kDuplexUnit) != 0;
}

bool HasDuplexUnit(const PrinterSnapshot& printer) {
    return (printer.installed.optionFlags & kDuplexInstalled) != 0;
}

// Index into ColorOption::isFor; none for other capabilities, whose models offer no colours to choose from.
constexpr int kNoColorOptions = -1;
int ColorColumn(uint16_t colorCapability) {
    switch (colorCapability) {
        case kColorNone:
            return 0;
        case kColor:
            return 1;
        case kColorSecondKind:
            return 2;
        default:
            return kNoColorOptions;
    }
}

}  // namespace

void WriteDuplex(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const DEVMODEW* const devMode = working ? &working->DevMode()->publicPart : nullptr;
    if (devMode && (devMode->dmFields & DM_DUPLEX) == 0) {
        return;
    }
    const bool isTwoSided = devMode && (devMode->dmDuplex == DMDUP_VERTICAL || devMode->dmDuplex == DMDUP_HORIZONTAL);
    const short selected = isTwoSided ? devMode->dmDuplex : short{DMDUP_SIMPLEX};
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kDuplexString);
    for (const PlainOption& option : kDuplexOptions) {
        const bool isOneSided = option.value == DMDUP_SIMPLEX;
        if (!writer.Writes(option.value == static_cast<uint32_t>(selected)) ||
            (!isOneSided && !CanHaveDuplexUnit(writer.Model()))) {
            continue;
        }
        const ElementReference written = writer.AddOption(feature, {name.uri, option.name}, option.displayName,
                                                          isOneSided || HasDuplexUnit(writer.printer));
        if (!isOneSided) {
            writer.AddScoredKeyword(written, kDuplexMode, kAutomatic);
        }
    }
}

void ReadDuplex(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!HasDuplexUnit(reader.printer) || !reader.FindOption(row.names, &found)) {
        return;
    }
    if (const PlainOption* const option = MatchOption(found.name, kKeywordsNamespace, kDuplexOptions)) {
        working.DevMode()->publicPart.dmDuplex = static_cast<short>(option->value);
    }
}

void WriteOutputColor(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const uint16_t capability = writer.Model().colorCapability;
    const int column = ColorColumn(capability);
    const bool isMonochrome = capability == kColorNone;
    const DEVMODEW* const devMode = working ? &working->DevMode()->publicPart : nullptr;
    if (column == kNoColorOptions || (devMode && !isMonochrome && (devMode->dmFields & DM_COLOR) == 0)) {
        return;
    }
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kOutputColorString);
    for (const ColorOption& color : kColorOptions) {
        // A monochrome printer prints so whatever the device mode says.
        const bool isSelected =
            isMonochrome || (devMode && static_cast<uint32_t>(devMode->dmColor) == color.option.value);
        if (color.isFor[column] && writer.Writes(isSelected)) {
            writer.AddOption(feature, {name.uri, color.option.name}, color.option.displayName);
        }
    }
}

void ReadOutputColor(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    const auto* const color = std::ranges::find_if(kColorOptions, [&](const ColorOption& candidate) {
        return found.name.Is(kKeywordsNamespace, candidate.option.name);
    });
    if (color == std::end(kColorOptions)) {
        return;
    }
    const uint16_t capability = reader.Model().colorCapability;
    short& dmColor = working.DevMode()->publicPart.dmColor;
    if (IsMonochrome(capability)) {
        dmColor = 0;
    } else if (capability == kColorSecondKind) {
        dmColor = DMCOLOR_COLOR;
    } else {
        dmColor = static_cast<short>(color->option.value);
    }
}

}  // namespace velmora
