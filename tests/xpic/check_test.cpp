// What the checker says of models: nothing of a good one, and each finding where it belongs.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tools/xpic/check_file.h"
#include "tools/xpic/check_model.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

// A model that nothing can be said against.
constexpr std::string_view kGood = R"({
    "languages": ["en", "de"], "pdl": "pcl6", "color": "color", "pagesPerMinute": 20, "duplexUnit": true,
    "namespace": {"uri": "http://velmora.example/x", "prefix": "vx"},
    "customSizes": {"minWidthMm": 70, "maxWidthMm": 300, "minLengthMm": 120, "maxLengthMm": 1200},
    "papers": ["A4", {"name": "A5", "fit": "A4"},
               {"name": "Card", "pclSizeCode": -1, "widthMm": 76.2, "lengthMm": 127, "keyword": "vx:Card"},
               {"name": "Banner", "id": 600, "widthMm": 297, "lengthMm": 900, "keyword": "vx:Banner"}],
    "trays": [{"name": "Auto", "bin": "auto", "keyword": "psk:AutoSelect"},
              {"name": "Tray 2", "bin": 258, "needs": ["secondTray"], "keyword": "vx:Tray2"}],
    "media": [{"name": "Plain", "keyword": "psk:Plain", "jobText": "@PJL SET MEDIATYPE=PLAIN\r\n"},
              {"name": "Thick", "keyword": "psk:CardStock"}],
    "resolutions": [{"name": "300 dpi", "dpi": 300, "keyword": "vx:Dpi300"},
                    {"name": "600 dpi", "dpi": 600, "keyword": "vx:Dpi600"}],
    "margins": [{"papers": ["A5"], "allMm": 6}, {"allMm": 4.2}],
    "memory": {"keyBase": 1, "keyStep": 1, "sizes": [{"key": 1, "megabytes": 512}, {"key": 2, "megabytes": 1024}]},
    "fontSubstitutions": [{"face": "Arial", "printerFont": "Univers"}],
    "extraKeywordJobKey": "OUTBIN", "extraKeywords": [{"name": "Standard"}, {"name": "Face up", "jobValue": "UP"}],
    "features": [{"name": "Saving", "jobKey": "ECONOMODE", "keyword": "vx:Saving",
                  "options": [{"name": "Off", "keyword": "vx:Off"}, {"name": "On", "jobValue": "ON", "keyword": "vx:On"}]},
                 {"name": "Stapling", "jobKey": "STAPLE", "keyword": "vx:Staple", "needs": ["stapler"],
                  "options": [{"name": "Off", "keyword": "psk:None"},
                              {"name": "Corner", "jobValue": "LEFT", "keyword": "vx:Corner"}]}],
    "commands": {"vivid": "V", "photo": "P", "job": "J", "object": "O"},
    "colorFeatures": {"text": [{"name": "Tone", "values": [{"name": "None"}, {"name": "Vivid", "command": "vivid"}]},
                               {"name": "Black", "values": [{"name": "Mixed", "command": "job", "objectCommand": "object"}]}],
                      "general": [{"name": "Tone", "values": [{"name": "Photo", "command": "photo"}]}]},
    "colorModes": [{"name": "Automatic", "selects": {"text": {"Tone": "Vivid"}}}, {"name": "System", "systemManaged": true},
                   {"name": "Manual", "manual": true}, {"name": "Plain"}],
    "constraints": [{"papers": ["Card"], "duplex": true, "trays": ["Tray 2"], "message": "By hand."},
                    {"papers": ["custom"], "lengthMm": [600, 1200], "options": ["stapler"], "message": "Too long."},
                    {"media": ["Thick"], "extraKeywords": ["Face up"], "message": "Too thick."}],
    "photoIntents": [{"name": "Best", "keyword": "psk:PhotoBest"}]
})";

struct Judged {
    const char* change;    // of the good model, as a JSON merge patch
    const char* findings;  // "PATH CODE", one a line
};

std::string CodesOf(const std::string& source) {
    const CompileResult result = CompileModelText(source, "model.json");
    for (const Diagnostic& diagnostic : result.diagnostics) {
        ADD_FAILURE() << FormatDiagnostic(diagnostic);
    }
    std::string text;
    if (result.model) {
        for (const Finding& finding : CheckModel(*result.model)) {
            text.append(text.empty() ? "" : "\n").append(finding.path).append(" ").append(finding.code);
        }
    }
    return text;
}

