// The project's own models: what every product must have.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>

#include "tests/xpic/description.h"
#include "tools/xpic/check_model.h"
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
        model_ = result.model;
        file_.emplace(result.bytes);
    }

    std::string modelName_;
    std::optional<ModelSource> model_;
    std::optional<Description> file_;
};

TEST_P(Models, HaveNothingSaidAgainstThem) {
    const DeviceModel device = file_->Device();
    EXPECT_TRUE(modelName_.starts_with("Velmora "));
    EXPECT_NE(+device.modelCode, 0);
    EXPECT_NE(file_->LocalizedString(kEnglish, device.linkRef), file_->LocalizedString(kGerman, device.linkRef));
    size_t typedTexts = 0;
    for (const Finding& finding : CheckModel(*model_)) {
        const bool isTypedText = finding.code == "feature-without-options";
        typedTexts += isTypedText ? 1 : 0;
        EXPECT_TRUE(isTypedText || finding.code == "tray-not-offered") << FormatFinding(finding, "model");
    }
    // A text that the user types takes a selection that a device mode can't keep, so it is a rare exception.
    EXPECT_EQ(typedTexts, GetParam().stem() == "velmora-c3200" ? 1u : 0u);
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

std::map<std::string, Description> CompiledModels() {
    std::map<std::string, Description> models;
    for (const std::filesystem::path& source : ModelSources()) {
        models.emplace(source.stem().string(), Description(CompileModel(source).bytes));
    }
    return models;
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

// A dump of the product's file gives the file again, and needs no layout for it.
TEST_P(Models, ComeBackFromTheirDescriptionFiles) {
    const Dump dump = DumpDescription(file_->File(), "", "");
    for (const Finding& finding : dump.findings) {
        ADD_FAILURE() << FormatFinding(finding, "model");
    }
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
