// Device modes through print tickets and back, on every model of the project.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "driver/devmode/color_groups.h"
#include "driver/devmode/color_preset.h"
#include "driver/devmode/devmode_fields.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"
#include "tests/driver/project_models.h"
#include "tests/driver/ticket_printer.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// --- What tickets lose

struct Trip {
    const PrinterSnapshot& printer;
    const VelmoraDevMode& source;  // what the ticket was made of
    const VelmoraDevMode& base;    // what it is read into

    const DEVMODEW& Common() const { return source.publicPart; }
    const PrivateDevMode& Own() const { return source.privatePart; }
};

bool IsRaster(const Trip& trip) {
    return trip.printer.model->pdlType == kPdlImage || trip.printer.model->pdlType == kPdlXps;
}
bool IsFit(const Trip& trip) {
    return IsFitToPaper(trip.Own().scaleMode);
}
const PaperEntry* ListedPaper(const Trip& trip, int16_t id) {
    const auto* const paper = std::find_if(trip.printer.papers.begin(), trip.printer.papers.end(),
                                           [&](const PaperEntry& entry) { return entry.paperId == id; });
    return paper != trip.printer.papers.end() ? paper : nullptr;
}
bool IsTray(const Trip& trip, int bin) {
    return std::any_of(trip.printer.trays.begin(), trip.printer.trays.end(),
                       [&](const TrayEntry& entry) { return entry.binId == bin; });
}
bool HasShift(const Trip& trip) {
    return trip.Own().gutterShiftX != 0 || trip.Own().gutterShiftY != 0;
}
bool IsText(const Trip& trip) {
    return (trip.Own().watermarkFlags & kWatermarkIsText) != 0;
}
bool HasIntents(const Trip& trip) {
    return (trip.printer.model->icmIntentFlags & 1) != 0;
}

// Whether the numbers are those of two resolutions, so that a ticket says none.
bool HasTwoResolutions(const Trip& trip) {
    const ResolutionEntry& entry = trip.printer.resolutions[static_cast<size_t>(trip.Own().resolutionIndex)];
    return entry.xDpi != trip.Common().dmPrintQuality;
}

// Dots as micrometres in the ticket, and back as dots of the resolution that is read.
template <class Dots>
void Carry(const Trip& trip, Dots* dots) {
    const int64_t microns = int64_t{*dots} * 25400 / trip.Own().resolutionId;
    const int64_t resolution = HasTwoResolutions(trip) ? trip.base.privatePart.resolutionId : trip.Own().resolutionId;
    *dots = static_cast<Dots>(microns * resolution / 25400);
}

// A loss: what it happens to, the fields that then stay as they were before the ticket was read ("a b"), and what
// becomes of others.
struct Loss {
    const char* name;
    bool (*happens)(const Trip& trip);
    const char* kept;
    void (*change)(const Trip& trip, VelmoraDevMode* expected) = nullptr;
};

