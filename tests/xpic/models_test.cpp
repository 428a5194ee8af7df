// The project's own models: what every product must have.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>

#include "tests/xpic/description.h"

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
