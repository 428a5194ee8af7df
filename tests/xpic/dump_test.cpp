// From description files back to sources: the same bytes, in readable words.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "tests/driver/description_builder.h"
#include "tests/xpic/description.h"
#include "tools/xpic/byte_text.h"
#include "tools/xpic/dump_description.h"
#include "tools/xpic/layout.h"
#include "tools/xpic/read_description.h"
#include "tools/xpic/record_names.h"
#include "tools/xpic/string_pools.h"

namespace velmora {
namespace {

Bytes CompiledFrom(std::string_view source) {
    return Description(source).File();
}

// The source of a file without errors; empty, with a failed expectation, for one with errors.
std::string Dumped(const Bytes& file) {
    const Dump dump = DumpDescription(file, "", "");
    for (const Finding& finding : dump.findings) {
        EXPECT_NE(finding.severity, Severity::kError) << FormatFinding(finding, "file");
    }
    return dump.source.text;
}

// What the compiler makes of the model that readers of the file get.
Bytes ModelOf(const Bytes& file) {
    const DescriptionReading reading = ReadDescription(file);
    LimitFaults faults;
    return reading.model ? BuildDescription(*reading.model, faults) : Bytes{};
}

std::string WithoutLayout(const std::string& source) {
    const size_t layout = source.find("\n  \"layout\"");
    return layout == std::string::npos ? source : source.substr(0, source.rfind(',', layout)) + "\n}\n";
}

void ExpectRoundTrip(const Bytes& file, const std::string& source) {
    const CompileResult compiled = CompileModelText(source, "dump.json");
    ASSERT_TRUE(compiled.Succeeded()) << FaultsOf(source) << source;
    EXPECT_EQ(compiled.bytes, file) << source;
}

constexpr std::string_view kLabelled = R"({
  "languages": ["en", "de", "ja"], "pdl": "pcl5",
  "customSizes": {"minWidthMm": 90, "maxWidthMm": 297, "minLengthMm": 140, "maxLengthMm": 500},
  "papers": ["A4", "Letter", {"name": "Banner", "id": 600, "widthMm": 297, "lengthMm": 900},
             {"name": "Strip", "id": 601, "widthMm": 100, "lengthMm": 400},
             {"name": "Card", "widthMm": 76.2, "lengthMm": 127, "pclSizeCode": -1}],
  "trayOptions": {"third": 3, "fourth": 31},
  "trays": [{"name": "One", "label": {"en": "Tray 1", "de": "Fach 1", "ja": "トレイ 1"}, "bin": 257},
            {"name": "Two", "bin": 258, "needs": ["secondTray", "third"]},
            {"name": "Three", "bin": 259, "needs": ["fourth"]}, {"name": "Hand", "bin": "manual"}],
  "media": [{"name": "Plain", "mediaId": "standard"}, {"name": "Thick", "jobText": "@PJL\r\n"}, {"name": "Foil"}],
  "resolutions": [{"name": "600", "dpi": 600, "pattern": "round"}, {"name": "300", "dpi": 300, "pattern": "own"}],
  "patterns": {"round": {"shape": "clustered", "size": 8}, "own": {"block": {"base64": "PATTERN"}, "size": 8}},
  "margins": [{"papers": ["Letter", "Banner"], "allMm": 5}, {"papers": ["custom"], "lengthMm": [300, 500], "allMm": 7},
              {"orientations": ["landscape"], "leftMm": 4.2, "topMm": 5, "rightMm": 4.2, "bottomMm": 5},
              {"unitsPerInch": 600, "left": 1, "top": 2, "right": 3, "bottom": 4}],
  "features": [{"name": "Saving", "jobKey": "ECONOMODE", "needs": ["duplexUnit"], "options": [
                {"name": "Off", "label": {"en": "Off", "de": "Aus"}}, {"name": "On", "jobValue": "ON"}]},
               {"name": "Speed", "options": [{"name": "Off", "label": {"en": "Off", "de": "Aus"}}]}],
  "commands": {"a": "\u001b*v0S", "b": {"hex": "00FF"}, "c": "unused"},
  "colorFeatures": {"text": [{"name": "Tone", "values": [{"name": "A", "command": "a"},
                                                         {"name": "B", "command": "b", "objectCommand": "a"}]}]},
  "colorModes": [{"name": "Auto", "selects": {"text": {"Tone": "B"}}},
                 {"name": "System", "systemManaged": true}],
  "constraints": [{"trays": ["Two", "Hand"], "media": ["Foil"], "message": "No foil."},
                  {"trays": ["One"], "duplex": true}, {"papers": ["A4", "Banner"], "media": ["Thick", "Plain"]},
                  {"papers": ["custom"], "widthMm": [90, 100], "options": ["stapler"]}, {"papers": "all"}]
})";