// In the order in which they happen.
const Loss kLosses[] = {
    {"PageMediaSize: papers that the model doesn't list, or says no limits of",
     [](const Trip& trip) {
         const int16_t paper = trip.Common().dmPaperSize;
         const bool isSized = paper == DMPAPER_USER && trip.printer.model->customMaxWidth > 0;
         return !IsFit(trip) && !isSized && !ListedPaper(trip, paper);
     },
     "dmPaperSize dmPaperWidth dmPaperLength"},
    {"PageMediaSize: listed papers have the size that they are listed with",
     [](const Trip& trip) { return !IsFit(trip) && ListedPaper(trip, trip.Common().dmPaperSize); }, "",
     [](const Trip& trip, VelmoraDevMode* expected) {
         const PaperEntry& paper = *ListedPaper(trip, trip.Common().dmPaperSize);
         expected->publicPart.dmPaperWidth = static_cast<short>(paper.width / 100);
         expected->publicPart.dmPaperLength = static_cast<short>(paper.length / 100);
     }},
    {"PageMediaSize: a size that is nearly a standard paper's is that paper",
     [](const Trip& trip) {
         return !IsFit(trip) && trip.Common().dmPaperSize == DMPAPER_USER &&
                std::abs(trip.Common().dmPaperWidth - 2100) <= 5 && std::abs(trip.Common().dmPaperLength - 2970) <= 5;
     },
     "", [](const Trip&, VelmoraDevMode* expected) { expected->publicPart.dmPaperSize = DMPAPER_A4; }},
    {"PageScaling: documents are fitted from the paper before", IsFit, "dmPaperSize dmPaperWidth dmPaperLength"},
    {"PageScaling: onto a paper that the model doesn't list is onto the paper before",
     [](const Trip& trip) { return IsFit(trip) && !ListedPaper(trip, trip.Own().scaleValue); }, "",
     [](const Trip& trip, VelmoraDevMode* expected) {
         expected->privatePart.scaleValue = trip.base.publicPart.dmPaperSize;
         expected->privatePart.scaleWidth = trip.base.publicPart.dmPaperWidth;
         expected->privatePart.scaleLength = trip.base.publicPart.dmPaperLength;
     }},
    {"PageScaling: 100 percent is fitting onto the paper",
     [](const Trip& trip) { return IsZoom(trip.Own().scaleMode) && trip.Own().scaleValue == 100; },
     "dmPaperSize dmPaperWidth dmPaperLength",
     [](const Trip& trip, VelmoraDevMode* expected) {
         // What the ticket says of the paper has been expected above; here it goes to the target.
         PrivateDevMode& own = expected->privatePart;
         own.scaleMode = trip.Own().scaleMode == kScaleZoomTopLeft ? kScaleCustomTopLeft : kScaleCustomCentred;
         own.scaleValue = expected->publicPart.dmPaperSize;
         own.scaleWidth = expected->publicPart.dmPaperWidth;
         own.scaleLength = expected->publicPart.dmPaperLength;
     }},
    {"PageScaling: a mode of the user interface alone", [](const Trip& trip) { return trip.Own().scaleMode == 1024; },
     "scaleMode scaleValue scaleWidth scaleLength"},
    {"PageInputBin: sources that are no tray of the model",
     [](const Trip& trip) { return !IsTray(trip, trip.Common().dmDefaultSource); }, "dmDefaultSource"},
    {"PageResolution: numbers of two resolutions", HasTwoResolutions,
     "dmPrintQuality dmYResolution resolutionIndex resolutionId"},
    {"DocumentDuplex: no statement is one side", [](const Trip& trip) { return trip.Common().dmDuplex == 0; }, "",
     [](const Trip&, VelmoraDevMode* expected) { expected->publicPart.dmDuplex = DMDUP_SIMPLEX; }},
    {"DocumentDuplex: printers without duplex unit",
     [](const Trip& trip) { return (trip.printer.installed.optionFlags & kDuplexInstalled) == 0; }, "dmDuplex"},
    {"JobPageOrder: orders that no option stands for", [](const Trip& trip) { return trip.Own().pageOrderFlags > 1; },
     "pageOrderFlags"},
    {"DocumentCollate: its two fields become one",
     [](const Trip& trip) { return trip.Own().collateCopy != trip.Common().dmCollate; }, "",
     [](const Trip&, VelmoraDevMode* expected) {
         expected->publicPart.dmCollate = DMCOLLATE_TRUE;
         expected->privatePart.collateCopy = 1;
     }},
    {"DocumentNUp: counts that the model doesn't offer",
     [](const Trip& trip) {
         return (trip.Own().pagesPerSheet == 12 || trip.Own().pagesPerSheet == 25) && !IsRaster(trip);
     },
     "pagesPerSheet"},
    {"DocumentNUp: two pages lie one way or the other",
     [](const Trip& trip) { return trip.Own().pagesPerSheet == 2 && trip.Own().nupOrder != 0; }, "",
     [](const Trip&, VelmoraDevMode* expected) { expected->privatePart.nupOrder = 1; }},
    {"DocumentBinding: without any, pages are in the first order",
     [](const Trip& trip) { return trip.Own().booklet == 0 && !HasShift(trip); }, "",
     [](const Trip&, VelmoraDevMode* expected) { expected->privatePart.nupOrder = 0; }},
    {"DocumentBinding: booklets open one way or the other",
     [](const Trip& trip) { return trip.Own().booklet > 0 && trip.Own().nupOrder > 1; }, "",
     [](const Trip&, VelmoraDevMode* expected) { expected->privatePart.nupOrder = 1; }},
    {"DocumentNUp: borders of single pages and booklets, and those of a third kind",
     [](const Trip& trip) {
         return trip.Own().pagesPerSheet == 1 || trip.Own().booklet > 0 || trip.Own().layoutMode > 1;
     },
     "layoutMode nupBorderWidth"},
    {"DocumentNUp: lengths are whole micrometres",
     [](const Trip& trip) { return trip.Own().nupBorderWidth > 0 && trip.Own().pagesPerSheet > 1; }, "",
     [](const Trip& trip, VelmoraDevMode* expected) { Carry(trip, &expected->privatePart.nupBorderWidth); }},
    {"DocumentBinding: lengths are whole micrometres", [](const Trip&) { return true; }, "",
     [](const Trip& trip, VelmoraDevMode* expected) {
         Carry(trip, &expected->privatePart.bookletGutter);
         Carry(trip, &expected->privatePart.gutterShiftX);
         Carry(trip, &expected->privatePart.gutterShiftY);
     }},
    {"DocumentBinding: a negative shift is a positive one at the other edge",
     [](const Trip& trip) { return trip.Own().booklet == 0 && HasShift(trip); }, "",
     [](const Trip& trip, VelmoraDevMode* expected) {
         PrivateDevMode& own = expected->privatePart;
         own.finishingOption = trip.Own().gutterShiftX < 0 || trip.Own().gutterShiftY < 0 ? 6 : 0;
         own.gutterShiftX = std::abs(own.gutterShiftX);
         own.gutterShiftY = std::abs(own.gutterShiftY);
     }},
    {"DocumentBinding: booklets have no shift", [](const Trip& trip) { return trip.Own().booklet > 0; }, "",
     [](const Trip&, VelmoraDevMode* expected) {
         expected->privatePart.gutterShiftX = 0;
         expected->privatePart.gutterShiftY = 0;
     }},
    {"PageWatermark: pictures, rendered files and what lies behind no watermark",
     [](const Trip& trip) { return !IsText(trip); },
     "watermarkFlags watermarkOffsetX watermarkOffsetY watermarkPages watermarkIndex watermarkText watermarkFont"
     " watermarkFontSize watermarkAngle watermarkColor watermarkBold watermarkItalic watermarkPosition"},
    {"PageWatermark: angles are whole degrees, and never negative", IsText, "",
     [](const Trip& trip, VelmoraDevMode* expected) {
         expected->privatePart.watermarkAngle =
             trip.Own().watermarkAngle < 0 ? 45 : trip.Own().watermarkAngle / 10 * 10;
     }},
    {"PageWatermark: all but the first page are all pages, and the other way round",
     [](const Trip& trip) { return IsText(trip) && trip.Own().watermarkPages == 2; }, "",
     [](const Trip&, VelmoraDevMode* expected) { expected->privatePart.watermarkPages = 1; }},
    {"PageWatermark: a font without name is Arial",
     [](const Trip& trip) { return IsText(trip) && trip.Own().watermarkFont[0] == 0; }, "",
     [](const Trip&, VelmoraDevMode* expected) {
         std::u16string(u"Arial").copy(expected->privatePart.watermarkFont, 5);
     }},
    {"PageWatermark: lengths are whole micrometres", IsText, "",
     [](const Trip& trip, VelmoraDevMode* expected) {
         Carry(trip, &expected->privatePart.watermarkOffsetX);
         Carry(trip, &expected->privatePart.watermarkOffsetY);
     }},
    {"DocumentCoverFront: the sides of covers that aren't printed",
     [](const Trip& trip) { return trip.Own().frontCoverMode != 2; }, "frontCoverBothSides"},
    {"DocumentCoverFront: the paper of covers that aren't blank",
     [](const Trip& trip) { return trip.Own().frontCoverMode != 1; },
     "frontCoverPaper frontCoverWidth frontCoverLength"},
    {"DocumentCoverFront: the sheet of none", [](const Trip& trip) { return trip.Own().frontCoverMode == 0; },
     "frontCoverBin frontCoverMedia"},
    {"DocumentCoverBack: the sides of covers that aren't printed",
     [](const Trip& trip) { return trip.Own().backCoverMode != 2; }, "backCoverBothSides"},
    {"DocumentCoverBack: the paper of covers that aren't blank",
     [](const Trip& trip) { return trip.Own().backCoverMode != 1; }, "backCoverPaper backCoverWidth backCoverLength"},
    {"DocumentCoverBack: the sheet of none", [](const Trip& trip) { return trip.Own().backCoverMode == 0; },
     "backCoverBin backCoverMedia"},
    {"DocumentInterleaves: the paper of sheets that aren't blank",
     [](const Trip& trip) { return trip.Own().interleaveMode != 1; },
     "interleavePaper interleaveWidth interleaveLength"},
    {"DocumentInterleaves: the sheet of none", [](const Trip& trip) { return trip.Own().interleaveMode == 0; },
     "interleaveBin interleaveMedia"},
    {"DocumentCoverFront: trays that the model doesn't have",
     [](const Trip& trip) { return !IsTray(trip, trip.Own().frontCoverBin); }, "frontCoverBin"},
    {"PageICMRenderingIntent: none, and those that the model doesn't offer",
     [](const Trip& trip) { return !HasIntents(trip) || trip.Common().dmICMIntent == 0; }, "dmICMIntent"},
    {"PageBorderless: margins of one's own", [](const Trip& trip) { return trip.Own().marginMode == 2; }, "marginMode"},
    {"DocumentOverlay: modes that no option stands for", [](const Trip& trip) { return trip.Own().overlayMode > 6; },
     "overlayMode overlayName overlayName2"},
    {"DocumentOverlay: files that the user doesn't have",
     [](const Trip& trip) { return trip.Own().overlayMode > 1 && trip.Own().overlayName[0] == 'X'; },
     "overlayMode overlayName overlayName2"},
    {"PagePhotoPrintingIntent: the first one where there is none to choose",
     [](const Trip& trip) { return trip.printer.photoIntents.count == 0; }, "",
     [](const Trip&, VelmoraDevMode* expected) { expected->privatePart.photoIntentIndex = 0; }},
    {"PagePhotoPrintingIntent: beyond the list",
     [](const Trip& trip) {
         const size_t count = trip.printer.photoIntents.count;
         return count > 0 && trip.Own().photoIntentIndex >= count;
     },
     "photoIntentIndex"},
    {"JobDigitalSignatureProcessing: the first one where there is none to choose",
     [](const Trip& trip) { return trip.printer.signatureOptions.count == 0; }, "",
     [](const Trip&, VelmoraDevMode* expected) { expected->privatePart.signatureOptionIndex = 0; }},
    {"PageMediaColor: beyond the list",
     [](const Trip& trip) { return trip.Own().mediaColorIndex >= trip.printer.mediaColors.count; }, "mediaColorIndex"},
    {"DocumentPSHalftone: numbers behind the printer's halftone",
     [](const Trip& trip) { return trip.printer.model->pdlType == kPdlPostScript && trip.Own().extraFlag == 0; }, "",
     [](const Trip&, VelmoraDevMode* expected) {
         expected->privatePart.psHalftoneFrequency = 0;
         expected->privatePart.psHalftoneAngle = 0;
     }},
    {"DocumentPSHalftone: no frequency",
     [](const Trip& trip) { return trip.Own().extraFlag == 1 && trip.Own().psHalftoneFrequency == 0; },
     "extraFlag psHalftoneFrequency psHalftoneAngle"},
    {"DocumentPSContrast: beyond 50", [](const Trip& trip) { return std::abs(trip.Own().psContrast) > 50; },
     "psContrast"},
    {"device features: a selection behind the options",
     [](const Trip& trip) {
         return trip.printer.features.count > 0 &&
                static_cast<size_t>(trip.Own().featureSelection[0]) == trip.printer.features[0].options.count;
     },
     "featureSelection"},
    {"DocumentColorCorrection: the system's management shows in the published fields",
     [](const Trip& trip) {
         return trip.printer.colorModes.count > 0 &&
                (trip.printer.colorModes[static_cast<size_t>(trip.Own().colorModeIndex)].kind &
                 (kColorModeSystem | kColorModeManual | kColorModeHasDefaults)) == kColorModeSystem;
     },
     "",
     [](const Trip&, VelmoraDevMode* expected) {
         expected->publicPart.dmFields |= DM_ICMMETHOD;
         expected->publicPart.dmICMMethod = DMICMMETHOD_SYSTEM;
     }},
    {"DocumentOverlay: the name of one to be made becomes its description, in a file of a new name",
     [](const Trip& trip) { return trip.Own().overlayMode == 1; }, "",
     [](const Trip& trip, VelmoraDevMode* expected) {
         const DEVMODEW& common = expected->publicPart;
         PrivateDevMode& own = expected->privatePart;
         const std::string made = ",KV62.XPI," + std::to_string(common.dmPaperSize) + "," +
                                  std::to_string(common.dmOrientation) + "," + std::to_string(own.resolutionId) + "," +
                                  std::to_string(common.dmColor) + "," + ToText(own.overlayName);
         std::fill(std::begin(own.watermarkFile), std::end(own.watermarkFile), u'\0');
         std::copy(made.begin(), made.end(), own.watermarkFile);
         std::u16string(trip.printer.overlayFolder).copy(own.settingsFolder, ARRAYSIZE(own.settingsFolder) - 1);
         std::u16string(u"01000000.ovl").copy(own.overlayName, ARRAYSIZE(own.overlayName));
     }},
};

