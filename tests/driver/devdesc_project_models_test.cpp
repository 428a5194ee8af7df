// Each of the project's compiled models loads through the driver's own reader.
#include <cstdlib>

#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "tests/driver/project_models.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class ProjectModel : public ProjectModelTest {
  protected:
    std::string String(int16_t reference) const {
        WCHAR text[128];
        ReadLocalizedString(file_.Get(), LANG_ENGLISH, nullptr, reference, text, ARRAYSIZE(text));
        return ToText(text);
    }
};

TEST_P(ProjectModel, IsReadAsItWasWritten) {
    EXPECT_GT(CountRecords(model_->paperTable), 0u);
    for (const PaperRecord& paper : RecordList(model_->paperTable)) {
        if (static_cast<int16_t>(paper.nameRef) > 0) {
            EXPECT_NE(String(static_cast<int16_t>(paper.nameRef)), "") << paper.paperId;
        }
        WCHAR keyword[80];
        ReadName(file_.Get(), static_cast<int16_t>(paper.keywordRef), keyword, ARRAYSIZE(keyword));
        EXPECT_NE(keyword[0], 0) << paper.paperId;
        const PaperSize size = LookupPaperSize(printer_.Get(), model_.Get(), paper.paperId);
        EXPECT_EQ(ValueOf(size.width), paper.width) << paper.paperId;
        EXPECT_EQ(ValueOf(size.length), paper.length) << paper.paperId;
        for (const WORD orientation : {kPortraitMargins, kLandscapeMargins}) {
            const MarginPair margins =
                GetPrintableMargins(printer_.Get(), model_.Get(), paper.paperId, orientation, 25400);
            // Below 0 where the image runs over the edge.
            EXPECT_LT(std::abs(margins.horizontal), paper.width * 50) << paper.paperId;
            EXPECT_LT(std::abs(margins.vertical), paper.length * 50) << paper.paperId;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Models, ProjectModel, testing::ValuesIn(CompiledModels()), ModelName);

}  // namespace
}  // namespace velmora
