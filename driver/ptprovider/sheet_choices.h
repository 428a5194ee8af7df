// The options that the pages, the covers, the interleaves and the exceptions all choose from: papers, media and trays.
#pragma once

#include <windows.h>

#include <cstdint>

#include "driver/devmode/private_devmode.h"
#include "driver/ptprovider/feature_reader.h"
#include "driver/ptprovider/feature_row.h"
#include "driver/ptprovider/feature_writer.h"
#include "driver/ptprovider/working_devmode.h"

namespace velmora {

// Whose paper is chosen: names of the pages' own are published ones.
enum class SheetKind : uint8_t { kPage, kOther };

// What a setting selects.
struct SheetChoice {
    uint16_t paper;  // paper id
    uint16_t media;  // from 1
    uint16_t bin;    // as dmDefaultSource
};

// The paper that stands for the pages' own; only covers, interleaves and exceptions have it.
inline constexpr uint16_t kPagePaper = 65535;

// The private fields of a cover or the interleaves.
struct SheetFields {
    uint16_t PrivateDevMode::*bin;
    int16_t PrivateDevMode::*paper;
    int16_t PrivateDevMode::*width;   // 0.1 mm
    int16_t PrivateDevMode::*length;  // 0.1 mm
    int16_t PrivateDevMode::*media;
};

// The paper that is printed on: the target where documents are scaled onto one.
int16_t PrintedPaper(const VelmoraDevMode& devMode);

SheetChoice PageChoice(const VelmoraDevMode& devMode);
SheetChoice ChoiceOf(const PrivateDevMode& devMode, const SheetFields& fields);
SheetChoice ChoiceOf(const ExceptionRecord& exception);

// Whether a printer with these options installed has what an entry of a list needs of it: the sources, destinations and
// options that its values name.
bool IsInstalled(const uint32_t (&needed)[3], const DeviceInfo& installed);

// Adds the options to a feature: those that `choice` selects, or all where it is null.

// True where the selected paper was written.
bool WritePaperOptions(FeatureWriter& writer, const ElementReference& feature, SheetKind kind,
                       const SheetChoice* choice);
void WriteMediaTypeOptions(FeatureWriter& writer, const ElementReference& feature, const SheetChoice* choice);
void WriteInputBinOptions(FeatureWriter& writer, const ElementReference& feature, const SheetChoice* choice);

// A paper that a ticket says.
struct TicketPaper {
    int16_t paper;
    int16_t width;   // 0.1 mm
    int16_t length;  // 0.1 mm
};

// The paper of an option that says its size; false where it says none.
bool ReadPaper(FeatureReader& reader, const FoundOption& found, SheetKind kind, TicketPaper* paper);
// The medium, from 1; the model's default for an option that it doesn't have.
uint16_t ReadMedia(const FeatureReader& reader, const FoundOption& found);
// Whether it is one of the model's media.
bool IsMedium(const FeatureReader& reader, uint16_t media);
// The tray; the model's default for an option that it doesn't have, or that isn't installed.
uint16_t ReadBin(const FeatureReader& reader, const FoundOption& found);

// The sub-features that say a sheet's paper, medium and tray.
inline constexpr Keyword kSheetPaper = PrivateKeyword(TEXT("MediaSize"));
inline constexpr Keyword kSheetMedia = PrivateKeyword(TEXT("MediaType"));
inline constexpr Keyword kSheetBin = PrivateKeyword(TEXT("InputBin"));
inline constexpr Keyword kPagePaperOption = PrivateKeyword(TEXT("UsePageMediaSize"));

// The features of the pages.
void WritePageMediaSize(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadPageMediaSize(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);
void WritePageMediaType(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadPageMediaType(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);
void WritePageInputBin(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadPageInputBin(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

}  // namespace velmora