void CopyField(const std::string& name, const VelmoraDevMode& from, VelmoraDevMode* to) {
    const auto copy = [&](std::span<const FieldDescriptor> fields, const void* source, void* destination) {
        for (const FieldDescriptor& field : fields) {
            if (name == field.name) {
                memcpy(static_cast<char*>(destination) + field.offset, static_cast<const char*>(source) + field.offset,
                       static_cast<size_t>(field.stride) * field.count);
                return true;
            }
        }
        return false;
    };
    ASSERT_TRUE(copy(PublicFields(), &from.publicPart, &to->publicPart) ||
                copy(PrivateFields(), &from.privatePart, &to->privatePart))
        << name;
}

// What the ticket of a device mode gives when it is read into another. Counts the losses that make a difference.
VelmoraDevMode Expected(const Trip& trip, std::map<std::string, int>* seen) {
    VelmoraDevMode expected = trip.source;
    for (const Loss& loss : kLosses) {
        if (loss.happens(trip)) {
            const VelmoraDevMode before = expected;
            if (loss.change) {
                loss.change(trip, &expected);
            }
            std::istringstream kept(loss.kept);
            for (std::string field; kept >> field;) {
                CopyField(field, trip.base, &expected);
            }
            (*seen)[loss.name] += memcmp(&before, &expected, sizeof(before)) != 0 ? 1 : 0;
        }
    }
    return expected;
}

