// What print tickets say and device modes hold, case by case: reading, writing, completing, listing.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "driver/base/text.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"
#include "tests/driver/ticket_printer.h"
#include "tests/print_schema/print_schema_checker.h"
#include "tests/print_schema/xml_tree.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// --- Pieces of tickets

std::string Option(const std::string& name, const std::string& content = "") {
    return "<psf:Option" + (name.empty() ? "" : " name='" + name + "'") + ">" + content + "</psf:Option>";
}
std::string Feature(const std::string& name, const std::string& content) {
    return "<psf:Feature name='" + name + "'>" + content + "</psf:Feature>";
}
std::string Choice(const std::string& feature, const std::string& option) {
    return Feature(feature, Option(option));
}
std::string Value(const std::string& value) {
    return "<psf:Value>" + value + "</psf:Value>";
}
std::string Scored(const std::string& name, const std::string& value) {
    return "<psf:ScoredProperty name='" + name + "'>" + Value(value) + "</psf:ScoredProperty>";
}
std::string Init(const std::string& name, const std::string& value) {
    return "<psf:ParameterInit name='" + name + "'>" + Value(value) + "</psf:ParameterInit>";
}
std::string Reference(const std::string& name, const std::string& parameter) {
    return "<psf:ScoredProperty name='" + name + "'><psf:ParameterRef name='" + parameter + "'/></psf:ScoredProperty>";
}

std::string Paper(const std::string& option, const std::string& width, const std::string& length) {
    return Feature("psk:PageMediaSize",
                   Option(option, Scored("psk:MediaSizeWidth", width) + Scored("psk:MediaSizeHeight", length)));
}
std::string CustomPaper(const std::string& parameters) {
    return Feature("psk:PageMediaSize",
                   Option("psk:CustomMediaSize",
                          Reference("psk:MediaSizeWidth", "psk:PageMediaSizeMediaSizeWidth") +
                              Reference("psk:MediaSizeHeight", "psk:PageMediaSizeMediaSizeHeight"))) +
           parameters;
}
std::string NUp(const std::string& count, const std::string& more = "") {
    return Feature("psk:DocumentNUp", Option("", Scored("psk:PagesPerSheet", count)) + more);
}
std::string Scaling(const std::string& option, const std::string& scale, const std::string& alignment = "") {
    return Feature("psk:PageScaling", Option("psk:" + option, Reference("psk:Scale", "psk:PageScalingScale")) +
                                          (alignment.empty() ? "" : Choice("psk:ScaleOffsetAlignment", alignment))) +
           Init("psk:PageScalingScale", scale);
}
std::string Binding(const std::string& option, const std::string& gutter, const std::string& more = "") {
    return Feature("psk:DocumentBinding",
                   Option(option, Reference("psk:BindingGutter", "psk:DocumentBindingGutter") +
                                      Reference("kxp:SignaturePages", "kxp:DocumentBookletSignaturePages"))) +
           Init("psk:DocumentBindingGutter", gutter) + more;
}
// A whole watermark, the parameters with these values, but the one of the name `without`.
std::string Watermark(const std::string& without, const std::string& font = "Courier", const std::string& size = "72",
                      const std::string& angle = "30", const std::string& option = "psk:Text") {
    const struct {
        const char* property;
        std::string parameter;
        std::string value;
    } rows[] = {{"psk:Text", "psk:PageWatermarkTextText", "Draft"},
                {"kxp:Font", "kxp:PageWatermarkTextFont", font},
                {"psk:FontSize", "psk:PageWatermarkTextFontSize", size},
                {"psk:Angle", "psk:PageWatermarkTextAngle", angle},
                {"kxp:Outline", "kxp:PageWatermarkTextOutline", "1"},
                {"kxp:Bold", "kxp:PageWatermarkTextBold", "7"},
                {"kxp:Italic", "kxp:PageWatermarkTextItalic", "0"},
                {"psk:FontColor", "psk:PageWatermarkTextColor", "-65536"}};
    std::string properties;
    std::string parameters = Init("kxp:PageWatermarkPlacementOffsetWidth", "25400") +
                             Init("kxp:PageWatermarkPlacementOffsetHeight", "-25400");
    for (const auto& row : rows) {
        properties += Reference(row.property, row.parameter);
        parameters += without == row.property ? "" : Init(row.parameter, row.value);
    }
    const std::string placement =
        Feature("kxp:Placement",
                Option("kxp:Top", Reference("kxp:OffsetWidth", "kxp:PageWatermarkPlacementOffsetWidth") +
                                      Reference("kxp:OffsetHeight", "kxp:PageWatermarkPlacementOffsetHeight")));
    return Feature("psk:PageWatermark", Option(option, properties) + (without == "Placement" ? "" : placement) +
                                            (without == "Layering" ? "" : Choice("psk:Layering", "psk:Underlay")) +
                                            Choice("kxp:Usage", "kxp:FirstPageOnly")) +
           parameters;
}
std::string OverlayFile(const std::string& feature, const std::string& path) {
    return Feature(feature, Option("", Scored("kxp:File", path)));
}

// --- Documents in short

// A line for each child of the root: "PageMediaSize(ISOA4(MediaSizeWidth(210000)))", public keywords without prefix,
// an option without name as "*", one that isn't installed as "Tray!", references as "->".
class Lines {
  public:
    explicit Lines(const TicketDocument& document) : tree_(document.Get()) {
        for (size_t i = 0; i < tree_.Nodes().size(); ++i) {
            if (tree_.Nodes()[i].depth == 1 && tree_.Nodes()[i].type == NODE_ELEMENT) {
                lines_.push_back(Describe(i));
            }
        }
    }
    // Those of a name; each ended by a line's end.
    std::string Of(const std::string& name) const {
        std::string found;
        for (const std::string& line : lines_) {
            found += line.substr(0, line.find('(')) == name ? line + "\n" : "";
        }
        return found;
    }

  private:
    std::string Describe(size_t place) const {
        const print_schema::XmlNode& node = tree_.Nodes()[place];
        const std::string kind = print_schema::Printable(node.name);
        std::string name = kind == "Option" ? "*" : "";
        std::string mark;
        for (const print_schema::XmlAttribute& attribute : node.attributes) {
            const std::string value = print_schema::Printable(attribute.value);
            if (attribute.name == TEXT("name")) {
                name = value.starts_with("psk:") ? value.substr(4) : value;
            } else if (attribute.name == TEXT("constrained") && value != "psk:None") {
                mark = "!";
            }
        }
        std::string content;
        for (size_t i = place + 1; i < tree_.Nodes().size(); ++i) {
            const print_schema::XmlNode& child = tree_.Nodes()[i];
            if (child.parent == place && child.type != NODE_COMMENT) {
                content += (content.empty() ? "" : " ") +
                           (child.type == NODE_ELEMENT ? Describe(i) : print_schema::Printable(child.value));
            }
        }
        if (kind == "Value") {
            return content;
        }
        return (kind == "ParameterRef" ? "->" : "") + name + mark + (content.empty() ? "" : "(" + content + ")");
    }

    print_schema::XmlTree tree_;
    std::vector<std::string> lines_;
};

// --- The printer

