#include "driver/ptprovider/overlay_features.h"

#include <cstring>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr UINT kOverlayString = 3330;

// Values of overlayMode.
enum OverlayMode : uint16_t {
    kNoOverlay = 0,
    kCreateOverlay = 1,
    kIncludeOver = 2,
    kIncludeUnder = 4,
    kOddEvenOver = 5,
    kOddEvenUnder = 6,
    kOtherOver = 9,
    kOtherUnder = 10,
};

// Values of options.
constexpr uint32_t kNone = 0;
constexpr uint32_t kCreate = 1;
constexpr uint32_t kInclude = 2;
constexpr uint32_t kIncludeOddEven = 3;
constexpr uint32_t kNoOption = UINT32_MAX;
constexpr PlainOption kOptions[] = {
    {TEXT("None"), kNone, 3050},
    {TEXT("Create"), kCreate, 3051},
    {TEXT("Include"), kInclude, 3052},
    {TEXT("IncludeOddEven"), kIncludeOddEven, 3053},
};

constexpr Keyword kDirectory = PrivateKeyword(TEXT("Directory"));
constexpr Keyword kFileExtension = PrivateKeyword(TEXT("FileExtension"));
constexpr Keyword kNameProperty = PrivateKeyword(TEXT("Name"));
constexpr LONG kNameLength = 96;
constexpr TextParameter kName = {PrivateKeyword(TEXT("DocumentOverlayName")), TEXT("Overlay"), 3350, kNameLength};

constexpr Keyword kOverlay2 = PrivateKeyword(TEXT("Overlay2"));
constexpr UINT kOverlay2String = 3054;

uint32_t OptionOf(uint16_t overlayMode) {
    switch (overlayMode) {
        case kNoOverlay:
            return kNone;
        case kCreateOverlay:
            return kCreate;
        case kIncludeOver:
        case kIncludeUnder:
            return kInclude;
        case kOddEvenOver:
        case kOddEvenUnder:
            return kIncludeOddEven;
        default:
            return kNoOption;
    }
}

uint32_t LayerOf(uint16_t overlayMode) {
    switch (overlayMode) {
        case kIncludeOver:
        case kOddEvenOver:
        case kOtherOver:
            return kOverPage;
        case kIncludeUnder:
        case kOddEvenUnder:
        case kOtherUnder:
            return kUnderPage;
        default:
            return kNoOption;
    }
}

constexpr size_t kFileNameCapacity = ARRAYSIZE(PrivateDevMode{}.overlayName);
constexpr WCHAR kNoName[kFileNameCapacity] = {};

// A file name of the device mode with a terminator behind it.
struct TerminatedName {
    explicit TerminatedName(const WCHAR (&name)[kFileNameCapacity]) { memcpy(text, name, sizeof(name)); }
    WCHAR text[kFileNameCapacity + 1] = {};
};

void WriteCreation(FeatureWriter& writer, const ElementReference& option) {
    writer.AddScoredText(option, kDirectory, writer.printer.overlayFolder);
    writer.AddScoredText(option, kFileExtension, writer.printer.overlayExtension);
    writer.AddScoredParameter(option, kNameProperty, kName.name);
}

// The overlay is made when the document is printed; the device mode says of what, and in which file.
void StoreCreation(FeatureReader& reader, WorkingDevMode& working, const WCHAR* name) {
    VelmoraDevMode& devMode = *working.DevMode();
    PrivateDevMode& own = devMode.privatePart;
    WCHAR descriptionPath[ARRAYSIZE(own.descriptionPath) + 1] = {};
    memcpy(descriptionPath, own.descriptionPath, sizeof(own.descriptionPath));
    own.overlayMode = kCreateOverlay;
    WCHAR descriptor[ARRAYSIZE(own.watermarkFile)] = {};
    FormatWide(descriptor, ARRAYSIZE(descriptor), TEXT(",%s,%d,%d,%ld,%d,%s"), FileNamePart(descriptionPath),
               devMode.publicPart.dmPaperSize, devMode.publicPart.dmOrientation, LONG{own.resolutionId},
               devMode.publicPart.dmColor, name);
    memcpy(own.watermarkFile, descriptor, sizeof(descriptor));
    // Half a path would be another folder.
    if (own.settingsFolder[0] == 0 && TextLength<WCHAR>(reader.printer.overlayFolder) < ARRAYSIZE(own.settingsFolder)) {
        CopyText<WCHAR>(own.settingsFolder, ARRAYSIZE(own.settingsFolder), reader.printer.overlayFolder);
    }
    WCHAR fileName[ARRAYSIZE(own.overlayName)] = {};
    FormatWide(fileName, ARRAYSIZE(fileName), TEXT("%08lX.%s"), GetTickCount(),
               static_cast<const WCHAR*>(reader.printer.overlayExtension));
    memcpy(own.overlayName, fileName, sizeof(fileName));
}