// --- Device modes

using Change = std::function<void(VelmoraDevMode*)>;

// The values of the fields that stand for one feature or for some that share fields.
struct Row {
    std::string feature;
    std::vector<std::pair<std::string, Change>> values;
};

Change Fields(const std::string& settings) {
    return [settings](VelmoraDevMode* devMode) { *devMode = With(*devMode, settings); };
}
Change OptionFlags(uint32_t bits, uint32_t flags) {
    return [bits, flags](VelmoraDevMode* devMode) {
        devMode->privatePart.optionFlags = (devMode->privatePart.optionFlags & ~bits) | flags;
    };
}

enum class For : uint8_t { kAll, kPostScript, kColor };

// Settings of fields, '|' between values.
struct PlainRow {
    const char* feature;
    const char* values;
    For models = For::kAll;
};
const PlainRow kPlainRows[] = {
    {"PageMediaSize",
     "dmPaperSize=256 dmPaperWidth=1234 dmPaperLength=2345|dmPaperSize=256 dmPaperWidth=2105 dmPaperLength=2965|"
     "dmPaperSize=10 dmPaperWidth=2100 dmPaperLength=2970|dmPaperWidth=2000 dmPaperLength=2000"},
    {"PageInputBin", "dmDefaultSource=1028"},
    {"DocumentDuplex", "dmDuplex=0|dmDuplex=1|dmDuplex=2|dmDuplex=3"},
    {"PageOutputColor", "dmColor=1|dmColor=2", For::kColor},
    {"JobPageOrder", "pageOrderFlags=0|pageOrderFlags=1|pageOrderFlags=64"},
    {"PageOrientation",
     "dmOrientation=1 rotate180=0|dmOrientation=2 rotate180=0|dmOrientation=1 rotate180=1|dmOrientation=2 rotate180=1"},
    {"DocumentCollate", "dmCollate=0 collateCopy=0|dmCollate=1 collateCopy=1|dmCollate=1 collateCopy=0"},
    {"copies", "dmCopies=1|dmCopies=7|dmCopies=32767"},
    {"DocumentNUp and DocumentBinding",
     "pagesPerSheet=2|pagesPerSheet=4|pagesPerSheet=6|pagesPerSheet=8|pagesPerSheet=9|pagesPerSheet=12|"
     "pagesPerSheet=16|pagesPerSheet=25|pagesPerSheet=2 nupOrder=19 gutterShiftX=60|"
     "pagesPerSheet=4 nupOrder=1|pagesPerSheet=4 nupOrder=1 gutterShiftX=60|pagesPerSheet=4 nupOrder=2 gutterShiftX=60|"
     "pagesPerSheet=4 nupOrder=3 gutterShiftY=60|pagesPerSheet=4 nupOrder=16 gutterShiftX=60|"
     "pagesPerSheet=4 nupOrder=17 gutterShiftX=60|pagesPerSheet=4 nupOrder=18 gutterShiftX=-60|"
     "pagesPerSheet=9 nupOrder=19 gutterShiftY=-60|pagesPerSheet=4 layoutMode=1 nupBorderWidth=31|"
     "pagesPerSheet=4 layoutMode=1|pagesPerSheet=6 layoutMode=3|layoutMode=1 nupBorderWidth=30|gutterShiftX=120|"
     "gutterShiftX=-121|gutterShiftY=123|gutterShiftY=-1|booklet=1|booklet=8 bookletGutter=60|"
     "booklet=4 nupOrder=1 bookletGutter=47|booklet=4 nupOrder=16|booklet=4 pagesPerSheet=4|booklet=4 gutterShiftX=60"},
    {"PagePoster", "posterMode=0|posterMode=2|posterMode=3|posterMode=4|posterMode=5"},
    {"PageScaling",
     "scaleMode=66 scaleValue=50|scaleMode=2 scaleValue=150|scaleMode=66 scaleValue=100|scaleMode=2 scaleValue=100|"
     "scaleMode=66 scaleValue=500|scaleMode=1 scaleValue=-1|scaleMode=1024 scaleValue=9"},
    {"DocumentCoverFront",
     "frontCoverMode=0 frontCoverMedia=2 frontCoverPaper=9 frontCoverBothSides=0|frontCoverMode=1 frontCoverPaper=-1|"
     "frontCoverMode=1 frontCoverBin=1025 frontCoverPaper=-1|frontCoverMode=2 frontCoverBothSides=1 frontCoverPaper=9"
     " frontCoverWidth=2100 frontCoverLength=2970|frontCoverMode=2 frontCoverBothSides=0"},
    {"DocumentCoverBack",
     "backCoverMode=0 backCoverMedia=2 backCoverPaper=9 backCoverBothSides=0|backCoverMode=1 backCoverPaper=-1|"
     "backCoverMode=2 backCoverBothSides=1 backCoverPaper=9 backCoverWidth=2100 backCoverLength=2970|"
     "backCoverMode=2 backCoverBothSides=0"},
    {"DocumentInterleaves",
     "interleaveMode=0 interleaveMedia=2 interleavePaper=9|interleaveMode=1 interleavePaper=-1|"
     "interleaveMode=2 interleavePaper=9 interleaveWidth=2100 interleaveLength=2970"},
    {"PageICMRenderingIntent", "dmICMIntent=0|dmICMIntent=1|dmICMIntent=2|dmICMIntent=3|dmICMIntent=4"},
    {"PageTrueTypeFontMode", "trueTypeMode=0|trueTypeMode=32767"},
    {"PageBorderless", "marginMode=0|marginMode=1|marginMode=2"},
    {"PageBlackText", "blackText=0|blackText=1"},
    {"DocumentSeparatorSheet", "separatorSheet=0|separatorSheet=1|separatorSheet=2|separatorSheet=3"},
    {"PageMediaColor", "mediaColorIndex=1|mediaColorIndex=9"},
    {"PagePhotoPrintingIntent", "photoIntentIndex=1|photoIntentIndex=9"},
    {"JobDigitalSignatureProcessing", "signatureOptionIndex=1"},
    {"DocumentPSHalftone",
     "extraFlag=1 psHalftoneFrequency=1 psHalftoneAngle=0|extraFlag=1 psHalftoneFrequency=6000 psHalftoneAngle=3600|"
     "extraFlag=0 psHalftoneFrequency=600 psHalftoneAngle=450|extraFlag=1 psHalftoneFrequency=0 psHalftoneAngle=450",
     For::kPostScript},
    {"DocumentPSContrast and DocumentPSBrightness",
     "psContrast=-50 psBrightness=50|psContrast=50 psBrightness=-50|psContrast=51|psContrast=-100 psBrightness=1",
     For::kPostScript},
};