// A model with names for tickets: four papers, two of one size; every tray that has a number of its own; two media;
// a feature that needs a stapler and one without options; four colour presets.
DescriptionBuilder TicketModel(uint16_t pdlType, uint16_t colorCapability = kColorNone) {
    DescriptionBuilder b = SmallModel(pdlType, colorCapability);
    const uint16_t label = b.AddString("Label");
    const auto name = [&](const char* text) { return b.AddName(text); };
    b.fields.jobNameFlags = 1;
    b.fields.pagesPerMinute = 20;
    b.fields.icmIntentFlags = 1;
    b.fields.defaultOptionFlags = 0;
    b.Table(offsetof(DeviceModel, paperTable),
            std::vector<PaperRecord>{{label, 9, name("psk:ISOA4"), 2100, 2970, 1, {}, 0, 0, 0, {}},
                                     {label, 10, name("Small"), 2100, 2970, 1, {}, 0, 0, 0, {}},
                                     {label, 1, name("psk:NorthAmericaLetter"), 2159, 2794, 0, {}, 0, 0, 0, {}},
                                     {label, 300, name("kxp:Card"), 1016, 1524, 0, {}, -1, 0, 0, {}}});
    std::vector<BinRecord> trays;
    for (const int id : {257, 1, 2, 3, 4, 5, 6, 7, 11, 1025, 1026, 1027, 12}) {
        trays.push_back({id == 2 ? 0x100u : 1u, static_cast<uint16_t>(id), static_cast<int16_t>(label),
                         name(("Tray" + std::to_string(id)).c_str())});
    }
    b.Table(offsetof(DeviceModel, binTable), trays);
    b.Table(offsetof(DeviceModel, mediaTable),
            std::vector<MediaRecord>{{1, 0, 0, static_cast<int16_t>(name("PLAIN")), name("psk:Plain"), 257, {}},
                                     {2, 0, 0, static_cast<int16_t>(name("null")), name("Gloss"), 258, {}}});
    b.Table(offsetof(DeviceModel, resolutionTable),
            std::vector<ResolutionRecord>{{1, 300, 0, label, 300, 300, 0, 0, name("R300"), {}},
                                          {1, 600, 0, label, 600, 600, 0, 0, name("psk:R600"), {}}});
    std::vector<OptionRecord> options = {{label, 0, name("kxp:Flat")}, {label, 0, name("Half")}, {}};
    std::string bytes;
    for (const OptionRecord& option : options) {
        bytes.append(reinterpret_cast<const char*>(&option), sizeof(option));
        bytes.resize(bytes.size() + OptionStride(pdlType) - sizeof(option));
    }
    b.Bytes(offsetof(DeviceModel, optionTable), bytes);
    b.Table(offsetof(DeviceModel, featureTable),
            std::vector<FeatureRecord>{{label, 0, 0x10, 0, name("kxp:Fold")}, {label, 0, 0, 2, name("Account")}});
    b.Table(offsetof(DeviceModel, colorModeTable), std::vector<ColorModeRecord>{{1, label, -1},
                                                                                {kColorModeSystem, label, -1},
                                                                                {kColorModeManual, label, -1},
                                                                                {kColorModeHasDefaults, label, 0}});
    b.Table(offsetof(DeviceModel, presetSettings), std::vector<PresetSettingRecord>{{1, 1, 2}, {4, 0, 1}});
    b.Table(offsetof(DeviceModel, textColorFeatures),
            std::vector<ColorFeatureRecord>{{label, 0}, {label, 0}, {label, 0}});
    b.Table(offsetof(DeviceModel, generalColorFeatures), std::vector<ColorFeatureRecord>{{label, 0}});
    b.Table(offsetof(DeviceModel, colorOptionValues), std::vector<ColorValueRecord>(4, {label, 0, 0, 0, 0}));
    return b;
}

class Conversions : public testing::Test {
  protected:
    void TearDown() override {
        printer_.reset();
        EXPECT_EQ(driver_test::WhatIsOpen().value_or(Texts()), Texts());
    }
    void Use(const DescriptionBuilder& model, uint32_t missing = 0, uint32_t missingTrays = 0) {
        printer_.reset();
        machine_.reset();
        machine_.emplace();
        printer_.emplace(PackageOf(model.Build()), missing, missingTrays);
    }
    VelmoraDevMode Base(const std::string& settings) const { return With(printer_->Default(), settings); }

    // What a ticket changes in the default device mode with these settings.
    std::string Read(const std::string& content, const std::string& settings = "") const {
        const VelmoraDevMode base = Base(settings);
        return ChangedValues(base, printer_->Read(LoadTicket(TicketText(content)), base));
    }
    Lines Write(const std::string& settings, ConversionMode mode = ConversionMode::kTicket) const {
        const auto ticket = printer_->Write(Base(settings), mode);
        for (const print_schema::Finding& finding : print_schema::CheckPrintSchema(ticket.Get())) {
            ADD_FAILURE() << settings << ": " << finding;
        }
        return Lines(ticket);
    }
    Lines Capabilities(const std::string& settings = "") const { return Lines(printer_->Capabilities(Base(settings))); }

    struct ReadRow {
        std::string ticket;
        const char* settings;
        std::string changes;
    };
    void CheckReads(const std::vector<ReadRow>& rows) const {
        for (const ReadRow& row : rows) {
            EXPECT_EQ(Read(row.ticket, row.settings), row.changes) << row.settings << "\n" << row.ticket;
        }
    }
    // Each expected text is the whole of what the ticket has of that name; "-Name": nothing.
    struct WriteRow {
        const char* settings;
        std::vector<const char*> lines;
        ConversionMode mode = ConversionMode::kTicket;
    };
    void CheckWrites(const std::vector<WriteRow>& rows) const {
        for (const WriteRow& row : rows) {
            const Lines lines = Write(row.settings, row.mode);
            for (const std::string line : row.lines) {
                const bool isAbsent = line[0] == '-';
                const std::string name = isAbsent ? line.substr(1) : line.substr(0, line.find('('));
                EXPECT_EQ(lines.Of(name), isAbsent ? "" : line + "\n") << row.settings;
            }
        }
    }

    std::optional<host::Machine> machine_;
    std::optional<TicketPrinter> printer_;
};

// --- Reading

