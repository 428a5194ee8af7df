// Description files read back: what the compiler wrote, what other compilers may write, and damage.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/xpic/description.h"
#include "tools/xpic/block_builder.h"
#include "tools/xpic/container.h"
#include "tools/xpic/read_description.h"

namespace velmora {
namespace {

std::string Printed(const Findings& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += FormatFinding(finding, "X.XPI") + "\n";
    }
    return text;
}

std::vector<std::byte> Recompiled(const ModelSource& model) {
    TextPools pools{LocalizedPool(model.languages)};
    LimitFaults faults;
    const Bytes block = BuildDeviceBlock(model, pools, faults);
    EXPECT_TRUE(faults.empty());
    return BuildContainer(model, block, pools);
}

// Compiling what was read gives the file again.
void ExpectReadsBack(const std::vector<std::byte>& file) {
    const DescriptionReading reading = ReadDescription(file);
    EXPECT_EQ(Printed(reading.findings), "");
    ASSERT_TRUE(reading.model);
    EXPECT_TRUE(Recompiled(*reading.model) == file);
}

// A small model with something in every table and section.
constexpr std::string_view kSmall = R"({
    "languages": ["en", "de", "ja"], "pdl": "pcl6", "color": "color", "duplexUnit": true, "pagesPerMinute": 9,
    "link": {"en": "http://x.example", "de": "http://x.example/de", "ja": "http://x.example/日本"},
    "primaryFont": "Courier", "fonts": [{"hex": "0102030405"}, {"hex": "060708"}],
    "fontSubstitutions": [{"face": "Arial", "printerFont": "Univers"}],
    "images": [{"hex": "424D10000000 00000000 0E000000 0102"}, {"hex": "424D0E000000 00000000 0E000000"}],
    "patterns": {"p": {"shape": "clustered", "size": 8}},
    "customSizes": {"minWidthMm": 70, "maxWidthMm": 300, "minLengthMm": 120, "maxLengthMm": 1200},
    "namespace": {"uri": "http://velmora.example/xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", "prefix": "vx"},
    "extraOption": {"text": "HDD", "memoryMb": 64},
    "papers": [{"name": "A4", "label": {"en": "A4", "de": "DIN A4", "ja": "用紙 A4"}}, {"name": "Long", "id": 600, "widthMm": 210, "lengthMm": 900}],
    "trays": [{"name": "1", "bin": 257, "label": {"resource": 2014}}, {"name": "2", "bin": "auto", "label": null}],
    "media": [{"name": "Plain", "jobText": "@PJL SET M=1\r\n", "rendererName": "PLAIN"}],
    "memory": {"sizes": [{"key": 1, "megabytes": 512}]},
    "resolutions": [{"name": "600", "dpi": 600, "pattern": "p"}],
    "margins": [{"allMm": 4.2}],
    "extraKeywordJobKey": "BIN", "extraKeywords": [{"name": "Std"}, {"name": "Up", "jobValue": "UP"}],
    "features": [{"name": "F", "label": {"en": "Save", "de": "Für", "ja": "節"}, "jobKey": "F",
                  "options": [{"name": "1", "jobValue": "ON"}]}],
    "commands": {"a": "AAAA", "b": "BB"},
    "colorFeatures": {"text": [{"name": "T", "values": [{"name": "V", "command": "a", "objectCommand": "b"}]}]},
    "colorModes": [{"name": "M", "selects": {"text": {"T": "V"}}}],
    "constraints": [{"papers": ["A4", "custom"], "trays": ["1"], "message": {"en": "No", "de": "Nein", "ja": "不可"}}],
    "mediaColors": [{"name": "White", "keyword": "vx:White"}]
})";

std::vector<std::byte> Compiled(std::string_view source) {
    return Description(source).File();
}

std::string CodesOf(const Findings& findings) {
    std::string codes;
    for (const Finding& finding : findings) {
        codes.append(codes.empty() ? "" : "\n").append(finding.path).append(" ").append(finding.code);
    }
    return codes;
}

