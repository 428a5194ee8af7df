// What sources become: read back through the structs that the driver reads with.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/xpic/description.h"
#include "tools/xpic/file_content.h"

namespace velmora {
namespace {

#define SLOT(member) offsetof(DeviceModel, member)

TEST(Compile, SmallestModelIsAWholeFile) {
    const Description file(R"({"pdl": "xps"})");
    EXPECT_EQ(file.Header().deviceBlockOffset, sizeof(DescriptionFileHeader));
    EXPECT_EQ(file.BlockSize(), sizeof(DeviceModel) + 2) << "no tables, filled up to a multiple of 4";
    EXPECT_EQ(+file.Device().pdlType, kPdlXps);
    EXPECT_EQ(+file.Device().defaultBin, 7);
    EXPECT_EQ(+file.Device().defaultMedia, 0);
    EXPECT_EQ(+file.Device().defaultOptionMask, 3u);
    for (size_t slot : kPointerSlots) {
        EXPECT_EQ(file.Slot(slot), 0u) << slot;
    }
    EXPECT_EQ(file.Header().blobSize, 0u);
    EXPECT_EQ(file.LocalizedString(kJapanese, 0), "") << "reads before any text are inside the file";
}

TEST(Compile, PlainNumbersAndFlags) {
    const Description file(R"({
        "pdl": 9, "modelCode": 65535, "color": "secondKind", "pagesPerMinute": 44, "defaultFontSize": 7,
        "imageMode": "cmyk16", "defaultIcmIntent": "absoluteColorimetric", "icmIntents": "offered",
        "jobName": "display", "duplexUnit": true, "jobSetsDataMode": true, "jobDescription": "text",
        "optionFlags": ["plainPcl5", "noPostScriptJobName"],
        "extraOption": {"text": "HDD", "memoryMb": 128},
        "memory": {"keyBase": -3, "keyStep": 5, "sizes": [{"key": 2, "megabytes": 64}, {"key": 9, "megabytes": 65535}]},
        "customSizes": {"minWidthMm": 0, "maxWidthMm": 4000, "minLengthMm": 100.1, "maxLengthMm": 6553.5},
        "trayOptions": {"tower": 31}, "installed": ["secondTray", "tower"],
        "namespace": {"uri": "http://a.example/x", "prefix": "ax"}
    })");
    const DeviceModel device = file.Device();
    EXPECT_EQ(+device.pdlType, 9);
    EXPECT_EQ(+device.modelCode, 65535);
    EXPECT_EQ(+device.colorCapability, kColorSecondKind);
    EXPECT_EQ(+device.pagesPerMinute, 44);
    EXPECT_EQ(+device.defaultFontSize, 7);
    EXPECT_EQ(+device.imageModeDefault, 131072u);
    EXPECT_EQ(+device.defaultIcmIntent, 4u);
    EXPECT_EQ(+device.icmIntentFlags, 1);
    EXPECT_EQ(+device.jobNameFlags, 1 | kJobNamedByDisplay);
    EXPECT_EQ(+device.duplexFlagsA, 1);
    EXPECT_EQ(+device.duplexFlagsB, 1);
    EXPECT_EQ(+device.descriptionFlags, kJobSetsDataMode | kDescriptionsAreText);
    EXPECT_EQ(+device.defaultOptionFlags, kModelPlainPcl5 | kModelNoPostScriptJobName);
    EXPECT_EQ(+device.defaultOptionMask, 3u | 4u | 0x80000000u);
    EXPECT_EQ(+device.extraMemory, 128);
    EXPECT_EQ(file.JobText(device.extraTextRef), "HDD");
    EXPECT_EQ(+device.memoryKeyBase, -3);
    EXPECT_EQ(+device.memoryKeyStep, 5);
    EXPECT_EQ(+device.customMinWidth, 0);
    EXPECT_EQ(+device.customMaxWidth, 40000) << "beyond an i16";
    EXPECT_EQ(+device.customMinLength, 1001);
    EXPECT_EQ(+device.customMaxLength, 65535);
    EXPECT_EQ(file.Name(device.oemNamespaceRef), "http://a.example/x");
    EXPECT_EQ(file.Name(device.oemPrefixRef), "ax");
    const auto memory = file.Table(SLOT(memoryTable), &MemoryRecord::key);
    ASSERT_EQ(memory.size(), 2u);
    EXPECT_EQ(+memory[1].key, 9);
    EXPECT_EQ(+memory[1].megabytes, 65535);
}

TEST(Compile, EveryLanguageFindsItsTexts) {
    const Description file(R"({
        "pdl": "xps", "languages": ["en", "de", "ja"],
        "link": {"en": "Tray", "de": "Größe", "ja": "用紙"},
        "pageLabel": "M",
        "trays": [{"name": "A", "label": {"en": "Tray", "de": "Größe", "ja": "用紙"}, "bin": "upper"},
                  {"name": "B", "label": {"en": "Only English"}, "bin": "lower"},
                  {"name": "C", "label": {"resource": 2014}, "bin": "middle"}]
    })");
    const auto trays = file.Table(SLOT(binTable), &BinRecord::optionMask);
    ASSERT_EQ(trays.size(), 3u);
    EXPECT_EQ(+trays[0].nameRef, file.Device().linkRef) << "equal texts share a reference";
    const size_t reference = file.Device().linkRef;
    EXPECT_EQ(file.LocalizedString(kEnglish, reference), "Tray");
    EXPECT_EQ(file.LocalizedString(kGerman, reference), "Gr\xF6\xDF\x65") << "code page 1252";
    EXPECT_EQ(file.LocalizedString(kJapanese, reference), "\x97\x70\x8E\x86") << "code page 932";
    EXPECT_EQ(file.LocalizedString(kFrench, reference), "Tray") << "a language without texts gets the first";
    EXPECT_EQ(file.LocalizedString(kPrimaryLanguages - 1, reference), "Tray");
    EXPECT_EQ(file.LocalizedString(kGerman, static_cast<size_t>(trays[1].nameRef)), "Only English");
    EXPECT_EQ(file.LocalizedString(kJapanese, file.Device().pageLabelRef), "M");
    EXPECT_EQ(+trays[2].nameRef, -2014) << "a string of the resource module";
}