TEST_F(Conversions, ReadPlainOptions) {
    Use(TicketModel(kPdlPcl6, kColor));
    CheckReads({
        {"", "", ""},
        {Choice("psk:PageOrientation", "psk:ReverseLandscape"), "", "dmOrientation=2 rotate180=1"},
        {Choice("psk:PageOrientation", "psk:ReversePortrait"), "dmOrientation=2", "dmOrientation=1 rotate180=1"},
        {Choice("psk:PageOrientation", "kxp:Landscape"), "", ""},
        {Choice("psk:PageOrientation", "psk:landscape"), "", ""},
        {Feature("psk:PageOrientation", ""), "", ""},
        {Feature("psk:PageOrientation", Option("")), "", ""},
        // A prefix that nothing binds, features outside of the framework or of the keywords; of two the first counts.
        {Choice("psk:PageOrientation", "x:Landscape"), "", ""},
        {Choice("PageOrientation", "psk:Landscape"), "", ""},
        {"<Feature name='psk:PageOrientation'>" + Option("psk:Landscape") + "</Feature>", "", ""},
        {"<psf:Feature xmlns:v='u:v' name='v:PageOrientation'>" + Option("psk:Landscape") + "</psf:Feature>", "", ""},
        {Feature("psk:JobPageOrder", Option("psk:Reverse") + Option("psk:Standard")) +
             Choice("psk:JobPageOrder", "psk:Standard"),
         "", "pageOrderFlags=1"},
        {Choice("kxp:PageBlackText", "psk:BlackText"), "", ""},
        {Choice("kxp:DocumentCoverFront", "kxp:PrintBack"), "frontCoverBothSides=1",
         "frontCoverMode=2 frontCoverBothSides=0"},
        // Of the scopes the first that has a named option.
        {Choice("psk:JobInputBin", "oem:Tray1") + Choice("psk:DocumentInputBin", "oem:Tray3"), "", "dmDefaultSource=3"},
        {Feature("psk:PageInputBin", Option("")) + Choice("psk:JobInputBin", "oem:Tray1"), "", "dmDefaultSource=1"},
        {Choice("psk:PageInputBin", "psk:Tray1"), "dmDefaultSource=2", "dmDefaultSource=7"},
        {Choice("psk:JobCollateAllDocuments", "psk:Uncollated") + Choice("psk:DocumentCollate", "psk:Collated"),
         "dmCollate=0 collateCopy=0", "dmCollate=1 collateCopy=1"},
        // Media and resolutions by their names; resolutions by their numbers, too.
        {Choice("psk:PageMediaType", "psk:Gloss"), "mediaIndex=1", "mediaIndex=2"},
        {Choice("psk:PageResolution", "oem:R300"), "",
         "dmPrintQuality=300 dmYResolution=300 resolutionId=300 resolutionIndex=0"},
        {Feature("psk:PageResolution",
                 Option("x:Fine", Scored("psk:ResolutionX", "300") + Scored("psk:ResolutionY", "300"))),
         "", ""},
        {Feature("psk:PageResolution",
                 Option("psk:Fine", Scored("psk:ResolutionX", "300") + Scored("psk:ResolutionY", "300"))),
         "", "dmPrintQuality=300 dmYResolution=300 resolutionId=300 resolutionIndex=0"},
        {Feature("psk:PageResolution",
                 Option("psk:Fine", Scored("psk:ResolutionX", "300") + Scored("psk:ResolutionY", "301"))),
         "", ""},
        // Device features: what isn't among the options is the first; those without options are left alone.
        {Choice("kxp:Fold", "oem:Half") + Choice("oem:Account", "kxp:Flat"), "", "featureSelection[0]=1"},
        {Choice("kxp:Fold", "kxp:Half"), "featureSelection=1", "featureSelection[0]=0"},
    });
    Use(TicketModel(kPdlPcl6), kDuplexInstalled | kBorderlessInstalled, 0x100);
    CheckReads({
        {Choice("psk:DocumentDuplex", "psk:TwoSidedLongEdge"), "", ""},
        {Choice("psk:PageBorderless", "psk:Borderless"), "", ""},
        {Choice("psk:PageInputBin", "oem:Tray2"), "dmDefaultSource=1", "dmDefaultSource=7"},
        {Choice("psk:PageOutputColor", "psk:Color"), "", ""},
    });
}

TEST_F(Conversions, ReadPapersBySize) {
    Use(TicketModel(kPdlPcl6));
    const char* const letter = "dmPaperSize=1 dmPaperWidth=2159 dmPaperLength=2794";
    const std::string width = Init("psk:PageMediaSizeMediaSizeWidth", "100000");
    CheckReads({
        {Paper("psk:Any", "210000", "297000"), letter, "dmPaperSize=9 dmPaperLength=2970 dmPaperWidth=2100"},
        {Paper("psk:Any", "210599", "296500"), letter, "dmPaperSize=9 dmPaperLength=2965 dmPaperWidth=2105"},
        {Paper("psk:Any", "211000", "297000"), letter, "dmPaperSize=256 dmPaperLength=2970 dmPaperWidth=2110"},
        {Paper("oem:Small", "210000", "297000"), letter, "dmPaperSize=9 dmPaperLength=2970 dmPaperWidth=2100"},
        {Paper("oem:Small", "210100", "297000"), letter, "dmPaperSize=256 dmPaperLength=2970 dmPaperWidth=2101"},
        {Paper("psk:Any", "101600", "152400"), letter, "dmPaperSize=300 dmPaperLength=1524 dmPaperWidth=1016"},
        {CustomPaper(width + Init("psk:PageMediaSizeMediaSizeHeight", "150000")), letter,
         "dmPaperSize=256 dmPaperLength=1500 dmPaperWidth=1000"},
        {CustomPaper(width), letter, ""},
        {Choice("psk:PageMediaSize", "psk:ISOA4"), letter, ""},
    });
}

TEST_F(Conversions, ReadLayouts) {
    Use(TicketModel(kPdlPcl6));
    const std::string direction = Choice("psk:PresentationDirection", "psk:TopLeft");
    const std::string a4 = Paper("psk:ISOA4", "210000", "297000");
    const char* const letter = "dmPaperSize=1 dmPaperWidth=2159 dmPaperLength=2794";
    CheckReads({
        {NUp("4", direction), "", "pagesPerSheet=4 nupOrder=19"},
        {NUp("12", direction), "pagesPerSheet=4", "nupOrder=19"},
        {NUp("3"), "pagesPerSheet=4", ""},
        {NUp("4", Feature("kxp:NUpBorders",
                          Option("kxp:On", Reference("kxp:BorderWidth", "kxp:DocumentNUpPageBorderWidth")))) +
             Init("kxp:DocumentNUpPageBorderWidth", "25400"),
         "", "layoutMode=1 pagesPerSheet=4 nupBorderWidth=600"},
        {Feature("psk:JobNUpDocumentsContiguously", Option("", Scored("psk:PagesPerSheet", "9"))), "",
         "pagesPerSheet=9"},
        {Feature("psk:PagePoster", Option("", Scored("psk:SheetsPerPage", "9"))), "", "posterMode=3"},
        {Feature("psk:PagePoster", Option("", Scored("psk:SheetsPerPage", "0"))), "posterMode=2", "posterMode=0"},
        {Feature("psk:PagePoster", Option("", Scored("psk:SheetsPerPage", "5"))), "posterMode=2", ""},

        {Scaling("CustomSquare", "50"), "", "scaleMode=66 scaleValue=50"},
        {Scaling("CustomSquare", "50", "psk:TopLeft"), "", "scaleMode=2 scaleValue=50"},
        {Scaling("CustomSquare", "0"), "", ""},
        {Scaling("CustomSquare", "-5"), "scaleMode=2 scaleValue=50", ""},
        {Scaling("None", "50"), "scaleMode=2 scaleValue=50", "scaleMode=0"},
        // The whole size and fitting put the paper before back, and the ticket's in as the target.
        {a4 + Scaling("CustomSquare", "100"), letter, "scaleMode=68 scaleValue=9 scaleLength=2970 scaleWidth=2100"},
        {a4 + Scaling("CustomSquare", "100", "psk:TopLeft"), letter,
         "scaleMode=4 scaleValue=9 scaleLength=2970 scaleWidth=2100"},
        {a4 + Scaling("CustomSquare", "100"),
         "dmPaperSize=1 dmPaperWidth=2159 dmPaperLength=2794 scaleMode=4 scaleValue=300",
         "scaleValue=9 scaleLength=2970 scaleWidth=2100"},
        {a4 + Scaling("FitApplicationMediaSizeToPageMediaSize", "7"), letter,
         "scaleMode=1 scaleValue=9 scaleLength=2970 scaleWidth=2100"},

        {Binding("psk:BindLeft", "25400"), "finishingOption=6", "gutterShiftX=600 finishingOption=0"},
        {Binding("psk:BindRight", "25400"), "", "gutterShiftX=600 finishingOption=6"},
        {Binding("psk:BindTop", "25400"), "dmOrientation=2", "gutterShiftX=600"},
        {Binding("psk:BindBottom", "25400"), "gutterShiftX=9 bookletGutter=9",
         "gutterShiftX=0 gutterShiftY=600 bookletGutter=0 finishingOption=6"},
        {Binding("psk:None", "25400"), "booklet=4 nupOrder=1 gutterShiftX=9", "booklet=0 nupOrder=0"},
        {Binding("psk:Booklet", "25400"), "nupOrder=1 gutterShiftX=9",
         "booklet=1 gutterShiftX=0 nupOrder=0 bookletGutter=600"},
        {Binding("kxp:JapaneseBooklet", "0", Init("kxp:DocumentBookletSignaturePages", "8")), "",
         "booklet=8 nupOrder=1"},
        {Binding("psk:JapaneseBooklet", "0"), "", ""},
    });
    Use(TicketModel(kPdlImage));
    CheckReads({{NUp("12"), "", "pagesPerSheet=12"}, {NUp("25"), "", "pagesPerSheet=25"}});
}