void ExpectJudged(std::span<const Judged> cases) {
    for (const Judged& judged : cases) {
        Json model = Json::parse(kGood);
        model.merge_patch(Json::parse(judged.change));
        EXPECT_EQ(CodesOf(model.dump()), judged.findings) << judged.change;
    }
}

TEST(CheckModel, HasNothingToSayOfAGoodModel) {
    ExpectJudged(std::vector<Judged>{{"{}", ""}});
}

TEST(CheckModel, TextsAndKeywords) {
    constexpr Judged kCases[] = {
        {R"({"link": {"en": "x"}})", "$.link missing-text"},
        {R"({"link": {"en": "x", "de": ""}})", "$.link missing-text"},
        {R"({"link": {"en": "", "de": ""}, "pageLabel": "C"})", ""},
        {R"({"texts": {"Nobody": {"de": "Niemand"}}})", "$.texts.Nobody text-unused"},
        {R"({"trays": [{"name": "A", "bin": "auto", "keyword": "psk:A", "label": null},
                       {"name": "B", "bin": 258, "keyword": "psk:B", "label": {"en": "L", "de": "M"}},
                       {"name": "C", "bin": 259, "keyword": "psk:C", "label": {"en": "L", "de": "M"}},
                       {"name": "D", "bin": 260, "keyword": "psk:D", "label": {"en": "L", "de": "N"}}], "constraints": null})",
         "$.trays[0].label no-display-text\n$.trays[2].label label-twice"},
        {R"({"photoIntents": [{"name": "1"}, {"name": "2", "keyword": "Best"}, {"name": "3", "keyword": "oem:Draft"},
                              {"name": "4", "keyword": "vx:"}, {"name": "5", "keyword": "kxp:2nd best"},
                              {"name": "6", "keyword": "vx:Best"}, {"name": "7", "keyword": "psk:Best"}],
             "extraListA": [{"name": "1"}]})",
         "$.photoIntents[0].keyword keyword-missing\n$.photoIntents[1].keyword keyword-without-prefix\n"
         "$.photoIntents[2].keyword keyword-prefix\n$.photoIntents[3].keyword keyword-empty\n"
         "$.photoIntents[4].keyword keyword-syntax\n$.photoIntents[5].keyword keyword-twice"},
        {R"({"namespace": {"prefix": "psf"}, "papers": ["A4"], "trays": [{"name": "A", "bin": 257, "keyword": "psf:A"}],
             "resolutions": [{"name": "1", "dpi": 1, "keyword": "kxp:1"}, {"name": "2", "dpi": 2, "keyword": "kxp:_2"}],
             "features": null, "constraints": null, "margins": [{"allMm": 1}]})",
         "$.namespace.prefix namespace-prefix\n$.resolutions[0].keyword keyword-syntax"},
    };
    ExpectJudged(kCases);
    const std::string address = "http://" + std::string(121, 'x');
    const std::string change = R"({"link": ")" + address + R"("})";
    ExpectJudged(std::vector<Judged>{{change.c_str(), "$.link link-too-long"}});
}

