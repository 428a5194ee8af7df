// The two validations on small models: what a field may hold where that depends on the model or on other fields, what a
// bad value becomes, and what else rejects.
#include <algorithm>
#include <set>

#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/settings/printer_data_file.h"
#include "tests/driver/machine.h"
#include "tools/velmora/devmode_differences.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using Numbers = std::vector<int64_t>;
constexpr int64_t kMostU32 = 0xFFFFFFFF;

// A number to store in an element of a field, or in a byte of an area. Of a text: to fill it to its last character with
// this one.
struct Edit {
    std::string field;
    int64_t number;
    size_t element = 0;
};
using Edits = std::vector<Edit>;
constexpr int64_t kUnterminated = 'x';

Edits operator+(Edits edits, const Edits& more) {
    edits.insert(edits.end(), more.begin(), more.end());
    return edits;
}

const FieldDescriptor* FindField(std::span<const FieldDescriptor> fields, std::string_view name) {
    const auto field = std::ranges::find(fields, name, &FieldDescriptor::name);
    return field == fields.end() ? nullptr : &*field;
}

void Apply(const Edits& edits, VelmoraDevMode* devMode) {
    for (const Edit& edit : edits) {
        void* part = &devMode->publicPart;
        const FieldDescriptor* field = FindField(PublicFields(), edit.field);
        if (!field) {
            part = &devMode->privatePart;
            field = FindField(PrivateFields(), edit.field);
        }
        ASSERT_TRUE(field) << edit.field;
        char* const place = static_cast<char*>(part) + field->offset;
        if (field->kind == FieldKind::kBytes) {
            place[edit.element] = static_cast<char>(edit.number);
        } else if (field->kind == FieldKind::kWideText || field->kind == FieldKind::kAnsiText) {
            memset(place, static_cast<int>(edit.number), field->width);
        } else {
            WriteFieldNumber(*field, part, edit.element, edit.number);
        }
    }
}

class Validation : public MachineTest {
  protected:
    // Checks against this model from now on. What is valid is its default device mode, but for the selection of its
    // feature without options.
    void Use(const DescriptionBuilder& builder) {
        if (model_) {
            Describe(builder);
        } else {
            Install(builder.Build());
        }
        const OwnedFile file = OpenDescriptionFile(Printer());
        model_ = LoadDeviceModel(file.Get());
        ASSERT_TRUE(model_);
        facts_ = ReadPrivateFacts(Printer(), file.Get());
        facts_.dataFileSize = 20000;
        BuildDefaultDevMode(Printer(), kPrinterName, &valid_);
        valid_.privatePart.featureSelection[1] = 0;
    }

    // Checks a valid device mode with these edits: the public part where they are of it, else the private part.
    ValidationReport CheckWith(const Edits& edits) {
        devMode_ = valid_;
        Apply(edits, &devMode_);
        ValidationReport report;
        if (!edits.empty() && FindField(PublicFields(), edits.back().field)) {
            CheckPublicDevMode(Printer(), *model_, &devMode_.publicPart, &report);
        } else {
            CheckPrivateDevMode(facts_, *model_, &devMode_.privatePart, &report);
        }
        return report;
    }

    // What is then reported, and that nothing but `after` differs from the valid device mode.
    void Expect(const Edits& edits, const Texts& repaired, const char* rejectedBy, const Edits& after) {
        std::string place = "with";
        for (const Edit& edit : edits) {
            place += " " + edit.field + "[" + std::to_string(edit.element) + "] = " + std::to_string(edit.number);
        }
        const ValidationReport report = CheckWith(edits);
        EXPECT_EQ(RepairsOf(report), repaired) << place;
        EXPECT_STREQ(report.rejectedBy, rejectedBy) << place;
        EXPECT_EQ(report.IsAccepted(), repaired.size() < 3 && !rejectedBy) << place;
        VelmoraDevMode expected = valid_;
        Apply(after, &expected);
        EXPECT_EQ(DifferenceLines(expected, devMode_), Texts()) << place;
    }

    // A field's good and bad numbers where the device mode holds `when`. A bad one costs one repair, which the report
    // calls `named` or else as the field; `repair` is what it changes.
    void Rule(const Edits& when, const std::string& field, const Numbers& good, const Numbers& bad,
              const Edits& repair = {}, const std::string& named = "", size_t element = 0) {
        checked_.insert(field);
        for (const int64_t number : good) {
            const Edits edits = when + Edits{{field, number, element}};
            Expect(edits, {}, nullptr, edits);
        }
        for (const int64_t number : bad) {
            const Edits edits = when + Edits{{field, number, element}};
            Expect(edits, {named.empty() ? field : named}, nullptr, edits + repair);
        }
    }