TEST(Compile, PapersFromTheStandardTableAndOfTheModelsOwn) {
    const Description file(R"({
        "pdl": "pcl5",
        "papers": [
            "A4",
            {"name": "Letter", "label": "US", "keyword": "oem:US", "metric": true, "widthMm": 216, "fit": "Last"},
            {"name": "Thick A5", "id": "A5", "ticketValues": [1, 2, 4294967295]},
            {"name": "Card", "pclSizeCode": -7, "widthMm": 76.2, "lengthMm": 127},
            {"name": "Other card", "pclSizeCode": -7, "widthMm": 100, "lengthMm": 3276.7, "rendererName": "CARD"},
            {"name": "Last", "id": 32767, "widthMm": 0.1, "lengthMm": 80}
        ]})");
    const auto papers = file.Table(SLOT(paperTable), &PaperRecord::nameRef);
    ASSERT_EQ(papers.size(), 6u);
    EXPECT_EQ(+papers[0].paperId, 9);
    EXPECT_EQ(+papers[0].width, 2100);
    EXPECT_EQ(+papers[0].length, 2970);
    EXPECT_EQ(+papers[0].isMetric, 1);
    EXPECT_EQ(+papers[0].pclSizeCode, 26);
    EXPECT_EQ(file.Name(papers[0].keywordRef), "psk:ISOA4");
    EXPECT_EQ(file.LocalizedString(kEnglish, papers[0].nameRef), "A4");
    EXPECT_EQ(+papers[0].rendererNameRef, 0) << "only PCL 6 has renderer names by default";
    EXPECT_EQ(+papers[1].paperId, 1);
    EXPECT_EQ(+papers[1].width, 2160);
    EXPECT_EQ(+papers[1].length, 2794);
    EXPECT_EQ(+papers[1].isMetric, 1);
    EXPECT_EQ(+papers[1].fitPaperId, 32767);
    EXPECT_EQ(file.LocalizedString(kEnglish, papers[1].nameRef), "US");
    EXPECT_EQ(file.Name(papers[1].keywordRef), "oem:US");
    EXPECT_EQ(+papers[2].paperId, 11);
    EXPECT_EQ(+papers[2].ticketValues[2], 4294967295u);
    EXPECT_EQ(+papers[3].paperId, 511) << "ids of cards count down";
    EXPECT_EQ(+papers[3].pclSizeCode, -7);
    EXPECT_EQ(+papers[4].paperId, 510);
    EXPECT_EQ(+papers[4].length, 32767);
    EXPECT_EQ(file.Name(papers[4].rendererNameRef), "CARD");
    EXPECT_EQ(+papers[5].width, 1);

    EXPECT_EQ(Description(R"({"pdl": "postscript", "papers": ["A4"]})")
                  .Table(SLOT(paperTable), &PaperRecord::nameRef)[0]
                  .pclSizeCode,
              0);
    const Description pcl6(R"({"pdl": "pcl6", "papers": ["Executive"]})");
    EXPECT_EQ(pcl6.Name(pcl6.Table(SLOT(paperTable), &PaperRecord::nameRef)[0].rendererNameRef), "EXEC");
}