TEST(ReadDescription, GivesASmallModel) {
    ExpectReadsBack(Compiled(kSmall));
    ExpectReadsBack(Compiled(R"({"pdl": "own"})"));
}

void Put(std::vector<std::byte>& file, size_t position, const void* value, size_t size) {
    ASSERT_LE(position + size, file.size());
    std::memcpy(file.data() + position, value, size);
}
template <class Value>
void Put(std::vector<std::byte>& file, size_t position, Value value) {
    Put(file, position, &value, sizeof value);
}

// Where things of the small model stand.
struct Places {
    explicit Places(const Description& description) : file(description), header(description.Header()) {}
    size_t Field(size_t offset) const { return header.deviceBlockOffset + offset; }
    size_t Record(size_t slot, size_t offset) const { return file.Slot(slot) + offset; }
    size_t Head(size_t offset) const { return offset; }
    const Description& file;
    DescriptionFileHeader header;
};

struct Damage {
    const char* findings;
    void (*inflict)(std::vector<std::byte>& file, const Places& at);
};

#define SLOT(member) offsetof(DeviceModel, member)
#define HEADER(member) offsetof(DescriptionFileHeader, member)

using File = std::vector<std::byte>;
const Damage kDamages[] = {
    {"$ file-too-short", [](File& f, const Places&) { f.resize(71); }},
    {"$ block-size",
     [](File& f, const Places& at) { Put(f, HEADER(languageTableOffset), at.header.deviceBlockOffset + 369); }},
    {"$ block-size",
     [](File& f, const Places& at) { Put(f, HEADER(languageTableOffset), at.header.deviceBlockOffset - 1); }},
    {"$ section-outside\n$ block-size",
     [](File& f, const Places& at) { Put(f, HEADER(languageTableOffset), at.header.deviceBlockOffset + 65536); }},
    {"$ section-outside\n$ section-outside\n$ section-outside",
     [](File& f, const Places&) {
         Put(f, HEADER(deviceBlockOffset), 0xFFFFF000u);
         Put(f, HEADER(languageTableOffset), 0xFFFFF200u);
     }},
    {"$.commands section-outside\n$.colorFeatures.text[0].values[0].command command-outside\n"
     "$.colorFeatures.text[0].values[0].objectCommand command-outside",
     [](File& f, const Places&) { Put(f, HEADER(blobSize), 7u); }},
    {"$.papers table-outside", [](File& f, const Places& at) { Put(f, at.Field(SLOT(paperTable)), 65535u); }},
    {"$.papers table-outside",
     [](File& f, const Places& at) {
         Put(f, at.Field(SLOT(paperTable)), static_cast<uint32_t>(sizeof(DeviceModel) - 1));
     }},
    {"$.memory.sizes table-not-ended",
     [](File& f, const Places& at) {
         Put(f, at.Field(SLOT(memoryTable)), static_cast<uint32_t>(at.file.BlockSize() - 2));
         Put(f, at.header.languageTableOffset - 2, uint16_t{1});
     }},
    {"$.features[0].options list-index",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(featureTable), 8), int16_t{-1}); }},
    {"$.colorModes[0].selects list-index",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(colorModeTable), 6), int16_t{30000}); }},
    {"$.papers[0].keyword reference-without-entry",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 4), uint16_t{200}); }},
    {"$.papers[0].keyword reference-without-entry",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 4), uint16_t{0xFFFF}); }},
    {"$.papers[0].label reference-without-entry",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 0), uint16_t{100}); }},
    {"$.media[0].jobText text-not-ended",
     [](File& f, const Places& at) {
         Put(f, at.header.textIndexOffset + 2 * at.file.At<uint16_t>(at.Record(SLOT(mediaTable), 6)), uint16_t{999});
     }},
    {"$.papers[0].rendererName text-too-long",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 18), at.file.Device().oemNamespaceRef); }},
    {"$.papers[0].keyword text-too-long",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 4), at.file.Device().oemNamespaceRef); }},
    {"$.namespace.prefix text-not-in-code-page",
     [](File& f, const Places& at) {
         const size_t entry = at.header.nameIndexOffset + 2 * at.file.Device().oemPrefixRef;
         Put(f, at.header.namePoolOffset + at.file.At<uint16_t>(entry), uint8_t{0x81});
     }},
    {"$.link text-not-in-code-page",
     [](File& f, const Places& at) {
         const size_t german = at.file.At<uint16_t>(at.header.languageTableOffset + 2 * kGerman);
         const size_t entry = at.header.stringIndexOffset + 2 * (german + at.file.Device().linkRef);
         Put(f, at.header.stringPoolOffset + at.file.At<uint16_t>(entry), uint8_t{0x81});
     }},
    {"$.primaryFont text-empty",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(defaultFontA), 0), uint8_t{0}); }},
    {"$.fontSubstitutions[0].printerFont text-empty",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(defaultFontSubs), 6), uint8_t{0}); }},
    {"$.extraOption.text text-empty",
     [](File& f, const Places& at) {
         Put(f,
             at.header.textPoolOffset +
                 at.file.At<uint16_t>(at.header.textIndexOffset + 2 * at.file.Device().extraTextRef),
             uint8_t{0});
     }},
    {"$.features[0].options[0].label label-missing",
     [](File& f, const Places& at) {
         const auto reference = at.file.At<uint16_t>(at.Record(SLOT(optionTable), 0));
         for (uint16_t language : {kEnglish, kGerman, kJapanese}) {
             const size_t base = at.file.At<uint16_t>(at.header.languageTableOffset + 2 * language);
             Put(f, at.header.stringIndexOffset + 2 * (base + reference), uint16_t{0});
         }
     }},
    {"$.papers[0].id number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 2), int16_t{119}); }},
    {"$.papers[0].widthMm number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 6), int16_t{0}); }},
    {"$.papers[0].metric number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 10), int16_t{2}); }},
    {"$.papers[0].fit number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(paperTable), 16), int16_t{-1}); }},
    {"$.trays[0].bin number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(binTable), 4), uint16_t{255}); }},
    {"$.trays[0].label.resource number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(binTable), 6), uint16_t{0x8000}); }},
    {"$.resolutions[0].dpi number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(resolutionTable), 10), uint16_t{0x8000}); }},
    {"$.pagesPerMinute number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Field(SLOT(pagesPerMinute)), int16_t{-1}); }},
    {"$.customSizes.minWidthMm number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Field(SLOT(customMinWidth)), int16_t{-1}); }},
    {"$.margins[0].unitsPerInch number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(marginTable), 44), int16_t{0}); }},
    {"$.colorFeatures.text[0].values[0].command number-out-of-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(colorOptionValues), 4), uint16_t{0x8002}); }},
    {"$.margins[0].lengthMm size-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(marginTable), 38), int16_t{32000}); }},
    {"$.constraints[0].widthMm size-range",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(constraintTable), 36), uint16_t{65535}); }},
    {"$.margins[0].papers margins-without-papers",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(marginTable), 2), PaperSet{}); }},
    {"$.extraKeywords[1].jobValue job-value-twice",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(extraKeywordTable), 14), uint16_t{0}); }},
    {"$.fonts[1] fonts-not-ascending", [](File& f, const Places& at) { Put(f, at.header.fontIndexOffset + 8, 4u); }},
    {"$.fonts[1] font-outside", [](File& f, const Places& at) { Put(f, at.header.fontIndexOffset + 8, 1u << 20); }},
    {"$.fonts number-out-of-range", [](File& f, const Places& at) { Put(f, at.Field(SLOT(fontCount)), int16_t{-1}); }},
    {"$.fonts font-groups-outside",
     [](File& f, const Places& at) {
         Put(f, at.Field(SLOT(fontGroups)), at.header.languageTableOffset - at.header.deviceBlockOffset - 1);
     }},
    {"$.images[1] image-outside",
     [](File& f, const Places& at) { Put(f, at.header.imagePoolOffset + 16 + 2, 1u << 20); }},
    {"$.resolutions[0].pattern pattern-outside",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(resolutionTable), 14), int16_t{32}); }},
    {"$.resolutions[0].pattern pattern-outside",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(resolutionTable), 14), int16_t{9}); }},
    {"$.colorFeatures.text[0].values[0].command command-outside",
     [](File& f, const Places& at) { Put(f, at.Record(SLOT(colorOptionValues), 2), uint16_t{5}); }},
    {"$.commands command-blob-size",
     [](File& f, const Places& at) {
         f.resize(at.header.blobOffset + 65536);
         Put(f, HEADER(blobSize), 65536u);
     }},
    {"$.languages unknown-language",
     [](File& f, const Places& at) { Put(f, at.header.languageTableOffset + 2 * 0x3FF, uint16_t{3}); }},
    {"$.languages[0] references-cross-languages",
     [](File& f, const Places& at) { Put(f, at.header.languageTableOffset + 2 * kGerman, uint16_t{1}); }},
};