TEST(CheckModel, TheModelAsAWhole) {
    constexpr Judged kCases[] = {
        {R"({"pagesPerMinute": 0})", "$.pagesPerMinute no-print-speed"},
        {R"({"imageMode": "rgb24", "jobDescription": "text", "optionFlags": ["plainPcl5", "colorSlicesPerPage", "noPostScriptJobName"]})",
         "$.imageMode setting-unused\n$.jobDescription setting-unused\n$.optionFlags setting-unused\n"
         "$.optionFlags setting-unused"},
        {R"({"jobSetsDataMode": true})", ""},
        {R"({"color": "none", "jobSetsDataMode": true})",
         "$.jobSetsDataMode setting-unused\n$.colorFeatures.text color-unused\n$.colorFeatures.general color-unused\n"
         "$.colorModes color-unused"},
        {R"({"pdl": "image", "imageMode": 3, "colorFeatures": null, "colorModes": null, "commands": null, "fonts": ["F"],
             "papers": ["A4", {"name": "A5", "fit": "A4"}, "A6"], "margins": [{"allMm": 1}],
             "customSizes": {"minLengthMm": 90}, "constraints": null})",
         "$.fonts setting-unused\n$.imageMode image-mode\n$.media[0].jobText setting-unused"},
        {R"({"papers": null, "margins": null, "constraints": null})",
         "$.customSizes paper-without-margins\n$.customSizes paper-without-margins\n$.papers no-papers"},
        {R"({"papers": ["A5"], "margins": [{"allMm": 1}], "constraints": null})", "$.papers no-a4"},
        {R"({"margins": [{"papers": ["custom"], "widthMm": [70, 150], "allMm": 5},
                         {"papers": ["custom"], "widthMm": [150.2, 300], "allMm": 5},
                         {"papers": ["A4", "A5", "Card", "Banner"], "allMm": 5}]})",
         "$.customSizes paper-without-margins\n$.customSizes paper-without-margins"},
        {R"({"margins": [{"papers": ["custom"], "widthMm": [70, 150], "allMm": 5},
                         {"papers": ["custom"], "widthMm": [150.1, 300], "allMm": 5},
                         {"papers": ["A4", "A5", "Card", "Banner"], "allMm": 5}]})",
         ""},
        {R"({"trays": null, "constraints": null})", "$.trays no-trays"},
        {R"({"media": null, "constraints": null})", "$.media no-media"},
        {R"({"resolutions": null})", "$.resolutions no-resolutions"},
        {R"({"resolutions": [{"name": "600 dpi", "dpi": 600, "keyword": "vx:Dpi600"}]})",
         "$.resolutions one-resolution"},
        {R"({"customSizes": {"maxWidthMm": 0}})",
         "$.customSizes no-paper-page\n$.constraints[1] constraint-never-matches"},
    };
    ExpectJudged(kCases);
}

TEST(CheckModel, Defaults) {
    constexpr Judged kCases[] = {
        {R"({"defaultTray": 300})", "$.defaultTray default-tray"},
        {R"({"defaultTray": 1028})", ""},
        {R"({"defaultTray": 2001})", ""},
        {R"({"defaultTray": 2002})", "$.defaultTray default-tray"},
        {R"({"defaultTray": "Tray 2"})", "$.defaultTray default-tray-not-offered"},
        {R"({"defaultTray": "Tray 2", "installed": ["secondTray"]})", ""},
        {R"({"defaultMedium": 3})", "$.defaultMedium default-medium"},
        {R"({"defaultMedium": 0})", "$.defaultMedium default-medium"},
        {R"({"defaultResolution": 2})", "$.defaultResolution default-resolution"},
        {R"({"defaultResolution": -1})", "$.defaultResolution default-resolution"},
        {R"({"defaultResolution": "300 dpi"})", "$.defaultResolution default-resolution-unused"},
        {R"({"defaultColorMode": 4})", "$.defaultColorMode default-color-mode"},
        {R"({"memory": {"keyStep": 2}})", "$.memory default-memory"},
        {R"({"installedMask": 11})", "$.installed installed-unused"},
    };
    ExpectJudged(kCases);
}