std::string LabelledSource() {
    std::string source(kLabelled);
    const std::string block(2048 / 3 * 4, '+');  // Base64 of 2046 bytes
    return source.replace(source.find("PATTERN"), 7, block + "++8=");
}

// What names, words and tables can say, a dump says by them.
TEST(Dump, WritesNamesAndWordsWhereTheyLoadAsTheSame) {
    const Bytes file = CompiledFrom(LabelledSource());
    const std::string source = Dumped(file);
    ExpectRoundTrip(file, source);
    for (const char* said : {
             R"("A4", "Letter",)",
             R"({"name": "Card", "widthMm": 76.2, "lengthMm": 127, "pclSizeCode": -1})",
             R"("trayOptions": {"option 3": 3, "option 31": 31})",
             R"({"name": "Tray 1", "label": {"en": "Tray 1", "de": "Fach 1", "ja": "トレイ 1"}, "bin": 257})",
             R"({"name": "Two", "bin": 258, "needs": ["secondTray", "option 3"]})",
             R"({"name": "Hand", "bin": "manual"})",
             R"({"name": "Plain", "mediaId": "standard"})",
             R"({"name": "Thick", "jobText": "@PJL\r\n"})",
             R"("clustered 8": {"shape": "clustered", "size": 8})",
             R"({"papers": ["Letter", "Banner"], "allMm": 5})",
             R"({"papers": ["custom"], "lengthMm": [300, 500], "allMm": 7})",
             R"({"orientations": ["landscape"], "leftMm": 4.2, "topMm": 5, "rightMm": 4.2, "bottomMm": 5})",
             R"({"unitsPerInch": 600, "left": 1, "top": 2, "right": 3, "bottom": 4})",
             R"("options": [{"name": "Off"}, {"name": "On", "jobValue": "ON"}])",
             R"("Off": {"de": "Aus", "ja": "Off"})",
             R"("text Tone A": "\u001b*v0S")",
             R"("text Tone B": {"hex": "00FF"})",
             R"("unused": "unused")",
             R"({"name": "B", "command": "text Tone B", "objectCommand": "text Tone A"})",
             R"({"name": "Auto", "selects": {"text": {"Tone": "B"}}})",
             R"({"name": "System", "systemManaged": true})",
             R"({"trays": ["Two", "Hand"], "media": ["Foil"], "message": "No foil."})",
             R"({"papers": ["A4", "Banner"], "media": ["Thick", "Plain"]})",
             R"({"papers": ["custom"], "widthMm": [90, 100], "options": ["stapler"]})",
             R"({"papers": "all"})",
         }) {
        EXPECT_NE(source.find(said), std::string::npos) << said << " in\n" << source;
    }
    for (const char* unsaid : {"ayout", "ask", "lobs", "efault"}) {
        EXPECT_EQ(source.find(unsaid), std::string::npos) << unsaid << " in\n" << source;
    }
    size_t longest = 0;
    size_t width = 0;
    for (char c : source.substr(0, source.find("base64"))) {
        width = c == '\n' ? 0 : width + ((c & 0xC0) != 0x80 ? 1 : 0);
        longest = std::max(longest, width);
    }
    EXPECT_LE(longest, 120u);
}

