#include "tools/velmora/devmode_report.h"

#include <windows.h>

#include <cstring>
#include <iterator>
#include <memory>
#include <span>

#include "driver/base/handles.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/color_groups.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/entry/driver_interface.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {
namespace {

constexpr DWORD kDriverDefault = 2;  // DrvConvertDevMode's mode CDM_DRIVER_DEFAULT

struct Context {
    const PrinterModel& model;
    const VelmoraDevMode& devMode;
};

// What a number of a field stands for; empty: nothing of its own. `index` is the element's.
using NameOf = std::string (*)(const Context& context, int64_t value, size_t index);

// A field whose numbers the model, or more than a list of values, explains. By the field's offset in its part.
struct Explained {
    size_t offset;
    NameOf nameOf;
};

std::string NamePaper(const Context& context, int64_t value, size_t) {
    constexpr int64_t kLastPaper = 32767;
    if (value >= kFirstCustomPaper && value <= kLastPaper) {
        std::string name = context.model.PaperName(value);
        return !name.empty() ? name : "custom size " + std::to_string(value - kFirstCustomPaper);
    }
    return context.model.PaperName(value);
}

std::string NameScaleTarget(const Context& context, int64_t value, size_t index) {
    constexpr uint16_t kZoomTopLeft = 2;
    constexpr uint16_t kZoomCentred = 66;
    const uint16_t mode = context.devMode.privatePart.scaleMode;
    return mode == kZoomTopLeft || mode == kZoomCentred ? "percent" : NamePaper(context, value, index);
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

std::string NameVersion(const Context&, int64_t value, size_t) {
    return std::to_string(value >> 8) + "." + std::to_string(value & 0xFF);
}

std::string NameBits(const Context&, int64_t value, size_t) {
    return HexNumber(static_cast<uint64_t>(value));
}

std::string NameColorRef(const Context&, int64_t value, size_t) {
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

std::string NameFieldBits(const Context& context, int64_t value, size_t index) {
    std::string names = NameBits(context, value, index);
    for (const FieldBit& bit : kFieldBits) {
        names += (value & bit.bit) != 0 ? std::string(" ") + bit.name : "";
    }
    return names;
}

#define PUBLIC(field) offsetof(DEVMODEW, field)
constexpr Explained kPublicExplained[] = {
    {PUBLIC(dmDriverVersion), NameVersion}, {PUBLIC(dmSpecVersion), NameVersion}, {PUBLIC(dmFields), NameFieldBits},
    {PUBLIC(dmPaperSize), NamePaper},       {PUBLIC(dmDefaultSource), NameTray},  {PUBLIC(dmMediaType), NameMediaType},
};
#undef PUBLIC

#define PRIVATE(field) offsetof(PrivateDevMode, field)
constexpr Explained kPrivateExplained[] = {
    {PRIVATE(privateSignature), NameBits},
    {PRIVATE(scaleValue), NameScaleTarget},
    {PRIVATE(watermarkColor), NameColorRef},
    {PRIVATE(frontCoverBin), NameTray},
    {PRIVATE(frontCoverPaper), NamePaper},
    {PRIVATE(backCoverBin), NameTray},
    {PRIVATE(backCoverPaper), NamePaper},
    {PRIVATE(interleaveBin), NameTray},
    {PRIVATE(interleavePaper), NamePaper},
    {PRIVATE(mediaIndex), NameMedium},
    {PRIVATE(frontCoverMedia), NameMedium},
    {PRIVATE(backCoverMedia), NameMedium},
    {PRIVATE(interleaveMedia), NameMedium},
    {PRIVATE(optionFlags), NameBits},
    {PRIVATE(separatorBin), NameTray},
    {PRIVATE(separatorMedia), NameMedium},
    {PRIVATE(separatorPaper), NamePaper},
    {PRIVATE(featureSelection), NameFeatureOption},
    {PRIVATE(extraKeywordIndex), NameExtraKeyword},
    {PRIVATE(colorModeIndex), NameColorMode},
    {PRIVATE(textColorOptions), NameColorValue<0>},
    {PRIVATE(imageColorOptions), NameColorValue<1>},
    {PRIVATE(graphicsColorOptions), NameColorValue<2>},
    {PRIVATE(generalColorOptions), NameColorValue<3>},
    {PRIVATE(uiFitToPaper), NamePaper},
    {PRIVATE(uiMediaValue), NameMedium},
    {PRIVATE(resolutionIndex), NameResolution},
    {PRIVATE(photoIntentIndex), NameKeyword<[](const DeviceModel& model) { return model.photoIntentList; }>},
    {PRIVATE(signatureOptionIndex), NameKeyword<[](const DeviceModel& model) { return model.signatureOptionList; }>},
    {PRIVATE(mediaColorIndex), NameKeyword<[](const DeviceModel& model) { return model.mediaColorList; }>},
};
#undef PRIVATE
static_assert(kColorGroups[0].selectionsOffset == offsetof(PrivateDevMode, textColorOptions));
static_assert(kColorGroups[1].selectionsOffset == offsetof(PrivateDevMode, imageColorOptions));
static_assert(kColorGroups[2].selectionsOffset == offsetof(PrivateDevMode, graphicsColorOptions));
static_assert(kColorGroups[3].selectionsOffset == offsetof(PrivateDevMode, generalColorOptions));

std::string NameValue(const FieldDescriptor& field, std::span<const Explained> explained, const Context& context,
                      int64_t value, size_t index) {
    for (const ValueName& known : field.names) {
        if (known.value == value) {
            return known.name;
        }
    }
    for (const Explained& candidate : explained) {
        if (candidate.offset == field.offset) {
            return candidate.nameOf(context, value, index);
        }
    }
    return {};
}

std::u16string ReadText(const FieldDescriptor& field, const BYTE* place) {
    if (field.kind == FieldKind::kAnsiText) {
        return FromAnsi({reinterpret_cast<const char*>(place), field.width});
    }
    std::u16string text(field.width / sizeof(WCHAR), 0);
    memcpy(text.data(), place, field.width);
    return std::u16string(UntilNul(text));
}

// An element of a field: its text, its value and, or null, the value's name.
struct Element {
    std::string text;
    Json value;
    Json name;

    bool operator==(const Element&) const = default;
};

Element ReadElement(const FieldDescriptor& field, std::span<const Explained> explained, const Context& context,
                    const void* part, size_t index) {
    const BYTE* const place = static_cast<const BYTE*>(part) + field.offset + index * field.stride;
    switch (field.kind) {
        case FieldKind::kUnsigned:
        case FieldKind::kSigned: {
            const int64_t value = ReadFieldNumber(field, part, index);
            const std::string name = NameValue(field, explained, context, value, index);
            return name.empty() ? Element{std::to_string(value), value, nullptr}
                                : Element{std::to_string(value) + " (" + name + ")", value, name};
        }
        case FieldKind::kWideText:
        case FieldKind::kAnsiText: {
            const std::u16string text = ReadText(field, place);
            return {Quoted(text), host::ToUtf8(text), nullptr};
        }
        case FieldKind::kBytes: {
            const std::span bytes(place, field.width);
            const bool isZero = bytes[0] == 0 && std::equal(bytes.begin() + 1, bytes.end(), bytes.begin());
            const std::string hex = isZero ? std::string() : HexBytes(bytes);
            return {isZero ? std::to_string(field.width) + " bytes, all 0" : hex, hex, nullptr};
        }
    }
    return {};
}

// The elements one after the other; equal ones in a row once, with their number.
std::string JoinTexts(const std::vector<Element>& elements) {
    std::string joined;
    for (size_t first = 0; first < elements.size();) {
        size_t next = first + 1;
        while (next < elements.size() && elements[next] == elements[first]) {
            ++next;
        }
        joined += (joined.empty() ? "" : ", ") + elements[first].text;
        joined += next - first > 1 ? " (" + std::to_string(next - first) + " times)" : "";
        first = next;
    }
    return joined;
}

Cell ValueCell(const std::vector<Element>& elements) {
    if (elements.size() == 1) {
        return {elements[0].text, {{"value", elements[0].value}, {"valueName", elements[0].name}}};
    }
    Json values = Json::array();
    Json names = Json::array();
    bool isNamed = false;
    for (const Element& element : elements) {
        values.push_back(element.value);
        names.push_back(element.name);
        isNamed |= !element.name.is_null();
    }
    return {JoinTexts(elements), {{"value", values}, {"valueName", isNamed ? names : Json()}}};
}

Table ReportPart(std::string title, std::string key, std::span<const FieldDescriptor> fields,
                 std::span<const Explained> explained, const Context& context, const void* part) {
    Table table = {std::move(title), std::move(key), {{"Field", "field"}, {"Value", ""}, {"Meaning", "meaning"}}};
    table.isKeyed = true;
    for (const FieldDescriptor& field : fields) {
        std::vector<Element> elements;
        for (size_t i = 0; i < field.count; ++i) {
            elements.push_back(ReadElement(field, explained, context, part, i));
        }
        table.rows.push_back({TextCell(field.name), ValueCell(elements), TextCell(field.meaning)});
    }
    return table;
}

std::unique_ptr<VelmoraDevMode> GetDefaultDevMode(HANDLE printer, const std::string& printerName) {
    const OwnedModule driver(LoadLibraryW(DriverOf(printer).configFile.c_str()));
    if (!driver) {
        ThrowRefused("LoadLibraryW of the driver of \"" + printerName + "\"");
    }
    const auto convert = reinterpret_cast<decltype(&DrvConvertDevMode)>(
        reinterpret_cast<void*>(GetProcAddress(driver.Get(), "DrvConvertDevMode")));
    if (!convert) {
        ThrowRefused("GetProcAddress of DrvConvertDevMode");
    }
    std::u16string name = host::ToWide(printerName);
    LONG size = 0;
    if (convert(name.data(), nullptr, nullptr, &size, kDriverDefault) || GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        ThrowRefused("DrvConvertDevMode, asked for the size");
    }
    if (size != static_cast<LONG>(sizeof(VelmoraDevMode))) {
        throw CommandError("the driver of \"" + printerName + "\" has device modes of " + std::to_string(size) +
                           " bytes; this workbench knows those of " + std::to_string(sizeof(VelmoraDevMode)));
    }
    auto devMode = std::make_unique<VelmoraDevMode>();
    if (!convert(name.data(), nullptr, &devMode->publicPart, &size, kDriverDefault)) {
        ThrowRefused("DrvConvertDevMode");
    }
    return devMode;
}

}  // namespace

std::vector<Table> ReportDefaultDevMode(const std::string& printerName) {
    const PrinterModel model(printerName);
    const std::unique_ptr<VelmoraDevMode> devMode = GetDefaultDevMode(model.Printer(), printerName);
    const Context context = {model, *devMode};
    return {
        ReportPart("Public part, " + std::to_string(kPublicDevModeSize) + " bytes", "public", PublicFields(),
                   kPublicExplained, context, &devMode->publicPart),
        ReportPart("Private part, " + std::to_string(kPrivateDevModeSize) + " bytes", "private", PrivateFields(),
                   kPrivateExplained, context, &devMode->privatePart),
    };
}

}  // namespace velmora