// The file that a sub-feature selects.
bool ReadFile(FeatureReader& reader, const ElementReference& feature, const Keyword& name, OwnedBstr* path) {
    ElementReference found;
    ElementReference option;
    return reader.document.FindFeatureOption(feature.Get(), name.uri, name.name, &found, &option, nullptr) == S_OK &&
           reader.ReadScored(option, kFileProperty, path);
}

bool IsSameFolder(const WCHAR* path, const WCHAR* other) {
    const auto length = static_cast<size_t>(FileNamePart(path) - path);
    return static_cast<size_t>(FileNamePart(other) - other) == length &&
           memcmp(path, other, length * sizeof(WCHAR)) == 0;
}

void ReadInclusion(FeatureReader& reader, const FoundOption& found, bool isOddEven, PrivateDevMode* devMode) {
    OwnedBstr file;
    if (!ReadFile(reader, found.feature, kOverlayFile, &file)) {
        return;
    }
    const PlainOption* const layer = reader.FindPlainOption(found.feature.Get(), kOverlayLayering, kOverlayLayers);
    const bool isUnder = layer && layer->value == kUnderPage;
    devMode->overlayMode = isUnder ? kIncludeUnder : kIncludeOver;
    CopyText<WCHAR>(devMode->overlayName, ARRAYSIZE(devMode->overlayName), FileNamePart(file.Text()));
    OwnedBstr second;
    if (!isOddEven || !ReadFile(reader, found.feature, kOverlay2, &second)) {
        return;
    }
    CopyText<WCHAR>(devMode->overlayName2, ARRAYSIZE(devMode->overlayName2), FileNamePart(second.Text()));
    // Both are looked for in one folder.
    if (IsSameFolder(file.Text(), second.Text())) {
        devMode->overlayMode = isUnder ? kOddEvenUnder : kOddEvenOver;
    }
}

}  // namespace

void WriteOverlayFileOptions(FeatureWriter& writer, const ElementReference& feature, const WCHAR* selected) {
    for (const OverlayEntry& entry : writer.printer.overlays) {
        if (selected && !TextsEqual<WCHAR>(entry.fileName, selected)) {
            continue;
        }
        WCHAR path[MAX_PATH];
        FormatWide(path, ARRAYSIZE(path), TEXT("%s\\%s"), static_cast<const WCHAR*>(writer.printer.overlayFolder),
                   static_cast<const WCHAR*>(entry.fileName));
        writer.AddScoredText(writer.AddUnnamedOption(feature, entry.fileName), kFileProperty, path);
    }
}

void WriteOverlay(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const PrivateDevMode* const devMode = working ? &working->DevMode()->privatePart : nullptr;
    const uint16_t mode = devMode ? devMode->overlayMode : uint16_t{kNoOverlay};
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kOverlayString);
    for (const PlainOption& option : kOptions) {
        if (writer.Writes(option.value == OptionOf(mode))) {
            const ElementReference written = writer.AddOption(feature, {name.uri, option.name}, option.displayName);
            if (option.value == kCreate) {
                WriteCreation(writer, written);
            }
        }
    }
    if (writer.Writes(mode > kCreateOverlay)) {
        if (writer.printer.overlays.count > 0) {
            const TerminatedName first(devMode ? devMode->overlayName : kNoName);
            const TerminatedName second(devMode ? devMode->overlayName2 : kNoName);
            WriteOverlayFileOptions(writer, writer.BeginSubFeature(feature, kOverlayFile, kNoDisplayName),
                                    devMode ? first.text : nullptr);
            if (writer.Writes(OptionOf(mode) == kIncludeOddEven)) {
                WriteOverlayFileOptions(writer, writer.BeginSubFeature(feature, kOverlay2, kOverlay2String),
                                        devMode ? second.text : nullptr);
            }
        }
        writer.AddOptions(writer.BeginSubFeature(feature, kOverlayLayering, kNoDisplayName), kOverlayLayering.uri,
                          kOverlayLayers, LayerOf(mode));
    }
    if (writer.Writes(mode == kCreateOverlay)) {
        writer.BeginParameters(name);
        writer.WriteParameter(kName, TerminatedName(devMode ? devMode->overlayName : kNoName).text);
    }
}

void ReadOverlay(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    const PlainOption* const option = MatchOption(found.name, row.names[0].uri, kOptions);
    if (!option) {
        return;
    }
    PrivateDevMode& devMode = working.DevMode()->privatePart;
    OwnedBstr name;
    switch (option->value) {
        case kNone:
            devMode.overlayMode = kNoOverlay;
            break;
        case kCreate:
            if (reader.ReadParameter(found.option, kNameProperty, &name) && name.Length() > 0) {
                StoreCreation(reader, working, name.Text());
            }
            break;
        default:
            ReadInclusion(reader, found, option->value == kIncludeOddEven, &devMode);
            break;
    }
}

}  // namespace velmora