TEST(Dump, KeepsTheNamesOfALoadedModel) {
    const std::string source = LabelledSource();
    const CompileResult compiled = CompileModelText(source, "model.json");
    ASSERT_TRUE(compiled.Succeeded());
    ModelSource model = *compiled.model;
    MakeNames(model);
    const std::string written = WriteSource(model).text;
    EXPECT_NE(written.find(R"({"name": "One", "label": {"en": "Tray 1")"), std::string::npos) << written;
    const CompileResult again = CompileModelText(written, "model.json");
    ASSERT_TRUE(again.Succeeded());
    EXPECT_EQ(again.bytes, compiled.bytes);
    EXPECT_EQ(WriteSource(*again.model).text, written);
}

TEST(Dump, PutsLargeDataIntoFilesOfItsOwn) {
    const Dump dump = DumpDescription(CompiledFrom(LabelledSource()), "Made of a file.", "small");
    ASSERT_EQ(dump.source.files.size(), 1u);
    EXPECT_EQ(dump.source.files[0].name, "small-pattern-2.bin");
    EXPECT_EQ(dump.source.files[0].bytes.size(), 2048u);
    EXPECT_NE(dump.source.text.find(R"("pattern 2": {"block": {"file": "small-pattern-2.bin"}, "size": 8})"),
              std::string::npos)
        << dump.source.text;
    EXPECT_TRUE(dump.source.text.starts_with("// Made of a file.\n{\n"));
}

// What names can't say.
TEST(Dump, WritesRawFormsForTheRest) {
    const struct {
        const char* source;
        const char* said;
    } kCases[] = {
        {R"("trays": [{"name": "A", "bin": 1, "mask": 5}, {"name": "B", "bin": 2}])", R"("mask": 5)"},
        {R"("media": [{"name": "A", "mask": 6}, {"name": "B"}], "constraints": [{"mediaMask": 2}])",
         R"({"mediaMask": 2})"},
        {R"("extraKeywords": [{"name": "A", "mask": 2}, {"name": "B", "jobValue": "B", "mask": 4}],
            "constraints": [{"extraKeywordMask": 6}])",
         R"({"extraKeywords": ["A", "B"]})"},
        {R"("trays": [{"name": "A", "bin": 1, "mask": 2147483649}, {"name": "B", "bin": 2, "needs": ["secondTray"]}],
            "constraints": [{"trayMask": 2147483652}])",
         R"({"trayMask": 2147483652})"},
        {R"("trays": [{"name": "A", "bin": 1}], "constraints": [{"trayMask": 64}])", R"({"trayMask": 64})"},
        {R"("installedMask": 8)", R"("installedMask": 8)"},
        {R"("trayOptions": {"a": 3}, "installed": ["a", "secondTray"])", R"("installed": ["secondTray", "option 3"])"},
        {R"("optionFlags": ["plainPcl5", 256])", R"("optionFlags": ["plainPcl5", 256])"},
        {R"("color": 7, "icmIntents": 6)", R"("color": 7)"},
        {R"("trays": [{"name": "A", "bin": 1}], "defaultTray": 7)", R"("defaultTray": 7)"},
        {R"("trays": [{"name": "A", "bin": 1}, {"name": "B", "bin": 2}], "defaultTray": "B")", R"("defaultTray": "B")"},
        {R"("media": [{"name": "A"}], "defaultMedium": 0)", R"("defaultMedium": 0)"},
        {R"("resolutions": [{"name": "A", "dpi": 600}], "defaultResolution": -1)", R"("defaultResolution": -1)"},
        {R"("defaultColorMode": 3)", R"("defaultColorMode": 3)"},
        {R"("papers": [{"name": "A4", "fit": 8}], "margins": [{"papers": ["A4", 8], "allMm": -1}])",
         R"({"papers": ["A4", 8], "allMm": -1})"},
        {R"("papers": ["A4", {"name": "Other", "id": "A4", "keyword": ""}])",
         R"({"name": "A4 2", "id": "A4", "keyword": ""})"},
        {R"("papers": [{"name": "all ", "id": 600, "label": "all", "widthMm": 1, "lengthMm": 1}])",
         R"({"name": "all 2", "label": "all")"},
        {R"("customSizes": {"minWidthMm": 1, "maxWidthMm": 0, "minLengthMm": 0, "maxLengthMm": 6553.5})",
         R"("maxWidthMm": 0)"},
        {R"("trays": [{"name": "A", "label": null, "bin": 1, "keyword": "psk:Cassette"},
                      {"name": "B", "label": {"resource": 12}, "bin": 2}])",
         R"({"name": "tray 2", "label": {"resource": 12}, "bin": "lower"})"},
        {R"("colorModes": [{"name": "A", "kind": 19, "settings": [{"group": 9, "feature": -1, "option": 4}]}])",
         R"("kind": 19, "settings": [{"group": 9, "feature": -1, "option": 4}])"},
        {R"("colorModes": [{"name": "A", "selects": {}}])", R"({"name": "A", "selects": {}})"},
        {R"("commandBlob": {"hex": "0102030405"}, "commands": {"a": {"at": 0, "length": 3}, "b": {"at": 2, "length": 3}},
            "colorFeatures": {"general": [{"name": "F", "values": [{"name": "A", "command": "a"},
                                                                   {"name": "B", "command": "b"}]}]})",
         R"("general F B": {"at": 2, "length": 3})"},
        {R"("commandBlob": "abc")", R"("commandBlob": "abc")"},
        {R"("fonts": ["text", {"hex": "00"}], "fontSubstitutions": [{"face": "Ärial", "printerFont": "Univers"}])",
         R"({"face": "Ärial", "printerFont": "Univers"})"},
        {R"("memory": {"keyBase": -3, "sizes": [{"key": 1, "megabytes": 0}]})", R"("keyBase": -3)"},
    };
    for (const auto& test : kCases) {
        const Bytes file = CompiledFrom(std::string(R"({"pdl": 6, )") + test.source + "}");
        const std::string source = Dumped(file);
        ExpectRoundTrip(file, source);
        EXPECT_NE(source.find(test.said), std::string::npos) << test.said << " in\n" << source;
        EXPECT_EQ(source.find("layout"), std::string::npos) << source;
    }
}