    // Fields whose every element has the same rule, by itself: a bad number becomes `repair`.
    void Alike(const Texts& fields, const Numbers& good, const Numbers& bad, int64_t repair, const Edits& when = {}) {
        for (const std::string& name : fields) {
            const FieldDescriptor* field = FindField(PublicFields(), name);
            field = field ? field : FindField(PrivateFields(), name);
            ASSERT_TRUE(field) << name;
            for (size_t i = 0; i < field->count; ++i) {
                Rule(when, name, good, bad, {{name, repair, i}}, "", i);
            }
        }
    }

    // The ends of the ranges that the table tells of the fields that no rule of a test was about. A number beyond them
    // costs a repair and becomes one within.
    void CheckRanges(std::span<const FieldDescriptor> fields) {
        for (const FieldDescriptor& field : fields) {
            if (field.accepted.empty() || !checked_.insert(field.name).second) {
                continue;
            }
            void* const part = fields.data() == PublicFields().data() ? static_cast<void*>(&devMode_.publicPart)
                                                                      : &devMode_.privatePart;
            const size_t last = field.count - 1u;
            for (const ValueRange& range : field.accepted) {
                Rule({}, field.name, {range.low, range.high}, {}, {}, "", last);
                for (const int64_t beyond : {range.low - 1, range.high + 1}) {
                    WriteFieldNumber(field, part, last, beyond);
                    if (field.Accepts(beyond) || ReadFieldNumber(field, part, last) != beyond) {
                        continue;  // a neighbour, or more than the field holds
                    }
                    CheckWith({{field.name, beyond, last}});
                    const int64_t repaired = ReadFieldNumber(field, part, last);
                    EXPECT_TRUE(field.Accepts(repaired)) << field.name;
                    Rule({}, field.name, {}, {beyond}, {{field.name, repaired, last}}, "", last);
                }
            }
        }
    }

    // Each edit alone rejects at once, and changes nothing.
    void ExpectRejected(const Edits& edits) {
        for (const Edit& edit : edits) {
            checked_.insert(edit.field);
            Expect({edit}, {}, edit.field.c_str(), {edit});
        }
    }

    // Every field whose valid values the table tells has been checked here.
    void ExpectAllChecked(std::span<const FieldDescriptor> fields) const {
        for (const FieldDescriptor& field : fields) {
            EXPECT_TRUE((field.accepted.empty() && !field.validNote) || checked_.contains(field.name)) << field.name;
        }
    }

    void CheckWatermarks();
    void CheckSheets(const std::string& kind, int64_t mostMode, int64_t bin);
    void CheckExceptionArea();

    PrivateFacts facts_ = {};
    VelmoraDevMode valid_ = {};
    VelmoraDevMode devMode_ = {};
    std::set<std::string, std::less<>> checked_;
};

TEST_F(Validation, FieldsOfThePublicPart) {
    machine_.SetMetric(false);
    Use(SmallModel(kPdlPcl6));
    const std::string size = "dmPaperLength, dmPaperWidth";
    const std::string resolution = "dmPrintQuality, dmYResolution";
    const Edits a4 = {{"dmPaperWidth", 2101}, {"dmPaperLength", 2971}};
    const Edits turned = {{"dmPaperWidth", 2971}, {"dmPaperLength", 2101}};
    const Edits lowest = {{"dmPrintQuality", 600}, {"dmYResolution", 600}};
    ExpectRejected({{"dmDeviceName", 0},
                    {"dmSpecVersion", 0x400},
                    {"dmSize", 219},
                    {"dmSize", 4088},
                    {"dmDriverExtra", 3867},
                    {"dmDriverExtra", 0},
                    {"dmFields", 0}});
    Rule({}, "dmDriverVersion", {1, 0xFFFF}, {0}, {{"dmDriverVersion", 0x0A00}});
    Rule({}, "dmPaperSize", {1, 118, 256, 32767}, {0, 119, 255, -1}, {{"dmPaperSize", 1}});
    Rule({}, "dmPaperWidth", {900, 4320}, {899, 4321, 0, -1}, a4, size);
    Rule({}, "dmPaperLength", {900, 4320}, {899, 4321, 0, -1}, a4, size);
    Rule({{"dmOrientation", 2}}, "dmPaperLength", {900}, {899}, turned, size);
    Rule({{"dmDefaultSource", 1028}}, "dmPaperLength", {0, -1, 4321}, {});
    Rule({}, "dmPrintQuality", {1200}, {300, -1}, lowest, resolution);
    Rule({}, "dmYResolution", {600, 1200}, {0, 601}, lowest, resolution);
    Rule({{"dmYResolution", 1200}}, "dmPrintQuality", {1200}, {600}, lowest, resolution);

    Alike({"dmDefaultSource"}, {7, 261, 1028, 2000, 2001}, {0, 1, 1999, 2002, -1}, 7);
    Alike({"dmColor"}, {0}, {1, 2, -1}, 0);
    Alike({"dmDuplex"}, {0, 3}, {4, -1}, 0);
    Alike({"dmDuplex"}, {0, 3}, {4, -1}, 1, {{"dmFields", 0x9303}});
    Alike({"dmICMMethod", "dmICMIntent"}, {0, 4, 256, kMostU32}, {5, 255}, 0);
    Alike({"dmMediaType"}, {0, 3, 256, kMostU32}, {4, 255}, 0);
    Alike({"dmICMMethod"}, {0}, {5}, 1, {{"dmFields", 0x808303}});
    Alike({"dmICMIntent"}, {0}, {5}, 1, {{"dmFields", 0x1008303}});
    Alike({"dmMediaType"}, {0}, {5}, 1, {{"dmFields", 0x2008303}});
    // Only the beginning of the form's name is emptied.
    EXPECT_EQ(CheckWith({{"dmFormName", kUnterminated}}).repairs, 1u);
    EXPECT_EQ(std::ranges::count(devMode_.publicPart.dmFormName, 0), 16);
    checked_.insert("dmFormName");
    CheckRanges(PublicFields());
    ExpectAllChecked(PublicFields());

    DescriptionBuilder builder = SmallModel(kPdlPcl6, kColor);
    builder.SetSlot(offsetof(DeviceModel, binTable), 0);
    builder.SetSlot(offsetof(DeviceModel, mediaTable), 0);
    builder.fields.customMinWidth = builder.fields.customMaxWidth = 0;
    Use(builder);
    valid_.publicPart.dmDefaultSource = 1028;
    Alike({"dmColor"}, {1, 2}, {0, 3, -1}, 2);
    Alike({"dmDefaultSource"}, {1028}, {7, 2000}, 7);
    valid_.publicPart.dmDefaultSource = 7;
    builder.Table(offsetof(DeviceModel, binTable), std::vector<BinRecord>{{1, 7, 1, 0}});
    Use(builder);
    Rule({}, "dmPaperWidth", {0, 32767}, {-1}, a4, size);
}