TEST(ReadDescription, TellsWhatIsWrong) {
    const Description small{kSmall};
    for (const Damage& damage : kDamages) {
        std::vector<std::byte> file = small.File();
        damage.inflict(file, Places(small));
        EXPECT_EQ(CodesOf(ReadDescription(file).findings), damage.findings) << Printed(ReadDescription(file).findings);
    }
}

TEST(ReadDescription, SharedRunsHaveAnEnd) {
    Json source = {{"pdl", "xps"}, {"colorModes", Json::array()}};
    for (int i = 0; i < 300; ++i) {
        source["colorModes"].push_back({{"name", std::to_string(i)}});
    }
    for (int i = 0; i < 1000; ++i) {
        source["colorModes"][0]["settings"].push_back({{"group", 1}, {"feature", 0}, {"option", 0}});
    }
    const Description description(source.dump());
    std::vector<std::byte> file = description.File();
    for (size_t i = 0; i < 300; ++i) {
        Put(file, description.Slot(SLOT(colorModeTable)) + 8 * i + 6, int16_t{0});
    }
    const DescriptionReading reading = ReadDescription(file);
    EXPECT_FALSE(reading.model);
    EXPECT_EQ(CodesOf(reading.findings), "$.colorModes[10].selects tables-too-large");
}