TEST(Compile, TraysMediaResolutionsAndDefaults) {
    const Description file(R"({
        "pdl": "pcl6",
        "trays": [{"name": "1", "bin": 257, "keyword": "oem:One"}, {"name": "2", "bin": 65535, "needs": ["secondTray"]}],
        "defaultTray": "2",
        "media": [{"name": "Plain", "mediaId": "standard", "jobText": "@PJL A\r\n", "rendererName": "PLAIN"},
                  {"name": "Own", "jobText": "@PJL A\r\n"}],
        "defaultMedium": "Own",
        "patterns": {"unused": {"shape": "clustered", "size": 8}, "p": {"shape": "dispersed", "size": 16}},
        "resolutions": [{"name": "300", "dpi": 300}, {"name": "600", "dpi": 600, "pattern": "p"},
                        {"name": "wide", "dpi": 1200, "verticalDpi": 600, "resolutionId": 601, "jobText": "@PJL R\r\n"}],
        "defaultResolution": "wide",
        "colorModes": [{"name": "a"}, {"name": "b"}], "defaultColorMode": "b"
    })");
    const auto trays = file.Table(SLOT(binTable), &BinRecord::optionMask);
    ASSERT_EQ(trays.size(), 2u);
    EXPECT_EQ(+trays[0].optionMask, 1u);
    EXPECT_EQ(file.Name(trays[0].keywordRef), "oem:One");
    EXPECT_EQ(+trays[1].optionMask, 4u);
    EXPECT_EQ(+file.Device().defaultBin, 65535);
    const auto media = file.Table(SLOT(mediaTable), &MediaRecord::mark);
    ASSERT_EQ(media.size(), 2u);
    EXPECT_EQ(+media[0].mediaId, 1u);
    EXPECT_EQ(file.Name(static_cast<size_t>(media[0].rendererNameRef)), "PLAIN");
    EXPECT_EQ(+media[1].mediaId, 257u);
    EXPECT_EQ(+media[0].jobTextRef, media[1].jobTextRef);
    EXPECT_EQ(file.JobText(media[1].jobTextRef), "@PJL A\r\n");
    EXPECT_EQ(+file.Device().defaultMedia, 2);
    const auto resolutions = file.Table(SLOT(resolutionTable), &ResolutionRecord::mark);
    ASSERT_EQ(resolutions.size(), 3u);
    EXPECT_EQ(+resolutions[0].patternSize, 0);
    EXPECT_EQ(+resolutions[1].patternSize, 16);
    EXPECT_EQ(+resolutions[1].patternIndex, 1);
    EXPECT_EQ(+resolutions[1].resolutionId, 600);
    EXPECT_EQ(+resolutions[2].xDpi, 1200);
    EXPECT_EQ(+resolutions[2].yDpi, 600);
    EXPECT_EQ(+resolutions[2].resolutionId, 601);
    EXPECT_EQ(file.JobText(resolutions[2].jobTextRef), "@PJL R\r\n");
    EXPECT_EQ(+file.Device().defaultResolution, 2);
    EXPECT_EQ(+file.Device().defaultColorMode, 1);

    const Description unnamed(R"({"pdl": "xps", "trays": [{"name": "1", "bin": 261}], "media": [{"name": "m"}],
                                  "resolutions": [{"name": "300", "dpi": 300}]})");
    EXPECT_EQ(+unnamed.Device().defaultBin, 261);
    EXPECT_EQ(+unnamed.Device().defaultMedia, 1);
    EXPECT_EQ(+unnamed.Device().defaultResolution, 0) << "a second resolution isn't there";
    const Description two(
        R"({"pdl": "xps", "resolutions": [{"name": "300", "dpi": 300}, {"name": "600", "dpi": 600}]})");
    EXPECT_EQ(+two.Device().defaultResolution, 1);
}