void Validation::CheckWatermarks() {
    const Edits off = {{"watermarkFlags", 0}};
    const Edits text = {{"watermarkFlags", 1}, {"watermarkFontSize", 40}};
    const Edits image = {{"watermarkFlags", 6}};
    const Edits rendered = {
        {"watermarkFlags", 36}, {"watermarkIndex", 1}, {"watermarkFontSize", 1}, {"watermarkAngle", 1}};
    Rule(rendered, "watermarkFlags", {0, 1, 2, 5, 6, 17, 21, 32, 36}, {3, 4, 33, 38, kMostU32}, off);
    Rule(off, "watermarkPages", {3}, {});
    Rule(off, "watermarkPosition", {10}, {});
    Rule(text, "watermarkIndex", {0, 32767}, {-1, -32768}, off);
    Rule(text, "watermarkText", {0}, {kUnterminated}, off + Edits{{"watermarkText", 0}});
    Rule(text, "watermarkFont", {0}, {kUnterminated}, off + Edits{{"watermarkFont", 0}});
    Rule(text, "watermarkFontSize", {1, -1}, {0}, off);
    Rule(text, "watermarkAngle", {3599, -3600}, {3600}, off);
    Rule(text, "watermarkColor", {0, 0xFFFFFF}, {0x1000000, kMostU32}, off);
    Rule(text, "watermarkBold", {0, 1}, {2, -1}, off);
    Rule(text, "watermarkItalic", {0, 1}, {2, -1}, off);
    Rule(image, "watermarkFile", {0}, {kUnterminated}, off + Edits{{"watermarkFile", 0}});
    Rule(image, "watermarkIndex", {-1}, {});
    Rule(image, "watermarkAngle", {3600}, {});
    Rule(image, "watermarkBold", {2}, {});
    Rule(rendered, "watermarkFile", {0}, {kUnterminated}, off + Edits{{"watermarkFile", 0}});
    Rule(rendered, "watermarkIndex", {1, 32767}, {0, -1}, off);
    Rule(rendered, "watermarkFontSize", {1}, {0, -1}, off);
    Rule(rendered, "watermarkAngle", {1, 3600}, {0, -1}, off);
    Rule(rendered, "watermarkColor", {0x1000000}, {});

    for (const Edits& when : {text, image, rendered}) {
        Alike({"watermarkPages"}, {0, 2}, {3, 65535}, 0, when);
        Alike({"watermarkPosition"}, {0, 9}, {10, kMostU32}, 0, when);
    }
}

// Covers, interleaved sheets and separators.
void Validation::CheckSheets(const std::string& kind, int64_t mostMode, int64_t bin) {
    const std::string paper = kind + "Paper";
    const Edits on = {{kind + "Mode", 1}};
    const Edits off = {{kind + "Mode", 0}};
    const Edits sized = on + Edits{{paper, 9}, {kind + "Width", 900}, {kind + "Length", 4320}};
    Rule({}, kind + "Mode", {0, mostMode}, {mostMode + 1, 65535}, off);
    Rule(on, kind + "Bin", {1, 15, 256, 65535}, {0, 16, 255}, {{kind + "Bin", bin}});
    Rule(on, paper, {-1}, {0, 9, -2}, off);
    Rule(on, kind + "Media", {1, 2}, {0, 3, -1}, off);
    Rule(sized, paper, {-1, 1, 118, 256, 32767}, {0, 119, 255, -2}, off);
    Rule(sized, kind + "Width", {900, 2970}, {0, 899, 2971, -1}, off, paper);
    Rule(sized, kind + "Length", {1480, 4320}, {0, 1479, 4321, -1}, off, paper);
    Rule(off, kind + "Bin", {0}, {});
    Rule(off, paper, {0}, {});
    Rule(off, kind + "Media", {0}, {});
}