TEST(ReadDescription, ListsThatTheDeviceModeCantHold) {
    Json source = {{"pdl", "xps"}, {"features", Json::array()}, {"colorFeatures", {{"text", Json::array()}}}};
    for (int i = 0; i < 32; ++i) {
        source["features"].push_back({{"name", std::to_string(i)}});
    }
    for (int i = 0; i < 4; ++i) {
        source["colorFeatures"]["text"].push_back({{"name", std::to_string(i)}});
    }
    const Description description(source.dump());
    std::vector<std::byte> file = description.File();
    // The record that ends each list becomes one more.
    Put(file, description.Slot(SLOT(featureTable)) + 32 * sizeof(FeatureRecord), uint16_t{1});
    Put(file, description.Slot(SLOT(textColorFeatures)) + 4 * sizeof(ColorFeatureRecord), uint16_t{1});
    const std::string codes = CodesOf(ReadDescription(file).findings);
    EXPECT_NE(codes.find("$.features too-many-records"), std::string::npos) << codes;
    EXPECT_NE(codes.find("$.colorFeatures.text too-many-records"), std::string::npos) << codes;
}

// Sections in another order and at odd positions, the old places overwritten.
TEST(ReadDescription, SectionsMayStandAnywhere) {
    const Description small{kSmall};
    const DescriptionFileHeader& header = small.Header();
    std::vector<std::byte> file = small.File();
    const size_t end = file.size();
    struct Moved {
        std::vector<size_t> fields;  // of the header, in the order of the file
        size_t begin, end;
    };
    const Moved kMoved[] = {
        {{HEADER(blobOffset)}, header.blobOffset, end},
        {{HEADER(patternPoolOffset)}, header.patternPoolOffset, header.blobOffset},
        {{HEADER(patternIndexOffset)}, header.patternIndexOffset, header.patternPoolOffset},
        {{HEADER(imageIndexOffset), HEADER(imagePoolOffset)}, header.imageIndexOffset, header.patternIndexOffset},
        {{HEADER(fontIndexOffset)}, header.fontIndexOffset, header.imageIndexOffset},
        {{HEADER(textPoolOffset), HEADER(fontPoolOffset)}, header.textPoolOffset, header.fontIndexOffset},
        {{HEADER(textIndexOffset)}, header.textIndexOffset, header.textPoolOffset},
        {{HEADER(namePoolOffset)}, header.namePoolOffset, header.textIndexOffset},
        {{HEADER(stringPoolOffset)}, header.stringPoolOffset, header.nameIndexOffset},
        {{HEADER(nameIndexOffset)}, header.nameIndexOffset, header.namePoolOffset},
        {{HEADER(stringIndexOffset)}, header.stringIndexOffset, header.stringPoolOffset},
        {{HEADER(deviceBlockOffset), HEADER(languageTableOffset)}, header.deviceBlockOffset, header.stringIndexOffset},
    };
    for (const Moved& moved : kMoved) {
        file.push_back(std::byte{0xEE});
        const auto shift = static_cast<uint32_t>(file.size() - moved.begin);
        for (size_t field : moved.fields) {
            Put(file, field, static_cast<uint32_t>(small.At<uint32_t>(field) + shift));
        }
        file.insert(file.end(), small.File().begin() + static_cast<ptrdiff_t>(moved.begin),
                    small.File().begin() + static_cast<ptrdiff_t>(moved.end));
    }
    std::fill(file.begin() + sizeof header, file.begin() + static_cast<ptrdiff_t>(end), std::byte{0xFF});
    const DescriptionReading reading = ReadDescription(file);
    EXPECT_EQ(Printed(reading.findings), "");
    ASSERT_TRUE(reading.model);
    EXPECT_TRUE(Recompiled(*reading.model) == small.File());
}