// Bits of optionFlags.
struct FlagRow {
    const char* feature;
    uint32_t bits;
    std::vector<uint32_t> values;
    For models = For::kAll;
};
const FlagRow kFlagRows[] = {
    {"PageMirrorImage", 8, {0, 8}},
    {"PageNegativeImage", 16, {0, 16}},
    {"DocumentPSFormat", 896, {0, 128, 256, 512}, For::kPostScript},
    {"DocumentPSControlD", 96, {0, 32, 64, 96}, For::kPostScript},
    {"DocumentPSErrorPage", 4, {0, 4}, For::kPostScript},
    {"DocumentPSImageCompression", 1, {0, 1}, For::kPostScript},
};

// Texts with every other field of a watermark.
struct WatermarkValue {
    const char16_t* text;
    const char16_t* font;
    const char* fields;
};
const WatermarkValue kWatermarks[] = {
    {u"", u"", "watermarkFlags=0"},
    {u"Secret", u"Courier New", "watermarkFlags=1 watermarkColor=0x123456 watermarkFontSize=72"},
    {u"\x5D0\x5D1", u"", "watermarkFlags=1 watermarkFontSize=1 watermarkPages=1"},
    {u"A", u"Arial", "watermarkFlags=5 watermarkFontSize=300 watermarkPages=2 watermarkPosition=1 watermarkBold=1"},
    {u"<&>", u"F", "watermarkFlags=17 watermarkAngle=3590 watermarkFontSize=9 watermarkPosition=9 watermarkItalic=1"},
    {u"B", u"F", "watermarkFlags=21 watermarkAngle=455 watermarkFontSize=9 watermarkPosition=4 watermarkOffsetX=60"},
    {u"C", u"F", "watermarkFlags=1 watermarkAngle=-100 watermarkFontSize=9 watermarkOffsetX=-61 watermarkOffsetY=47"},
    {u"C:\\picture", u"", "watermarkFlags=2 watermarkPosition=1"},
    {u"C:\\rendered", u"", "watermarkFlags=36 watermarkIndex=3 watermarkFontSize=72 watermarkAngle=450"},
};

