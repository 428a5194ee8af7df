#include "tools/velmora/feature_report.h"

#include <cstring>
#include <memory>
#include <span>
#include <stdexcept>
#include <string_view>

#include "driver/ptprovider/feature_table.h"
#include "platform/kernel/text.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_values.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

// What features with code of their own stand for.
struct OwnFeature {
    const char16_t* name;  // of its row, the first
    const char* meaning;
};
constexpr OwnFeature kOwnFeatures[] = {
    {u"PageMediaSize", "paper, the model's or one of the user's sizes: dmPaperSize, or the paper that is scaled to"},
    {u"PageMediaType", "medium: mediaIndex"},
    {u"PageMediaColor", "the model's list of media colours: mediaColorIndex"},
    {u"PageInputBin", "tray: dmDefaultSource"},
    {u"PageResolution", "resolution: resolutionIndex, and what counts its dots"},
    {u"JobDuplexAllDocumentsContiguously", "printing on both sides: dmDuplex"},
    {u"PageOutputColor", "colour or monochrome: dmColor"},
    {u"DocumentNUp", "pages on a sheet: pagesPerSheet, their order and borders"},
    {u"PagePoster", "sheets of a poster: posterMode"},
    {u"PageWatermark", "watermark, a text: watermarkFlags and its neighbours"},
    {u"PageScaling", "scale: scaleMode and its neighbours"},
    {u"DocumentCoverFront", "front cover with paper, medium and tray: frontCoverMode and its neighbours"},
    {u"DocumentCoverBack", "back cover, likewise: backCoverMode and its neighbours"},
    {u"DocumentBinding", "binding edge, gutter and booklet: gutterShiftX, gutterShiftY, booklet"},
    {u"DocumentOverlay", "overlay, one of the user's files: overlayMode, overlayName"},
    {u"DocumentInterleaves", "interleaved sheets with paper, medium and tray: interleaveMode and its neighbours"},
    {u"PagePhotoPrintingIntent", "the model's list of photo intents: photoIntentIndex"},
    {u"JobDigitalSignatureProcessing", "the model's list of signature options: signatureOptionIndex"},
    {u"DocumentPSHalftone", "the user's own halftone: extraFlag, psHalftoneFrequency, psHalftoneAngle"},
    {u"DocumentColorCorrection", "the model's colour mode and its colour features: colorModeIndex"},
};

// What a printer may have that features need, each put into a snapshot of a printer that has nothing.
struct PrinterFact {
    const char* words;
    void (*give)(PrinterSnapshot* printer);
};
constexpr PrinterFact kPrinterFacts[] = {
    {"models with fonts", [](PrinterSnapshot* printer) { printer->model->fontCount = 1; }},
    {"models with rendering intents", [](PrinterSnapshot* printer) { printer->model->icmIntentFlags = 1; }},
    {"PostScript models", [](PrinterSnapshot* printer) { printer->model->pdlType = kPdlPostScript; }},
    {"printers with borderless printing installed",
     [](PrinterSnapshot* printer) { printer->installed.optionFlags = kBorderlessInstalled; }},
    {"writers of XPS documents", [](PrinterSnapshot* printer) { printer->isXpsWriter = true; }},
};

std::unique_ptr<PrinterSnapshot> MakeBarePrinter() {
    auto printer = std::make_unique<PrinterSnapshot>();
    printer->model = HeapOwner<DeviceModel>::Allocate();
    if (!printer->model) {
        throw std::bad_alloc();
    }
    return printer;
}

std::string PrefixedName(const Keyword& keyword) {
    const struct {
        std::u16string_view uri;
        const char* prefix;
    } prefixes[] = {{kKeywordsNamespace, "psk:"},
                    {kPrivateNamespace, "kxp:"},
                    {kOemNamespace, "oem:"},
                    {kXpsWriterNamespace, "xps:"}};
    for (const auto& known : prefixes) {
        if (known.uri == keyword.uri) {
            return known.prefix + host::ToUtf8(keyword.name);
        }
    }
    throw std::logic_error("a feature's namespace has no prefix in tools/velmora/feature_report.cpp: " +
                           host::ToUtf8(keyword.name));
}