// A file of another compiler over the driver tests' builder.
using Edit = std::function<void(driver_test::DescriptionBuilder&)>;

void ExpectForeignRoundTrip(const Edit& edit, uint16_t pdlType) {
    driver_test::DescriptionBuilder builder = driver_test::SmallModel(pdlType, kColor);
    edit(builder);
    const Bytes file = BytesOf(builder.Build());
    const std::string source = Dumped(file);
    EXPECT_NE(source.find("\"layout\""), std::string::npos);
    ExpectRoundTrip(file, source);
    // What the source says without the layout is the model that readers of the file get.
    EXPECT_EQ(ModelOf(CompiledFrom(WithoutLayout(source))), ModelOf(file)) << source;
}

TEST(Dump, KeepsTheArrangementOfOtherCompilers) {
    const auto reserved = [](driver_test::DescriptionBuilder& builder) {
        std::memset(builder.fields.reserved0, 0xA5, sizeof builder.fields.reserved0);
        std::memset(builder.fields.reserved204, 0x5A, sizeof builder.fields.reserved204);
        builder.fields.jobNameFlags = 0xF0;
        builder.fields.descriptionFlags = 0xF1;
    };
    const auto unused = [](driver_test::DescriptionBuilder& builder) {
        builder.AddString("never");
        builder.AddName("never");
        builder.AddText("never");
        builder.AddPattern("no block");
        builder.AddFont(std::string(40, 'f'));
        builder.AddFont(std::string(40, 'f'));
        builder.Bytes(offsetof(DeviceModel, fontGroups), std::string(6, '\x7F'));
        builder.Bytes(offsetof(DeviceModel, reserved40), "whatever");
    };
    const auto shared = [](driver_test::DescriptionBuilder& builder) {
        std::vector<KeywordRecord> records(2);
        for (KeywordRecord& record : records) {
            record.mark = 7;
            record.reserved2 = 9;
            record.nameRef = builder.AddString("same");
            record.keywordRef = builder.AddName("psk:Same");
            record.ticketValues[1] = 5;
        }
        const uint32_t offset = builder.Table(offsetof(DeviceModel, photoIntentList), records);
        builder.SetSlot(offsetof(DeviceModel, mediaColorList), offset);
        builder.SetSlot(offsetof(DeviceModel, extraListC), offset + sizeof(KeywordRecord));
    };
    const auto languages = [](driver_test::DescriptionBuilder& builder) {
        builder.SetLanguageBase(kGerman, builder.NextLanguageBase());
        for (const char* text : {"A4", "Brief", "Karte", "Auswahl", "wie ^"}) {
            builder.AddString(text);
        }
        builder.SetLanguageBase(kJapanese, builder.NextLanguageBase());
        for (const char* text : {"A4", "\x83\x8C\x83\x5E\x81\x5B", "\x83\x4A\x81\x5B\x83\x68", "", ""}) {
            builder.AddString(text);
        }
    };
    const auto rules = [](driver_test::DescriptionBuilder& builder) {
        std::vector<ConstraintRecord> records(3);
        for (ConstraintRecord& record : records) {
            record.mark = 0x100;
            record.binMask = 0x11;
            record.mediaMask = 4;
            record.flags = 0x80000005;
            record.messageRef = 1;
            record.reserved2[1] = 1;
        }
        records[0].papers.bytes[1] = 0x40;
        records[0].minWidth = 3;
        records[1].papers.bytes[0] = 0x80;
        records[1].maxWidth = records[1].maxLength = 65535;
        records[2].papers.bytes[31] = 1;
        builder.Table(offsetof(DeviceModel, constraintTable), records);
    };
    const auto colors = [](driver_test::DescriptionBuilder& builder) {
        const uint16_t label = builder.AddString("Tone");
        builder.Table(
            offsetof(DeviceModel, colorOptionValues),
            std::vector<ColorValueRecord>{{label, 0, 20, 10, 20}, {label, 5, 0, 0, 0}, {}, {label, 3, 4, 9, 0}});
        builder.Table(offsetof(DeviceModel, textColorFeatures),
                      std::vector<ColorFeatureRecord>{{label, 0}, {label, 3}});
        builder.Table(offsetof(DeviceModel, imageColorFeatures), std::vector<ColorFeatureRecord>{{label, 1}});
        builder.Table(offsetof(DeviceModel, presetSettings),
                      std::vector<PresetSettingRecord>{{2, 0, 0}, {1, 0, 1}, {1, 3, 9}});
        builder.Table(offsetof(DeviceModel, colorModeTable),
                      std::vector<ColorModeRecord>{{8, 0, 0}, {9, 0, 1}, {2, 0, -7}, {4, 0, 3}});
    };
    for (const uint16_t pdlType : {kPdlPcl6, kPdlPcl5, kPdlPostScript}) {
        for (const Edit& edit : {Edit([](auto&) {}), Edit(reserved), Edit(unused), Edit(shared), Edit(languages),
                                 Edit(rules), Edit(colors)}) {
            ExpectForeignRoundTrip(edit, pdlType);
        }
    }
}

