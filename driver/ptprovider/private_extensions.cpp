#include "driver/ptprovider/private_extensions.h"

#include <algorithm>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/devmode/color_groups.h"
#include "driver/devmode/color_preset.h"
#include "driver/ptprovider/numbered_name.h"
#include "driver/ptprovider/sheet_choices.h"

namespace velmora {
namespace {

constexpr size_t kNameCapacity = 128;

// --- The model's own features

constexpr const WCHAR* kUserInput = TEXT("UserInput");
constexpr LONG kUserInputLength = 11;

bool IsImage(const DeviceModel& model) {
    return model.pdlType == kPdlImage;
}

// The parameter of a feature that takes a text instead of an option.
void FormatUserInputName(const FeatureEntry& feature, WCHAR (&name)[kNameCapacity]) {
    FormatWide(name, kNameCapacity, TEXT("%sUserInput"), static_cast<const WCHAR*>(feature.name.keyword));
}

void WriteUserInputParameter(FeatureWriter& writer, const FeatureEntry& feature) {
    if (!writer.ListsAll()) {
        return;
    }
    WCHAR name[kNameCapacity];
    FormatUserInputName(feature, name);
    writer.document.AddStringParameterDef(
        nullptr, kOemNamespace, name,
        {feature.displayName, nullptr, TEXT(""), 0, kUserInputLength, nullptr, keyword_name::kConditional});
}

void WriteDeviceFeature(FeatureWriter& writer, size_t index, const WorkingDevMode* working) {
    const FeatureEntry& entry = writer.printer.features[index];
    const ElementReference feature = writer.BeginGroup({}, entry.name, entry.displayName);
    if (!feature) {
        return;
    }
    // A feature's options need what the feature needs.
    const bool isInstalled = IsInstalled({0, 0, entry.featureMask}, writer.printer.installed);
    if (entry.options.count == 0) {
        WCHAR name[kNameCapacity];
        FormatUserInputName(entry, name);
        writer.AddScoredParameter(writer.AddUnnamedOption(feature, TEXT(""), isInstalled), OemKeyword(kUserInput),
                                  OemKeyword(name));
        WriteUserInputParameter(writer, entry);
        return;
    }
    writer.AddSelectionType(feature);
    const bool hasSelection = working && index < ARRAYSIZE(working->DevMode()->privatePart.featureSelection);
    const int selected = hasSelection ? working->DevMode()->privatePart.featureSelection[index] : 0;
    for (size_t j = 0; j < entry.options.count; ++j) {
        if (writer.Writes(static_cast<int>(j) == selected)) {
            const OptionEntry& option = writer.printer.options[entry.options.first + j];
            writer.AddOption(feature, option.name, option.displayName, isInstalled);
        }
    }
}

// --- Colour correction

constexpr Keyword kManualSettings = OemKeyword(TEXT("ManualSettings"));
constexpr UINT kColorCorrectionString = 3355;
constexpr UINT kManualSettingsString = 3356;
constexpr const WCHAR* kPresetPrefix = TEXT("ColorCorrectionPreset_");

// What tickets call the groups of colour features, by ColorGroupId.
struct GroupNames {
    const WCHAR* group;
    const WCHAR* feature;  // its features, with their numbers behind
    const WCHAR* option;   // their options
    UINT displayName;
};
constexpr GroupNames kGroupNames[] = {
    {TEXT("TextColorCorrection"), TEXT("TextColorCorrectionFeature_"), TEXT("TextColorCorrectionOption_"), 3357},
    {TEXT("ImageColorCorrection"), TEXT("ImageColorCorrectionFeature_"), TEXT("ImageColorCorrectionOption_"), 3358},
    {TEXT("GraphicsColorCorrection"), TEXT("GraphicsColorCorrectionFeature_"), TEXT("GraphicsColorCorrectionOption_"),
     3359},
    {TEXT("GeneralColorCorrection"), TEXT("GeneralColorCorrectionFeature_"), TEXT("GeneralColorCorrectionOption_"),
     3360},
};
static_assert(ARRAYSIZE(kGroupNames) == ARRAYSIZE(kColorGroups));

// The number behind the prefix of a name. False where there is none or it isn't below `limit`.
bool ParseNumberedName(const WCHAR* name, const WCHAR* prefix, size_t limit, int16_t* number) {
    if (!TextBeginsWith(name, prefix)) {
        return false;
    }
    const WCHAR* const digits = name + TextLength(prefix);
    if (*digits < TEXT('0') || *digits > TEXT('9')) {
        return false;
    }
    const int32_t parsed = ParseInteger(digits);
    if (static_cast<size_t>(parsed) >= limit || parsed > INT16_MAX) {
        return false;
    }
    *number = static_cast<int16_t>(parsed);
    return true;
}

bool HasPreset(const PrinterSnapshot& printer, int index) {
    return index >= 0 && static_cast<size_t>(index) < printer.colorModes.count;
}

void AddNumberedOption(FeatureWriter& writer, const ElementReference& feature, const WCHAR* uri, const WCHAR* prefix,
                       size_t number, const WCHAR* label) {
    OptionName name = {uri, {}};
    CopyText<WCHAR>(name.keyword, ARRAYSIZE(name.keyword), NumberedName(prefix, number).text);
    writer.AddOption(feature, name, label);
}

void WriteColorFeature(FeatureWriter& writer, const ElementReference& group, size_t groupIndex, size_t index,
                       const WorkingDevMode* working) {
    const ColorFeatureEntry& entry = writer.printer.colorFeatures[groupIndex][index];
    const GroupNames& names = kGroupNames[groupIndex];
    OptionName name = {kOemNamespace, {}};
    CopyText<WCHAR>(name.keyword, ARRAYSIZE(name.keyword), NumberedName(names.feature, index).text);
    const ElementReference feature = writer.BeginGroup(group, name, entry.displayName);
    writer.AddSelectionType(feature);
    for (size_t j = 0; j < entry.values.count; ++j) {
        const bool isSelected = working && ColorSelection(working->DevMode()->privatePart, kColorGroups[groupIndex],
                                                          index) == static_cast<int>(j);
        if (writer.Writes(isSelected)) {
            AddNumberedOption(writer, feature, kOemNamespace, names.option, j,
                              writer.printer.colorValues[entry.values.first + j].displayName);
        }
    }
}

void WriteManualSettings(FeatureWriter& writer, const ElementReference& correction, const WorkingDevMode* working) {
    const ElementReference manual = writer.BeginGroup(correction, kManualSettings, kManualSettingsString);
    if (!manual) {
        return;
    }
    for (size_t g = 0; g < ARRAYSIZE(kGroupNames); ++g) {
        const EntryList<ColorFeatureEntry>& features = writer.printer.colorFeatures[g];
        if (features.count == 0) {
            continue;
        }
        const ElementReference group =
            writer.BeginGroup(manual, OemKeyword(kGroupNames[g].group), kGroupNames[g].displayName);
        for (size_t k = 0; group && k < features.count; ++k) {
            if (features[k].values.count > 0) {
                WriteColorFeature(writer, group, g, k, working);
            }
        }
    }
}

// The selections of a group as a ticket has them; true where there are any.
bool ReadColorGroup(FeatureReader& reader, const ElementReference& manual, size_t groupIndex, PrivateDevMode* devMode) {
    const GroupNames& names = kGroupNames[groupIndex];
    ElementReference group;
    if (reader.document.FindFeature(manual.Get(), kOemNamespace, names.group, &group) != S_OK) {
        return false;
    }
    const EntryList<ColorFeatureEntry>& features = reader.printer.colorFeatures[groupIndex];
    bool isRead = false;
    for (size_t k = 0; k < features.count; ++k) {
        const NumberedName name(names.feature, k);
        FoundOption found;
        int16_t selection = 0;
        if (reader.FindOption(group.Get(), OemKeyword(name.text), &found) && found.name.uri.Is(kOemNamespace) &&
            ParseNumberedName(found.name.localName.Text(), names.option, features[k].values.count, &selection)) {
            SetColorSelection(devMode, kColorGroups[groupIndex], k, selection);
            isRead = true;
        }
    }
    return isRead;
}

// --- Lists of texts

constexpr Keyword kDataType = PrivateKeyword(TEXT("DataType"));
constexpr const WCHAR* kStrings = TEXT("String");
constexpr const WCHAR* kBase64 = TEXT("BinaryBase64");

// The lists of a model's tickets, in the order in which they are written.
constexpr TextListId kImageLists[] = {kDocumentStartOcmData, kDocumentSheetOcmData, kDocumentEndOcmData};
constexpr TextListId kColorLists[] = {kDocumentStartColorCorrectionCommands, kDocumentPageColorCorrectionCommands,
                                      kDocumentTextColorCorrectionCommands, kDocumentImageColorCorrectionCommands,
                                      kDocumentGraphicsColorCorrectionCommands};
constexpr TextListId kJobTextLists[] = {kDocumentStartPjl, kDocumentEndPjl};

void WriteList(FeatureWriter& writer, const WorkingDevMode& working, TextListId id, bool isText) {
    SchemaDocument& document = writer.document;
    const WCHAR* const name = kTextListNames[id];
    ElementReference property;
    if (document.FindProperty(nullptr, kPrivateNamespace, name, &property) == S_OK) {
        document.RemoveChild(nullptr, property.Get());
    }
    const TextList& list = working.lists[id];
    if (list.count == 0) {
        return;
    }
    document.AppendBanner(name);
    if (FAILED(document.AddProperty(kPrivateNamespace, name, &property))) {
        return;
    }
    writer.AddTextProperty(property, kDataType, isText ? kStrings : kBase64);
    for (const WCHAR* text : list) {
        document.AddValueString(property.Get(), nullptr, text);
    }
}

}  // namespace

void WriteDeviceFeatures(FeatureWriter& writer, const WorkingDevMode* working) {
    const EntryList<FeatureEntry>& features = writer.printer.features;
    if (features.count == 0) {
        return;
    }
    writer.document.AppendBanner(IsImage(writer.Model()) ? TEXT("OCMFeatures") : TEXT("PJLFeatures"));
    for (size_t i = 0; i < features.count; ++i) {
        const OptionName& name = features[i].name;
        // One without keyword can't be told from others.
        if (name.keyword[0] != 0 && (writer.ListsAll() || writer.document.FindFeature(nullptr, name.namespaceUri,
                                                                                      name.keyword, nullptr) != S_OK)) {
            WriteDeviceFeature(writer, i, working);
        }
    }
}

void ReadDeviceFeatures(FeatureReader& reader, WorkingDevMode& working) {
    PrivateDevMode& devMode = working.DevMode()->privatePart;
    const EntryList<FeatureEntry>& features = reader.printer.features;
    for (size_t i = 0; i < std::min<size_t>(features.count, ARRAYSIZE(devMode.featureSelection)); ++i) {
        const FeatureEntry& feature = features[i];
        FoundOption found;
        if (feature.options.count == 0 ||
            !reader.FindOption(nullptr, {feature.name.namespaceUri, feature.name.keyword}, &found)) {
            continue;
        }
        const OptionEntry* const first = &reader.printer.options[feature.options.first];
        const OptionEntry* const end = first + feature.options.count;
        const OptionEntry* const selected =
            std::find_if(first, end, [&](const OptionEntry& option) { return IsNamed(option.name, found.name); });
        devMode.featureSelection[i] = selected != end ? static_cast<int16_t>(selected - first) : int16_t{0};
    }
}

void WriteColorCorrection(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const EntryList<ColorModeEntry>& presets = writer.printer.colorModes;
    if (presets.count == 0) {
        return;
    }
    const int selected = working ? working->DevMode()->privatePart.colorModeIndex : 0;
    const ElementReference feature = writer.BeginFeature(row.NameFor(writer), kColorCorrectionString);
    for (size_t p = 0; p < presets.count; ++p) {
        if (writer.Writes(static_cast<int>(p) == selected)) {
            AddNumberedOption(writer, feature, writer.printer.ownNamespace, kPresetPrefix, p, presets[p].displayName);
        }
    }
    uint32_t kinds = writer.printer.colorModeKinds;
    if (working) {
        kinds = HasPreset(writer.printer, selected) ? presets[static_cast<size_t>(selected)].kind : 0;
    }
    if (feature && (kinds & kColorModeManual) != 0) {
        WriteManualSettings(writer, feature, working);
    }
}

void ReadColorCorrection(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    ApplyColorPreset(working, found.name.uri.Text(), found.name.localName.Text());
    PrivateDevMode* const devMode = &working.DevMode()->privatePart;
    const int selected = devMode->colorModeIndex;
    ElementReference manual;
    if (!HasPreset(reader.printer, selected) ||
        (reader.printer.colorModes[static_cast<size_t>(selected)].kind & kColorModeManual) == 0 ||
        reader.document.FindFeature(found.feature.Get(), kManualSettings.uri, kManualSettings.name, &manual) != S_OK) {
        return;
    }
    bool isRead = false;
    for (size_t g = 0; g < ARRAYSIZE(kGroupNames); ++g) {
        isRead |= ReadColorGroup(reader, manual, g, devMode);
    }
    if (isRead) {
        CompileColorSelections(reader.Model(), devMode);
    }
}

void ApplyColorPreset(WorkingDevMode& working, const WCHAR* optionNamespace, const WCHAR* optionName) {
    const PrinterSnapshot& printer = *working.printer;
    // A model's presets are written in its own namespace.
    int16_t preset = 0;
    if ((!TextsEqual(optionNamespace, kOemNamespace) && !TextsEqual<WCHAR>(optionNamespace, printer.ownNamespace)) ||
        !ParseNumberedName(optionName, kPresetPrefix, printer.colorModes.count, &preset)) {
        return;
    }
    VelmoraDevMode* const devMode = working.DevMode();
    devMode->privatePart.colorModeIndex = preset;
    const uint32_t kind = printer.colorModes[static_cast<size_t>(preset)].kind;
    if ((kind & (kColorModeManual | kColorModeHasDefaults)) != 0) {
        ApplyColorModeSelections(*printer.model.Get(), static_cast<uint16_t>(preset), &devMode->privatePart);
    } else if ((kind & kColorModeSystem) != 0) {
        devMode->publicPart.dmFields |= DM_ICMMETHOD;
        devMode->publicPart.dmICMMethod = DMICMMETHOD_SYSTEM;
    }
}

void WritePrivateDataLists(FeatureWriter& writer, const WorkingDevMode& working) {
    const DeviceModel& model = writer.Model();
    if (IsImage(model)) {
        for (const TextListId id : kImageLists) {
            WriteList(writer, working, id, (model.descriptionFlags & kDescriptionsAreText) != 0);
        }
        return;
    }
    for (const TextListId id : kColorLists) {
        WriteList(writer, working, id, model.pdlType == kPdlPostScript);
    }
    if (model.pdlType != kPdlXps) {
        for (const TextListId id : kJobTextLists) {
            WriteList(writer, working, id, true);
        }
    }
}

}  // namespace velmora
