#include "driver/ptprovider/listed_features.h"

#include <algorithm>

#include "driver/devmode/devmode_adjustments.h"
#include "driver/ptprovider/sheet_choices.h"

namespace velmora {
namespace {

constexpr UINT kResolutionString = 1763;
constexpr UINT kMediaColorString = 3300;
constexpr UINT kPhotoIntentString = 3340;
constexpr UINT kSignatureString = 3341;

constexpr Keyword kResolutionX = PublicKeyword(TEXT("ResolutionX"));
constexpr Keyword kResolutionY = PublicKeyword(TEXT("ResolutionY"));

// The options of printers whose models list none.
constexpr const WCHAR* kNoPhotoIntent = TEXT("None");
constexpr const WCHAR* kPrintInvalidSignatures = TEXT("PrintInvalidSignaturesWithErrorReport");

// Whether the device mode selects the entry at `index`. Each number that the device mode says is set has to agree.
bool SelectsResolution(const VelmoraDevMode& devMode, const ResolutionEntry& entry, size_t index) {
    const DEVMODEW& common = devMode.publicPart;
    return devMode.privatePart.resolutionIndex == static_cast<int>(index) &&
           devMode.privatePart.resolutionId == entry.resolutionId &&
           ((common.dmFields & DM_PRINTQUALITY) == 0 || common.dmPrintQuality == static_cast<short>(entry.xDpi)) &&
           ((common.dmFields & DM_YRESOLUTION) == 0 || common.dmYResolution == static_cast<short>(entry.yDpi));
}

// The field of a device mode that holds an index of one of the lists.
using IndexField = uint16_t PrivateDevMode::*;

// Writes a feature with the entry that the device mode selects, or all. Without entries there is the option
// `fallback`, or, where that is null, no feature.
void WriteEntries(FeatureWriter& writer, const FeatureRow& row, UINT displayName, const EntryList<KeywordEntry>& list,
                  const WorkingDevMode* working, IndexField selected, const WCHAR* fallback) {
    if (list.count == 0 && !fallback) {
        return;
    }
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, displayName);
    if (list.count == 0) {
        writer.AddOption(feature, {name.uri, fallback}, kNoDisplayName);
    }
    for (size_t i = 0; i < list.count; ++i) {
        if (!working || working->DevMode()->privatePart.*selected == i) {
            const KeywordEntry& entry = list[i];
            writer.AddOption(feature, entry.name, entry.displayName,
                             IsInstalled(entry.ticketValues, writer.printer.installed));
        }
    }
}

// Stores the index of the option that the ticket selects; the first entry's where it is none of the list.
void ReadEntry(FeatureReader& reader, const FeatureRow& row, const EntryList<KeywordEntry>& list,
               WorkingDevMode& working, IndexField index) {
    FoundOption found;
    if (reader.FindOption(row.names, &found)) {
        working.DevMode()->privatePart.*index = FindEntryIndex(list, found.name);
    }
}

}  // namespace

void WriteResolution(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const EntryList<ResolutionEntry>& list = writer.printer.resolutions;
    if (list.count == 0) {
        return;
    }
    const ElementReference feature = writer.BeginFeature(row.NameFor(writer), kResolutionString);
    for (size_t i = 0; i < list.count; ++i) {
        const ResolutionEntry& entry = list[i];
        if (working && !SelectsResolution(*working->DevMode(), entry, i)) {
            continue;
        }
        // Always by the model's own names, whatever namespace the entry's keyword says.
        OptionName name = entry.name;
        name.namespaceUri = writer.printer.ownNamespace;
        const ElementReference option = writer.AddOption(feature, name, entry.displayName,
                                                         IsInstalled(entry.ticketValues, writer.printer.installed));
        writer.AddScoredInteger(option, kResolutionX, entry.xDpi);
        writer.AddScoredInteger(option, kResolutionY, entry.yDpi);
        if (working) {
            break;
        }
    }
}

void ReadResolution(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    const EntryList<ResolutionEntry>& list = reader.printer.resolutions;
    const ResolutionEntry* entry = std::find_if(list.begin(), list.end(), [&](const ResolutionEntry& candidate) {
        return IsNamed(candidate.name, found.name) ||
               found.name.Is(reader.printer.ownNamespace, candidate.name.keyword);
    });
    LONG x = 0;
    LONG y = 0;
    if (entry == list.end() && reader.ReadScored(found.option, kResolutionX, &x) &&
        reader.ReadScored(found.option, kResolutionY, &y)) {
        entry = std::find_if(list.begin(), list.end(), [&](const ResolutionEntry& candidate) {
            return candidate.xDpi == x && candidate.yDpi == y;
        });
    }
    if (entry == list.end()) {
        return;
    }
    VelmoraDevMode* const devMode = working.DevMode();
    PrivateDevMode& own = devMode->privatePart;
    // What counts dots keeps its length.
    if (own.resolutionId != 0) {
        RescaleDots(&own, own.resolutionId, entry->resolutionId);
    }
    own.resolutionId = entry->resolutionId;
    devMode->publicPart.dmPrintQuality = static_cast<short>(entry->xDpi);
    devMode->publicPart.dmYResolution = static_cast<short>(entry->yDpi);
    own.resolutionIndex = static_cast<int16_t>(entry - list.begin());
}

void WriteMediaColor(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    WriteEntries(writer, row, kMediaColorString, writer.printer.mediaColors, working, &PrivateDevMode::mediaColorIndex,
                 nullptr);
}

void ReadMediaColor(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    ReadEntry(reader, row, reader.printer.mediaColors, working, &PrivateDevMode::mediaColorIndex);
}

void WritePhotoIntent(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    WriteEntries(writer, row, kPhotoIntentString, writer.printer.photoIntents, working,
                 &PrivateDevMode::photoIntentIndex, kNoPhotoIntent);
}

void ReadPhotoIntent(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    ReadEntry(reader, row, reader.printer.photoIntents, working, &PrivateDevMode::photoIntentIndex);
}

void WriteSignatureProcessing(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    WriteEntries(writer, row, kSignatureString, writer.printer.signatureOptions, working,
                 &PrivateDevMode::signatureOptionIndex, kPrintInvalidSignatures);
}

void ReadSignatureProcessing(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    ReadEntry(reader, row, reader.printer.signatureOptions, working, &PrivateDevMode::signatureOptionIndex);
}

}  // namespace velmora