void Validation::CheckExceptionArea() {
    const std::string area = "exceptionArea";
    const Edits empty = {{"exceptionCount", 0}, {"pageListCount", 0}};
    // One byte of it is looked at on this model.
    Rule({}, area, {0}, {1, 255}, {{area, 0, 14}}, "", 14);
    Rule({}, area, {255}, {}, {}, "", 13);
    Rule({}, "exceptionCount", {255}, {});
    Rule({}, "pageListCount", {255}, {});

    facts_.hasPipelineConfig = true;
    ExpectRejected({{"exceptionAreaOffset", 64281}});
    const auto counts = [](int64_t records, int64_t lists) {
        return Edits{{"exceptionCount", records}, {"pageListCount", lists}};
    };
    const Edits ten = {{"exceptionArea", 10}};              // the length of the first record
    const Edits last = {{area, 0xDF, 0}, {area, 0x02, 1}};  // the next place would be the first beyond the area
    Rule(counts(0, 1), "exceptionCount", {0, 3}, {4, 255}, empty, area);
    Rule(counts(1, 0), "pageListCount", {0, 3}, {4, 255}, empty, area);
    Rule(counts(0, 0), area, {255}, {}, {}, "", 14);
    Rule(counts(1, 0) + ten, area, {0, 6}, {7, 255}, {{area, 0, 2}}, "", 2);
    Rule(counts(2, 0) + ten, area, {0, 6}, {7, 255}, {{area, 0, 12}}, "", 12);
    Rule(counts(1, 0) + ten, area, {7}, {}, {}, "", 12);
    Rule(counts(1, 0) + last, area, {0xDE}, {0xDF}, empty, "", 0);
    Rule(counts(1, 1), area, {0, 1}, {3, 255}, empty, "", 1);
    // A record of length 0: whatever follows lies where it does.
    Rule(counts(3, 0), area, {0, 6}, {7, 255}, {{area, 0, 2}}, "", 2);
    Rule(counts(1, 2), area, {0, 3}, {4, 7}, {{area, 0, 2}}, "", 2);
    Rule(counts(1, 1) + ten, area, {0, 3}, {4, 255}, {{area, 0, 10}}, "", 10);
    Rule(counts(0, 1), area, {0, 3}, {4, 255}, {{area, 0, 0}}, "", 0);
    Rule(counts(0, 1), area, {0, 255}, {}, {}, "", 1);
    Rule(counts(0, 2) + Edits{{area, 1, 1}}, area, {0, 3}, {4, 255}, {{area, 0, 4}}, "", 4);
    Rule(counts(0, 2) + Edits{{area, 255, 1}}, area, {110}, {111, 255}, empty, "", 513);

    facts_.hasPipelineConfig = false;
}

