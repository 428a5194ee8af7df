// Device modes through print tickets and back, on every model of the project: what tickets carry of them comes back as
// it was. What they lose is told by the conversions' tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "driver/devmode/color_groups.h"
#include "driver/devmode/color_preset.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"
#include "tests/driver/project_models.h"
#include "tests/driver/ticket_printer.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

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

// The models that have a feature.
enum class For : uint8_t { kAll, kPostScript, kColor, kRaster, kDuplex, kCustomSizes, kIntents };

// Settings of fields, '|' between values. Dots are multiples of 60, which are whole micrometres at every resolution.
struct PlainRow {
    const char* feature;
    const char* values;
    For models = For::kAll;
};
const PlainRow kPlainRows[] = {
    {"PageMediaSize and PageScaling", "dmPaperSize=256 dmPaperWidth=1234 dmPaperLength=2345", For::kCustomSizes},
    {"PageMediaSize and PageScaling",
     "scaleMode=66 scaleValue=50|scaleMode=2 scaleValue=150|scaleMode=66 scaleValue=500"},
    {"DocumentDuplex", "dmDuplex=1|dmDuplex=2|dmDuplex=3", For::kDuplex},
    {"PageOutputColor", "dmColor=1|dmColor=2", For::kColor},
    {"JobPageOrder", "pageOrderFlags=0|pageOrderFlags=1"},
    {"PageOrientation",
     "dmOrientation=1 rotate180=0|dmOrientation=2 rotate180=0|dmOrientation=1 rotate180=1|dmOrientation=2 rotate180=1"},
    {"DocumentCollate", "dmCollate=0 collateCopy=0|dmCollate=1 collateCopy=1"},
    {"copies", "dmCopies=1|dmCopies=7|dmCopies=32767"},
    {"DocumentNUp and DocumentBinding",
     "pagesPerSheet=2|pagesPerSheet=4|pagesPerSheet=6|pagesPerSheet=8|pagesPerSheet=9|pagesPerSheet=16|"
     "pagesPerSheet=2 nupOrder=1 gutterShiftX=60|pagesPerSheet=4 nupOrder=1 gutterShiftX=60|"
     "pagesPerSheet=4 nupOrder=2 gutterShiftX=60|pagesPerSheet=4 nupOrder=3 gutterShiftY=60|"
     "pagesPerSheet=4 nupOrder=16 gutterShiftX=60|pagesPerSheet=4 nupOrder=17 gutterShiftX=60|"
     "pagesPerSheet=4 nupOrder=18 gutterShiftX=60|pagesPerSheet=9 nupOrder=19 gutterShiftY=60|"
     "pagesPerSheet=4 layoutMode=1 nupBorderWidth=60|pagesPerSheet=4 layoutMode=1|gutterShiftX=120|gutterShiftY=60|"
     "booklet=1|booklet=8 bookletGutter=60|booklet=4 nupOrder=1 bookletGutter=60|booklet=4 pagesPerSheet=4"},
    {"DocumentNUp and DocumentBinding", "pagesPerSheet=12|pagesPerSheet=25", For::kRaster},
    {"PagePoster", "posterMode=0|posterMode=2|posterMode=3|posterMode=4|posterMode=5"},
    {"DocumentCoverFront",
     "frontCoverMode=0|frontCoverMode=1 frontCoverPaper=-1|frontCoverMode=2 frontCoverBothSides=1|"
     "frontCoverMode=2 frontCoverBothSides=0"},
    {"DocumentCoverBack",
     "backCoverMode=0|backCoverMode=1 backCoverPaper=-1|backCoverMode=2 backCoverBothSides=1|"
     "backCoverMode=2 backCoverBothSides=0"},
    {"DocumentInterleaves", "interleaveMode=0|interleaveMode=1 interleavePaper=-1|interleaveMode=2"},
    {"PageICMRenderingIntent", "dmICMIntent=1|dmICMIntent=2|dmICMIntent=3|dmICMIntent=4", For::kIntents},
    {"PageTrueTypeFontMode", "trueTypeMode=0|trueTypeMode=32767"},
    {"PageBorderless", "marginMode=0|marginMode=1"},
    {"PageBlackText", "blackText=0|blackText=1"},
    {"DocumentSeparatorSheet", "separatorSheet=0|separatorSheet=1|separatorSheet=2|separatorSheet=3"},
    {"DocumentPSHalftone",
     "extraFlag=1 psHalftoneFrequency=1 psHalftoneAngle=0|extraFlag=1 psHalftoneFrequency=6000 psHalftoneAngle=3600|"
     "extraFlag=0 psHalftoneFrequency=0 psHalftoneAngle=0",
     For::kPostScript},
    {"DocumentPSContrast and DocumentPSBrightness", "psContrast=-50 psBrightness=50|psContrast=50 psBrightness=-50",
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
    {u"\x5D0\x5D1", u"F", "watermarkFlags=1 watermarkFontSize=1 watermarkPages=1"},
    {u"A", u"Arial", "watermarkFlags=5 watermarkFontSize=300 watermarkPosition=1 watermarkBold=1"},
    {u"<&>", u"F", "watermarkFlags=17 watermarkAngle=3590 watermarkFontSize=9 watermarkPosition=9 watermarkItalic=1"},
    {u"B", u"F", "watermarkFlags=21 watermarkAngle=450 watermarkFontSize=9 watermarkPosition=4 watermarkOffsetX=60"},
    {u"C", u"F", "watermarkFlags=1 watermarkFontSize=9 watermarkOffsetX=-60 watermarkOffsetY=120"},
};

template <size_t n>
void SetText(const std::u16string& text, WCHAR (&field)[n]) {
    std::fill(std::begin(field), std::end(field), u'\0');
    text.copy(field, n - 1);
}

bool Suits(For models, const PrinterSnapshot& printer) {
    const DeviceModel& model = *printer.model;
    switch (models) {
        case For::kPostScript:
            return model.pdlType == kPdlPostScript;
        case For::kColor:
            return model.colorCapability == kColor;
        case For::kRaster:
            return model.pdlType == kPdlImage || model.pdlType == kPdlXps;
        case For::kDuplex:
            return (printer.installed.optionFlags & kDuplexInstalled) != 0;
        case For::kCustomSizes:
            return model.customMaxWidth > 0;
        case For::kIntents:
            return (model.icmIntentFlags & 1) != 0;
        default:
            return true;
    }
}

// Every value that the tickets of a printer tell apart.
std::vector<Row> RowsOf(const PrinterSnapshot& printer) {
    const DeviceModel& model = *printer.model;
    std::vector<Row> rows;
    const auto add = [&rows](const char* feature, const std::string& name, const Change& change) {
        const auto row = std::ranges::find(rows, feature, &Row::feature);
        if (row != rows.end()) {
            row->values.emplace_back(name, change);
        } else {
            rows.push_back({feature, {{name, change}}});
        }
    };
    const auto number = [](int64_t value) { return std::to_string(value); };

    for (const PlainRow& plain : kPlainRows) {
        std::istringstream values(Suits(plain.models, printer) ? plain.values : "");
        for (std::string value; std::getline(values, value, '|');) {
            add(plain.feature, value, Fields(value));
        }
    }
    for (const FlagRow& flags : kFlagRows) {
        for (const uint32_t value : Suits(flags.models, printer) ? flags.values : std::vector<uint32_t>()) {
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
        const char* const page = "PageMediaSize and PageScaling";
        set(page, "dmPaperSize=" + id + " dmPaperWidth=" + width + " dmPaperLength=" + length);
        constexpr uint16_t kFits[] = {kScaleFitCentred, kScaleFitTopLeft, kScaleCustomCentred, kScaleCustomTopLeft};
        const uint16_t fit = kFits[(&paper - printer.papers.begin()) % std::ssize(kFits)];
        // The document's paper is the one before.
        set(page, "scaleMode=" + number(fit) + " scaleValue=" + id + " scaleWidth=" + width + " scaleLength=" + length);
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
    for (const uint16_t mode : {0, 2, 4, 5, 6}) {
        add("DocumentOverlay", number(mode), [mode](VelmoraDevMode* devMode) {
            devMode->privatePart.overlayMode = mode;
            if (mode != 0) {
                SetText(u"ONE.ovl", devMode->privatePart.overlayName);
            }
            if (mode == 5 || mode == 6) {
                SetText(u"TWO.ovl", devMode->privatePart.overlayName2);
            }
        });
    }
    const auto addEntries = [&](const char* feature, const std::string& field, const EntryList<KeywordEntry>& list) {
        for (size_t i = 0; i < list.count; ++i) {
            const std::string value = field + "=" + number(static_cast<int64_t>(i));
            add(feature, value, Fields(value));
        }
    };
    addEntries("PageMediaColor", "mediaColorIndex", printer.mediaColors);
    addEntries("PagePhotoPrintingIntent", "photoIntentIndex", printer.photoIntents);
    addEntries("JobDigitalSignatureProcessing", "signatureOptionIndex", printer.signatureOptions);
    for (size_t i = 0; i < printer.features.count; ++i) {
        const EntryRange& options = printer.features[i].options;
        for (size_t j = 0; j < options.count; ++j) {
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
            // The system's management shows in the published fields, too.
            const char* const method = (printer.colorModes[i].kind & kColorModeSystem) != 0 ? " dmICMMethod=2" : "";
            add("DocumentColorCorrection", name, Fields("colorModeIndex=" + number(static_cast<int64_t>(i)) + method));
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
TEST(RoundTrips, KeepWhatTicketsCarry) {
    constexpr size_t kMixtures = 25;
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
                EXPECT_EQ(ValueDifferences(source, printer.Read(ticket, source)), "") << "into itself";
                EXPECT_EQ(ValueDifferences(source, printer.Read(ticket, printer.Default())), "") << "into the default";
            }
        }
        EXPECT_EQ(host::StillOpen(), Texts());
    }
}

}  // namespace
}  // namespace velmora
