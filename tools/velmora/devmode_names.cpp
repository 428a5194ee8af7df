#include "tools/velmora/devmode_names.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "driver/devdesc/model_tables.h"
#include "driver/devmode/color_groups.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

struct Context {
    const PrinterModel& model;
    const VelmoraDevMode& devMode;
};

std::string NamePaper(const Context& context, int64_t value, size_t) {
    return context.model.PaperOrCustomSizeName(value);
}

std::string NameScaleTarget(const Context& context, int64_t value, size_t index) {
    return IsZoom(context.devMode.privatePart.scaleMode) ? "percent" : NamePaper(context, value, index);
}

std::string NameTray(const Context& context, int64_t value, size_t) {
    if (value >= kFirstMediumSource) {
        const std::string medium = context.model.MediumName(value - kFirstMediumSource);
        return medium.empty() ? "" : medium + " from any tray";
    }
    return context.model.TrayName(value);
}

std::string NameMedium(const Context& context, int64_t value, size_t) {
    return context.model.MediumName(value - 1);
}

std::string NameMediaType(const Context& context, int64_t value, size_t) {
    for (const MediaRecord& medium : RecordList(context.model->mediaTable)) {
        if (medium.mediaId == value) {
            return context.model.Localized(medium.nameRef);
        }
    }
    return {};
}

// The record that an index of the device mode selects; null for none.
template <class Record>
const Record* Selected(const Record* table, int64_t index) {
    return index >= 0 ? RecordAt(table, static_cast<size_t>(index)) : nullptr;
}

std::string NameResolution(const Context& context, int64_t value, size_t) {
    const ResolutionRecord* const resolution = Selected(context.model->resolutionTable, value);
    return resolution ? context.model.Localized(resolution->nameRef) : std::string();
}

std::string NameColorMode(const Context& context, int64_t value, size_t) {
    const ColorModeRecord* const mode = Selected(context.model->colorModeTable, value);
    return mode ? context.model.ColorModeName(*mode) : std::string();
}

std::string NameExtraKeyword(const Context& context, int64_t value, size_t) {
    for (const ExtraKeywordRecord& keyword : RecordList(context.model->extraKeywordTable)) {
        if (keyword.id == value) {
            return context.model.Localized(keyword.nameRef);
        }
    }
    return {};
}

std::string NameFeatureOption(const Context& context, int64_t value, size_t index) {
    const FeatureRecord* const feature = RecordAt(context.model->featureTable, index);
    if (!feature) {
        return {};
    }
    const std::string name = context.model.Localized(feature->nameRef) + ": ";
    const bool isOption = value >= 0 && static_cast<size_t>(value) < CountOptions(*context.model, *feature);
    const OptionRecord* const option =
        isOption ? OptionAt(*context.model, feature->firstOption + static_cast<int32_t>(value)) : nullptr;
    return name + (option ? context.model.Localized(option->nameRef) : "no option");
}

template <size_t kGroup>
std::string NameColorValue(const Context& context, int64_t value, size_t index) {
    const ColorFeatureRecord* const feature = RecordAt(ColorFeatures(*context.model, kColorGroups[kGroup]), index);
    if (!feature) {
        return {};
    }
    const ColorValueRecord* const record =
        ColorValueAt(*context.model, feature->firstValue + static_cast<int32_t>(value));
    return context.model.Localized(feature->nameRef) + ": " +
           (record ? context.model.Localized(record->nameRef) : "no value");
}

// kListOf reads a list of the model.
template <auto kListOf>
std::string NameKeyword(const Context& context, int64_t value, size_t) {
    const KeywordRecord* const record = Selected(kListOf(*context.model), value);
    return record ? context.model.Localized(static_cast<int16_t>(record->nameRef)) : std::string();
}

std::string NameBits(int64_t value) {
    return HexNumber(static_cast<uint64_t>(value));
}

std::string NameColorRef(int64_t value) {
    return HexNumber(static_cast<uint64_t>(value), 6);
}