template <size_t n>
void SetText(const std::u16string& text, WCHAR (&field)[n]) {
    std::fill(std::begin(field), std::end(field), u'\0');
    text.copy(field, n - 1);
}

bool Suits(For models, const DeviceModel& model) {
    switch (models) {
        case For::kPostScript:
            return model.pdlType == kPdlPostScript;
        case For::kColor:
            return model.colorCapability == kColor;
        default:
            return true;
    }
}

// Every value that the tickets of a printer tell apart, and some that they don't.
std::vector<Row> RowsOf(const PrinterSnapshot& printer) {
    const DeviceModel& model = *printer.model;
    std::vector<Row> rows;
    for (const PlainRow& plain : kPlainRows) {
        if (Suits(plain.models, model)) {
            Row row = {plain.feature, {}};
            std::istringstream values(plain.values);
            for (std::string value; std::getline(values, value, '|');) {
                row.values.emplace_back(value, Fields(value));
            }
            rows.push_back(std::move(row));
        }
    }
    const auto add = [&rows](const char* feature, const std::string& name, const Change& change) {
        const auto row = std::ranges::find(rows, feature, &Row::feature);
        if (row != rows.end()) {
            row->values.emplace_back(name, change);
        } else {
            rows.push_back({feature, {{name, change}}});
        }
    };
    const auto number = [](int64_t value) { return std::to_string(value); };

    for (const FlagRow& flags : kFlagRows) {
        for (const uint32_t value : Suits(flags.models, model) ? flags.values : std::vector<uint32_t>()) {
            add(flags.feature, number(value), OptionFlags(flags.bits, value));
        }
    }
    for (const PaperEntry& paper : printer.papers) {
        const std::string width = number(paper.width / 100);
        const std::string length = number(paper.length / 100);
        const std::string id = number(paper.paperId);
        const auto set = [&](const char* feature, const std::string& settings) {
            add(feature, settings, Fields(settings));
        };
        const auto sheet = [&](const std::string& prefix, const char* feature) {
            set(feature, prefix + "Mode=1 " + prefix + "Paper=" + id + " " + prefix + "Width=" + width + " " + prefix +
                             "Length=" + length);
        };
        set("PageMediaSize", "dmPaperSize=" + id + " dmPaperWidth=" + width + " dmPaperLength=" + length);
        constexpr uint16_t kFits[] = {kScaleFitCentred, kScaleFitTopLeft, kScaleCustomCentred, kScaleCustomTopLeft};
        const uint16_t fit = kFits[(&paper - printer.papers.begin()) % std::ssize(kFits)];
        set("PageScaling",
            "scaleMode=" + number(fit) + " scaleValue=" + id + " scaleWidth=" + width + " scaleLength=" + length);
        sheet("frontCover", "DocumentCoverFront");
        sheet("backCover", "DocumentCoverBack");
        sheet("interleave", "DocumentInterleaves");
    }
    for (const MediaEntry& media : printer.media) {
        const std::string index = number(media.index);
        add("PageMediaType", index, Fields("mediaIndex=" + index));
        add("DocumentCoverFront", index, Fields("frontCoverMode=2 frontCoverMedia=" + index));
        add("DocumentCoverBack", index, Fields("backCoverMode=2 backCoverMedia=" + index));
        add("DocumentInterleaves", index, Fields("interleaveMode=2 interleaveMedia=" + index));
    }
    for (const TrayEntry& tray : printer.trays) {
        const std::string bin = number(tray.binId);
        add("PageInputBin", bin, Fields("dmDefaultSource=" + bin));
        add("DocumentCoverFront", bin, Fields("frontCoverMode=2 frontCoverBin=" + bin));
        add("DocumentCoverBack", bin, Fields("backCoverMode=2 backCoverBin=" + bin));
        add("DocumentInterleaves", bin, Fields("interleaveMode=2 interleaveBin=" + bin));
    }
    for (size_t i = 0; i < printer.resolutions.count; ++i) {
        const ResolutionEntry& entry = printer.resolutions[i];
        const std::string dpi = "dmPrintQuality=" + number(entry.xDpi) + " dmYResolution=" + number(entry.yDpi);
        const std::string index = dpi + " resolutionIndex=" + number(static_cast<int64_t>(i));
        add("PageResolution", index, Fields(index + " resolutionId=" + number(entry.resolutionId)));
        add("PageResolution", dpi, Fields(dpi));
    }
    if (model.fontCount > 0) {
        add("PageDeviceFontSubstitution", "on", Fields("fontRecordCount=" + number(model.fontCount)));
        add("PageDeviceFontSubstitution", "off", Fields("fontRecordCount=0"));
    }
    for (const WatermarkValue& value : kWatermarks) {
        add("PageWatermark", value.fields, [value](VelmoraDevMode* devMode) {
            *devMode = With(*devMode, value.fields);
            SetText(value.text, devMode->privatePart.watermarkText);
            SetText(value.font, devMode->privatePart.watermarkFont);
        });
    }
    for (const uint16_t mode : {0, 1, 2, 4, 5, 6, 9}) {
        for (const char16_t* const name : {u"ONE.ovl", u"XXX.ovl"}) {
            add("DocumentOverlay", number(mode), [mode, name](VelmoraDevMode* devMode) {
                devMode->privatePart.overlayMode = mode;
                if (mode != 0) {
                    SetText(name, devMode->privatePart.overlayName);
                }
                if (mode == 5 || mode == 6) {
                    SetText(u"TWO.ovl", devMode->privatePart.overlayName2);
                }
            });
        }
    }
    for (size_t i = 0; i < printer.features.count; ++i) {
        const EntryRange& options = printer.features[i].options;
        for (size_t j = 0; j < options.count + (i == 0 ? 1 : 0); ++j) {
            add("device features", number(static_cast<int64_t>(i)) + "=" + number(static_cast<int64_t>(j)),
                [i, j](VelmoraDevMode* devMode) {
                    devMode->privatePart.featureSelection[i] = static_cast<int16_t>(j);
                });
        }
    }
    for (size_t i = 0; i < printer.colorModes.count; ++i) {
        const auto select = [&model, i](VelmoraDevMode* devMode) {
            devMode->privatePart.colorModeIndex = static_cast<int16_t>(i);
            ApplyColorModeSelections(model, static_cast<uint16_t>(i), &devMode->privatePart);
        };
        const std::string name = "preset " + number(static_cast<int64_t>(i));
        if ((printer.colorModes[i].kind & (kColorModeManual | kColorModeHasDefaults)) == 0) {
            add("DocumentColorCorrection", name, Fields("colorModeIndex=" + number(static_cast<int64_t>(i))));
            continue;
        }
        add("DocumentColorCorrection", name, select);
        for (size_t g = 0; g < ARRAYSIZE(kColorGroups) && (printer.colorModes[i].kind & kColorModeManual) != 0; ++g) {
            for (size_t k = 0; k < printer.colorFeatures[g].count; ++k) {
                const auto last = static_cast<int16_t>(printer.colorFeatures[g][k].values.count - 1);
                add("DocumentColorCorrection", name + " by hand",
                    [&model, select, g, k, last](VelmoraDevMode* devMode) {
                        select(devMode);
                        SetColorSelection(&devMode->privatePart, kColorGroups[g], k, last);
                        CompileColorSelections(model, &devMode->privatePart);
                    });
            }
        }
    }
    return rows;
}