std::string NameOf(const FeatureRow& row) {
    return PrefixedName(row.names[row.name]);
}

// The names under which tickets have it beside the one of print capabilities.
std::string OtherNames(const FeatureRow& row) {
    std::string names;
    for (size_t i = 0; i < kFeatureNames && row.names[i].name; ++i) {
        if (i != row.name) {
            names +=
                (names.empty() ? "" : ", ") + PrefixedName(row.names[i]) + (i == row.ticketName ? " (written)" : "");
        }
    }
    return names;
}

// A device mode whose every byte is `filling`, with the setting of a plain feature in it.
VelmoraDevMode WithSetting(const PlainFeature& plain, const PrinterSnapshot& printer, uint32_t value, int filling) {
    VelmoraDevMode devMode;
    memset(&devMode, filling, sizeof(devMode));
    if (plain.set) {
        plain.set(&devMode, printer, value);
    } else {
        WriteSetting(&devMode, plain.field, value);
    }
    return devMode;
}

// The fields that hold a plain feature's setting: those that storing any of its options touches.
std::string SettingOf(const PlainFeature& plain, const PrinterSnapshot& printer) {
    std::string names;
    for (const DevModePart& part : DevModeParts()) {
        for (const FieldDescriptor& field : part.fields) {
            bool isTouched = false;
            for (const PlainOption& option : plain.options) {
                for (const int filling : {0, 0xFF}) {
                    const VelmoraDevMode devMode = WithSetting(plain, printer, option.value, filling);
                    const BYTE* const bytes = part.In(devMode) + field.offset;
                    for (size_t i = 0; i < field.width; ++i) {
                        isTouched = isTouched || bytes[i] != filling;
                    }
                }
            }
            if (isTouched) {
                names += (names.empty() ? "" : ", ") + std::string(field.name);
            }
        }
    }
    return plain.field.mask == UINT32_MAX ? names : names + " & " + HexNumber(plain.field.mask);
}

std::string OptionsOf(const PlainFeature& plain) {
    std::string options;
    for (const PlainOption& option : plain.options) {
        options += (options.empty() ? "" : ", ") + host::ToUtf8(option.name);
        // Where the setting is no field, the values are the code's own.
        options += plain.set ? "" : " " + std::to_string(option.value);
        options += option.isOnlyRead ? " (only read)" : "";
    }
    return options;
}

// Who has the feature, and which device modes say something of it.
std::string GateOf(const FeatureRow& row) {
    const PlainFeature& plain = row.plain;
    std::string gate;
    if (plain.isOffered) {
        for (const PrinterFact& fact : kPrinterFacts) {
            const auto printer = MakeBarePrinter();
            if (plain.isOffered(*printer)) {
                break;
            }
            fact.give(printer.get());
            if (plain.isOffered(*printer)) {
                gate = fact.words;
                break;
            }
        }
        if (gate.empty()) {
            throw std::logic_error(
                "kPrinterFacts of tools/velmora/feature_report.cpp has nothing that opens the gate of " + NameOf(row));
        }
        gate += plain.isReadAnyway ? "; read of all" : "";
    }
    if (plain.neededField != 0) {
        const std::string bits = NameFieldBits(plain.neededField);  // the number, then the names
        gate += (gate.empty() ? "" : "; ") + std::string("device modes with") + bits.substr(bits.find(' '));
    }
    return gate;
}

const char* MeaningOf(const FeatureRow& row) {
    for (const OwnFeature& feature : kOwnFeatures) {
        if (std::u16string_view(feature.name) == row.names[0].name) {
            return feature.meaning;
        }
    }
    throw std::logic_error("kOwnFeatures of tools/velmora/feature_report.cpp has no words for " + NameOf(row));
}