struct FieldBit {
    DWORD bit;
    const char* name;
};
#define FIELD_BIT(name) \
    { name, #name }
constexpr FieldBit kFieldBits[] = {
    FIELD_BIT(DM_ORIENTATION), FIELD_BIT(DM_PAPERSIZE), FIELD_BIT(DM_PAPERLENGTH),   FIELD_BIT(DM_PAPERWIDTH),
    FIELD_BIT(DM_SCALE),       FIELD_BIT(DM_COPIES),    FIELD_BIT(DM_DEFAULTSOURCE), FIELD_BIT(DM_PRINTQUALITY),
    FIELD_BIT(DM_COLOR),       FIELD_BIT(DM_DUPLEX),    FIELD_BIT(DM_YRESOLUTION),   FIELD_BIT(DM_TTOPTION),
    FIELD_BIT(DM_COLLATE),     FIELD_BIT(DM_FORMNAME),  FIELD_BIT(DM_ICMMETHOD),     FIELD_BIT(DM_ICMINTENT),
    FIELD_BIT(DM_MEDIATYPE),
};
#undef FIELD_BIT

// A field whose numbers stand for more than the table of fields says: by themselves, or by the model's records.
struct Explained {
    size_t offset;  // in the device mode
    std::string (*byItself)(int64_t value);
    std::string (*byModel)(const Context& context, int64_t value, size_t index);  // `index` is the element's
};

#define PUBLIC(field) offsetof(VelmoraDevMode, publicPart) + offsetof(DEVMODEW, field)
#define PRIVATE(field) offsetof(VelmoraDevMode, privatePart) + offsetof(PrivateDevMode, field)
constexpr Explained kExplained[] = {
    {PUBLIC(dmDriverVersion), NameVersion, nullptr},
    {PUBLIC(dmSpecVersion), NameVersion, nullptr},
    {PUBLIC(dmFields), NameFieldBits, nullptr},
    {PUBLIC(dmPaperSize), nullptr, NamePaper},
    {PUBLIC(dmDefaultSource), nullptr, NameTray},
    {PUBLIC(dmMediaType), nullptr, NameMediaType},
    {PRIVATE(privateSignature), NameBits, nullptr},
    {PRIVATE(scaleValue), nullptr, NameScaleTarget},
    {PRIVATE(watermarkColor), NameColorRef, nullptr},
    {PRIVATE(frontCoverBin), nullptr, NameTray},
    {PRIVATE(frontCoverPaper), nullptr, NamePaper},
    {PRIVATE(backCoverBin), nullptr, NameTray},
    {PRIVATE(backCoverPaper), nullptr, NamePaper},
    {PRIVATE(interleaveBin), nullptr, NameTray},
    {PRIVATE(interleavePaper), nullptr, NamePaper},
    {PRIVATE(mediaIndex), nullptr, NameMedium},
    {PRIVATE(frontCoverMedia), nullptr, NameMedium},
    {PRIVATE(backCoverMedia), nullptr, NameMedium},
    {PRIVATE(interleaveMedia), nullptr, NameMedium},
    {PRIVATE(optionFlags), NameBits, nullptr},
    {PRIVATE(separatorBin), nullptr, NameTray},
    {PRIVATE(separatorMedia), nullptr, NameMedium},
    {PRIVATE(separatorPaper), nullptr, NamePaper},
    {PRIVATE(featureSelection), nullptr, NameFeatureOption},
    {PRIVATE(extraKeywordIndex), nullptr, NameExtraKeyword},
    {PRIVATE(colorModeIndex), nullptr, NameColorMode},
    {PRIVATE(textColorOptions), nullptr, NameColorValue<0>},
    {PRIVATE(imageColorOptions), nullptr, NameColorValue<1>},
    {PRIVATE(graphicsColorOptions), nullptr, NameColorValue<2>},
    {PRIVATE(generalColorOptions), nullptr, NameColorValue<3>},
    {PRIVATE(uiFitToPaper), nullptr, NamePaper},
    {PRIVATE(uiMediaValue), nullptr, NameMedium},
    {PRIVATE(resolutionIndex), nullptr, NameResolution},
    {PRIVATE(photoIntentIndex), nullptr, NameKeyword<[](const DeviceModel& model) { return model.photoIntentList; }>},
    {PRIVATE(signatureOptionIndex), nullptr,
     NameKeyword<[](const DeviceModel& model) { return model.signatureOptionList; }>},
    {PRIVATE(mediaColorIndex), nullptr, NameKeyword<[](const DeviceModel& model) { return model.mediaColorList; }>},
};
#undef PUBLIC
#undef PRIVATE
static_assert(kColorGroups[0].selectionsOffset == offsetof(PrivateDevMode, textColorOptions));
static_assert(kColorGroups[1].selectionsOffset == offsetof(PrivateDevMode, imageColorOptions));
static_assert(kColorGroups[2].selectionsOffset == offsetof(PrivateDevMode, graphicsColorOptions));
static_assert(kColorGroups[3].selectionsOffset == offsetof(PrivateDevMode, generalColorOptions));

}  // namespace

std::string NameVersion(int64_t version) {
    return std::to_string(version >> 8) + "." + std::to_string(version & 0xFF);
}

std::string NameFieldBits(int64_t fields) {
    std::string names = NameBits(fields);
    for (const FieldBit& bit : kFieldBits) {
        names += (fields & bit.bit) != 0 ? std::string(" ") + bit.name : "";
    }
    return names;
}

NumberNames NamesOfNumbers(const PrinterModel* model) {
    return [model](const DevModeElement& element, const VelmoraDevMode& devMode, int64_t number) -> std::string {
        const size_t offset = element.part->offset + element.field->offset;
        const Explained* const found = std::ranges::find(kExplained, offset, &Explained::offset);
        if (found == std::end(kExplained)) {
            return {};
        }
        if (found->byItself) {
            return found->byItself(number);
        }
        return model ? found->byModel({*model, devMode}, number, element.index) : std::string();
    };
}

}  // namespace velmora