TEST_F(Validation, FieldsOfThePrivatePart) {
    DescriptionBuilder builder = SmallModel(kPdlPcl5);
    builder.AddFont("font");
    builder.AddFont("font");
    Use(builder);
    ExpectRejected({{"privateVersion", 2},
                    {"privateSignature", 0xCACB},
                    {"optionAreaOffset", 331},
                    {"sliceTableOffset", 661},
                    {"exceptionAreaOffset", 1254},
                    {"extensionMagicA", 2032},
                    {"extensionMagicB", 14},
                    {"descriptionPath", kUnterminated},
                    {"settingsFolder", kUnterminated},
                    {"uiCode", kUnterminated},
                    {"uiLabel", kUnterminated},
                    {"colorPresetName", kUnterminated},
                    {"outputText", kUnterminated}});
    Alike({"exceptionAreaOffset"}, {0, 1255, 64281}, {}, 0);

    const Edits noPattern = {{"patternMode", 0}};
    Rule({{"fontRecordCount", 2}}, "fontDataOffset", {0, 20000}, {20001, kMostU32},
         {{"fontDataOffset", 0}, {"fontRecordCount", 0}});
    Rule({{"patternMode", 2}}, "patternOffset", {0, 20000}, {20001, kMostU32}, noPattern + Edits{{"patternOffset", 0}});
    Rule({{"patternMode", 2}}, "patternSize", {0, 8, 16, 32}, {1, 31, 64}, noPattern + Edits{{"patternSize", 0}});
    Rule({{"scaleValue", 100}}, "scaleMode", {0, 1, 2, 4, 33, 66, 68, 1024}, {3, 32, 65535}, {{"scaleMode", 0}});
    Rule({}, "scaleValue", {0, 1000, -2}, {});
    Rule({{"pagesPerSheet", 2}}, "nupOrder", {0, 3, 16, 19}, {4, 15, 20, 65535}, {{"nupOrder", 0}});
    Rule({}, "nupOrder", {4}, {});
    Rule({{"finishingA", 1}, {"finishingB", 5}}, "finishingSide", {1, 2}, {0, 3}, {{"finishingSide", 1}});
    Rule({{"finishingA", 1}}, "finishingSide", {0, 3}, {});
    Rule({{"overlayMode", 1}}, "overlayName", {0}, {kUnterminated}, {{"overlayName", 0}, {"overlayMode", 0}});
    Rule({{"overlayMode", 10}}, "overlayName2", {0}, {kUnterminated}, {{"overlayName2", 0}, {"overlayMode", 0}});
    Rule({}, "overlayName", {kUnterminated}, {});
    Rule({}, "uiFlagD", {0, 1}, {2, 65535}, {{"uiFlagD", 1}});
    Rule({{"uiZoomOn", 1}}, "uiFlagD", {0, 1}, {2}, {{"uiFlagD", 0}});
    Rule({{"colorAuto", 0}}, "colorPreset", {1, 7}, {0, 8}, {{"colorPreset", 1}, {"colorAuto", 1}});
    Rule({}, "colorAuto", {0, 1}, {2, kMostU32}, {{"colorAuto", 1}});
    Rule({{"colorPreset", 4}}, "colorAuto", {0, 1}, {2}, {{"colorAuto", 0}});
    Rule({}, "featureSelection", {0, 1, 2}, {3, -1}, {{"featureSelection", 0}});
    Rule({}, "featureSelection", {0}, {1, -1}, {{"featureSelection", 0, 1}}, "", 1);
    Rule({}, "featureSelection", {99, -99}, {}, {}, "", 2);

    for (const int64_t zoom : {2, 66}) {
        Rule({{"scaleMode", zoom}}, "scaleValue", {20, 500}, {19, 501, -1}, {{"scaleMode", 0}}, "scaleMode");
    }
    for (const int64_t mode : {1, 4, 33, 68, 1024}) {
        const Edits when = {{"scaleMode", mode}};
        const Edits off = {{"scaleMode", 0}};
        Rule(when, "scaleValue", {-1, 1, 118, 256, 32767}, {0, 119, 255, -2}, off, "scaleMode");
        Rule(when, "scaleWidth", {0, 900, 2970}, {899, 2971, -1}, off, "scaleMode");
        Rule(when, "scaleLength", {0, 1480, 4320}, {1479, 4321, -1}, off, "scaleMode");
    }
    for (const size_t i : {0, 1, 2, 3}) {
        const int64_t most = i % 2 == 0 ? 1485 : 2160;
        Edits none = {{"marginMode", 0}};
        for (const size_t k : {0, 1, 2, 3}) {
            none.push_back({"customMargins", 0, k});
        }
        const Edits when = {{"marginMode", 2}, {"customMargins", 5, 0}, {"customMargins", 5, 3}};
        Rule(when, "customMargins", {0, most}, {-1, most + 1}, none, "", i);
        Rule({{"marginMode", 1}}, "customMargins", {-1}, {}, {}, "", i);
    }
    for (size_t i = 0; i < 6; ++i) {
        const Edits none = {{"blobRefs.first", 0, i}, {"blobRefs.second", 0, i}};
        Rule({{"blobRefs.second", 7, i}}, "blobRefs.first", {0, 1000}, {1001, -1}, none, "blobRefs", i);
        Rule({{"blobRefs.first", 7, i}}, "blobRefs.second", {0, 1000}, {1001, -1}, none, "blobRefs", i);
    }
    for (size_t i = 0; i < 16; ++i) {
        const Edits none = {{"blobSlices.start", 0, i}, {"blobSlices.length", 0, i}};
        Rule({{"blobSlices.length", 0xE000, i}}, "blobSlices.start", {0, 1000}, {1001, -1}, none, "blobSlices", i);
        Rule({{"blobSlices.start", 10, i}}, "blobSlices.length", {990, 0xE000 | 990}, {991, 0xFFFF}, none, "blobSlices",
             i);
    }
    Alike({"extraText", "auxText", "pjlJobStart", "pjlJobEnd"}, {0}, {kUnterminated}, 0);
    Alike({"fontRecordCount"}, {0, 2}, {1, 3, kMostU32}, 2);
    Alike({"patternMode"}, {0, 4}, {5, kMostU32}, 0);
    Alike({"mediaIndex"}, {1, 2}, {0, 3, -1}, 2);
    Alike({"sliceCount"}, {0, 1000}, {-1, 1001}, 0);
    Alike({"colorModeIndex"}, {0}, {1, -1}, 0);
    Alike({"resolutionIndex"}, {0, 2}, {3, -1}, 0);
    Alike({"textColorOptions", "graphicsColorOptions", "imageColorOptions", "generalColorOptions"}, {0}, {1, -1}, 0);
    CheckWatermarks();
    CheckSheets("frontCover", 2, 261);
    CheckSheets("backCover", 2, 264);
    CheckSheets("interleave", 2, 1025);
    CheckSheets("separator", 5, 1025);
    Alike({"frontCoverNup"}, {1, 2, 4, 6, 8, 9, 16}, {0, 3, 12, 25}, 1, {{"frontCoverMode", 1}});
    Alike({"frontCoverBothSides"}, {0, 1}, {2, 65535}, 1, {{"frontCoverMode", 2}});
    Alike({"backCoverBothSides"}, {0, 1}, {2, 65535}, 1, {{"backCoverMode", 1}});
    Alike({"frontCoverNup", "frontCoverBothSides", "backCoverBothSides"}, {5}, {}, 0);
    CheckExceptionArea();
    CheckRanges(PrivateFields());
    ExpectAllChecked(PrivateFields());
}