TEST(CheckModel, PapersAndMargins) {
    constexpr Judged kCases[] = {
        {R"({"papers": ["A4", {"name": "Own", "label": "Own", "id": 9, "widthMm": 200, "lengthMm": 200, "keyword": "vx:Own"}],
             "margins": [{"allMm": 1}], "constraints": null})",
         "$.papers[1].id paper-id-twice"},
        {R"({"papers": ["A4", {"name": "Card", "pclSizeCode": -1, "id": 600, "widthMm": 80, "lengthMm": 130, "keyword": "vx:C"},
                        {"name": "Own", "id": 511, "widthMm": 200, "lengthMm": 200, "keyword": "vx:Own"}],
             "margins": [{"allMm": 1}], "constraints": null})",
         "$.papers[1].id card-id\n$.papers[2].id paper-shadowed"},
        {R"({"papers": ["A4", {"name": "Own", "id": 538, "pclSizeCode": 100, "widthMm": 200, "lengthMm": 200, "keyword": "vx:Own"}],
             "margins": [{"allMm": 1}], "constraints": null})",
         "$.papers[1].id paper-shadowed"},
        {R"({"pdl": "xps", "papers": ["A4", {"name": "Own", "id": 300, "pclSizeCode": -1, "widthMm": 200, "lengthMm": 200, "keyword": "vx:Own"},
                        {"name": "Shared", "id": 448, "widthMm": 210, "lengthMm": 200, "keyword": "vx:Shared"}],
             "margins": [{"papers": ["A4", "custom"], "allMm": 1}], "constraints": null})",
         "$.papers[1].id paper-id-not-looked-up\n$.papers[1].pclSizeCode card-unused\n$.papers[2].id paper-id-shared"},
        {R"({"papers": ["A4", "A2", "A6"], "margins": [{"allMm": 1}], "constraints": null,
             "customSizes": {"maxLengthMm": 500, "minLengthMm": 150}})",
         "$.papers[1] paper-outside-limits\n$.papers[2] paper-not-custom"},
        {R"({"papers": ["A4", {"name": "A5", "fit": 8}, {"name": "B5JIS", "fit": "B5JIS"}, {"name": "A6", "fit": "A2"}, "A2"],
             "customSizes": {"maxWidthMm": 400}, "margins": [{"allMm": 1}], "constraints": null})",
         "$.papers[1].fit fit-target\n$.papers[2].fit fit-target\n$.papers[3].fit fit-target\n$.papers[4] "
         "paper-not-custom"},
        {R"({"margins": [{"papers": ["A4", "A5", "Card"], "allMm": 6}, {"orientations": ["portrait"], "allMm": 4.2}]})",
         "$.customSizes paper-without-margins\n$.papers[3] paper-without-margins"},
        {R"({"margins": [{"papers": ["A5"], "leftMm": 70, "allMm": 80}, {"papers": ["Card"], "unitsPerInch": 10, "left": 20, "top": 20, "right": 10, "bottom": 30},
                         {"allMm": 4.2}]})",
         "$.papers[1] margins-leave-nothing\n$.papers[1] margins-leave-nothing\n$.papers[2] margins-leave-nothing\n"
         "$.papers[2] margins-leave-nothing"},
        {R"({"margins": [{"papers": ["A5"], "allMm": 6}, {"allMm": 4.2}, {"papers": ["A4", "Banner"], "allMm": 5},
                         {"papers": ["custom"], "lengthMm": [200, 300], "allMm": 5}, {"papers": ["custom"], "widthMm": [400, 500], "allMm": 5},
                         {"papers": [3], "allMm": 5}, {"orientations": [], "allMm": 5}]})",
         "$.margins[2] margins-never-used\n$.margins[3] margins-never-used\n$.margins[4] margins-never-used\n"
         "$.margins[5] margins-never-used\n$.margins[6] margins-never-used"},
    };
    ExpectJudged(kCases);
}