TEST_F(Conversions, ReadWatermarksUpToTheFirstThatIsMissing) {
    Use(TicketModel(kPdlPcl6));
    const std::string all =
        "watermarkFlags=21 watermarkOffsetX=600 watermarkOffsetY=-600 watermarkPages=1 watermarkText=\"Draft\" "
        "watermarkFile=\"Draft\""
        " watermarkFont=\"Courier\" watermarkFontSize=72 watermarkAngle=300 watermarkColor=255 watermarkBold=1"
        " watermarkPosition=2";
    const char* const none = "watermarkFlags=0 watermarkPages=0 watermarkFontSize=1 watermarkAngle=0 watermarkColor=1";
    const std::string text = " watermarkText=\"Draft\" watermarkFile=\"Draft\"";
    CheckReads({
        {Watermark(""), none, all},
        {Watermark("", "Courier", "72", "30", "kxp:Image"), none, ""},
        {Watermark("psk:Text"), none, "watermarkFlags=1"},
        {Watermark("kxp:Font"), none, "watermarkFlags=1" + text},
        {Watermark("psk:Angle"), none, "watermarkFlags=1" + text + " watermarkFont=\"Courier\" watermarkFontSize=72"},
        {Watermark("Placement", std::string(32, 'F'), "0", "-10"), none,
         "watermarkFlags=17" + text +
             " watermarkFont=\"Arial\" watermarkFontSize=72 watermarkAngle=45"
             " watermarkColor=255 watermarkBold=1"},
        {Watermark("Layering", "", "300", "370"), none,
         "watermarkFlags=17 watermarkOffsetX=600 watermarkOffsetY=-600" + text +
             " watermarkFont=\"Arial\" watermarkFontSize=300 watermarkAngle=100 watermarkColor=255 watermarkBold=1"
             " watermarkPosition=2"},
    });
}

TEST_F(Conversions, ReadOverlays) {
    Use(TicketModel(kPdlPcl6));
    const auto overlay = [](const std::string& option, const std::string& content) {
        return Feature("kxp:DocumentOverlay", Option(option) + content);
    };
    const auto create = [](const std::string& name) {
        return Feature("kxp:DocumentOverlay", Option("kxp:Create", Reference("kxp:Name", "kxp:DocumentOverlayName"))) +
               Init("kxp:DocumentOverlayName", name);
    };
    const std::string one = OverlayFile("kxp:Overlay", "C:\\A\\ONE.ovl");
    const std::string under = Choice("kxp:Layering", "kxp:Underlay");
    CheckReads({
        {create("Letterhead"), "dmOrientation=2",
         R"(watermarkText=",KV62.XPI,9,2,600,0,Letterhead" watermarkFile=",KV62.XPI,9,2,600,0,Letterhead")"
         R"( overlayMode=1 overlayName="01000000.ovl")"
         R"( settingsFolder="C:\\Users\\User\\AppData\\Roaming\\Kestranix Inc.\\Velmora Test")"},
        {create(""), "", ""},
        {overlay("kxp:None", ""), "overlayMode=2", "overlayMode=0"},
        {overlay("kxp:Include", one), "", "overlayMode=2 overlayName=\"ONE.ovl\""},
        {overlay("kxp:Include", OverlayFile("kxp:Overlay", "LONGERTHAN13CHARS") + under), "",
         "overlayMode=4 overlayName=\"LONGERTHAN13\""},
        {overlay("kxp:Include", under), "", ""},
        {overlay("kxp:IncludeOddEven", one + under + OverlayFile("kxp:Overlay2", "C:\\A\\TWO.ovl")), "",
         "overlayMode=6 overlayName=\"ONE.ovl\" overlayName2=\"TWO.ovl\""},
        {overlay("kxp:IncludeOddEven", one + OverlayFile("kxp:Overlay2", "C:\\B\\TWO.ovl")), "",
         "overlayMode=2 overlayName=\"ONE.ovl\" overlayName2=\"TWO.ovl\""},
    });
}

TEST_F(Conversions, ReadColors) {
    for (const auto& [capability, changes] : std::vector<std::pair<uint16_t, const char*>>{
             {kColorNone, ""}, {kColor, "dmColor=1"}, {kColorSecondKind, "dmColor=2"}}) {
        Use(TicketModel(kPdlPcl6, capability));
        EXPECT_EQ(Read(Choice("psk:PageOutputColor", "psk:Grayscale")), changes) << capability;
    }
    Use(TicketModel(kPdlPcl6, kColor));
    const auto correction = [](const std::string& preset, const std::string& feature, const std::string& option) {
        return Feature("oem:DocumentColorCorrection",
                       Option(preset) +
                           Feature("oem:ManualSettings", Feature("oem:TextColorCorrection", Choice(feature, option))));
    };
    const char* const third = "oem:TextColorCorrectionFeature_2";
    const char* const last = "oem:TextColorCorrectionOption_3";
    const std::string compiled =
        "sliceCount=4 blobSlices.length[0]=32768 blobSlices.length[1]=32768 blobSlices.length[2]=32768 ";
    CheckReads({
        {correction("oem:ColorCorrectionPreset_1", third, last), "", "dmICMMethod=2 colorModeIndex=1"},
        {correction("oem:ColorCorrectionPreset_2", third, last), "",
         compiled + "colorModeIndex=2 textColorOptions[2]=3"},
        {correction("oem:ColorCorrectionPreset_2", third, "oem:TextColorCorrectionOption_4"), "",
         compiled + "colorModeIndex=2"},
        {correction("oem:ColorCorrectionPreset_2", third, "psk:TextColorCorrectionOption_3"), "",
         compiled + "colorModeIndex=2"},
        {correction("oem:ColorCorrectionPreset_3", third, last), "",
         compiled + "colorModeIndex=3 textColorOptions[1]=2 generalColorOptions[0]=1"},
        {correction("oem:ColorCorrectionPreset_4", third, last), "", ""},
        {correction("oem:ColorCorrectionPreset_", third, last), "colorModeIndex=1", ""},
        {correction("psk:ColorCorrectionPreset_1", third, last), "", ""},
    });
}