constexpr const char* kIntroduction = R"(# Print tickets

`driver/ptprovider` converts between device modes, print tickets and print capabilities. One table, `FeatureTable`
(`feature_table.cpp`), names the features that tickets share with the device mode, in the order in which they are written and
read; all conversions walk it. A plain feature, whose options each stand for one value of one setting, is a row and no more;
others have a function that writes and one that reads them. Copies, exceptions, the model's own features, the printable area
and the lists of commands lie outside of it: [architecture.md](architecture.md) names the files.

See a printer's with `velmora printcaps`, `ticket`, `validate` and `devmode --ticket`. Prefixes here: `psk` the published
keywords, `kxp` the driver's own, `oem` the namespace that models have unless they name another, `xps` the system's writer
of XPS documents.

## To add a plain feature

1. Its setting is a field of the device mode: [the steps](architecture.md#to-add-a-field) where there is none yet.
2. In `feature_table.cpp`: its options, `constexpr PlainOption k…[] = {{TEXT("Off"), 0}, …}`, and a row where it should stand
   in documents, `Plain(PrivateKeyword(TEXT("JobQuietMode")), {.displayName = …, .field = PRIVATE_SETTING(quietMode),
   .options = k…})`. `feature_row.h` says what else a row can say: other names for other scopes, a setting that is no field
   (`get`, `set`), a gate on the printer. `kFeatureCount` (`feature_table.h`) counts the rows.
3. Display names, where it has any, are strings of all language modules (`resources/KV62*.rc`).
4. A row `{"JobQuietMode", "quietMode=0|quietMode=1"}` in the table of `tests/driver/ptprovider_round_trip_test.cpp`, by which each
   option is read from a ticket and written again, and the name at its place in `Conversions.ListInTheOrderOfTheTable`. A published
   keyword also stands in the tables of `tests/print_schema/`.
5. `./dev docs` writes this page anew. A gate of a new kind gets its words in `tools/velmora/feature_report.cpp`.
6. `./dev test driver 'Conversions.*:RoundTrips.*:LanguageModules.*'`, `./dev test 'Docs|contract'`, and a look: `./dev velmora
   printcaps "Velmora C3200"`.

A feature that is more is a row with a function to write and one to read, in the file of its kind, and has its words in
`feature_report.cpp`. Reading never fails: what a ticket lacks or says otherwise leaves the device mode as it is.

Tickets may have a feature under any of its names, one for each scope; *written* is the one that a device mode's ticket gets,
where it isn't that of the print capabilities. This page is generated from the table (`./dev docs`).
)";

}  // namespace

std::vector<Table> ReportFeatures() {
    Table plain = {"Plain features",
                   "plain",
                   {{"Feature", "feature"},
                    {"Other names", "otherNames"},
                    {"Options", "options"},
                    {"Setting", "setting"},
                    {"Only for", "gate"}}};
    Table own = {"Features with code of their own",
                 "own",
                 {{"Feature", "feature"}, {"Other names", "otherNames"}, {"What it stands for", "meaning"}}};
    const auto printer = MakeBarePrinter();
    printer->model->fontCount = 1;
    for (const FeatureRow& row : std::span(FeatureTable, kFeatureCount)) {
        if (row.write == WritePlainFeature) {
            plain.rows.push_back({TextCell(NameOf(row)), TextCell(OtherNames(row)), TextCell(OptionsOf(row.plain)),
                                  TextCell(SettingOf(row.plain, *printer)), TextCell(GateOf(row))});
        } else {
            own.rows.push_back({TextCell(NameOf(row)), TextCell(OtherNames(row)), TextCell(MeaningOf(row))});
        }
    }
    return {plain, own};
}

std::string MakeFeaturePage() {
    std::string page = kIntroduction;
    for (const Table& table : ReportFeatures()) {
        page += "\n" + FormatMarkdown(table);
    }
    return page;
}

}  // namespace velmora