TEST(CheckModel, RecordsAndTheirJobLines) {
    constexpr Judged kCases[] = {
        {R"({"trays": [{"name": "A", "bin": "auto", "keyword": "psk:A", "label": {"en": "Twenty-three characters", "de": "Vierundzwanzig Zeichen äö"}},
                       {"name": "B", "bin": "auto", "keyword": "psk:B"}, {"name": "C", "bin": 259, "mask": 8, "keyword": "psk:C"}],
             "constraints": null})",
         "$.trays[0].label tray-label-cut\n$.trays[1].bin tray-bin-twice\n$.trays[2] tray-not-offered"},
        {R"({"media": [{"name": "A", "mediaId": 300, "keyword": "psk:A", "jobText": "@PJL SET X=1\n"},
                       {"name": "B", "mediaId": 300, "keyword": "psk:B", "jobText": "X\r\n"}], "constraints": null})",
         "$.media[0].jobText job-command\n$.media[1].jobText job-command\n$.media[1].mediaId medium-id-twice"},
        {R"({"patterns": {"p": {"shape": "clustered", "size": 8}},
             "resolutions": [{"name": "A", "dpi": 300, "keyword": "vx:A", "pattern": "p"}, {"name": "B", "dpi": 600, "keyword": "vx:B"}]})",
         "$.resolutions[0].pattern pattern-unused"},
        {R"({"patterns": {"p": {"shape": "clustered", "size": 8}}, "pdl": "pcl5", "color": "none", "colorFeatures": null,
             "colorModes": null, "commands": null,
             "resolutions": [{"name": "A", "dpi": 300, "keyword": "vx:A", "pattern": "p"}, {"name": "B", "dpi": 600, "keyword": "vx:B"}]})",
         ""},
        {R"({"memory": {"sizes": [{"key": 2, "megabytes": 1}, {"key": 2, "megabytes": 2}]}})",
         "$.memory.sizes[1] memory-key-twice"},
        {R"({"fontSubstitutions": [{"face": "12345678901234567890123456789012", "printerFont": "1234567890123456789012345678901"},
                                   {"face": "A", "printerFont": "B"}, {"face": "A", "printerFont": "C"}]})",
         "$.fontSubstitutions[0] substitution-too-long\n$.fontSubstitutions[2] substitution-twice"},
        {R"({"features": [{"name": "A", "keyword": "vx:A"}, {"name": "B", "keyword": "vx:B"}], "constraints": null})",
         "$.features[0] feature-without-options\n$.features[1] feature-without-options"},
        {R"({"features": [{"name": "A", "keyword": "vx:A"}, {"name": "B", "keyword": "vx:B"}, {"name": "C", "keyword": "vx:C"}], "constraints": null})",
         "$.features[0] feature-without-options\n$.features[1] feature-without-options\n"
         "$.features[2] feature-without-options\n$ device-mode-rejected"},
        {R"({"features": [{"name": "A", "keyword": "vx:A"}, {"name": "B", "keyword": "vx:B"}], "constraints": null,
             "defaultMedium": 9})",
         "$.features[0] feature-without-options\n$.features[1] feature-without-options\n"
         "$.defaultMedium default-medium\n$ device-mode-rejected"},
        {R"({"defaultTray": 4000, "defaultIcmIntent": 5, "media": [{"name": "A", "keyword": "vx:A", "mediaId": 255}],
             "constraints": null})",
         "$.media[0].mediaId value-repaired\n$.defaultTray default-tray\n$.defaultIcmIntent value-repaired\n"
         "$ device-mode-rejected"},
        {R"({"color": 7, "colorFeatures": null, "colorModes": null, "commands": null})", "$.color value-repaired"},
        {R"({"defaultIcmIntent": 256, "media": [{"name": "A", "keyword": "vx:A", "mediaId": 3}, {"name": "B", "keyword": "vx:B"}],
             "constraints": null})",
         ""},
        {R"({"features": [{"name": "A", "keyword": "vx:A", "options": [{"name": "1", "jobValue": "1", "keyword": "vx:O"}]},
                          {"name": "B", "keyword": "vx:B", "jobKey": "B", "options": [{"name": "1", "keyword": "vx:O"}, {"name": "2", "keyword": "vx:O"}]},
                          {"name": "C", "keyword": "vx:C", "jobKey": "C", "needs": ["borderless"],
                           "options": [{"name": "1", "jobValue": "1", "keyword": "vx:O"}]}], "constraints": null})",
         "$.features[0] feature-without-job-key\n$.features[1] feature-never-sent\n"
         "$.features[1].options[1].keyword keyword-twice\n$.features[2] borderless-options"},
        {R"({"extraKeywordJobKey": null, "extraKeywords": [{"name": "Up", "jobValue": "UP"}], "constraints": null})",
         "$.extraKeywordJobKey extra-keyword-key\n$.extraKeywords extra-keyword-default"},
    };
    ExpectJudged(kCases);

    Json model = Json::parse(kGood);
    for (int i = 1; i <= 31; ++i) {
        model["extraKeywords"].push_back({{"name", std::to_string(i)}, {"jobValue", std::to_string(i)}, {"mask", 2}});
    }
    model["constraints"] = Json::parse(R"([{"extraKeywordMask": 2, "message": "No."}])");
    EXPECT_EQ(CodesOf(model.dump()), "$.extraKeywords[32] extra-keyword-unsearched");
}