TEST_F(Conversions, ReadPostScriptSettingsOnPostScriptPrintersOnly) {
    const auto halftone = [](const std::string& frequency, const std::string& angle) {
        return Feature("oem:DocumentPSHalftone",
                       Option("oem:User", Reference("oem:HalftoneFrequency", "oem:DocumentPSHalftoneFrequency") +
                                              Reference("oem:HalftoneAngle", "oem:DocumentPSHalftoneAngle"))) +
               Init("oem:DocumentPSHalftoneFrequency", frequency) + Init("oem:DocumentPSHalftoneAngle", angle);
    };
    const std::vector<ReadRow> rows = {
        {Choice("oem:DocumentPSFormat", "oem:TaggedBinaryControlProtocol"), "optionFlags=0x1A0", "optionFlags=544"},
        {Choice("oem:DocumentPSControlD", "oem:BeforeAndAfter"), "optionFlags=1", "optionFlags=97"},
        {halftone("6000", "3600"), "", "psHalftoneFrequency=6000 psHalftoneAngle=3600 extraFlag=1"},
        {halftone("0", "450"), "", ""},
        {halftone("6001", "450"), "", ""},
        {halftone("600", "-1"), "", ""},
        {Choice("oem:DocumentPSHalftone", "oem:Printer"), "extraFlag=1 psHalftoneFrequency=600 psHalftoneAngle=450",
         "psHalftoneFrequency=0 psHalftoneAngle=0 extraFlag=0"},
        {Init("kxp:DocumentPSContrast", "51") + Init("kxp:DocumentPSBrightness", "-50"), "", "psBrightness=-50"},
        {Init("kxp:DocumentPSContrast", "-50") + Init("kxp:DocumentPSBrightness", "-51"), "", "psContrast=-50"},
    };
    Use(TicketModel(kPdlPostScript));
    CheckReads(rows);
    Use(TicketModel(kPdlPcl6));
    for (const ReadRow& row : rows) {
        EXPECT_EQ(Read(row.ticket, row.settings), "") << row.ticket;
    }
}

// --- Writing

TEST_F(Conversions, WriteWhatTheDeviceModeSelects) {
    Use(TicketModel(kPdlPcl6, kColor));
    constexpr auto kValidation = ConversionMode::kValidation;
    CheckWrites({
        // Job scope in tickets, document or page scope in completed ones.
        {"dmDefaultSource=2 dmDuplex=2 dmCollate=0 collateCopy=1 dmCopies=7",
         {"JobInputBin(oem:Tray2(kxp:SelectionIndex(5)))", "-PageInputBin",
          "JobDuplexAllDocumentsContiguously(TwoSidedLongEdge(DuplexMode(psk:Automatic)))", "-DocumentDuplex",
          "JobCollateAllDocuments(Collated)", "JobCopiesAllDocuments(7)", "-PageCopies"}},
        {"dmDefaultSource=2 dmDuplex=0 dmCollate=0 dmCopies=7",
         {"PageInputBin(oem:Tray2(kxp:SelectionIndex(5)))", "-JobInputBin", "DocumentDuplex(OneSided)",
          "DocumentCollate(Uncollated)", "PageCopies(7)", "-JobCopiesAllDocuments"},
         kValidation},
        {"dmPaperSize=10 mediaIndex=1 dmColor=1",
         {"PageMediaSize(oem:Small(MediaSizeWidth(210000) MediaSizeHeight(297000)))",
          "PageMediaType(Plain(kxp:SelectionString(PLAIN)))", "PageOutputColor(Grayscale)"}},
        {"dmPaperSize=256 dmPaperWidth=1000 dmPaperLength=1500",
         {"PageMediaSize(CustomMediaSize(MediaSizeWidth(->PageMediaSizeMediaSizeWidth)"
          " MediaSizeHeight(->PageMediaSizeMediaSizeHeight)))",
          "PageMediaSizeMediaSizeWidth(100000)", "PageMediaSizeMediaSizeHeight(150000)"}},
        {"scaleMode=33 scaleValue=300",
         {"PageMediaSize(kxp:Card(MediaSizeWidth(101600) MediaSizeHeight(152400)))",
          "PageScaling(FitApplicationMediaSizeToPageMediaSize ScaleOffsetAlignment(TopLeft))", "-PageScalingScale"}},
        {"scaleMode=68 scaleValue=256 scaleWidth=1000 scaleLength=1500",
         {"PageMediaSizeMediaSizeWidth(100000)",
          "PageScaling(CustomSquare(Scale(->PageScalingScale)) ScaleOffsetAlignment(Center))",
          "PageScalingScale(100)"}},

        {"pagesPerSheet=2 nupOrder=17",
         {"DocumentNUp(*(PagesPerSheet(2)) PresentationDirection(LeftTop) kxp:NUpBorders(kxp:Off))"}},
        {"pagesPerSheet=4 layoutMode=1 nupBorderWidth=600",
         {"DocumentNUp(*(PagesPerSheet(4)) PresentationDirection(RightBottom)"
          " kxp:NUpBorders(kxp:On(kxp:BorderWidth(->kxp:DocumentNUpPageBorderWidth))))",
          "kxp:DocumentNUpPageBorderWidth(25400)"}},
        {"pagesPerSheet=4 booklet=8 nupOrder=16 bookletGutter=300",
         {"DocumentNUp(*(PagesPerSheet(4)))",
          "DocumentBinding(kxp:JapaneseBooklet(BindingGutter(->DocumentBindingGutter)"
          " kxp:SignaturePages(->kxp:DocumentBookletSignaturePages)))",
          "DocumentBindingGutter(12700)", "kxp:DocumentBookletSignaturePages(8)"}},
        {"dmOrientation=2 gutterShiftX=-600",
         {"DocumentBinding(BindBottom(BindingGutter(->DocumentBindingGutter)))", "DocumentBindingGutter(25400)"}},
        {"",
         {"DocumentBinding(None)", "-DocumentBindingGutter", "-PageWatermark", "-oem:DocumentPSFormat",
          "PagePhotoPrintingIntent(None)", "JobDigitalSignatureProcessing(PrintInvalidSignaturesWithErrorReport)"}},
        {"optionFlags=8 dmOrientation=2", {"PageMirrorImage(MirrorImageWidth)"}},
        {"frontCoverMode=1 frontCoverPaper=-1 frontCoverMedia=2 frontCoverBin=7",
         {"kxp:DocumentCoverFront(kxp:BlankCover kxp:MediaSize(kxp:UsePageMediaSize) kxp:MediaType(oem:Gloss)"
          " kxp:InputBin(oem:Tray7(kxp:SelectionIndex(1))))"}},
        {"overlayMode=1",
         {R"(kxp:DocumentOverlay(kxp:Create(kxp:Directory(C:\u005CUsers\u005CUser\u005CAppData\u005CRoaming\u005CKestranix)"
          R"( Inc.\u005CVelmora Test) kxp:FileExtension(ovl) kxp:Name(->kxp:DocumentOverlayName))))",
          "kxp:DocumentOverlayName"}},
        {"featureSelection=1", {"kxp:Fold(oem:Half)", "oem:Account(*(oem:UserInput(->oem:AccountUserInput)))"}},
        {"colorModeIndex=2 textColorOptions=3",
         {"oem:DocumentColorCorrection(oem:ColorCorrectionPreset_2 oem:ManualSettings(oem:TextColorCorrection("
          "oem:TextColorCorrectionFeature_0(oem:TextColorCorrectionOption_3)"
          " oem:TextColorCorrectionFeature_1(oem:TextColorCorrectionOption_0)"
          " oem:TextColorCorrectionFeature_2(oem:TextColorCorrectionOption_0)) oem:GeneralColorCorrection("
          "oem:GeneralColorCorrectionFeature_0(oem:GeneralColorCorrectionOption_0))))"}},
    });
}