// What the model has decides these.
TEST_F(Validation, FieldsOfThePrivatePartOnOtherModels) {
    DescriptionBuilder builder = SmallModel(kPdlImage, kColor);
    builder.Table(offsetof(DeviceModel, colorModeTable), std::vector<ColorModeRecord>{{1, 1, -1}, {2, 1, -1}});
    builder.fields.defaultColorMode = 1;
    builder.Table(offsetof(DeviceModel, colorOptionValues),
                  std::vector<ColorValueRecord>{{1, 0, 0, 0, 0}, {1, 0, 0, 0, 0}, {}, {1, 0, 0, 0, 0}});
    builder.Table(offsetof(DeviceModel, textColorFeatures), std::vector<ColorFeatureRecord>{{1, 0}, {1, 3}});
    builder.Table(offsetof(DeviceModel, generalColorFeatures),
                  std::vector<ColorFeatureRecord>{{1, 0}, {1, 0}, {1, 0}, {1, 0}, {1, 0}});
    Use(builder);
    ExpectRejected({{"exceptionAreaOffset", 64281}});
    Alike({"patternMode", "patternOffset", "patternSize"}, {0}, {2, 8}, 0);
    Alike({"colorModeIndex"}, {0, 1}, {2, -1}, 1);
    Alike({"generalColorOptions"}, {0, 1}, {2, -1}, 0);
    Alike({"graphicsColorOptions", "imageColorOptions"}, {0}, {1, -1}, 0);
    Rule({}, "textColorOptions", {0, 1}, {2, -1}, {{"textColorOptions", 0}});
    Rule({}, "textColorOptions", {0}, {1}, {{"textColorOptions", 0, 1}}, "", 1);
    Rule({}, "textColorOptions", {0}, {1}, {{"textColorOptions", 0, 2}}, "", 2);
    Rule({}, "featureSelection", {2}, {3}, {{"featureSelection", 0}});
    Rule({{"exceptionCount", 1}}, "exceptionArea", {6}, {7}, {{"exceptionArea", 0, 2}}, "", 2);

    facts_.dataFileSize = kNoPrinterDataFile;
    Alike({"fontDataOffset"}, {kMostU32}, {}, 0);

    // Without media, and of a feature without values, 0 is the one choice; without resolutions there is none.
    builder = SmallModel(kPdlPostScript, kColor);
    builder.SetSlot(offsetof(DeviceModel, mediaTable), 0);
    builder.SetSlot(offsetof(DeviceModel, resolutionTable), 0);
    builder.Table(offsetof(DeviceModel, textColorFeatures), std::vector<ColorFeatureRecord>{{1, 0}});
    builder.fields.defaultMedia = 0;
    builder.fields.customMaxLength = 0;
    Use(builder);
    Expect({}, {"resolutionIndex"}, nullptr, {{"resolutionIndex", 0}});
    Expect({{"textColorOptions", 1}}, {"resolutionIndex", "textColorOptions"}, nullptr, {{"resolutionIndex", 0}});
    Expect({{"mediaIndex", 1}, {"marginMode", 2}, {"customMargins", 16384, 1}, {"resolutionIndex", 0}},
           {"customMargins", "mediaIndex", "resolutionIndex"}, nullptr, {{"resolutionIndex", 0}});
}