constexpr std::string_view kFeatures = R"(, "deviceOptions": {"punch": 5}, "features": [
    {"name": "Staple", "jobKey": "STAPLE", "needs": ["stapler", "punch"], "keyword": "psk:Staple",
     "options": [{"name": "Off"}, {"name": "On", "jobValue": "ON", "keyword": "psk:On"}]},
    {"name": "Code", "jobKey": "CODE"},
    {"name": "Save", "jobKey": "SAVE", "options": [{"name": "No", "jobValue": "NO"}]}
]})";

TEST(Compile, OptionsOfFeaturesLieInTheirRuns) {
    for (const auto& [pdl, stride] : {std::pair("pcl6", size_t{6}), std::pair("image", size_t{8})}) {
        SCOPED_TRACE(pdl);
        const Description file(std::string(R"({"pdl": ")") + pdl + "\"" + std::string(kFeatures));
        const auto features = file.Table(SLOT(featureTable), &FeatureRecord::nameRef);
        ASSERT_EQ(features.size(), 3u);
        EXPECT_EQ(+features[0].featureMask, 0x30u);
        EXPECT_EQ(+features[1].featureMask, 0u);
        EXPECT_EQ(file.JobText(features[0].jobKeyRef), "STAPLE");
        EXPECT_EQ(file.Name(features[0].keywordRef), "psk:Staple");
        const auto option = [&](int16_t first, size_t index) {
            return file.At<OptionRecord>(file.Slot(SLOT(optionTable)) + (static_cast<size_t>(first) + index) * stride);
        };
        EXPECT_EQ(+option(features[0].firstOption, 0).jobValueRef, 0);
        EXPECT_EQ(file.LocalizedString(kEnglish, option(features[0].firstOption, 1).nameRef), "On");
        EXPECT_EQ(file.JobText(option(features[0].firstOption, 1).jobValueRef), "ON");
        EXPECT_EQ(file.Name(option(features[0].firstOption, 1).keywordRef), "psk:On");
        EXPECT_EQ(+option(features[0].firstOption, 2).nameRef, 0);
        EXPECT_EQ(+option(features[1].firstOption, 0).nameRef, 0) << "a feature without options has an empty run";
        EXPECT_EQ(file.JobText(option(features[2].firstOption, 0).jobValueRef), "NO");
        EXPECT_EQ(+option(features[2].firstOption, 1).nameRef, 0);
    }
}

TEST(Compile, ExtraKeywordsAreIdentifiedByTheirJobValue) {
    const Description file(R"({"pdl": "pcl6", "extraKeywordJobKey": "OUTBIN",
        "extraKeywords": [{"name": "Standard"}, {"name": "Face up", "jobValue": "FACEUP", "keyword": "oem:FaceUp"}]})");
    EXPECT_EQ(file.JobText(file.Device().jobTextRef), "OUTBIN");
    const auto keywords = file.Table(SLOT(extraKeywordTable), &ExtraKeywordRecord::optionMask);
    ASSERT_EQ(keywords.size(), 2u);
    EXPECT_EQ(+keywords[0].id, 0) << "what a new device mode selects, without a job line";
    EXPECT_EQ(file.JobText(keywords[1].id), "FACEUP");
    EXPECT_EQ(file.Name(keywords[1].keywordRef), "oem:FaceUp");
}