TEST_F(Conversions, WriteWatermarks) {
    Use(TicketModel(kPdlPcl6));
    VelmoraDevMode devMode = Base(
        "watermarkFlags=5 watermarkFontSize=9 watermarkAngle=455 watermarkPages=2 watermarkPosition=2"
        " watermarkColor=255");
    devMode.privatePart.watermarkText[0] = 'D';
    devMode.privatePart.watermarkFont[0] = 'F';
    const Lines lines(printer_->Write(devMode));
    EXPECT_TRUE(lines.Of("PageWatermark")
                    .ends_with("kxp:OffsetHeight(->kxp:PageWatermarkPlacementOffsetHeight))) Layering(Underlay)"
                               " kxp:Usage(kxp:FirstPageOnly))\n"));
    EXPECT_EQ(lines.Of("PageWatermarkTextText") + lines.Of("PageWatermarkTextAngle") +
                  lines.Of("PageWatermarkTextColor") + lines.Of("PageWatermarkTransparency"),
              "PageWatermarkTextText(D)\nPageWatermarkTextAngle(45)\nPageWatermarkTextColor(16711680)\n"
              "PageWatermarkTransparency(0)\n");

    devMode = Base("watermarkFlags=2 watermarkPosition=1");
    devMode.privatePart.watermarkFile[0] = 'C';
    EXPECT_EQ(Lines(printer_->Write(devMode)).Of("PageWatermark").substr(0, 62),
              "PageWatermark(kxp:Image(kxp:File(->kxp:PageWatermarkImageFile)");
}

TEST_F(Conversions, WriteFeaturesEmptyThatNoOptionStandsFor) {
    Use(TicketModel(kPdlPcl6, kColor));
    const struct {
        const char* settings;
        const char* line;
    } rows[] = {
        {"dmPaperSize=11 scaleMode=1024",
         "PageMediaSize(CustomMediaSize(MediaSizeWidth(->PageMediaSizeMediaSizeWidth)"
         " MediaSizeHeight(->PageMediaSizeMediaSizeHeight)))"},
        {"dmDefaultSource=1028", "JobInputBin"},
        {"dmPrintQuality=300 dmYResolution=300", "PageResolution"},
        {"pageOrderFlags=64", "JobPageOrder"},
        {"pagesPerSheet=12 layoutMode=3", "DocumentNUp(PresentationDirection(RightBottom) kxp:NUpBorders)"},
        {"marginMode=2", "PageBorderless"},
        {"overlayMode=9", "kxp:DocumentOverlay(kxp:Overlay kxp:Layering(kxp:Overlay))"},
        {"featureSelection=2", "kxp:Fold"},
    };
    for (const auto& row : rows) {
        const std::string line = row.line;
        EXPECT_EQ(Lines(printer_->Write(Base(row.settings))).Of(line.substr(0, line.find('('))), line + "\n");
    }
}

TEST_F(Conversions, WriteNothingOfFieldsThatArentInUse) {
    Use(TicketModel(kPdlPcl6, kColor));
    WorkingDevMode working;
    printer_->Prepare(printer_->Default(), &working);
    working.DevMode()->publicPart.dmFields = 0;
    const auto ticket = LoadTicket(TicketText(""));
    printer_->Write(working, ticket);
    const Lines lines(ticket);
    for (const char* const name :
         {"PageMediaSize", "JobInputBin", "JobDuplexAllDocumentsContiguously", "PageOutputColor", "PageOrientation",
          "JobCollateAllDocuments", "JobCopiesAllDocuments"}) {
        EXPECT_EQ(lines.Of(name), "");
    }
    EXPECT_NE(lines.Of("PageMediaType"), "");
}

TEST_F(Conversions, WriteTheLanguageAndWhatGoesWithIt) {
    const struct {
        uint16_t pdlType;
        uint16_t color;
        const char* language;
        const char* features;  // those that only some languages have
    } rows[] = {
        {kPdlPcl6, kColorNone, "PCL-XL", ""},
        {kPdlPcl5, kColorNone, "PCL5e", ""},
        {kPdlPcl5, kColorSecondKind, "PCL5c", ""},
        {kPdlPostScript, kColor, "PostScript", "oem:DocumentPSFormat(oem:TaggedBinaryControlProtocol)\n"},
        {kPdlImage, kColor, "kxp:image", ""},
        {kPdlXps, kColor, "XPS", ""},
    };
    for (const auto& row : rows) {
        Use(TicketModel(row.pdlType, row.color));
        const Lines lines = Write("");
        EXPECT_EQ(lines.Of("JobDeviceLanguage"),
                  "JobDeviceLanguage(" + std::string(row.language) + "(LanguageLevel(17185)))\n");
        EXPECT_EQ(lines.Of("oem:DocumentPSFormat"), row.features);
        EXPECT_EQ(lines.Of("kxp:DocumentPSContrast"),
                  row.pdlType == kPdlPostScript ? "kxp:DocumentPSContrast(0)\n" : "");
        EXPECT_EQ(lines.Of("kxp:DocumentStartPJL").empty(), row.pdlType == kPdlImage || row.pdlType == kPdlXps);
        EXPECT_EQ(lines.Of("kxp:DocumentStartOCMData").empty(), row.pdlType != kPdlImage);
    }
}

// What a ticket has in any scope isn't written again; lists of the driver's own are replaced.
TEST_F(Conversions, CompleteWhatATicketLacks) {
    Use(TicketModel(kPdlPcl6));
    const struct {
        std::string given;
        const char* name;
        const char* lines;
    } rows[] = {
        {Choice("psk:JobInputBin", "oem:Tray1"), "PageInputBin", ""},
        {Choice("psk:DocumentDuplex", "psk:OneSided"), "DocumentDuplex", "DocumentDuplex(OneSided)\n"},
        {Choice("psk:JobNUpDocumentsContiguously", ""), "DocumentNUp", ""},
        {Choice("psk:PageMediaSize", "x"), "PageMediaSize", "PageMediaSize(x)\n"},
        {Choice("kxp:PageMediaSize", "x"), "PageMediaSize",
         "PageMediaSize(ISOA4(MediaSizeWidth(210000) MediaSizeHeight(297000)))\n"},
        {Init("psk:DocumentCopiesAllPages", "3"), "PageCopies", ""},
        {Choice("psk:JobDeviceLanguage", "psk:XPS"), "JobDeviceLanguage", "JobDeviceLanguage(XPS)\n"},
        {"<psf:Property name='kxp:DocumentEndPJL'><psf:Value>foreign</psf:Value></psf:Property>"
         "<psf:Property name='kxp:DocumentPageColorCorrectionCommands'><psf:Value>foreign</psf:Value></psf:Property>",
         "kxp:DocumentPageColorCorrectionCommands", ""},
        {Choice("kxp:Fold", "kxp:Wild"), "kxp:Fold", "kxp:Fold(kxp:Wild)\n"},
    };
    WorkingDevMode working;
    printer_->Prepare(printer_->Default(), &working);
    for (const auto& row : rows) {
        const auto ticket = LoadTicket(TicketText(row.given));
        printer_->Write(working, ticket, ConversionMode::kValidation);
        EXPECT_EQ(Lines(ticket).Of(row.name), row.lines) << row.given;
        EXPECT_EQ(Lines(ticket).Of("kxp:DocumentEndPJL").find("foreign"), std::string::npos);
    }
}

// --- Page exceptions

