#include "driver/ptprovider/sheet_choices.h"

#include <algorithm>
#include <iterator>

#include "driver/base/text.h"
#include "driver/devdesc/standard_papers.h"
#include "driver/ptprovider/ticket_units.h"

namespace velmora {
namespace {

constexpr UINT kPageMediaSizeString = 1751;
constexpr UINT kPageMediaTypeString = 1791;
constexpr UINT kPageInputBinString = 1754;
constexpr UINT kPagePaperString = 2999;
constexpr UINT kCustomWidthString = 1765;
constexpr UINT kCustomLengthString = 1767;

constexpr Keyword kCustomMediaSize = PublicKeyword(TEXT("CustomMediaSize"));
constexpr Keyword kCustomWidth = PublicKeyword(TEXT("PageMediaSizeMediaSizeWidth"));
constexpr Keyword kCustomLength = PublicKeyword(TEXT("PageMediaSizeMediaSizeHeight"));
constexpr Keyword kSelectionString = PrivateKeyword(TEXT("SelectionString"));
constexpr Keyword kSelectionIndex = PrivateKeyword(TEXT("SelectionIndex"));

// A selection string that stands for none.
constexpr const WCHAR* kNullSelection = TEXT("null");

// The scored properties that say a paper's size.
Keyword WidthName(SheetKind kind) {
    constexpr const WCHAR* kName = TEXT("MediaSizeWidth");
    return kind == SheetKind::kPage ? PublicKeyword(kName) : PrivateKeyword(kName);
}
Keyword LengthName(SheetKind kind) {
    constexpr const WCHAR* kName = TEXT("MediaSizeHeight");
    return kind == SheetKind::kPage ? PublicKeyword(kName) : PrivateKeyword(kName);
}

bool HasCustomSizes(const DeviceModel& model) {
    return model.customMaxWidth >= 1 && model.customMaxLength >= 1;
}

// --- Numbers of trays in the printer's language

constexpr int32_t kNoTrayNumber = 65535;
// Trays that the model numbers itself: this plus the number.
constexpr int32_t kFirstOwnTray = 256;
constexpr int32_t kLastOwnTray = 1023;

// The numbers, by page description language, of the trays with published ids (wingdi.h) and the driver's own ones.
constexpr uint16_t kNumberedTrays[] = {1, 2, 3, 4, 5, 6, 7, 11, 1025, 1026, 1027};
struct TrayNumbers {
    int32_t numbers[std::size(kNumberedTrays)];
    int32_t other;
};
constexpr TrayNumbers kTrayNumbers[] = {
    {{3, 5, 4, 2, 6, 0, 1, 7, 1, 2, 2}, 0},                          // PCL 6
    {{4, 5, 1, 2, 6, kNoTrayNumber, 7, 8, 7, 2, 2}, kNoTrayNumber},  // PCL 5
    {{3, 1, 0, kNoTrayNumber, kNoTrayNumber, kNoTrayNumber, kNoTrayNumber, 7, kNoTrayNumber, kNoTrayNumber,
      kNoTrayNumber},
     kNoTrayNumber},  // PostScript
};
// Image models number the trays by their ids, but these two.
constexpr uint16_t kImageTraysOfFour[] = {1026, 1027};
constexpr int32_t kImageTrayNumber = 4;

int32_t TrayNumber(uint16_t pdlType, uint16_t bin) {
    if (pdlType > kPdlImage) {
        return kNoTrayNumber;
    }
    if (bin >= kFirstOwnTray && bin <= kLastOwnTray) {
        return bin - kFirstOwnTray;
    }
    if (pdlType == kPdlImage) {
        return std::ranges::find(kImageTraysOfFour, bin) != std::end(kImageTraysOfFour) ? kImageTrayNumber : bin;
    }
    const TrayNumbers& row = kTrayNumbers[pdlType];
    const uint16_t* const numbered = std::ranges::find(kNumberedTrays, bin);
    return numbered != std::end(kNumberedTrays) ? row.numbers[numbered - kNumberedTrays] : row.other;
}

// --- Papers

// The paper's size where the device mode says it.
void WriteCustomSize(FeatureWriter& writer, const ElementReference& feature) {
    const ElementReference option = writer.AddOption(feature, kCustomMediaSize, kNoDisplayName);
    writer.AddScoredParameter(option, WidthName(SheetKind::kPage), kCustomWidth);
    writer.AddScoredParameter(option, LengthName(SheetKind::kPage), kCustomLength);
}

void WriteCustomSizeParameters(FeatureWriter& writer, const Keyword& feature, const VelmoraDevMode* devMode) {
    const DeviceModel& model = writer.Model();
    const auto parameter = [](const Keyword& name, int16_t min, uint16_t max, UINT displayName) {
        const LONG least = min * kMicronsPerTenth;
        return IntegerParameter{
            name, {least, least, max * kMicronsPerTenth, kMicronsPerTenth}, unit_name::kMicrons, displayName};
    };
    LONG width = 0;
    LONG length = 0;
    if (devMode) {
        const bool isTarget = IsFitToPaper(devMode->privatePart.scaleMode);
        width = isTarget ? devMode->privatePart.scaleWidth : devMode->publicPart.dmPaperWidth;
        length = isTarget ? devMode->privatePart.scaleLength : devMode->publicPart.dmPaperLength;
    }
    writer.BeginParameters(feature);
    writer.WriteParameter(parameter(kCustomWidth, model.customMinWidth, model.customMaxWidth, kCustomWidthString),
                          width * kMicronsPerTenth);
    writer.WriteParameter(parameter(kCustomLength, model.customMinLength, model.customMaxLength, kCustomLengthString),
                          length * kMicronsPerTenth);
}

}  // namespace

int16_t PrintedPaper(const VelmoraDevMode& devMode) {
    return IsFitToPaper(devMode.privatePart.scaleMode) ? devMode.privatePart.scaleValue
                                                       : devMode.publicPart.dmPaperSize;
}

SheetChoice PageChoice(const VelmoraDevMode& devMode) {
    return {static_cast<uint16_t>(PrintedPaper(devMode)), static_cast<uint16_t>(devMode.privatePart.mediaIndex),
            static_cast<uint16_t>(devMode.publicPart.dmDefaultSource)};
}

SheetChoice ChoiceOf(const PrivateDevMode& devMode, const SheetFields& fields) {
    return {static_cast<uint16_t>(devMode.*fields.paper), static_cast<uint16_t>(devMode.*fields.media),
            devMode.*fields.bin};
}

SheetChoice ChoiceOf(const ExceptionRecord& exception) {
    return {exception.paper, exception.media, exception.bin};
}

bool IsInstalled(const uint32_t (&needed)[3], const DeviceInfo& installed) {
    return (needed[0] & installed.installedOptions) == needed[0] && (needed[1] & installed.secondTray) == needed[1] &&
           (needed[2] & installed.optionFlags) == needed[2];
}

bool WritePaperOptions(FeatureWriter& writer, const ElementReference& feature, SheetKind kind,
                       const SheetChoice* choice) {
    bool isWritten = false;
    for (const PaperEntry& entry : writer.printer.papers) {
        if (choice && static_cast<uint16_t>(entry.paperId) != choice->paper) {
            continue;
        }
        const ElementReference option = writer.AddOption(feature, entry.name, entry.displayName,
                                                         IsInstalled(entry.ticketValues, writer.printer.installed));
        writer.AddScoredInteger(option, WidthName(kind), entry.width);
        writer.AddScoredInteger(option, LengthName(kind), entry.length);
        if (choice) {
            isWritten = true;
            break;
        }
    }
    if (kind != SheetKind::kPage && (!choice || choice->paper == kPagePaper)) {
        writer.AddOption(feature, kPagePaperOption, kPagePaperString);
        isWritten = choice != nullptr;
    }
    return isWritten;
}

void WriteMediaTypeOptions(FeatureWriter& writer, const ElementReference& feature, const SheetChoice* choice) {
    const EntryList<MediaEntry>& media = writer.printer.media;
    const auto write = [&](const MediaEntry& entry) {
        const ElementReference option = writer.AddOption(feature, entry.name, entry.displayName,
                                                         IsInstalled(entry.ticketValues, writer.printer.installed));
        if (entry.rendererName[0] != 0 && !TextsEqual<WCHAR>(entry.rendererName, kNullSelection)) {
            writer.AddTextProperty(option, kSelectionString, entry.rendererName);
        }
    };
    if (!choice) {
        std::for_each(media.begin(), media.end(), write);
        return;
    }
    const MediaEntry* selected =
        std::find_if(media.begin(), media.end(), [&](const MediaEntry& entry) { return entry.index == choice->media; });
    if (selected == media.end() && media.count > 0) {
        // The default medium, counted from 0 here; the last one where there are fewer.
        selected = &media[std::min<size_t>(writer.Model().defaultMedia, media.count - 1)];
    }
    if (selected != media.end()) {
        write(*selected);
    }
}

void WriteInputBinOptions(FeatureWriter& writer, const ElementReference& feature, const SheetChoice* choice) {
    for (const TrayEntry& entry : writer.printer.trays) {
        if (choice && entry.binId != choice->bin) {
            continue;
        }
        const bool isInstalled = (entry.optionMask & writer.printer.installed.installedOptions) != 0;
        const ElementReference option = writer.AddOption(feature, entry.name, entry.displayName, isInstalled);
        const int32_t number = TrayNumber(writer.Model().pdlType, entry.binId);
        if (number != kNoTrayNumber) {
            writer.AddIntegerProperty(option, kSelectionIndex, number);
        }
        if (choice) {
            break;
        }
    }
}

bool ReadPaper(FeatureReader& reader, const FoundOption& found, SheetKind kind, TicketPaper* paper) {
    const bool isCustom = kind == SheetKind::kPage && found.name.Is(kCustomMediaSize.uri, kCustomMediaSize.name);
    LONG width = 0;
    LONG length = 0;
    const auto read = [&](const Keyword& name, LONG* value) {
        return isCustom ? reader.ReadParameter(found.option, name, value)
                        : reader.ReadScored(found.option, name, value);
    };
    if (!read(WidthName(kind), &width) || !read(LengthName(kind), &length)) {
        return false;
    }
    int16_t id = 0;
    if (found.name.uri.Is(kKeywordsNamespace)) {
        id = FindStandardPaper(width / kMicronsPerTenth, length / kMicronsPerTenth);
    }
    if (id == 0) {
        const EntryList<PaperEntry>& papers = reader.printer.papers;
        const PaperEntry* const entry = std::find_if(papers.begin(), papers.end(), [&](const PaperEntry& candidate) {
            return candidate.width == width && candidate.length == length;
        });
        id = entry != papers.end() ? entry->paperId : int16_t{DMPAPER_USER};
    }
    *paper = {id, static_cast<int16_t>(width / kMicronsPerTenth), static_cast<int16_t>(length / kMicronsPerTenth)};
    return true;
}

uint16_t ReadMedia(const FeatureReader& reader, const FoundOption& found) {
    const MediaEntry* const entry = FindEntry(reader.printer.media, found.name);
    return entry ? entry->index : reader.Model().defaultMedia;
}

bool IsMedium(const FeatureReader& reader, uint16_t media) {
    return media >= 1 && media <= reader.printer.media.count;
}

uint16_t ReadBin(const FeatureReader& reader, const FoundOption& found) {
    const TrayEntry* const entry = FindEntry(reader.printer.trays, found.name);
    return entry && (entry->optionMask & reader.printer.installed.installedOptions) != 0 ? entry->binId
                                                                                         : reader.Model().defaultBin;
}

void WritePageMediaSize(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const VelmoraDevMode* const devMode = working ? working->DevMode() : nullptr;
    if (writer.printer.papers.count == 0 || (devMode && (devMode->publicPart.dmFields & DM_PAPERSIZE) == 0 &&
                                             !IsFitToPaper(devMode->privatePart.scaleMode))) {
        return;
    }
    const SheetChoice choice = devMode ? PageChoice(*devMode) : SheetChoice{};
    const ElementReference feature = writer.BeginFeature(row.NameFor(writer), kPageMediaSizeString);
    const bool isWritten = WritePaperOptions(writer, feature, SheetKind::kPage, devMode ? &choice : nullptr);
    if (isWritten || !HasCustomSizes(writer.Model())) {
        return;
    }
    WriteCustomSize(writer, feature);
    if (writer.Writes(choice.paper == DMPAPER_USER)) {
        WriteCustomSizeParameters(writer, row.NameFor(writer), devMode);
    }
}

void ReadPageMediaSize(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    TicketPaper paper;
    if (reader.FindOption(row.names, &found) && ReadPaper(reader, found, SheetKind::kPage, &paper)) {
        DEVMODEW& devMode = working.DevMode()->publicPart;
        devMode.dmPaperSize = paper.paper;
        devMode.dmPaperWidth = paper.width;
        devMode.dmPaperLength = paper.length;
    }
}

void WritePageMediaType(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    if (writer.printer.media.count == 0) {
        return;
    }
    const SheetChoice choice = working ? PageChoice(*working->DevMode()) : SheetChoice{};
    WriteMediaTypeOptions(writer, writer.BeginFeature(row.NameFor(writer), kPageMediaTypeString),
                          working ? &choice : nullptr);
}

void ReadPageMediaType(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (reader.FindOption(row.names, &found)) {
        working.DevMode()->privatePart.mediaIndex = static_cast<int16_t>(ReadMedia(reader, found));
    }
}

void WritePageInputBin(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const VelmoraDevMode* const devMode = working ? working->DevMode() : nullptr;
    if (writer.printer.trays.count == 0 || (devMode && (devMode->publicPart.dmFields & DM_DEFAULTSOURCE) == 0)) {
        return;
    }
    const SheetChoice choice = devMode ? PageChoice(*devMode) : SheetChoice{};
    WriteInputBinOptions(writer, writer.BeginFeature(row.NameFor(writer), kPageInputBinString),
                         devMode ? &choice : nullptr);
}

void ReadPageInputBin(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (reader.FindOption(row.names, &found)) {
        working.DevMode()->publicPart.dmDefaultSource = static_cast<int16_t>(ReadBin(reader, found));
    }
}

}  // namespace velmora
