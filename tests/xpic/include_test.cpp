// Sources that share a file: what stands where, what wins, and where faults are told.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "tests/xpic/description.h"
#include "tools/xpic/include_sources.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

class Include : public ::testing::Test {
  protected:
    Include() {
        std::string name = (fs::temp_directory_path() / "include-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~Include() override { fs::remove_all(folder_); }

    void Put(const std::string& file, std::string_view text) const {
        fs::create_directories((folder_ / file).parent_path());
        std::ofstream(folder_ / file) << text;
    }
    // The joined source, without the "include" itself.
    Json Joined(std::string_view text) const {
        SourceDocument document;
        std::vector<Diagnostic> diagnostics;
        EXPECT_TRUE(ReadSource(text, folder_ / "model.json", document, diagnostics));
        document.root.erase("include");
        return document.root;
    }
    // One a line, without the folder.
    std::string Faults(std::string_view text) const {
        std::string faults;
        for (const Diagnostic& diagnostic : CompileModelText(text, folder_ / "model.json").diagnostics) {
            faults += FormatDiagnostic(diagnostic).substr(folder_.string().size() + 1) + "\n";
        }
        return faults;
    }

    fs::path folder_;
};

TEST_F(Include, JoinsKindByKind) {
    Put("family.json", R"({
        "$schema": "x", "languages": ["en", "de"], "pagesPerMinute": 20, "customSizes": {"minWidthMm": 90, "maxWidthMm": 216},
        "papers": ["A4", {"name": "Card", "id": 600, "widthMm": 100}, "A5"], "installed": ["a"],
        "trays": [{"name": "1", "bin": 257}, {"name": "2", "bin": 258, "needs": ["x", "y"]}],
        "margins": [{"allMm": 4}], "constraints": [{"duplex": true}]})");
    const struct {
        const char* own;
        const char* joined;
    } kCases[] = {
        {R"("pdl": "xps")", R"({"pdl": "xps"})"},
        {R"("pagesPerMinute": 30, "customSizes": {"maxWidthMm": 300})",
         R"({"pagesPerMinute": 30, "customSizes": {"minWidthMm": 90, "maxWidthMm": 300}})"},
        {R"("languages": ["ja"], "installed": [])", R"({"languages": ["ja"], "installed": []})"},
        {R"("papers": ["A6", {"name": "Card", "lengthMm": 150}, {"name": "A5", "omit": true}, {"name": "A4", "label": "x"}])",
         R"({"papers": [{"name": "A4", "label": "x"}, {"name": "Card", "id": 600, "widthMm": 100, "lengthMm": 150}, "A6"]})"},
        {R"("trays": [{"name": "2", "needs": ["z"]}, {"name": "0"}])",
         R"({"trays": [{"name": "1", "bin": 257}, {"name": "2", "bin": 258, "needs": ["z"]}, {"name": "0"}]})"},
        {R"("margins": [{"allMm": 10}], "constraints": [{"duplex": false}, null, {"ignored": 1}])",
         R"({"margins": [{"allMm": 10}, {"allMm": 4}], "constraints": [{"duplex": false}]})"},
    };
    Json family = Json::parse(std::ifstream(folder_ / "family.json"));
    family.erase("$schema");
    for (const auto& [own, joined] : kCases) {
        Json expected = family;
        expected.update(Json::parse(joined));
        EXPECT_EQ(nlohmann::json(Joined(std::string("{\"include\": \"family.json\", ") + own + "}")),
                  nlohmann::json(expected))
            << own;
    }
}

TEST_F(Include, LaterFilesAndInnerFoldersCount) {
    Put("a/base.json", R"({"modelCode": 1, "pagesPerMinute": 1, "include": ["parts/fonts.json"]})");
    Put("a/parts/fonts.json", R"({"fonts": [{"file": "f.bin"}], "modelCode": 0})");
    Put("a/parts/f.bin", "font");
    Put("b.json", R"({"modelCode": 2})");
    const Description file(
        CompileModelText(R"({"include": ["a/base.json", "b.json"], "pdl": "xps"})", folder_ / "model.json").bytes);
    EXPECT_EQ(+file.Device().modelCode, 2);
    EXPECT_EQ(+file.Device().pagesPerMinute, 1);
    EXPECT_EQ(BytesAt(file, file.Header().fontPoolOffset, 4), "font")
        << "found from the folder of the file that names it";
}

TEST_F(Include, FaultsAreToldWhereTheyStand) {
    Put("family.json", "{\n\"papers\": [\"A4\", {\"name\": \"Card\", \"id\": 600}],\n\"trays\": [{\"name\": \"1\"}]}");
    Put("broken.json", "{\n\n,}");
    Put("list.json", "[]");
    Put("circle.json", R"({"include": "model.json"})");
    Put("model.json", "{}");
    const struct {
        const char* source;
        const char* faults;
    } kCases[] = {
        {"{\"pdl\": \"xps\", \"include\": \"family.json\",\n\"papers\": [\"A4\", \"A44\", {\"name\": \"A9\", \"omit\": "
         "true}, {\"name\": \"Card\", \"widthMm\": 0}]}",
         "model.json:2:25: $.papers[2]: found nothing to leave out by the name \"A9\", expected the name of an "
         "included record\n"},
        {"{\"pdl\": \"xps\", \"include\": \"family.json\",\n\"papers\": [\"A44\", {\"name\": \"Card\", \"widthMm\": "
         "0}]}",
         "family.json:3:11: $.trays[0].bin: found nothing, expected a word: \"upper\", \"lower\", \"middle\", "
         "\"manual\", "
         "\"envelope\", \"envelopeManual\", \"auto\", \"tractor\", \"smallFormat\", \"largeFormat\", "
         "\"largeCapacity\", "
         "\"cassette\", \"formSource\", or a number from 1 to 65535\n"
         "model.json:2:12: $.papers[0]: found \"A44\", expected the name of a standard paper, nearest \"A4\"\n"
         "model.json:2:19: $.papers[1].lengthMm: found nothing, expected millimetres\n"
         "model.json:2:36: $.papers[1].widthMm: found 0, expected millimetres in steps of 0.1, from 0.1 to 3276.7\n"},
        {R"({"include": ["nowhere.json", 5]})",
         "model.json:1:14: $.include[0]: found \"nowhere.json\", expected a readable file, named from the source's "
         "folder\n"
         "model.json:1:30: $.include[1]: found 5, expected the name of a file\n"},
        {R"({"include": {}})",
         "model.json:1:2: $.include: found an object, expected the name of a file, or an array of names\n"},
        {R"({"include": "circle.json"})",
         "circle.json:1:2: $.include: found \"model.json\", which includes this file in turn, expected files that "
         "don't "
         "include each other in a circle\n"},
        {R"({"include": "list.json"})", "list.json:1:1: $: found an array, expected an object\n"},
        {R"({"include": "broken.json"})", "broken.json:3:1: $: found ',', expected a key in double quotes\n"},
    };
    for (const auto& [source, faults] : kCases) {
        EXPECT_EQ(Faults(source), faults);
    }
}

TEST_F(Include, TextsSayWhatPlainOnesMean) {
    const std::string texts = R"("texts": {"Tray": {"de": "Fach", "fr": "Bac"}, "Envelope #10": {"de": "Umschlag"}},)";
    const CompileResult result = CompileModelText(
        R"({"pdl": "xps", "languages": ["en", "de", "ja"], )" + texts +
            R"("papers": ["Envelope10", "A4"], "trays": [{"name": "Tray", "bin": 257}], "link": "Tray"})",
        folder_ / "model.json");
    ASSERT_TRUE(result.Succeeded());
    const Description file(result.bytes);
    const auto papers = file.Table(offsetof(DeviceModel, paperTable), &PaperRecord::nameRef);
    EXPECT_EQ(file.LocalizedString(kGerman, papers[0].nameRef), "Umschlag") << "a standard paper's label";
    EXPECT_EQ(file.LocalizedString(kGerman, papers[1].nameRef), "A4");
    EXPECT_EQ(file.LocalizedString(kGerman, file.Device().linkRef), "Fach");
    EXPECT_EQ(file.LocalizedString(kJapanese, file.Device().linkRef), "Tray");
    std::string missing;
    for (const MissingText& text : result.model->missingTexts) {
        missing += text.path + " " + std::string(text.language->code) + "\n";
    }
    EXPECT_EQ(missing, "$.link ja\n$.papers[0] ja\n$.trays[0].name ja\n");
    EXPECT_EQ(Faults("{\"pdl\": \"xps\",\n\"texts\": {\"a\": {\"xx\": \"b\", \"de\": 5}, \"b\": \"c\"}}"),
              "model.json:2:17: $.texts.a.xx: found \"xx\", expected a two-letter language code such as \"en\", "
              "\"de\", \"ja\"\n"
              "model.json:2:28: $.texts.a.de: found 5, expected a text\n"
              "model.json:2:38: $.texts.b: found \"c\", expected an object\n");
    EXPECT_EQ(Faults(R"({"pdl": "xps", "languages": ["en", "ja"], "texts": {"a": {"ja": "é"}}, "link": "a"})"),
              "model.json:1:59: $.texts.a.ja: found \"é\", expected a text without \"é\", which code page 932 lacks\n");
}

}  // namespace
}  // namespace velmora
