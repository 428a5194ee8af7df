// The project's own models: what every product must have.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>

#include "tests/xpic/description.h"
#include "tools/xpic/dump_description.h"

namespace velmora {
namespace {

std::vector<std::filesystem::path> ModelSources() {
    std::vector<std::filesystem::path> sources;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MODELS_SOURCE_DIR)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".json") && !name.ends_with("schema.json")) {
            sources.push_back(entry.path());
        }
    }
    return sources;
}

std::string NameOf(const testing::TestParamInfo<std::filesystem::path>& info) {
    std::string name = info.param.stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

class Models : public testing::TestWithParam<std::filesystem::path> {
  protected:
    void SetUp() override {
        const CompileResult result = CompileModel(GetParam());
        for (const Diagnostic& diagnostic : result.diagnostics) {
            ADD_FAILURE() << FormatDiagnostic(diagnostic);
        }
        ASSERT_TRUE(result.Succeeded());
        EXPECT_EQ(CompileModel(GetParam()).bytes, result.bytes);
        modelName_ = result.ModelName();
        file_.emplace(result.bytes);
    }

    std::string modelName_;
    std::optional<Description> file_;
};

TEST_P(Models, HaveWhatTheDriverBeginsWith) {
    const DeviceModel device = file_->Device();
    EXPECT_TRUE(modelName_.starts_with("Velmora "));
    EXPECT_NE(+device.modelCode, 0);
    EXPECT_NE(+device.pagesPerMinute, 0);
    EXPECT_GE(file_->Table(offsetof(DeviceModel, resolutionTable), &ResolutionRecord::mark).size(), 2u)
        << "a new device mode takes the second resolution";
    bool defaultTray = false;
    for (const BinRecord& tray : file_->Table(offsetof(DeviceModel, binTable), &BinRecord::optionMask)) {
        defaultTray |= tray.binId == device.defaultBin && (tray.optionMask & device.defaultOptionMask) != 0;
    }
    EXPECT_TRUE(defaultTray);
    EXPECT_NE(file_->LocalizedString(kEnglish, device.linkRef), file_->LocalizedString(kGerman, device.linkRef));
}

// The first record that the margin lookup finds for the paper.
bool HasMargins(const Description& file, const PaperRecord& paper, int orientation) {
    for (const MarginRecord& margin : file.Table(offsetof(DeviceModel, marginTable), &MarginRecord::mark)) {
        const int id = paper.paperId < 256 ? paper.paperId : 0;
        const bool inSet = (margin.papers.bytes[id / 8] & 0x80 >> (id % 8)) != 0;
        const bool fits = id != 0 || (paper.width >= margin.minWidth && paper.width <= margin.maxWidth &&
                                      paper.length >= margin.minLength && paper.length <= margin.maxLength);
        if (inSet && fits && (margin.orientationMask & orientation) != 0) {
            return margin.unit > 0;
        }
    }
    return false;
}

TEST_P(Models, GiveEveryPaperMarginsInBothOrientations) {
    const auto papers = file_->Table(offsetof(DeviceModel, paperTable), &PaperRecord::nameRef);
    bool hasA4 = false;
    for (const PaperRecord& paper : papers) {
        const std::string name = file_->LocalizedString(kEnglish, paper.nameRef);
        EXPECT_TRUE(HasMargins(*file_, paper, 1)) << name;
        EXPECT_TRUE(HasMargins(*file_, paper, 2)) << name;
        EXPECT_NE(+paper.keywordRef, 0) << name;
        hasA4 |= paper.paperId == 9;
    }
    EXPECT_TRUE(hasA4);
}

TEST_P(Models, SpeakEnglishGermanAndJapanese) {
    const auto baseOf = [&](uint16_t language) {
        return file_->At<uint16_t>(file_->Header().languageTableOffset + 2 * size_t{language});
    };
    // The languages' texts lie one behind the other, in the order of "languages".
    const int texts = baseOf(kGerman) - baseOf(kEnglish);
    ASSERT_GT(texts, 0);
    ASSERT_EQ(baseOf(kJapanese), 2 * texts);
    for (int reference = 1; reference <= texts; ++reference) {
        const std::string english = file_->LocalizedString(kEnglish, reference);
        const bool isSentence = english.ends_with('.');
        const bool hasWord = std::adjacent_find(english.begin(), english.end(), [](char a, char b) {
                                 return a >= 'a' && a <= 'z' && b >= 'a' && b <= 'z';
                             }) != english.end();
        EXPECT_TRUE(!isSentence || file_->LocalizedString(kGerman, reference) != english) << english;
        EXPECT_TRUE(!hasWord || file_->LocalizedString(kJapanese, reference) != english) << english;
    }
}

TEST_P(Models, AreShort) {
    std::ifstream source(GetParam());
    EXPECT_LT(std::count(std::istreambuf_iterator<char>(source), {}, '\n'), 150);
}

std::map<std::string, Description> CompiledModels() {
    std::map<std::string, Description> models;
    for (const std::filesystem::path& source : ModelSources()) {
        models.emplace(source.stem().string(), Description(CompileModel(source).bytes));
    }
    return models;
}

template <class Record, class Field, class Holds>
bool AnyOf(const Description& file, size_t slot, Field Record::*endMark, Holds holds) {
    const std::vector<Record> records = file.Table(slot, endMark);
    return std::any_of(records.begin(), records.end(), holds);
}

template <class Holds>
bool AnyPaper(const Description& file, Holds holds) {
    return AnyOf(file, offsetof(DeviceModel, paperTable), &PaperRecord::nameRef, holds);
}

template <class Holds>
bool AnyResolution(const Description& file, Holds holds) {
    return AnyOf(file, offsetof(DeviceModel, resolutionTable), &ResolutionRecord::mark, holds);
}

template <class Holds>
bool AnyMargin(const Description& file, Holds holds) {
    return AnyOf(file, offsetof(DeviceModel, marginTable), &MarginRecord::mark, holds);
}

template <class Holds>
bool AnyConstraint(const Description& file, Holds holds) {
    return AnyOf(file, offsetof(DeviceModel, constraintTable), &ConstraintRecord::mark, holds);
}

bool IsKind(const Description& file, uint16_t pdl, uint16_t color) {
    return file.Device().pdlType == pdl && file.Device().colorCapability == color;
}

bool HasColorMode(const Description& file, uint32_t kind) {
    return AnyOf(file, offsetof(DeviceModel, colorModeTable), &ColorModeRecord::kind,
                 [&](const ColorModeRecord& mode) { return mode.kind == kind; });
}

bool HasFeatureThatNeeds(const Description& file, uint32_t mask) {
    return AnyOf(file, offsetof(DeviceModel, featureTable), &FeatureRecord::nameRef,
                 [&](const FeatureRecord& feature) { return feature.featureMask == mask; });
}

bool HasCustomSizes(const PaperSet& papers) {
    return (papers.bytes[0] & 0x80) != 0;
}

template <class Holds>
bool AnyImageValue(const Description& file, Holds holds) {
    return AnyOf(file, offsetof(DeviceModel, imageColorFeatures), &ColorFeatureRecord::nameRef,
                 [&](const ColorFeatureRecord& feature) {
                     const std::vector<ColorValueRecord> values =
                         file.Table(offsetof(DeviceModel, colorOptionValues), &ColorValueRecord::nameRef,
                                    static_cast<size_t>(feature.firstValue));
                     return std::any_of(values.begin(), values.end(), holds);
                 });
}

// What a description can say, and a product that says it.
struct Use {
    const char* what;
    const char* model;
    bool (*holds)(const Description& file);
};

const Use kUses[] = {
    {"PCL 6 in color", "velmora-c3200", [](const Description& f) { return IsKind(f, kPdlPcl6, kColor); }},
    {"PCL 6 in black", "velmora-m3100", [](const Description& f) { return IsKind(f, kPdlPcl6, kColorNone); }},
    {"PCL 5 in color", "velmora-c2300", [](const Description& f) { return IsKind(f, kPdlPcl5, kColor); }},
    {"PCL 5 in black", "velmora-m2100", [](const Description& f) { return IsKind(f, kPdlPcl5, kColorNone); }},
    {"color of the second kind", "velmora-s2200",
     [](const Description& f) { return IsKind(f, kPdlPcl5, kColorSecondKind); }},
    {"PostScript in color", "velmora-c5400", [](const Description& f) { return IsKind(f, kPdlPostScript, kColor); }},
    {"PostScript in black", "velmora-m4500",
     [](const Description& f) { return IsKind(f, kPdlPostScript, kColorNone); }},
    {"XPS", "velmora-c4300", [](const Description& f) { return IsKind(f, kPdlXps, kColor); }},
    {"a language of its own", "velmora-m800", [](const Description& f) { return IsKind(f, kPdlOwn, kColorNone); }},
    {"images described by text", "velmora-i700",
     [](const Description& f) {
         return IsKind(f, kPdlImage, kColor) && (f.Device().descriptionFlags & kDescriptionsAreText) != 0;
     }},
    {"images described by a record", "velmora-i520",
     [](const Description& f) {
         return IsKind(f, kPdlImage, kColorNone) && (f.Device().descriptionFlags & kDescriptionsAreText) == 0;
     }},
    {"plain PCL 5", "velmora-m1200",
     [](const Description& f) { return f.Device().defaultOptionFlags == kModelPlainPcl5; }},
    {"color slices for each page", "velmora-c3200",
     [](const Description& f) { return f.Device().defaultOptionFlags == kModelColorSlicesPerPage; }},
    {"PostScript without a job name", "velmora-m4500",
     [](const Description& f) { return f.Device().defaultOptionFlags == kModelNoPostScriptJobName; }},
    {"jobs named by DISPLAY", "velmora-c3200",
     [](const Description& f) { return (f.Device().jobNameFlags & kJobNamedByDisplay) != 0; }},
    {"jobs named by NAME", "velmora-m2100",
     [](const Description& f) { return (f.Device().jobNameFlags & kJobNamedByDisplay) == 0; }},
    {"the job sets the data mode", "velmora-c3200",
     [](const Description& f) { return (f.Device().descriptionFlags & kJobSetsDataMode) != 0; }},
    {"no duplex unit", "velmora-m1200", [](const Description& f) { return f.Device().duplexFlagsA == 0; }},
    {"rendering intents", "velmora-c3200", [](const Description& f) { return f.Device().icmIntentFlags == 1; }},
    {"rendering intents without options", "velmora-c2300",
     [](const Description& f) { return f.Device().icmIntentFlags == 2; }},
    {"a namespace of its own", "velmora-m800",
     [](const Description& f) { return f.Name(f.Device().oemPrefixRef) == "vm"; }},
    {"the built-in namespace", "velmora-i700", [](const Description& f) { return f.Device().oemNamespaceRef == 0; }},
    {"the extra option", "velmora-c3200",
     [](const Description& f) { return f.Device().extraTextRef != 0 && f.Device().extraMemory > 0; }},
    {"a second tray from the start", "velmora-c5400",
     [](const Description& f) { return (f.Device().defaultOptionMask & 4) != 0; }},
    {"papers of its own", "velmora-c3200",
     [](const Description& f) { return AnyPaper(f, [](const PaperRecord& paper) { return paper.paperId >= 600; }); }},
    {"cards", "velmora-m2100",
     [](const Description& f) { return AnyPaper(f, [](const PaperRecord& paper) { return paper.pclSizeCode < 0; }); }},
    {"papers scaled onto others", "velmora-c3200",
     [](const Description& f) { return AnyPaper(f, [](const PaperRecord& paper) { return paper.fitPaperId == 9; }); }},
    {"different dpi across and down", "velmora-m3100",
     [](const Description& f) {
         return AnyResolution(f, [](const ResolutionRecord& resolution) { return resolution.xDpi != resolution.yDpi; });
     }},
    {"patterns", "velmora-m2100",
     [](const Description& f) {
         return AnyResolution(f, [](const ResolutionRecord& resolution) { return resolution.patternSize != 0; });
     }},
    {"fonts", "velmora-m2100", [](const Description& f) { return f.Device().fontCount == 2; }},
    {"images", "velmora-i700", [](const Description& f) { return BytesAt(f, f.Header().imagePoolOffset, 2) == "BM"; }},
    {"margins for custom sizes", "velmora-c5400",
     [](const Description& f) {
         return AnyMargin(f, [](const MarginRecord& m) { return HasCustomSizes(m.papers) && m.minLength > 4500; });
     }},
    {"margins for one orientation, in a unit of their own", "velmora-m2100",
     [](const Description& f) {
         return AnyMargin(f, [](const MarginRecord& m) { return m.orientationMask == 2 && m.unit == 1200; });
     }},
    {"constraints on standard papers and trays", "velmora-c3200",
     [](const Description& f) {
         return AnyConstraint(f, [](const ConstraintRecord& c) { return !HasCustomSizes(c.papers) && c.binMask != 0; });
     }},
    {"constraints on custom sizes", "velmora-m2100",
     [](const Description& f) {
         return AnyConstraint(f,
                              [](const ConstraintRecord& c) { return HasCustomSizes(c.papers) && c.maxWidth == 979; });
     }},
    {"constraints on media and extra keywords", "velmora-c3200",
     [](const Description& f) {
         return AnyConstraint(f, [](const ConstraintRecord& c) { return c.mediaMask != 0 && c.extraKeywordMask != 0; });
     }},
    {"constraints on both sides", "velmora-m2100",
     [](const Description& f) { return AnyConstraint(f, [](const ConstraintRecord& c) { return c.flags == 1; }); }},
    {"constraints on options", "velmora-c3200",
     [](const Description& f) { return AnyConstraint(f, [](const ConstraintRecord& c) { return c.flags == 0x10; }); }},
    {"features of the duplex unit", "velmora-c3200", [](const Description& f) { return HasFeatureThatNeeds(f, 1); }},
    {"features of the extra option", "velmora-c3200", [](const Description& f) { return HasFeatureThatNeeds(f, 2); }},
    {"borderless printing", "velmora-c3200", [](const Description& f) { return HasFeatureThatNeeds(f, 8); }},
    {"features of the stapler", "velmora-c3200", [](const Description& f) { return HasFeatureThatNeeds(f, 16); }},
    {"features of options of the model's own", "velmora-c3200",
     [](const Description& f) { return HasFeatureThatNeeds(f, 32); }},
    {"plain color modes", "velmora-c4300", [](const Description& f) { return HasColorMode(f, 1); }},
    {"color modes of the system", "velmora-c3200",
     [](const Description& f) { return HasColorMode(f, kColorModeSystem); }},
    {"manual color modes", "velmora-c3200", [](const Description& f) { return HasColorMode(f, kColorModeManual); }},
    {"color modes with settings", "velmora-c3200",
     [](const Description& f) { return HasColorMode(f, kColorModeHasDefaults); }},
    {"color commands for objects", "velmora-c5400",
     [](const Description& f) {
         return AnyImageValue(f, [](const ColorValueRecord& value) { return value.secondLength != 0; });
     }},
    {"commands within commands", "velmora-c2300",
     [](const Description& f) {
         return AnyImageValue(f, [](const ColorValueRecord& value) {
             return value.secondStart > value.firstStart && value.secondStart < value.firstStart + value.firstLength;
         });
     }},
};

TEST(Products, UseWhatADescriptionCanSay) {
    const std::map<std::string, Description> models = CompiledModels();
    for (const Use& use : kUses) {
        EXPECT_TRUE(use.holds(models.at(use.model))) << use.what << " in " << use.model;
    }
}

TEST(Products, UseEveryTable) {
    // Slots that no reader knows.
    const std::set<size_t> unused = {offsetof(DeviceModel, reserved40), offsetof(DeviceModel, reserved104),
                                     offsetof(DeviceModel, reserved284)};
    const std::map<std::string, Description> models = CompiledModels();
    for (const size_t slot : kPointerSlots) {
        const bool used =
            std::any_of(models.begin(), models.end(), [&](const auto& model) { return model.second.Slot(slot) != 0; });
        EXPECT_EQ(used, unused.count(slot) == 0) << "slot " << slot;
    }
}

// A text that the user types takes a selection that a device mode can't keep, so it is a rare exception.
TEST(Products, HaveOneFeatureWithoutOptions) {
    int without = 0;
    for (const auto& [name, file] : CompiledModels()) {
        for (const FeatureRecord& feature : file.Table(offsetof(DeviceModel, featureTable), &FeatureRecord::nameRef)) {
            const size_t stride = OptionStride(file.Device().pdlType);
            const size_t first = file.Slot(offsetof(DeviceModel, optionTable)) + feature.firstOption * stride;
            without += file.At<uint16_t>(first) == 0 ? 1 : 0;
        }
    }
    EXPECT_EQ(without, 1);
}

// A dump of the product's file gives the file again, and needs no layout for it.
TEST_P(Models, ComeBackFromTheirDescriptionFiles) {
    const Dump dump = DumpDescription(file_->File(), "", "");
    EXPECT_EQ(dump.source.text.find("\"layout\""), std::string::npos);
    EXPECT_EQ(CompileModelText(dump.source.text, "dump.json").bytes, file_->File()) << dump.source.text;
}

// The last listing of docs/models.md is a source that readers start from.
TEST(Documentation, ExampleCompiles) {
    std::ifstream document(VELMORA_MODELS_DOCUMENT);
    const std::string text{std::istreambuf_iterator<char>(document), std::istreambuf_iterator<char>()};
    const std::string_view fence = "```json\n";
    const size_t start = text.rfind(fence);
    ASSERT_NE(start, std::string::npos);
    const size_t end = text.find("```", start + fence.size());
    ASSERT_NE(end, std::string::npos);
    EXPECT_EQ(FaultsOf(text.substr(start + fence.size(), end - start - fence.size())), "");
}

INSTANTIATE_TEST_SUITE_P(Sources, Models, testing::ValuesIn(ModelSources()), NameOf);

}  // namespace
}  // namespace velmora