// Several at once: the third repair ends a validation, and what was repaired stays.
TEST_F(Validation, RepairsAreCountedAndTheThirdRejects) {
    Use(SmallModel(kPdlPcl6));
    Expect({{"dmSize", 4088}, {"dmDriverExtra", 0}}, {}, nullptr, {});
    Expect({{"dmFields", 1}, {"dmNup", 2}}, {"dmNup"}, nullptr, {{"dmFields", 0x8303}});
    Expect({{"dmFields", DM_COLOR}, {"dmColor", 2}}, {}, nullptr, {{"dmFields", 0x8303}});
    Expect({{"booklet", -1}, {"uiCode", kUnterminated}, {"uiFlagA", 2}}, {"booklet"}, "uiCode",
           {{"uiCode", kUnterminated}, {"uiFlagA", 2}});
    Expect({{"colorAdjust", 11, 0}, {"colorAdjust", 11, 1}, {"colorAdjust", 11, 2}, {"colorLevels", 11}},
           {"colorAdjust", "colorAdjust", "colorAdjust"}, nullptr, {{"colorLevels", 11}});
    Expect({{"textColorOptions", 1, 3}, {"graphicsColorOptions", 1, 0}, {"imageColorOptions", 1, 2}},
           {"textColorOptions", "graphicsColorOptions", "imageColorOptions"}, nullptr, {});
    // A watermark's further values are checked after it is off, a pair's second value after it is 0.
    Expect({{"watermarkFlags", 1}, {"watermarkAngle", 3600}, {"watermarkPosition", 10}},
           {"watermarkFontSize", "watermarkAngle", "watermarkPosition"}, nullptr, {{"watermarkAngle", 3600}});
    Expect({{"blobRefs.first", -1}, {"blobRefs.second", -1}}, {"blobRefs"}, nullptr, {});
    Expect({{"overlayMode", 1}, {"overlayName", kUnterminated}, {"overlayName2", kUnterminated}}, {"overlayName"},
           nullptr, {{"overlayName2", kUnterminated}});
    // Taken as it is, once it is known for this printer's.
    const Edits unchecked = {{"acceptMark", 0x42}, {"pagesPerSheet", 3}, {"uiCode", kUnterminated}};
    Expect(unchecked, {}, nullptr, unchecked);
    const Edits foreign = {{"acceptMark", 0x42}, {"settingsFolder", kUnterminated}};
    Expect(foreign, {}, "settingsFolder", foreign);
}

// Where everything is bad: three repairs at a time, in the order of the checks. A text that rejects ends a validation,
// too, and is put right here.
TEST_F(Validation, TheOrderOfChecks) {
    Use(SmallModel(kPdlPcl5));
    VelmoraDevMode bad;
    memset(&bad, 0xC0, sizeof(bad));  // numbers are below 0, or as great
    const auto keep = [&](std::span<const FieldDescriptor> fields, void* to, const void* from, const Texts& names) {
        for (const std::string& name : names) {
            const FieldDescriptor* field = FindField(fields, name);
            ASSERT_TRUE(field) << name;
            memcpy(static_cast<char*>(to) + field->offset, static_cast<const char*>(from) + field->offset,
                   field->width);
        }
    };
    keep(PublicFields(), &bad.publicPart, &valid_.publicPart, {"dmSpecVersion", "dmSize", "dmDriverExtra"});
    keep(PrivateFields(), &bad.privatePart, &valid_.privatePart,
         {"privateVersion", "privateSignature", "optionAreaOffset", "sliceTableOffset", "exceptionAreaOffset",
          "acceptMark", "extensionMagicA", "extensionMagicB", "descriptionPath", "settingsFolder"});
    Apply({{"dmDriverVersion", 0}, {"dmICMMethod", 5}, {"dmICMIntent", 5}, {"dmMediaType", 5}}, &bad);

    // What `check` reports of `bad` until it accepts it; repairs in a row that are called the same stand once.
    const auto orderOf = [&](const auto& check) {
        std::string order;
        std::string last;
        bool isAccepted = false;
        for (int i = 0; i < 100 && !isAccepted; ++i) {
            ValidationReport report;
            check(&report);
            isAccepted = report.IsAccepted();
            Texts names = RepairsOf(report);
            EXPECT_TRUE(isAccepted || report.rejectedBy || names.size() == 3) << order;
            if (report.rejectedBy) {
                names.emplace_back(report.rejectedBy);
                Apply({{report.rejectedBy, 0}}, &bad);
            }
            for (const std::string& name : names) {
                order += name == last ? "" : name + " ";
                last = name;
            }
        }
        EXPECT_TRUE(isAccepted);
        return order;
    };
    EXPECT_EQ(orderOf([&](auto* report) { CheckPublicDevMode(Printer(), *model_, &bad.publicPart, report); }),
              "dmDriverVersion dmOrientation dmPaperSize dmPaperLength, dmPaperWidth dmScale dmCopies dmDefaultSource "
              "dmPrintQuality, dmYResolution dmColor dmDuplex dmTTOption dmCollate dmFormName dmLogPixels dmBitsPerPel "
              "dmPelsWidth dmPelsHeight dmNup dmDisplayFrequency dmICMMethod dmICMIntent dmMediaType dmDitherType "
              "dmReserved1 dmReserved2 dmPanningWidth dmPanningHeight ");
    EXPECT_EQ(orderOf([&](auto* report) { CheckPrivateDevMode(facts_, *model_, &bad.privatePart, report); }),
              "fontDataOffset trueTypeMode nonPostScriptFlag patternMode patternOffset patternSize reserved156 "
              "rotate180 collateCopy scaleMode booklet pagesPerSheet layoutMode nupBorderWidth watermarkFlags "
              "frontCoverMode backCoverMode interleaveMode marginMode extraText auxText pjlJobStart pjlJobEnd "
              "noJobName colorMode mediaIndex blackText outputOption pageOrderFlags psContrast psBrightness "
              "psHalftoneFrequency psHalftoneAngle psHalftoneExtra overlayMode blobRefs sliceCount separatorMode "
              "posterMode finishingA finishingB finishingOption imageValueA imageValueB blobSlices featureSelection "
              "extraKeywordIndex customUnit extraFlag colorModeIndex resolutionIndex textColorOptions "
              "graphicsColorOptions imageColorOptions generalColorOptions exceptionArea uiCode uiFlagA uiZoomOn "
              "uiZoomPercent uiRotate180 uiDuplex uiFlagB uiLabel uiFlagC uiPageLayout uiFlagD uiBinding uiShiftX "
              "uiShiftY uiPageOrder uiFlagE uiChoice customWidth customLength colorPreset colorAdjust "
              "colorRendering colorChoiceA colorChoiceB colorBalance colorFlagA colorLevels colorFlagB "
              "colorPresetName resolutionFlag outputSetting outputFlag outputLevel outputStep finishFlagA "
              "finishChoice finishSide finishFlagB outputText finishFlags finishFlagC ");
}