TEST(Compile, ColorCorrection) {
    const Description file(R"({
        "pdl": "pcl6", "color": "color",
        "commands": {"tone": "\u001b*t1", "black": {"hex": "00 ff"}, "gloss": {"base64": "AAEC/w=="}},
        "colorFeatures": {
            "general": [{"name": "Gloss", "values": [{"name": "Off"}, {"name": "On", "command": "gloss"}]}],
            "text": [{"name": "Tone", "values": [{"name": "None"}, {"name": "Vivid", "command": "tone"}]},
                     {"name": "Black", "values": [{"name": "Pure", "command": "tone", "objectCommand": "black"}]}]},
        "colorModes": [
            {"name": "Plain"},
            {"name": "Office", "selects": {"general": {"Gloss": "On"}, "text": {"Black": "Pure", "Tone": "Vivid"}}},
            {"name": "System", "systemManaged": true},
            {"name": "Manual", "manual": true, "selects": {"text": {"Tone": "None"}}}]
    })");
    EXPECT_EQ(BytesAt(file, file.Header().blobOffset, file.Header().blobSize),
              std::string("\x1B*t1\0\xFF\0\1\2\xFF", 10));
    const auto text = file.Table(SLOT(textColorFeatures), &ColorFeatureRecord::nameRef);
    const auto general = file.Table(SLOT(generalColorFeatures), &ColorFeatureRecord::nameRef);
    ASSERT_EQ(text.size(), 2u);
    ASSERT_EQ(general.size(), 1u);
    EXPECT_EQ(file.Slot(SLOT(imageColorFeatures)), 0u);
    const auto values = [&](const ColorFeatureRecord& feature) {
        return file.Table(SLOT(colorOptionValues), &ColorValueRecord::nameRef, static_cast<size_t>(feature.firstValue));
    };
    ASSERT_EQ(values(text[0]).size(), 2u);
    EXPECT_EQ(+values(text[0])[0].firstLength, 0);
    EXPECT_EQ(+values(text[0])[1].firstStart, 0);
    EXPECT_EQ(+values(text[0])[1].firstLength, 4);
    EXPECT_EQ(+values(text[0])[1].secondLength, 0);
    ASSERT_EQ(values(text[1]).size(), 1u);
    EXPECT_EQ(+values(text[1])[0].secondStart, 4);
    EXPECT_EQ(+values(text[1])[0].secondLength, 2);
    EXPECT_EQ(+values(general[0])[1].firstStart, 6);

    const auto modes = file.Table(SLOT(colorModeTable), &ColorModeRecord::kind);
    ASSERT_EQ(modes.size(), 4u);
    EXPECT_EQ(+modes[0].kind, 1u);
    EXPECT_EQ(+modes[0].firstSetting, -1);
    EXPECT_EQ(+modes[1].kind, kColorModeHasDefaults);
    EXPECT_EQ(file.LocalizedString(kEnglish, modes[1].nameRef), "Office");
    EXPECT_EQ(+modes[2].kind, kColorModeSystem);
    EXPECT_EQ(+modes[3].kind, kColorModeManual | kColorModeHasDefaults);
    const auto settings =
        file.Table(SLOT(presetSettings), &PresetSettingRecord::group, static_cast<size_t>(modes[1].firstSetting));
    ASSERT_EQ(settings.size(), 3u);
    EXPECT_EQ(+settings[0].group, 1);
    EXPECT_EQ(+settings[0].feature, 1);
    EXPECT_EQ(+settings[0].option, 0);
    EXPECT_EQ(+settings[1].feature, 0);
    EXPECT_EQ(+settings[1].option, 1);
    EXPECT_EQ(+settings[2].group, 4);
    EXPECT_EQ(+settings[2].option, 1);
    EXPECT_EQ(file.Table(SLOT(presetSettings), &PresetSettingRecord::group, static_cast<size_t>(modes[3].firstSetting))
                  .size(),
              1u);

    const Description image(R"({"pdl": "image", "colorFeatures":
        {"graphics": [{"name": "Intent", "values": [{"name": "Photo", "jobValue": "PERCEPTUAL"}]}]}})");
    const auto value = image.Table(SLOT(colorOptionValues), &ColorValueRecord::nameRef).at(0);
    EXPECT_EQ(image.JobText(value.firstStart), "PERCEPTUAL");
    EXPECT_EQ(+value.firstLength, 0);
}

TEST(Compile, KeywordListsGoToTheirSlots) {
    const std::pair<const char*, size_t> lists[] = {
        {"photoIntents", SLOT(photoIntentList)}, {"signatureOptions", SLOT(signatureOptionList)},
        {"extraListA", SLOT(extraListA)},        {"extraListB", SLOT(extraListB)},
        {"mediaColors", SLOT(mediaColorList)},   {"extraListC", SLOT(extraListC)}};
    for (const auto& [key, slot] : lists) {
        SCOPED_TRACE(key);
        const Description file(std::string(R"({"pdl": "xps", ")") + key +
                               R"(": [{"name": "None", "keyword": "psk:None", "ticketValues": [7, 8, 9]}]})");
        const auto entries = file.Table(slot, &KeywordRecord::mark);
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(file.LocalizedString(kEnglish, entries[0].nameRef), "None");
        EXPECT_EQ(file.Name(entries[0].keywordRef), "psk:None");
        EXPECT_EQ(+entries[0].ticketValues[1], 8u);
    }
}