// "2: kind 1 usage 0 paper 0 media 2 bin 7 under 0 name  pages 1 3", a line for each slot that is used.
std::string SlotsOf(const WorkingDevMode& working) {
    std::string slots;
    for (size_t i = 0; i < kExceptionSlots; ++i) {
        const ExceptionRecord& slot = working.exceptions[i];
        if (slot.kind == kNoException) {
            continue;
        }
        slots += std::to_string(i + 1);
        for (const int value :
             {int{slot.kind}, int{slot.usage}, int{slot.paper}, int{slot.media}, int{slot.bin}, int{slot.underlay}}) {
            slots += " " + std::to_string(value);
        }
        slots += " " + ToText(slot.overlayName) + ":";
        for (size_t page = 0; page < working.exceptionPages[i].count; ++page) {
            slots += " " + std::to_string(working.exceptionPages[i].pages[page]);
        }
        slots += "\n";
    }
    return slots;
}

TEST_F(Conversions, TakeOverPageExceptions) {
    Use(TicketModel(kPdlImage));
    const struct {
        ExceptionRecord slot;
        ExceptionPageList pages;
        const char* line;
        const char* parameter;
    } rows[] = {
        {{40, kMediaException, kNotSpecifiedPages, 0, 1, 7, 0, {}, 0},
         {3, {1, 3, 5}},
         "kxp:DocumentMediaException3(kxp:MediaType(Plain(kxp:SelectionString(PLAIN)))"
         " kxp:InputBin(oem:Tray7(kxp:SelectionIndex(7)))"
         " kxp:ExceptionUsage(kxp:NotSpecifiedPages(kxp:Pages(->kxp:DocumentExceptionPages3))))\n",
         "kxp:DocumentExceptionPages3(1,3,5)\n"},
        {{40, kBlankSheetAfter, kOddPages, 65535, 2, 7, 0, {}, 0},
         {},
         "kxp:DocumentBlankSheetException3(kxp:AfterExceptionPages kxp:MediaSize(kxp:UsePageMediaSize)"
         " kxp:MediaType(oem:Gloss) kxp:InputBin(oem:Tray7(kxp:SelectionIndex(7)))"
         " kxp:ExceptionUsage(kxp:OddPages))\n",
         ""},
        {{40, kOverlayException, kEvenPages, 0, 0, 0, 1, TEXT("ONE.ovl"), 0},
         {},
         "kxp:DocumentOverlayException3(kxp:Overlay(*(kxp:File(ONE.ovl))) kxp:Layering(kxp:Underlay)"
         " kxp:ExceptionUsage(kxp:EvenPages))\n",
         ""},
    };
    for (const auto& row : rows) {
        WorkingDevMode working;
        printer_->Prepare(printer_->Default(), &working);
        working.exceptions[2] = row.slot;
        working.exceptionPages[2] = row.pages;
        const auto ticket = LoadTicket(TicketText(""));
        printer_->Write(working, ticket);
        const std::string line = row.line;
        EXPECT_EQ(Lines(ticket).Of(line.substr(0, line.find('('))), line);
        EXPECT_EQ(Lines(ticket).Of("kxp:DocumentExceptionPages3"), row.parameter);

        WorkingDevMode read;
        printer_->Prepare(printer_->Default(), &read);
        read.exceptions[0].kind = kOverlayException;  // which the ticket doesn't have
        printer_->Read(ticket, &read);
        EXPECT_EQ(SlotsOf(read), SlotsOf(working));
    }
}

// Tickets tell a stored watermark's values; which one it is stays what the device mode says.
TEST_F(Conversions, TakeOverWatermarkExceptions) {
    Use(TicketModel(kPdlImage));
    PrepareSettingsFile(kPrinterName);
    WatermarkRecord stored[2];
    for (WatermarkRecord& watermark : stored) {
        MakeBlankWatermark(&watermark);
        watermark.text[0] = 'W';
    }
    stored[0].type = kTextWatermark;
    stored[0].style.bold = stored[0].style.outline = 1;
    stored[0].style.color = 0x0000FF;
    stored[0].angle = 305;
    stored[0].placement = 7;
    stored[0].positionX = 12;
    stored[0].positionY = -3;
    stored[1].type = kImageWatermark;
    CopyText<WCHAR>(stored[1].imageName, ARRAYSIZE(stored[1].imageName), TEXT("logo.bmp"));
    stored[1].scaleX = 50;
    stored[1].scaleY = 60;
    stored[1].placement = 99;
    SaveWatermarkList(kPrinterName, stored, ARRAYSIZE(stored));

    const std::string prefix = "kxp:DocumentWatermarkException";
    const struct {
        uint8_t underlay;
        uint16_t watermark;
        const char* kind;  // of the option that the exception has
        const char* placement;
        const char* rest;  // what follows the placement
        const char* values;
    } rows[] = {
        {1, 0, "2(kxp:Text(kxp:Text(->", "kxp:TopRight(",
         " kxp:Layering(kxp:Underlay) kxp:ExceptionUsage(kxp:EvenPages))\n",
         "TextText2(W) TextFont2(Arial) TextFontSize2(72) TextAngle2(30) TextColor2(-65536) TextOutline2(1)"
         " TextBold2(1) TextItalic2(0) TextRightToLeft2(0) Transparency2(0) PlacementOffsetWidth2(1200)"
         " PlacementOffsetHeight2(-300) "},
        {0, 1, "2(kxp:Image(kxp:File(->", "kxp:Center(",
         " kxp:Layering(kxp:Overlay) kxp:ExceptionUsage(kxp:EvenPages))\n",
         "ImageFile2(logo.bmp) ImageScaleWidth2(50) ImageScaleHeight2(60) Transparency2(0) PlacementOffsetWidth2(0)"
         " PlacementOffsetHeight2(0) "},
        {0, 2, "", "", "", ""},  // there is none of this number
    };
    for (const auto& row : rows) {
        WorkingDevMode working;
        printer_->Prepare(printer_->Default(), &working);
        working.exceptions[1] = {40, kWatermarkException, kEvenPages, 0, 0, 0, row.underlay, {}, row.watermark};
        const auto ticket = LoadTicket(TicketText(""));
        printer_->Write(working, ticket);
        const Lines lines(ticket);
        const std::string line = lines.Of(prefix + "2");
        EXPECT_TRUE(line.starts_with(*row.kind ? prefix + row.kind : "")) << line;
        EXPECT_NE(line.find(row.placement), std::string::npos) << line;
        EXPECT_TRUE(line.ends_with(row.rest)) << line;
        std::string values;
        for (const char* const name :
             {"TextText", "TextFont", "TextFontSize", "TextAngle", "TextColor", "TextOutline", "TextBold", "TextItalic",
              "TextRightToLeft", "ImageFile", "ImageScaleWidth", "ImageScaleHeight", "Transparency",
              "PlacementOffsetWidth", "PlacementOffsetHeight"}) {
            std::string value = lines.Of(prefix + name + "2");
            std::ranges::replace(value, '\n', ' ');
            values += value.erase(0, prefix.size());
        }
        EXPECT_EQ(values, row.values);

        printer_->Read(ticket, &working);
        EXPECT_EQ(SlotsOf(working), line.empty() ? "" : "2 6 2 0 0 0 " + std::to_string(row.underlay) + " :\n");
    }
}