// Device modes that hold every value of every row once, each row's beginning anew at its end, and then mixtures.
TEST(RoundTrips, KeepEveryMappedFieldBesidesTheNamedLosses) {
    constexpr size_t kMixtures = 25;
    std::map<std::string, int> seen;
    for (const auto& path : CompiledModels()) {
        SCOPED_TRACE(path.filename());
        host::Machine machine;
        {
            const TicketPrinter printer(PackageOfModel(path));
            const std::vector<Row> rows = RowsOf(printer.Snapshot());
            const size_t most =
                std::ranges::max(rows, {}, [](const Row& row) { return row.values.size(); }).values.size();
            std::mt19937 random(20240229);
            for (size_t i = 0; i < most + kMixtures; ++i) {
                VelmoraDevMode source = printer.Default();
                std::string names;
                for (const Row& row : rows) {
                    const auto& [name, change] = row.values[(i < most ? i : random()) % row.values.size()];
                    change(&source);
                    names += row.feature + ": " + name + "\n";
                }
                SCOPED_TRACE(names);
                const auto ticket = printer.Write(source);
                for (const VelmoraDevMode* const base :
                     {static_cast<const VelmoraDevMode*>(&source), &printer.Default()}) {
                    const Trip trip = {printer.Snapshot(), source, *base};
                    EXPECT_EQ(ValueDifferences(Expected(trip, &seen), printer.Read(ticket, *base)), "")
                        << (base == &source ? "into itself" : "into the default");
                }
            }
        }
        EXPECT_EQ(host::StillOpen(), Texts());
    }
    for (const Loss& loss : kLosses) {
        EXPECT_GT(seen[loss.name], 0) << "nothing is lost by: " << loss.name;
    }
}

}  // namespace
}  // namespace velmora