TEST(Compile, FontsImagesAndFontNames) {
    const Description file(R"({"pdl": "pcl5", "primaryFont": "Courier", "secondaryFont": "Größe",
        "fonts": ["first", {"hex": "0102"}, "x"],
        "fontSubstitutions": [{"face": "Arial", "printerFont": "Univers"}, {"face": "Symbol", "printerFont": "Sym"}],
        "images": [{"hex": "424D 0E000000 0000 0000 0E000000"}, {"hex": "424D 0F000000 0000 0000 0E000000 55"}]})");
    EXPECT_EQ(file.Text(file.Slot(SLOT(defaultFontA))), "Courier");
    EXPECT_EQ(file.Text(file.Slot(SLOT(defaultFontB))), "Gr\xF6\xDF\x65");
    const std::string pairs("Arial\0Univers\0Symbol\0Sym\0", 25);
    EXPECT_EQ(BytesAt(file, file.Slot(SLOT(defaultFontSubs)), pairs.size() + 1), pairs + '\0');
    EXPECT_EQ(+file.Device().fontCount, 3);
    const auto font = [&](size_t i) { return file.At<uint32_t>(file.Header().fontIndexOffset + 4 * i); };
    EXPECT_EQ(font(0), 0u);
    EXPECT_EQ(font(1), 5u);
    EXPECT_EQ(font(2), 7u);
    EXPECT_EQ(font(3), 8u) << "the end of the last record";
    EXPECT_EQ(BytesAt(file, file.Header().fontPoolOffset, 8), "first\x01\x02x");
    EXPECT_EQ(file.At<uint32_t>(file.Header().imageIndexOffset + 4), 14u);
    EXPECT_EQ(file.At<uint8_t>(file.Header().imagePoolOffset + 28), 0x55);
}

TEST(Compile, GroupStartsHaveRoom) {
    // Sizes of font records and the groups that loading makes of them.
    const std::pair<std::vector<size_t>, size_t> cases[] = {
        {{20000, 15000, 40000, 1000}, 4}, {{10000, 10000, 10000, 10000}, 2}, {{32767, 1}, 2}, {{40000}, 1}, {{1}, 1}};
    for (const auto& [sizes, groups] : cases) {
        std::string fonts;
        for (size_t size : sizes) {
            fonts += (fonts.empty() ? "\"" : ", \"") + std::string(size, 'f') + "\"";
        }
        const Description file(R"({"pdl": "pcl5", "memory": {"sizes": []}, "fonts": [)" + fonts + "]}");
        const size_t start = file.Slot(SLOT(fontGroups));
        ASSERT_NE(start, 0u);
        EXPECT_GE(file.Header().languageTableOffset, start + 2 * groups) << sizes.size();
        EXPECT_LT(file.Header().languageTableOffset, start + 2 * groups + 4) << sizes.size();
    }
}

TEST(Compile, GeneratedPatternsDarkenEvenly) {
    for (const char* shape : {"clustered", "dispersed"}) {
        for (size_t size : {8, 16, 32}) {
            const Description file(R"({"pdl": "pcl5", "patterns": {"p": {"shape": ")" + std::string(shape) +
                                   R"(", "size": )" + std::to_string(size) + "}}}");
            const size_t levelBytes = size * size / 8;
            const size_t pool = file.Header().patternPoolOffset;
            ASSERT_EQ(file.Header().blobOffset - pool, 32 * size * size);
            std::vector<uint8_t> lighter(levelBytes, 0xFF);
            for (size_t level = 0; level < 256; ++level) {
                size_t black = 0;
                for (size_t i = 0; i < levelBytes; ++i) {
                    const auto byte = file.At<uint8_t>(pool + level * levelBytes + i);
                    ASSERT_EQ(byte & ~lighter[i], 0) << "a lighter level blackens a pixel";
                    lighter[i] = byte;
                    black += static_cast<size_t>(__builtin_popcount(byte));
                }
                ASSERT_EQ(black, size * size * (255 - level) / 255);
            }
        }
    }
    const Description dispersed(R"({"pdl": "pcl5", "patterns": {"p": {"shape": "dispersed", "size": 8}}})");
    // At a quarter of black every second pixel of every second row is set.
    EXPECT_EQ(BytesAt(dispersed, dispersed.Header().patternPoolOffset + 191 * 8, 8),
              std::string("\xAA\0\xAA\0\xAA\0\xAA\0", 8));
}

