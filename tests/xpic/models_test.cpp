// The project's own models: nothing can be said against them, and together they use every table.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

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
        EXPECT_TRUE(result.ModelName().starts_with("Velmora "));
        model_ = *result.model;
        file_ = result.bytes;
    }

    ModelSource model_;
    std::vector<std::byte> file_;
};

// A text that the user types takes a selection that a device mode can't keep, so it is a rare exception.
TEST_P(Models, AreWellSpokenOf) {
    std::string findings;
    for (const Finding& finding : CheckModel(model_)) {
        if (finding.severity != Severity::kNote) {
            findings += finding.path + " " + std::string(finding.code) + "\n";
        }
    }
    EXPECT_EQ(findings, GetParam().stem() == "velmora-c3200" ? "$.features[6] feature-without-options\n" : "");
}

TEST(Products, UseEveryTable) {
    // Slots that no reader knows.
    const std::set<size_t> unused = {offsetof(DeviceModel, reserved40), offsetof(DeviceModel, reserved104),
                                     offsetof(DeviceModel, reserved284)};
    std::vector<Description> models;
    for (const std::filesystem::path& source : ModelSources()) {
        models.emplace_back(CompileModel(source).bytes);
    }
    for (const size_t slot : kPointerSlots) {
        const bool used = std::ranges::any_of(models, [&](const Description& model) { return model.Slot(slot) != 0; });
        EXPECT_EQ(used, unused.count(slot) == 0) << "slot " << slot;
    }
}

// A dump of the product's file gives the file again, and needs no layout for it.
TEST_P(Models, ComeBackFromTheirDescriptionFiles) {
    const Dump dump = DumpDescription(file_, "", "");
    EXPECT_EQ(dump.source.text.find("\"layout\""), std::string::npos);
    EXPECT_EQ(CompileModelText(dump.source.text, "dump.json").bytes, file_) << dump.source.text;
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