TEST_F(Conversions, ReadPageExceptions) {
    Use(TicketModel(kPdlImage));
    const std::string media = Choice("kxp:MediaType", "psk:Plain") + Choice("kxp:InputBin", "oem:Tray7");
    const std::string usage =
        Feature("kxp:ExceptionUsage", Option("kxp:SpecifiedPages", Reference("kxp:Pages", "kxp:P")));
    const struct {
        std::string ticket;
        const char* slots;
    } rows[] = {
        {Feature("kxp:DocumentMediaException2", media + usage) + Init("kxp:P", "1,0,5"), "2 1 0 0 1 7 0 : 1\n"},
        {Feature("kxp:DocumentMediaException2", media + usage) + Init("kxp:P", "9,8,7,6,5,4,3,2,1"),
         "2 1 0 0 1 7 0 : 9 8 7 6 5 4 3 2\n"},
        {Feature("kxp:DocumentMediaException1", media), "1 1 0 0 1 7 0 :\n"},
        {Feature("kxp:DocumentMediaException1", Choice("kxp:InputBin", "oem:Tray7")), ""},
        {Feature("kxp:DocumentMediaException4", media), ""},
        {Feature("kxp:DocumentBlankSheetException1",
                 Option("kxp:BeforeExceptionPages") + Choice("kxp:MediaSize", "kxp:UsePageMediaSize") + media),
         "1 2 0 65535 1 7 0 :\n"},
        {Feature("kxp:DocumentBlankSheetException1", Choice("kxp:MediaSize", "kxp:UsePageMediaSize") + media), ""},
        {Feature("kxp:DocumentBlankSheetException1",
                 Option("kxp:AfterExceptionPages") +
                     Feature("kxp:MediaSize", Option("psk:ISOA4", Scored("kxp:MediaSizeWidth", "210000") +
                                                                      Scored("kxp:MediaSizeHeight", "297000"))) +
                     media),
         "1 3 0 9 1 7 0 :\n"},
        {Feature("kxp:DocumentOverlayException1",
                 OverlayFile("kxp:Overlay", "C:\\A\\LONGERTHAN13CHARS") + Choice("kxp:Layering", "kxp:Underlay")),
         "1 5 0 0 0 0 1 LONGERTHAN13C:\n"},
        {Feature("kxp:DocumentOverlayException1", OverlayFile("kxp:Overlay", "ONE.ovl")), ""},
        {Feature("kxp:DocumentWatermarkException1", Option("kxp:Text")), ""},
    };
    for (const auto& row : rows) {
        WorkingDevMode working;
        printer_->Prepare(printer_->Default(), &working);
        printer_->Read(LoadTicket(TicketText(row.ticket)), &working);
        EXPECT_EQ(SlotsOf(working), row.slots) << row.ticket;
    }
}

// --- Listing

TEST_F(Conversions, ListWhatIsntInstalled) {
    Use(TicketModel(kPdlXps), kDuplexInstalled | kStaplerInstalled, 0x100);
    const Lines lines = Capabilities();
    EXPECT_NE(lines.Of("PageInputBin").find(" oem:Tray2!"), std::string::npos);
    EXPECT_EQ(lines.Of("PageInputBin").find("oem:Tray1!"), std::string::npos);
    EXPECT_NE(lines.Of("DocumentDuplex").find(" TwoSidedLongEdge!"), std::string::npos);
    EXPECT_NE(lines.Of("kxp:Fold").find(" oem:Half!"), std::string::npos);
    EXPECT_NE(lines.Of("oem:AccountUserInput").find("psf:MaxLength(11)"), std::string::npos);
    EXPECT_NE(lines.Of("DocumentNUp").find("PagesPerSheet(25)"), std::string::npos);
    EXPECT_EQ(lines.Of("PageOutputColor").find("Grayscale"), std::string::npos);
}

TEST_F(Conversions, ListTheNumbersOfTrays) {
    const struct {
        uint16_t pdlType;
        const char* numbers;  // of the model's trays in their order, "-" for none
    } rows[] = {
        {kPdlPcl6, "1 3 5 4 2 6 0 1 7 1 2 2 0 "},       {kPdlPcl5, "1 4 5 1 2 6 - 7 8 7 2 2 - "},
        {kPdlPostScript, "1 3 1 0 - - - - 7 - - - - "}, {kPdlImage, "1 1 2 3 4 5 6 7 11 1025 4 4 12 "},
        {kPdlXps, "- - - - - - - - - - - - - "},
    };
    for (const auto& row : rows) {
        Use(TicketModel(row.pdlType));
        const std::string bins = Capabilities().Of("PageInputBin");
        std::string numbers;
        for (size_t tray = bins.find("oem:Tray"); tray != std::string::npos;) {
            const size_t next = bins.find("oem:Tray", tray + 1);
            const std::string option = bins.substr(tray, next - tray);
            const size_t number = option.find("SelectionIndex(");
            numbers += (number != std::string::npos ? option.substr(number + 15, option.find(')', number) - number - 15)
                                                    : "-") +
                       " ";
            tray = next;
        }
        EXPECT_EQ(numbers, row.numbers) << row.pdlType;
    }
}

TEST_F(Conversions, ListTheImageableSize) {
    Use(TicketModel(kPdlPcl6));
    const auto size = [](const char* width, const char* length, const char* x, const char* y, const char* across,
                         const char* along) {
        return std::string("PageImageableSize(ImageableSizeWidth(") + width + ") ImageableSizeHeight(" + length +
               ") ImageableArea(OriginWidth(" + x + ") OriginHeight(" + y + ") ExtentWidth(" + across +
               ") ExtentHeight(" + along + ")))\n";
    };
    // Left 100, top 110, right 120 and bottom 130 dots of 600 an inch.
    const struct {
        const char* settings;
        std::string expected;
    } rows[] = {
        {"", size("210000", "297000", "4233", "4656", "200687", "286841")},
        {"rotate180=1", size("210000", "297000", "5080", "5503", "200687", "286841")},
        {"dmOrientation=2", size("297000", "210000", "5503", "4233", "286841", "200687")},
        {"dmOrientation=2 rotate180=1", size("297000", "210000", "4656", "5080", "286841", "200687")},
        {"marginMode=2 customMargins=600", size("210000", "297000", "25400", "0", "184600", "297000")},
        {"scaleMode=4 scaleValue=1", size("215900", "279400", "4233", "4656", "206587", "269241")},
        {"dmPaperSize=256", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Capabilities(row.settings).Of("PageImageableSize"), row.expected) << row.settings;
    }
}

TEST_F(Conversions, ReadValuesThatAreNoNumbers) {
    Use(TicketModel(kPdlPcl6));
    CheckReads({
        {Init("psk:PageCopies", "2") + Init("psk:DocumentCopiesAllPages", "3"), "", "dmCopies=3"},
        {Init("psk:PageCopies", " 12 copies"), "", "dmCopies=12"},
        {Init("psk:PageCopies", "many"), "", "dmCopies=0"},
        {Init("psk:PageCopies", "65538"), "", "dmCopies=2"},
        {Init("psk:PageCopies", "99999999999"), "dmCopies=2", "dmCopies=-1"},
        {"<psf:ParameterInit name='psk:PageCopies'/>", "", ""},
        {NUp("99999999999"), "", ""},
        {NUp("two"), "pagesPerSheet=4", ""},
        {Paper("psk:Any", "wide", "297000"), "", "dmPaperSize=256 dmPaperWidth=0"},
        {Scaling("CustomSquare", "99999999999"), "scaleMode=66 scaleValue=50", "scaleValue=-1"},
        {Binding("psk:BindLeft", "99999999999"), "", "gutterShiftX=50727960"},
        {Binding("psk:BindLeft", "25399"), "", "gutterShiftX=599"},
        {Binding("psk:BindLeft", "far"), "gutterShiftX=9", "gutterShiftX=0"},
    });
}

}  // namespace
}  // namespace velmora