// Whatever the reader takes, the dump gives back, be it what it says or only how it is arranged.
TEST(Dump, GivesBackEveryDamagedFileThatIsWellFormed) {
    const Bytes good = CompiledFrom(R"({
      "languages": ["en", "de"], "pdl": "pcl5",
      "papers": ["A4", {"name": "Long", "id": 600, "widthMm": 100, "lengthMm": 400}],
      "trays": [{"name": "Tray", "label": {"en": "Tray", "de": "Fach"}, "bin": 257}, {"name": "Hand", "bin": 4}],
      "media": [{"name": "Plain", "keyword": "psk:Plain", "jobText": "@PJL\r\n"}],
      "resolutions": [{"name": "600", "dpi": 600}],
      "margins": [{"papers": ["Long"], "allMm": 3}, {"allMm": 5}],
      "features": [{"name": "Saving", "jobKey": "KEY", "options": [{"name": "On", "jobValue": "ON"}]}],
      "extraKeywords": [{"name": "Bin", "jobValue": "BIN"}],
      "commands": {"a": "one", "b": "two"},
      "colorFeatures": {"text": [{"name": "Tone", "values": [{"name": "A", "command": "a", "objectCommand": "b"}]}]},
      "colorModes": [{"name": "Auto", "selects": {"text": {"Tone": "A"}}}],
      "photoIntents": [{"name": "None"}],
      "constraints": [{"papers": ["Long"], "trays": ["Tray"], "message": "No."}]})");
    size_t wellFormed = 0;
    const Description description(good);
    const size_t table = description.Header().languageTableOffset;
    for (size_t i = 0; i < good.size(); ++i) {
        if (i > table + 60 && i < table + 2 * kPrimaryLanguages - 2) {
            continue;  // hundreds of languages that nobody knows
        }
        // Either byte of a number gets either damage, in turn.
        const bool byOne = (i / 2 + i) % 2 == 0;
        Bytes file = good;
        file[i] = byOne ? std::byte(static_cast<unsigned char>(good[i]) + 1) : std::byte{0xFF};
        const Dump dump = DumpDescription(file, "", "");
        if (HasErrors(dump.findings)) {
            EXPECT_EQ(dump.source.text, "");
            continue;
        }
        ++wellFormed;
        ExpectRoundTrip(file, dump.source.text);
        EXPECT_EQ(ModelOf(ModelOf(file)), ModelOf(file));
        ASSERT_FALSE(HasFailure()) << "byte " << i << " as " << static_cast<int>(file[i]);
    }
    EXPECT_GT(wellFormed, good.size() / 16);
}