TEST(CheckModel, Constraints) {
    constexpr Judged kCases[] = {
        {R"({"constraints": [{"papers": [3, 5], "message": "No."}, {"papers": ["custom"], "widthMm": [400, 500], "message": "No."},
                             {"trayMask": 2147483648, "message": "No."}, {"mediaMask": 2, "message": "No."},
                             {"extraKeywordMask": 2, "message": "No."}]})",
         "$.constraints[0] constraint-never-matches\n$.constraints[1] constraint-never-matches\n"
         "$.constraints[2] constraint-never-matches\n$.constraints[3] constraint-never-matches\n"
         "$.constraints[4] constraint-never-matches"},
        {R"({"duplexUnit": false})", "$.constraints[0] constraint-never-matches"},
        {R"({"features": [{"name": "Stapling", "keyword": "vx:Staple", "needs": ["stapler"],
                           "options": [{"name": "Off", "keyword": "psk:None"}]}]})",
         "$.features[0] feature-never-sent\n$.constraints[1] constraint-never-matches"},
        {R"({"constraints": [{"options": ["extraOption"], "message": "No option of a feature."}]})", ""},
        {R"({"constraints": [{"papers": ["Banner", "A5"], "trays": ["Tray 2"]}]})",
         "$.constraints[0] constraint-without-message"},
        {R"({"constraints": [{"papers": ["A4", "custom"], "trays": ["Auto"], "media": ["Plain"], "extraKeywords": ["Standard"], "message": "No."}]})",
         "$.constraints[0] constraint-on-defaults"},
        {R"({"constraints": [{"papers": ["A4"], "duplex": true, "message": "No."}, {"message": "Never."}]})",
         "$.constraints[1] constraint-on-defaults"},
    };
    ExpectJudged(kCases);
}

TEST(CheckModel, Colour) {
    constexpr Judged kCases[] = {
        {R"({"colorModes": [{"name": "A", "kind": 16}, {"name": "B", "systemManaged": true, "manual": true},
                            {"name": "C", "selects": {}}, {"name": "D", "kind": 1, "settings": [{"group": "text", "feature": 0, "option": 1}]},
                            {"name": "E", "settings": [{"group": 5, "feature": 0, "option": 0}, {"group": "image", "feature": 0, "option": 0},
                                                       {"group": "text", "feature": -1, "option": 0}, {"group": "text", "feature": 0, "option": 2},
                                                       {"group": "general", "feature": 0, "option": 0}]}]})",
         "$.colorModes[0] color-mode-kind\n$.colorModes[1] color-mode-kind\n$.colorModes[2] preset-without-settings\n"
         "$.colorModes[3] preset-settings-unused\n$.colorModes[4] preset-selects-nothing\n"
         "$.colorModes[4] preset-selects-nothing\n$.colorModes[4] preset-selects-nothing\n"
         "$.colorModes[4] preset-selects-nothing"},
        {R"({"colorFeatures": null, "commands": null, "colorModes": [{"name": "Manual", "manual": true}]})",
         "$.colorModes[0] manual-without-features"},
        {R"({"colorModes": null, "commandBlob": "12345",
             "commands": {"vivid": null, "photo": null, "job": null, "object": null, "a": {"at": 1, "length": 0}, "b": {"at": 1, "length": 1}},
             "colorFeatures": {"general": null,
                 "text": [{"name": "A"}, {"name": "B", "values": [{"name": "1", "command": "a"}]},
                          {"name": "C", "values": [{"name": "1", "command": "b", "objectCommand": "b"}]},
                          {"name": "D", "values": [{"name": "1", "objectCommand": "b"}]}]}})",
         "$.colorFeatures.text[0] color-feature-without-values\n$.colorFeatures.text[1] color-feature-sends-nothing\n"
         "$.colorFeatures.text[1].values[0] command-empty\n$.colorFeatures.text[3] object-commands-twice"},
        {R"({"colorModes": null, "colorFeatures": null})", "$.commands commands-unused"},
    };
    ExpectJudged(kCases);

    Json model = Json::parse(kGood);
    for (int i = 0; i < 4; ++i) {
        model["commands"]["filler " + std::to_string(i)] = std::string(8191, 'x');
    }
    EXPECT_EQ(CodesOf(model.dump()), "$.commands command-blob");
    for (int i = 4; i < 9; ++i) {
        model["commands"]["filler " + std::to_string(i)] = std::string(8191, 'x');
    }
    EXPECT_EQ(CodesOf(model.dump()), "$.commands command-blob-size");
}

