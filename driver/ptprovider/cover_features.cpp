#include "driver/ptprovider/cover_features.h"

#include "driver/ptprovider/sheet_choices.h"

namespace velmora {
namespace {

// Values of the mode fields.
constexpr uint16_t kNoSheet = 0;
constexpr uint16_t kBlankSheet = 1;
constexpr uint16_t kPrintedSheet = 2;

// Values of options: the mode, and whether a printed cover has both its sides printed.
constexpr uint32_t kBothSides = 1u << 8;
constexpr uint32_t kModeMask = kBothSides - 1;

constexpr PlainOption kCoverOptions[] = {
    {TEXT("NoCover"), kNoSheet, 2355},
    {TEXT("BlankCover"), kBlankSheet, 2356},
    {TEXT("PrintFront"), kPrintedSheet},
    {TEXT("PrintBoth"), kPrintedSheet | kBothSides, 2357},
    {TEXT("PrintBack"), kPrintedSheet, kNoDisplayName, true},
};
constexpr PlainOption kInterleaveOptions[] = {
    {TEXT("NoInterleaves"), kNoSheet, 3080},
    {TEXT("BlankInterleaves"), kBlankSheet, 3081},
    {TEXT("DuplicateInterleaves"), kPrintedSheet, 3082},
};

// What makes the three features different.
struct SheetFeature {
    UINT displayName;
    UINT paperString;
    UINT mediaString;
    UINT binString;
    std::span<const PlainOption> options;
    uint16_t PrivateDevMode::*mode;
    uint16_t PrivateDevMode::*bothSides = nullptr;  // null: the sheets have no sides to choose
    SheetFields fields;
};
constexpr SheetFeature kFrontCover = {
    .displayName = 1106,
    .paperString = 3315,
    .mediaString = 3316,
    .binString = 3317,
    .options = kCoverOptions,
    .mode = &PrivateDevMode::frontCoverMode,
    .bothSides = &PrivateDevMode::frontCoverBothSides,
    .fields = {&PrivateDevMode::frontCoverBin, &PrivateDevMode::frontCoverPaper, &PrivateDevMode::frontCoverWidth,
               &PrivateDevMode::frontCoverLength, &PrivateDevMode::frontCoverMedia},
};
constexpr SheetFeature kBackCover = {
    .displayName = 1107,
    .paperString = 3318,
    .mediaString = 3319,
    .binString = 3320,
    .options = kCoverOptions,
    .mode = &PrivateDevMode::backCoverMode,
    .bothSides = &PrivateDevMode::backCoverBothSides,
    .fields = {&PrivateDevMode::backCoverBin, &PrivateDevMode::backCoverPaper, &PrivateDevMode::backCoverWidth,
               &PrivateDevMode::backCoverLength, &PrivateDevMode::backCoverMedia},
};
constexpr SheetFeature kInterleaves = {
    .displayName = 3331,
    .paperString = 3332,
    .mediaString = 3333,
    .binString = 3334,
    .options = kInterleaveOptions,
    .mode = &PrivateDevMode::interleaveMode,
    .fields = {&PrivateDevMode::interleaveBin, &PrivateDevMode::interleavePaper, &PrivateDevMode::interleaveWidth,
               &PrivateDevMode::interleaveLength, &PrivateDevMode::interleaveMedia},
};

uint32_t SelectedSheet(const PrivateDevMode& devMode, const SheetFeature& sheet) {
    const uint16_t mode = devMode.*sheet.mode;
    const bool isBoth = mode == kPrintedSheet && sheet.bothSides && devMode.*sheet.bothSides == 1;
    return isBoth ? mode | kBothSides : mode;
}

void WriteSheet(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working,
                const SheetFeature& sheet) {
    const PrivateDevMode* const devMode = working ? &working->DevMode()->privatePart : nullptr;
    const SheetChoice choice = devMode ? ChoiceOf(*devMode, sheet.fields) : SheetChoice{};
    const SheetChoice* const selected = devMode ? &choice : nullptr;
    const uint16_t mode = devMode ? devMode->*sheet.mode : kNoSheet;
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, sheet.displayName);
    writer.AddOptions(feature, name.uri, sheet.options, devMode ? SelectedSheet(*devMode, sheet) : 0);
    if (writer.Writes(mode == kBlankSheet) && writer.printer.papers.count > 0) {
        WritePaperOptions(writer, writer.BeginSubFeature(feature, kSheetPaper, sheet.paperString), SheetKind::kOther,
                          selected);
    }
    if (!writer.Writes(mode != kNoSheet)) {
        return;
    }
    if (writer.printer.media.count > 0) {
        WriteMediaTypeOptions(writer, writer.BeginSubFeature(feature, kSheetMedia, sheet.mediaString), selected);
    }
    if (writer.printer.trays.count > 0) {
        WriteInputBinOptions(writer, writer.BeginSubFeature(feature, kSheetBin, sheet.binString), selected);
    }
}

void ReadSheet(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working, const SheetFeature& sheet) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    const PlainOption* const option = MatchOption(found.name, row.names[0].uri, sheet.options);
    if (!option) {
        return;
    }
    PrivateDevMode& devMode = working.DevMode()->privatePart;
    devMode.*sheet.mode = static_cast<uint16_t>(option->value & kModeMask);
    if (sheet.bothSides && (option->value & kModeMask) == kPrintedSheet) {
        devMode.*sheet.bothSides = (option->value & kBothSides) != 0 ? 1 : 0;
    }

    FoundOption detail;
    if (reader.FindOption(found.feature.Get(), kSheetPaper, &detail)) {
        TicketPaper paper;
        if (detail.name.Is(kPagePaperOption.uri, kPagePaperOption.name)) {
            devMode.*sheet.fields.paper = static_cast<int16_t>(kPagePaper);
        } else if (ReadPaper(reader, detail, SheetKind::kOther, &paper)) {
            devMode.*sheet.fields.paper = paper.paper;
            devMode.*sheet.fields.width = paper.width;
            devMode.*sheet.fields.length = paper.length;
        }
    }
    if (reader.FindOption(found.feature.Get(), kSheetMedia, &detail)) {
        const uint16_t media = ReadMedia(reader, detail);
        if (IsMedium(reader, media)) {
            devMode.*sheet.fields.media = static_cast<int16_t>(media);
        }
    }
    if (reader.FindOption(found.feature.Get(), kSheetBin, &detail)) {
        devMode.*sheet.fields.bin = ReadBin(reader, detail);
    }
}

}  // namespace

void WriteFrontCover(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    WriteSheet(writer, row, working, kFrontCover);
}

void ReadFrontCover(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    ReadSheet(reader, row, working, kFrontCover);
}

void WriteBackCover(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    WriteSheet(writer, row, working, kBackCover);
}

void ReadBackCover(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    ReadSheet(reader, row, working, kBackCover);
}

void WriteInterleaves(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    WriteSheet(writer, row, working, kInterleaves);
}

void ReadInterleaves(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    ReadSheet(reader, row, working, kInterleaves);
}

}  // namespace velmora