TEST(Layout, CopiesWhatItCan) {
    std::string own;
    for (int i = 0; i < 200; ++i) {
        own += std::to_string(i * i) + ";";
    }
    const std::string file =
        own.substr(300) + "between" + own.substr(0, 250) + own.substr(10, 20) + "x" + own.substr(31, 60);
    const FileLayout layout = FindLayout(BytesOf(own), BytesOf(file));
    EXPECT_EQ(layout.pieces.size(), 6u);
    EXPECT_EQ(ApplyLayout(layout, BytesOf(own)), BytesOf(file));
    EXPECT_EQ(ApplyLayout(layout, BytesOf(own + ";")), std::nullopt);
    EXPECT_EQ(WriteLayout(FindLayout(BytesOf("123456789"), BytesOf("\x01\xFE"
                                                                   "23456789")))
                  .dump(),
              R"({"of":{"size":9,"crc32":"CBF43926"},"size":10,"pieces":["01FE",[1,8]]})");
}

TEST(Layout, TellsWhatIsWrongWithIt) {
    const struct {
        const char* layout;
        const char* fault;
    } kCases[] = {
        {R"({"of": {"size": 5, "crc32": "00000000"}, "size": 1, "pieces": ["00"]})",
         R"(model.json:1:17: $.layout: found a model of )"},
        {R"({"of": {"size": 5, "crc32": "00000000"}, "size": 1, "pieces": ["00"]})",
         R"(expected the arrangement of this model: leave "layout" out once the model is changed)"},
        {R"({"of": {"size": 5, "crc32": "0"}, "size": 1, "pieces": ["00"]})",
         R"($.layout.of.crc32: found "0", expected eight hexadecimal digits)"},
        {R"({"of": {"size": 5, "crc32": "00000000"}, "size": 2, "pieces": ["00"]})",
         R"($.layout.pieces: found pieces of 1 bytes, expected pieces that come to the size, 2 bytes)"},
        {R"({"of": {"size": 5, "crc32": "00000000"}, "size": 4, "pieces": [[2, 4]]})",
         R"($.layout.pieces[0][1]: found 4, expected a whole number from 1 to 3)"},
        {R"({"of": {"size": 5, "crc32": "00000000"}, "size": 4, "pieces": ["0"]})",
         R"($.layout.pieces[0]: found "0", expected pairs of hexadecimal digits)"},
        {R"({"of": {"size": 5, "crc32": "00000000"}, "size": 4, "pieces": [[2]]})",
         R"($.layout.pieces[0]: found an array of 1, expected a start and a length)"},
    };
    for (const auto& test : kCases) {
        const std::string faults = FaultsOf(std::string(R"({"pdl": "pcl5", "layout": )") + test.layout + "}");
        EXPECT_NE(faults.find(test.fault), std::string::npos) << test.fault << " in\n" << faults;
    }
}

}  // namespace
}  // namespace velmora