// Places are those of the source, findings in its order; the compiler's faults are told as it tells them.
TEST(CheckFile, TellsWhereASourceSaysIt) {
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "xpic-check";
    std::filesystem::create_directories(folder);
    const auto check = [&](const char* name, std::string_view content) {
        std::ofstream(folder / name, std::ios::binary) << content;
        std::string lines;
        for (const Finding& finding : CheckFile(folder / name)) {
            lines += FormatFinding(finding, (folder / name).string()) + "\n";
        }
        const std::string prefix = folder.string() + "/";
        for (size_t at; (at = lines.find(prefix)) != std::string::npos;) {
            lines.erase(at, prefix.size());
        }
        return lines;
    };
    check("family.json", R"({"pagesPerMinute": 1,
  "papers": ["A4", {"name": "A5", "keyword": "psk:"}]})");
    EXPECT_EQ(
        check("model.json", R"({"include": "family.json", "pdl": "xps",
  "customSizes": {"minWidthMm": 1, "maxWidthMm": 300, "minLengthMm": 1, "maxLengthMm": 500},
  "margins": [{"allMm": 5}],
  "trays": [{"name": "1", "bin": 300, "keyword": "psk:Tray"}],
  "media": [{"name": "Plain", "keyword": "psk:Plain", "jobText": "PLAIN"}],
  "resolutions": [{"name": "A", "dpi": 300, "keyword": "psk:A"}, {"name": "B", "dpi": 600, "keyword": "psk:A"}]})"),
        "model.json:5:55: warning: $.media[0].jobText: \"PLAIN\" isn't a whole line that begins with \"@PJL\": "
        "printers take it for something else than a job command [job-command]\n"
        "model.json:6:92: warning: $.resolutions[1].keyword: an earlier record has the keyword \"psk:A\": a print "
        "ticket that names it always selects the first [keyword-twice]\n"
        "family.json:2:35: warning: $.papers[1].keyword: \"psk:\" has nothing behind the colon: print tickets "
        "can't name the choice [keyword-empty], included by model.json\n");
    EXPECT_EQ(check("refused.json", R"({"pdl": "xps", "color": "colour"})"),
              "refused.json:1:16: error: $.color: found \"colour\", expected a word, nearest \"color\": the compiler "
              "makes no description "
              "file of it [refused]\n");
    EXPECT_EQ(check("short.XPI", "{}"),
              "short.XPI: error: $: the file has 2 bytes, its header 72: nothing of the model can be read "
              "[file-too-short]\n");
    EXPECT_EQ(check("notes.txt", "Call the printer's maker."),
              "notes.txt: error: $: neither a model source nor a description file: there is nothing to check "
              "[unreadable]\n");
    const std::vector<std::byte> bytes = CompileModelText(kGood, "model.json").bytes;
    EXPECT_EQ(check("good.xpi", {reinterpret_cast<const char*>(bytes.data()), bytes.size()}), "");
    std::filesystem::remove_all(folder);
    EXPECT_EQ(FormatFinding(CheckFile(folder / "none.json").at(0), "none.json"),
              "none.json: error: $: no file that can be read: there is nothing to check [unreadable]");
}

TEST(Documentation, SaysEveryKindOfFinding) {
    std::ifstream document(VELMORA_MODELS_DOCUMENT);
    const std::string text{std::istreambuf_iterator<char>(document), std::istreambuf_iterator<char>()};
    for (const FindingKind& kind : kFindingKinds) {
        const std::string begin =
            "\n| `" + std::string(kind.code) + "` | " + std::string(NameOf(kind.severity)) + " | ";
        const size_t row = text.find(begin);
        ASSERT_NE(row, std::string::npos) << begin;
        const std::string line = text.substr(row + 1, text.find('\n', row + 1) - row - 1);
        EXPECT_TRUE(line.ends_with(" | " + std::string(kind.why) + " |")) << line;
    }
}

}  // namespace
}  // namespace velmora