TEST(Compile, PoolsMeetWhereReadersRelyOnIt) {
    const Description file(R"({"pdl": "pcl6", "fonts": ["abc"], "extraOption": {"text": "HDD"}, "papers": ["A4"]})");
    const DescriptionFileHeader header = file.Header();
    EXPECT_EQ(header.languageTableOffset, header.deviceBlockOffset + file.BlockSize());
    EXPECT_EQ(header.fontPoolOffset, header.textPoolOffset + 5) << "an empty text and HDD, then directly the fonts";
    EXPECT_GE(header.stringIndexOffset, header.languageTableOffset + 2 * kPrimaryLanguages);
}

TEST(Compile, SameSourceSameBytesWhateverItsLayout) {
    const std::string_view source = R"({"pdl": "pcl6", "languages": ["en", "de"], "papers": ["A4", "Letter"],
        "link": {"en": "a", "de": "b"}, "commands": {"x": "1"}})";
    const std::string_view other =
        "\xEF\xBB\xBF// head\n{\r\n/* order */ \"commands\": {\"x\": {\"hex\": \"31\"}},"
        "\"link\": {\"de\": \"b\", \"en\": \"a\"},\n\"papers\": [\"A4\",{\"name\": \"Letter\"}],\"pdl\":\"pcl6\","
        "\"languages\":[\"en\",\"de\"] } // end";
    EXPECT_EQ(Description(source).File(), Description(source).File());
    EXPECT_EQ(Description(source).File(), Description(other).File());
}

TEST(Compile, FilesAreFoundBesideTheSource) {
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "xpic beside";
    std::filesystem::create_directories(folder / "data");
    std::ofstream(folder / "data" / "font.bin", std::ios::binary) << "font!";
    std::ofstream(folder / "m.json")
        << R"({"pdl": "pcl5", "modelName": "Velmora M1", "fonts": [{"file": "data/font.bin"}]})";
    const CompileResult result = CompileModel(folder / "m.json");
    ASSERT_TRUE(result.Succeeded());
    EXPECT_EQ(result.ModelName(), "Velmora M1");
    const Description file(result.bytes);
    EXPECT_EQ(BytesAt(file, file.Header().fontPoolOffset, 5), "font!");

    WriteFileAtomically(folder / "m.XPI", result.bytes);
    EXPECT_EQ(std::filesystem::file_size(folder / "m.XPI"), result.bytes.size());
    EXPECT_THROW(WriteFileAtomically(folder / "nowhere" / "m.XPI", result.bytes), std::filesystem::filesystem_error);
    EXPECT_THROW(WriteFileAtomically(folder / "data", result.bytes), std::filesystem::filesystem_error);
    EXPECT_FALSE(std::filesystem::exists(folder / "data.new")) << "nothing of a failed write stays";
    std::filesystem::remove_all(folder);

    const CompileResult missing = CompileModel(folder / "m.json");
    ASSERT_EQ(missing.diagnostics.size(), 1u);
    EXPECT_EQ(FormatDiagnostic(missing.diagnostics[0]),
              (folder / "m.json").string() + ": $: found no file that can be read, expected a model source");
}

TEST(Output, NeverStandsOverWhatIsRead) {
    const std::filesystem::path document = VELMORA_MODELS_DOCUMENT;
    const std::filesystem::path folder = document.parent_path();
    EXPECT_TRUE(OutputFault(folder / "." / document.filename(), {folder / "other", document}));
    EXPECT_TRUE(OutputFault(folder, {}));
    EXPECT_TRUE(OutputFault(folder / "nowhere" / "x.XPI", {}));
    EXPECT_FALSE(OutputFault(folder / "x.XPI", {document}));
}

}  // namespace
}  // namespace velmora