TEST_F(Validation, TheDescriptionFileIsKnownByItsName) {
    Use(SmallModel(kPdlPcl6));
    const WideText name = FileNamePart(facts_.descriptionPath);
    for (const auto& [path, isKnown] : {std::pair(TEXT("D:\\Elsewhere\\") + name, true),
                                        {name, true},
                                        {name + TEXT("2"), false},
                                        {TEXT("D:\\kv62.xpi"), false},
                                        {WideText(), false}}) {
        devMode_ = valid_;
        WCHAR* const stored = devMode_.privatePart.descriptionPath;
        memset(stored, 0, sizeof(devMode_.privatePart.descriptionPath));
        memcpy(stored, path.data(), path.size() * sizeof(WCHAR));
        const VelmoraDevMode given = devMode_;
        ValidationReport report;
        CheckPrivateDevMode(facts_, *model_, &devMode_.privatePart, &report);
        EXPECT_STREQ(report.rejectedBy, isKnown ? nullptr : "descriptionPath") << ToText(path);
        EXPECT_EQ(report.repairs, 0u) << ToText(path);
        EXPECT_EQ(DifferenceLines(isKnown ? valid_ : given, devMode_), Texts()) << ToText(path);
    }
}

// Who has no model or file in hand leaves finding them to the validations.
TEST_F(Validation, FindsTheModelAndTheFactsItself) {
    DriverPackage package = PackageOf("");
    package.data = {TEXT("KV62.DAT"), "ten bytes."};
    package.dependent.push_back({TEXT("KV62.XPI"), SmallModel(kPdlImage).Build()});
    package.dependent.push_back({TEXT("PipelineConfig.xml"), "<x/>"});
    Install(package);
    VelmoraDevMode devMode;
    BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
    const OwnedFile file = OpenDescriptionFile(Printer());
    const PrivateFacts facts = ReadPrivateFacts(Printer(), file.Get());
    EXPECT_TRUE(facts.hasPipelineConfig);
    EXPECT_EQ(facts.dataFileSize, 10u);
    EXPECT_EQ(facts.blobSize, 1000);
    EXPECT_EQ(ToText(facts.descriptionPath), ToText(devMode.privatePart.descriptionPath));
    devMode.privatePart.fontDataOffset = 11;
    devMode.publicPart.dmScale = 50;
    ValidationReport report;
    for (const HANDLE given : {INVALID_HANDLE_VALUE, file.Get()}) {
        EXPECT_EQ(ValidatePublicDevMode(Printer(), &devMode.publicPart, nullptr), 1);
        EXPECT_EQ(ValidatePrivateDevMode(Printer(), &devMode.privatePart, given, nullptr, &report), 1);
    }
    EXPECT_EQ(report.repairs, 0u);
    EXPECT_EQ(devMode.privatePart.fontDataOffset, 0u);
    WriteDriveFile(InstalledPath(TEXT("KV62.XPI")), "no description");
    EXPECT_EQ(ValidatePublicDevMode(Printer(), &devMode.publicPart, nullptr, &report), 0);
    EXPECT_STREQ(report.rejectedBy, "description file");
    EXPECT_EQ(ValidatePrivateDevMode(Printer(), &devMode.privatePart, INVALID_HANDLE_VALUE, nullptr, &report), 0);
    EXPECT_STREQ(report.rejectedBy, "description file");
}

}  // namespace
}  // namespace velmora