std::string LanguagesOf(const std::vector<std::byte>& file) {
    std::string codes;
    const DescriptionReading reading = ReadDescription(file);
    for (const Language* language : reading.model.value().languages) {
        codes.append(codes.empty() ? "" : " ").append(language->code);
    }
    return codes;
}

TEST(ReadDescription, FindsTheLanguages) {
    EXPECT_EQ(LanguagesOf(Compiled(kSmall)), "en de ja");
    EXPECT_EQ(LanguagesOf(Compiled(R"({"pdl": "xps", "languages": ["de", "en"], "link": {"de": "ß", "en": "s"}})")),
              "af en")
        << "any language of the code page has the texts of those that aren't listed";
    EXPECT_EQ(
        LanguagesOf(Compiled(R"({"pdl": "xps", "languages": ["ja", "en"], "link": {"ja": "印刷", "en": "print"}})")),
        "ja en");
    EXPECT_EQ(LanguagesOf(Compiled(R"({"pdl": "xps", "languages": ["ru"], "link": "Бумага"})")), "en")
        << "Cyrillic bytes are letters of code page 1252 too";
    // A table that ends behind Dutch: Spanish has German's strings, Dutch its own.
    const Description small{kSmall};
    std::vector<std::byte> file = small.File();
    const uint32_t table = small.Header().languageTableOffset;
    for (size_t id = 0; id < 20; ++id) {
        Put(file, table + 2 * id, uint16_t{id == 0x07 || id == 0x0A ? uint16_t{5} : uint16_t{0}});
    }
    Put(file, HEADER(stringIndexOffset), static_cast<uint32_t>(table + 2 * 20));
    EXPECT_EQ(LanguagesOf(file), "en de es");
}

}  // namespace
}  // namespace velmora
