// Every fault of a source is told, at its place and in words that help; and the JSON Schema tells the same ones, as far
// as a schema can.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/xpic/description.h"
#include "tests/xpic/schema_faults.h"

namespace velmora {
namespace {

struct BrokenSource {
    std::string source;
    // One a line, without the file's name. "~" before it: a schema can't tell, as it knows no names of records, no
    // other files and no code pages.
    std::string faults;
};

void ExpectFaults(const std::vector<BrokenSource>& rows) {
    std::vector<std::string> sources;
    for (const BrokenSource& row : rows) {
        sources.push_back(row.source);
    }
    PlacesByFile placesOfSchema = SchemaFaultsOfTexts("model.schema.json", sources);
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::set<std::string>& told = placesOfSchema[std::to_string(i)];
        std::set<std::string> untold = told;
        std::string expected;
        std::istringstream lines(rows[i].faults);
        for (std::string line; std::getline(lines, line);) {
            const bool beyondSchema = line.starts_with('~');
            expected += "model.json:" + line.substr(beyondSchema ? 1 : 0) + "\n";
            const size_t start = line.find('$');
            const std::string path = line.substr(start, line.find(": found") - start);
            EXPECT_EQ(told.contains(path), !beyondSchema) << "the schema about " << path << " of " << sources[i];
            untold.erase(path);
        }
        EXPECT_EQ(FaultsOf(sources[i]), expected);
        EXPECT_EQ(untold, std::set<std::string>()) << "only the schema minds it in " << sources[i];
    }
}

// Sources that are wrong as a whole.
const std::vector<BrokenSource> kBrokenDocuments = {
    {"", "1:1: $: found an empty file, expected a model source\n"},
    {"{\"pdl\": \"xps\",\n}", "2:1: $: found '}' behind a comma, expected a key in double quotes, or no comma\n"},
    {"{\"papers\": [\"A4\", ]}", "1:19: $: found ']' behind a comma, expected a value, or no comma\n"},
    {"{\"pdl\": \"xps\"\n\"color\": 1}", "2:7: $: found a text, expected a comma or '}'\n"},
    {"{\"pdl\": \"xps\",\n // é\n  \"é\": tru }",
     "3:11: $: found no JSON: invalid literal; last read: '\"é\": tru ', expected a JSON document\n"},
    {"[]", "1:1: $: found an array, expected an object\n"},
    {R"({"pdl": "xps", "pdl": "pcl6"})",
     "~1:16: $.pdl: found the key a second time, expected each key once in an object\n"},
    {"{}",
     "1:1: $.pdl: found nothing, expected a word: \"pcl6\", \"pcl5\", \"postscript\", "
     "\"image\", \"xps\", \"own\", or a number from 6 to 65535\n"},
    {R"({"pdl": "pcl7"})", "1:2: $.pdl: found \"pcl7\", expected a word, nearest \"pcl6\"\n"},
    {"{\n\t\"pdl\": 5}",
     "2:2: $.pdl: found 5, expected a word: \"pcl6\", \"pcl5\", \"postscript\", \"image\", "
     "\"xps\", \"own\", or a number from 6 to 65535\n"},
    // Image models have no commands.
    {R"({"pdl": "image", "colorFeatures": {"text": [{"name": "a", "values": [{"name": "v", "command": "c"}]}]}})",
     "1:84: $.colorFeatures.text[0].values[0].command: found an unknown key, expected a known one: \"name\", "
     "\"label\", "
     "\"jobValue\"\n"},
    // Faults stand in the order of the source.
    {"{\"margins\": 1,\n\"pdl\": \"xps\",\n\"modelCode\": -1,\n\"zz\": 0}",
     "1:2: $.margins: found 1, expected an array\n"
     "3:1: $.modelCode: found -1, expected a whole number from 0 to 65535\n"
     "4:1: $.zz: found an unknown key, expected a known one\n"},
};

TEST(BrokenSources, Documents) {
    ExpectFaults(kBrokenDocuments);
}

TEST(BrokenSources, NestingHasAnEnd) {
    const std::string nested = R"({"pdl": )" + std::string(100000, '[') + std::string(100000, ']') + "}";
    const std::string faults = FaultsOf(nested);
    EXPECT_NE(faults.find("found another level of nesting, expected at most 32 levels"), std::string::npos);
}

// The members of a source behind its "pdl"; they stand on line 2, and the faults give the column.
const std::vector<BrokenSource> kBrokenMembers = {
    // Numbers, words, flags, texts.
    {R"("modelCode": 65536)", "1: $.modelCode: found 65536, expected a whole number from 0 to 65535\n"},
    {R"("modelCode": 1.0)", "~1: $.modelCode: found 1.0, expected a whole number from 0 to 65535\n"},
    {R"("modelCode": 18446744073709551615)",
     "1: $.modelCode: found 18446744073709551615, expected a whole number from 0 to 65535\n"},
    {R"("color": "colour")", "1: $.color: found \"colour\", expected a word, nearest \"color\"\n"},
    {R"("duplexUnit": 1)", "1: $.duplexUnit: found 1, expected true or false\n"},
    {R"("pagesPerMinut": 1)",
     "1: $.pagesPerMinut: found an unknown key, expected a known one, nearest \"pagesPerMinute\"\n"},
    {R"("wholly unknown": 1)", "1: $[\"wholly unknown\"]: found an unknown key, expected a known one\n"},
    {R"("optionFlags": ["plainPcl6"])",
     "17: $.optionFlags[0]: found \"plainPcl6\", expected a word, nearest \"plainPcl5\"\n"},
    {R"("primaryFont": "日本")",
     "~1: $.primaryFont: found \"日本\", expected a text without \"日\", which code page 1252 lacks\n"},
    {R"("primaryFont": "a\u0000b")",
     "~1: $.primaryFont: found \"a\\u0000b\", expected a text without a NUL character\n"},
    {R"("extraOption": {"text": "123456789012"})",
     "17: $.extraOption.text: found a text of 12 bytes, expected at most 11 bytes in code page 1252\n"},
    // Languages.
    {R"("customSizes": {"minWidthMm": 2, "maxWidthMm": 1, "minLengthMm": 2, "maxLengthMm": 0})",
     "~17: $.customSizes.minWidthMm: found a smallest size above the largest, expected at most \"maxWidthMm\"\n"},
    {R"("languages": ["en", "xx", "en"])",
     "21: $.languages[1]: found \"xx\", expected a two-letter language code such as \"en\", \"de\", \"ja\"\n"
     "27: $.languages[2]: found \"en\" a second time, expected each language once\n"},
    {R"("link": {"de": "x"})",
     "~1: $.link.en: found nothing, expected a text in the model's first language, or \"resource\"\n"
     "~10: $.link.de: found a text in a language that the model hasn't, expected one of its \"languages\"\n"},
    {R"("link": 5)", "1: $.link: found 5, expected a text or an object with a text for each language\n"},
    {R"("link": {"resource": 0})", "10: $.link.resource: found 0, expected a whole number from 1 to 32767\n"},
    {R"("languages": ["ja"], "link": "é")",
     "~22: $.link: found \"é\", expected a text without \"é\", which code page 932 lacks\n"},
    // Sizes.
    {R"("customSizes": {"minWidthMm": 10.05, "maxWidthMm": 6554, "minLengthMm": "1", "maxLengthMm": -1e300})",
     "~17: $.customSizes.minWidthMm: found 10.05, expected millimetres in steps of 0.1, from 0 to 3276.7\n"
     "38: $.customSizes.maxWidthMm: found 6554, expected millimetres in steps of 0.1, from 0 to 6553.5\n"
     "58: $.customSizes.minLengthMm: found \"1\", expected millimetres in steps of 0.1, from 0 to 3276.7\n"
     "78: $.customSizes.maxLengthMm: found -1e+300, expected millimetres in steps of 0.1, from 0 to 6553.5\n"},
    // Papers.
    {R"("papers": ["Leter", 5])",
     "12: $.papers[0]: found \"Leter\", expected the name of a standard paper, nearest \"Letter\"\n"
     "21: $.papers[1]: found 5, expected an object\n"},
    {R"("papers": [{"name": "x", "id": "A9"}])",
     "26: $.papers[0].id: found \"A9\", expected the name of a standard paper, nearest \"A3\"\n"},
    {R"("papers": [{"name": "x", "widthMm": 1, "lengthMm": 0}])",
     "12: $.papers[0].id: found nothing, expected a paper id, as the name isn't a standard paper's\n"
     "40: $.papers[0].lengthMm: found 0, expected millimetres in steps of 0.1, from 0.1 to 3276.7\n"},
    {R"("papers": [{"name": "x", "id": 119, "widthMm": 1, "lengthMm": 1}])",
     "26: $.papers[0].id: found 119, expected a paper id, 1 to 118 or from 256\n"},
    {R"("papers": ["A4", {"name": "A4", "fit": "A5"}])",
     "~18: $.papers[1]: found \"A4\" a second time, first on line 2, expected a paper with a name of its own\n"
     "~33: $.papers[1].fit: found \"A5\", expected the name of a paper, nearest \"A4\"\n"},
    {R"("papers": [{"name": "all", "id": "A4", "label": ""}, {"id": "A5"}, {"name": "", "id": "A6"}])",
     "13: $.papers[0].name: found \"all\", expected another name: this one stands for other papers\n"
     "40: $.papers[0].label: found an empty text, expected a display text\n"
     "54: $.papers[1].name: found nothing, expected a name\n"
     "69: $.papers[2].name: found an empty name, expected a name\n"},
    {R"("papers": [{"name": "A4", "rendererName": "123456789012345", "ticketValues": [1, 2]}])",
     "27: $.papers[0].rendererName: found a text of 15 bytes, expected at most 14 bytes in code page 1252\n"
     "62: $.papers[0].ticketValues: found an array of 2, expected three numbers\n"},
    {R"("papers": [{"name": "A4", "keyword": "psk:)" + std::string(80, 'k') + "\"}]",
     "27: $.papers[0].keyword: found a keyword of 80 bytes, expected at most 79 bytes behind the colon\n"},
    // Trays and installable options.
    {R"("trays": [{"name": "1", "bin": "uper"}, {"name": "2", "bin": 16}, {"name": "3", "bin": 1, "needs": ["x"]}])",
     "25: $.trays[0].bin: found \"uper\", expected a word, nearest \"upper\"\n"
     "55: $.trays[1].bin: found 16, expected a bin, 1 to 15 or from 256\n"
     "~101: $.trays[2].needs[0]: found \"x\", expected a word: \"secondTray\"\n"},
    {R"("trayOptions": {"secondTray": 3, "x": 2}, "deviceOptions": {"y": 32}, "installed": ["y"])",
     "17: $.trayOptions.secondTray: found \"secondTray\" a second time, expected a name of its own\n"
     "34: $.trayOptions.x: found 2, expected a whole number from 3 to 31\n"
     "61: $.deviceOptions.y: found 32, expected a whole number from 2 to 31\n"
     "~85: $.installed[0]: found \"y\", expected a word: \"secondTray\"\n"},
    {R"("defaultTray": "Tray", "defaultMedium": ["x"])",
     "~1: $.defaultTray: found \"Tray\", expected the name of a tray, but there is none\n"
     "24: $.defaultMedium: found an array, expected a text\n"},
    // Lists.
    {R"("extraKeywords": [{"name": "1"}, {"name": "2"}, {"name": "3", "jobValue": "A"}, {"name": "4", "jobValue": "A"}])",
     "~34: $.extraKeywords[1].jobValue: found a second one without a job value, expected a job value of its own, which "
     "tells the extra keywords apart\n"
     "~95: $.extraKeywords[3].jobValue: found \"A\" a second time, expected a job value of its own, which tells the "
     "extra keywords apart\n"},
    {R"("features": [{"name": "a", "options": [{"name": "o"}, {"name": "o"}]}, {"name": "a"}])",
     "~55: $.features[0].options[1]: found \"o\" a second time, first on line 2, expected an option with a name of its "
     "own\n"
     "~72: $.features[1]: found \"a\" a second time, first on line 2, expected a feature with a name of its own\n"},
    {R"("memory": {"sizes": [{"key": 0}]})",
     "22: $.memory.sizes[0].megabytes: found nothing, expected a whole number from 0 to 65535\n"
     "23: $.memory.sizes[0].key: found 0, expected a whole number from 1 to 65535\n"},
    {R"("resolutions": [{"name": "1", "dpi": 0, "pattern": "p"}], "patterns": {"q": {"size": 9}})",
     "31: $.resolutions[0].dpi: found 0, expected a whole number from 1 to 32767\n"
     "~41: $.resolutions[0].pattern: found \"p\", expected the name of a pattern: \"q\"\n"
     "72: $.patterns.q.block: found nothing, expected a block, or a \"shape\" to make one\n"
     "78: $.patterns.q.size: found 9, expected 8, 16 or 32\n"},
    {R"("fontSubstitutions": [{"face": "x", "printerFont": ""}])",
     "37: $.fontSubstitutions[0].printerFont: found nothing, expected a font name\n"},
    // Bytes.
    {R"("fonts": [{"hex": "0"}, {"base64": "AAA"}, {"hex": "00", "file": "x"}, {}, 5, {"file": "nowhere.bin"}])",
     "12: $.fonts[0].hex: found \"0\", expected pairs of hexadecimal digits\n"
     "26: $.fonts[1].base64: found \"AAA\", expected Base64\n"
     "44: $.fonts[2]: found bytes in several forms, expected one of \"file\", \"hex\", \"base64\"\n"
     "72: $.fonts[3]: found no bytes, expected one of \"file\", \"hex\", \"base64\"\n"
     "76: $.fonts[4]: found 5, expected a text, or an object with one of \"file\", \"hex\", \"base64\"\n"
     "~80: $.fonts[5].file: found \"nowhere.bin\", expected a readable file, named from the source's folder\n"},
    {R"("images": [{"hex": "424D"}], "patterns": {"s": {"block": "x", "size": 8}})",
     "~12: $.images[0]: found 2 bytes that are no bitmap file, expected a whole bitmap file whose header gives its "
     "size\n"
     "~49: $.patterns.s.block: found a block of 1 bytes, expected 2048 bytes for a pattern of size 8\n"},
    // Colour.
    {R"("colorFeatures": {"text": [{"name": "a", "values": [{"name": "v", "command": "c"}]}, {"name": "b"}, {"name": "c"}, {"name": "d"}, {"name": "e"}]})",
     "19: $.colorFeatures.text: found 5 color features, expected at most 4\n"
     "~67: $.colorFeatures.text[0].values[0].command: found \"c\", expected the name of a command, but there is "
     "none\n"},
    {R"("colorFeatures": {"general": [{"name": "a", "values": [{"name": "v", "objectCommand": "c"}]}]})",
     "70: $.colorFeatures.general[0].values[0].objectCommand: found an unknown key, expected a known one: \"name\", "
     "\"label\", \"command\"\n"},
    {R"("colorFeatures": {"text": [{"name": "Tone", "values": [{"name": "v"}]}]}, "colorModes": [{"name": "m", "selects": {"text": {"tone": "v", "Tone": "w"}}}])",
     "~125: $.colorModes[0].selects.text.tone: found \"tone\", expected the name of a color feature, nearest \"Tone\"\n"
     "~138: $.colorModes[0].selects.text.Tone: found \"w\", expected the name of a color value: \"v\"\n"},
    // What names can't say.
    {R"("trays": [{"name": "1", "bin": 1, "needs": [], "mask": 0}], "installed": [], "installedMask": 1)",
     "48: $.trays[0].mask: found a mask beside \"needs\", expected one of the two\n"
     "48: $.trays[0].mask: found 0, expected a whole number from 1 to 4294967295\n"
     "78: $.installedMask: found a mask beside \"installed\", expected one of the two\n"},
    {R"("commandBlob": "abc", "commands": {"a": {"at": 2, "length": 2}, "b": {"at": 0}, "c": "x"})",
     "~36: $.commands.a: found a command that ends at byte 4, expected a part of the blob's 3 bytes\n"
     "65: $.commands.b.length: found nothing, expected a whole number from 0 to 8191\n"
     "81: $.commands.c: found \"x\", expected an object\n"},
    {R"("colorModes": [{"name": "m", "settings": [{"group": 0, "feature": 0, "option": 0}]}, {"name": "n", "selects": {}, "settings": []}])",
     "44: $.colorModes[0].settings[0].group: found 0, expected a group: 0 ends the settings\n"
     "115: $.colorModes[1].settings: found an unknown key, expected a known one: \"name\", \"label\", "
     "\"systemManaged\", \"manual\", \"selects\", \"kind\"\n"},
    {R"("papers": [{"name": "A4", "fit": 0}, {"name": "A5", "omit": true}], "features": [{"name": "f", "label": null}])",
     "27: $.papers[0].fit: found 0, expected a whole number from 1 to 32767\n"
     "53: $.papers[1].omit: found an unknown key, expected a known one, nearest \"fit\"\n"
     "96: $.features[0].label: found null, expected a text or an object with a text for each language\n"},
    // Rules.
    {R"("papers": ["A4"], "margins": [{"papers": ["A5"], "orientations": ["up"], "allMm": 1, "left": 2}])",
     "~43: $.margins[0].papers[0]: found \"A5\", expected the name of a paper, nearest \"A4\"\n"
     "67: $.margins[0].orientations[0]: found \"up\", expected a word: \"portrait\", \"landscape\"\n"
     "86: $.margins[0].left: found an unknown key, expected a known one, nearest \"leftMm\"\n"},
    {R"("margins": [{"papers": ["custom"], "widthMm": [2, 1], "lengthMm": [1], "allMm": 4000}, {"widthMm": [1, 2]}])",
     "~36: $.margins[0].widthMm: found a smallest size above the largest, expected the smallest and the largest size\n"
     "55: $.margins[0].lengthMm: found an array of 1, expected the smallest and the largest size\n"
     "72: $.margins[0].allMm: found 4000, expected millimetres in steps of 0.1, from -3276.8 to 3276.7\n"
     "88: $.margins[1].leftMm: found nothing, expected millimetres\n"
     "88: $.margins[1].topMm: found nothing, expected millimetres\n"
     "88: $.margins[1].rightMm: found nothing, expected millimetres\n"
     "88: $.margins[1].bottomMm: found nothing, expected millimetres\n"
     "~89: $.margins[1].widthMm: found sizes without \"custom\" among the papers, expected sizes only for custom "
     "papers\n"},
    {R"("constraints": [{"options": ["duplexUnit"], "trays": ["x"], "papers": "some"}])",
     "30: $.constraints[0].options[0]: found \"duplexUnit\", expected a word: \"extraOption\", \"borderless\", "
     "\"stapler\"\n"
     "~55: $.constraints[0].trays[0]: found \"x\", expected the name of a tray, but there is none\n"
     "61: $.constraints[0].papers: found \"some\", expected \"all\" or an array of papers\n"},
    {R"("constraints": [{"media": [], "mediaMask": 1, "papers": [256]}, {"papers": ["A4"], "widthMm": [1, 2]}], "margins": [null], "papers": ["A4"])",
     "31: $.constraints[0].mediaMask: found a mask beside \"media\", expected one of the two\n"
     "58: $.constraints[0].papers[0]: found 256, expected a whole number from 1 to 255\n"
     "84: $.constraints[1].widthMm: found sizes without \"custom\" among the papers, expected sizes only for custom "
     "papers\n"
     "117: $.margins[0]: found null, expected an object\n"},
};

TEST(BrokenSources, Members) {
    std::vector<BrokenSource> rows;
    for (const auto& [members, faults] : kBrokenMembers) {
        rows.push_back({"{\"pdl\": \"xps\",\n" + members + "}", ""});
        std::istringstream lines(faults);
        for (std::string line; std::getline(lines, line);) {
            rows.back().faults += line.insert(line.starts_with('~') ? 1 : 0, "2:") + "\n";
        }
    }
    ExpectFaults(rows);
}

}  // namespace
}  // namespace velmora
