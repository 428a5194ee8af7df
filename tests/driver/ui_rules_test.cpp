// What the sheets decide, apart from their windows.
#include <functional>

#include "driver/base/text.h"
#include "driver/ui/constraints.h"
#include "driver/ui/help_topics.h"
#include "driver/ui/web_link.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

PaperSet SetOf(int paperId) {
    PaperSet papers = {};
    papers.bytes[paperId / 8] = static_cast<uint8_t>(0x80 >> (paperId % 8));
    return papers;
}

class Constraints : public MachineTest {
  protected:
    static constexpr uint16_t kOtherPaper = 600;  // driver-defined, 100 x 200 mm
    static constexpr uint16_t kStaplerMask = kStaplerInstalled;

    void SetUp() override { Install(PackageOf("")); }

    // Whether a model with this one constraint, a record for any paper but for what `constrain` sets, can't print a job
    // of the settings.
    bool IsConflict(const std::function<void(ConstraintRecord*)>& constrain, const std::string& settings,
                    uint32_t optionFlags = 0, size_t userPapers = 0) {
        ConstraintRecord record = {};
        record.mark = 1;
        constrain(&record);
        DescriptionBuilder builder;
        builder.Table(offsetof(DeviceModel, constraintTable), std::vector{record});
        PaperRecord paper = {};
        paper.nameRef = 1;
        paper.paperId = kOtherPaper;
        paper.width = 1000;
        paper.length = 2000;
        builder.Table(offsetof(DeviceModel, paperTable), std::vector{paper});
        builder.Table(offsetof(DeviceModel, binTable), std::vector<BinRecord>{{0x10, 257, 1, 0}, {0x20, 258, 1, 0}});
        builder.Table(offsetof(DeviceModel, extraKeywordTable), std::vector<ExtraKeywordRecord>{{4, 7, 1, 0}});
        MediaRecord thick = {};
        thick.mark = 0x40;
        builder.Table(offsetof(DeviceModel, mediaTable), std::vector{thick});
        // Its second option has no job value: the device isn't told of it.
        builder.Table(offsetof(DeviceModel, featureTable), std::vector<FeatureRecord>{{1, 1, kStaplerMask, 0, 0}});
        builder.Table(offsetof(DeviceModel, optionTable), std::vector<OptionRecord>{{1, 5, 0}, {2, 0, 0}});
        file_.Close();
        file_ = OpenDescription(builder.Build());
        const HeapOwner<DeviceModel> model = LoadDeviceModel(file_.Get());
        const VelmoraDevMode devMode = With({}, settings);
        DeviceInfo installed = {};
        installed.optionFlags = optionFlags;
        return FindConflict({Printer(), *model, installed, devMode, userPapers}) != nullptr;
    }
};

TEST_F(Constraints, HoldForTheUsesOfPaperThatTheyName) {
    const auto a4 = [](ConstraintRecord* record) { record->papers = SetOf(DMPAPER_A4); };
    const auto any = [](ConstraintRecord*) {};
    const auto custom = [](ConstraintRecord* record) {
        record->papers = SetOf(0);
        record->minWidth = record->maxWidth = 1000;
        record->minLength = record->maxLength = 2000;
    };
    const auto customRange = [](ConstraintRecord* record) {
        record->papers = SetOf(0);
        record->maxWidth = record->maxLength = 3000;
    };
    const auto tray = [](ConstraintRecord* record) { record->binMask = 0x10; };
    const auto keyword = [](ConstraintRecord* record) { record->extraKeywordMask = 4; };
    const auto medium = [](ConstraintRecord* record) { record->mediaMask = 0x40; };
    const auto bothSides = [](ConstraintRecord* record) { record->flags = 1; };
    const auto bothSidesOfA4 = [](ConstraintRecord* record) {
        record->papers = SetOf(DMPAPER_A4);
        record->flags = 1;
    };
    const auto stapled = [](ConstraintRecord* record) { record->flags = kStaplerInstalled; };
    const struct {
        const char* name;
        std::function<void(ConstraintRecord*)> constrain;
        const char* settings;
        bool isConflict;
        uint32_t optionFlags = 0;
        size_t userPapers = 0;
    } cases[] = {
        {"an empty set is any paper", any, "dmPaperSize=1", true},
        {"the job's paper", a4, "dmPaperSize=9", true},
        {"another paper", a4, "dmPaperSize=1", false},
        {"a paper that the job is scaled onto", a4, "dmPaperSize=1 scaleMode=33 scaleValue=9", true},
        {"a paper that is scaled onto another", a4, "dmPaperSize=9 scaleMode=33 scaleValue=1", false},
        {"a percentage is no paper", a4, "dmPaperSize=1 scaleMode=2 scaleValue=9", false},
        {"a driver-defined paper of the size", custom, "dmPaperSize=600", true},
        {"a driver-defined paper has the exact size", customRange, "dmPaperSize=600", false},
        {"a user's paper lies within the bounds", customRange, "dmPaperSize=600", true, 0, 200},
        {"a paper of the set isn't custom", custom, "dmPaperSize=9", false},
        {"front cover", a4, "dmPaperSize=1 frontCoverMode=1 frontCoverPaper=9", true},
        {"front cover of the job's paper", a4, "dmPaperSize=1 frontCoverMode=1 frontCoverPaper=-1", false},
        {"no front cover", a4, "dmPaperSize=1 frontCoverPaper=9", false},
        {"back cover", a4, "dmPaperSize=1 backCoverMode=1 backCoverPaper=9", true},
        {"interleaved sheets", a4, "dmPaperSize=1 interleaveMode=1 interleavePaper=9", true},
        {"separators", a4, "dmPaperSize=1 separatorMode=1 separatorPaper=9", true},
        {"tray", tray, "dmDefaultSource=257", true},
        {"another tray", tray, "dmDefaultSource=258", false},
        {"no such tray", tray, "dmDefaultSource=300", false},
        {"a source that stands for a medium", tray, "dmDefaultSource=2000", false},
        {"a cover's tray", tray, "dmDefaultSource=258 backCoverMode=2 backCoverBin=257", true},
        {"extra keyword by its id", keyword, "extraKeywordIndex=7", true},
        {"another extra keyword", keyword, "extraKeywordIndex=0", false},
        {"medium, counted from 1", medium, "mediaIndex=1", true},
        {"no medium", medium, "mediaIndex=0", false},
        {"a separator's medium", medium, "separatorMode=1 separatorMedia=1", true},
        {"both sides without a unit", bothSides, "dmDuplex=2", false},
        {"both sides", bothSides, "dmDuplex=2", true, kDuplexInstalled},
        {"along the short edge", bothSides, "dmDuplex=3", true, kDuplexInstalled},
        {"one side", bothSides, "dmDuplex=1", false, kDuplexInstalled},
        {"a front cover on one side", bothSidesOfA4, "dmPaperSize=1 dmDuplex=2 frontCoverMode=1 frontCoverPaper=9",
         false, kDuplexInstalled},
        {"a front cover on both", bothSidesOfA4,
         "dmPaperSize=1 dmDuplex=2 frontCoverMode=1 frontCoverPaper=9 frontCoverBothSides=1", true, kDuplexInstalled},
        {"a back cover on one side", bothSidesOfA4, "dmPaperSize=1 dmDuplex=2 backCoverMode=1 backCoverPaper=9", false,
         kDuplexInstalled},
        {"a back cover on both", bothSidesOfA4,
         "dmPaperSize=1 dmDuplex=2 backCoverMode=1 backCoverPaper=9 backCoverBothSides=1", true, kDuplexInstalled},
        {"interleaved sheets are as the job's", bothSidesOfA4,
         "dmPaperSize=1 dmDuplex=2 interleaveMode=1 interleavePaper=9", true, kDuplexInstalled},
        {"separators on one side", bothSidesOfA4, "dmPaperSize=1 dmDuplex=2 separatorMode=1 separatorPaper=9", false,
         kDuplexInstalled},
        {"separators on both", bothSidesOfA4, "dmPaperSize=1 dmDuplex=2 separatorMode=3 separatorPaper=9", true,
         kDuplexInstalled},
        {"separators on both, along the short edge", bothSidesOfA4,
         "dmPaperSize=1 dmDuplex=3 separatorMode=5 separatorPaper=9", true, kDuplexInstalled},
        {"an option that isn't installed", stapled, "", false},
        {"an option that the device is told of", stapled, "", true, kStaplerInstalled},
        {"an option that it isn't told of", stapled, "featureSelection=1", false, kStaplerInstalled},
        {"a selection that the model doesn't have", stapled, "featureSelection=9000", false, kStaplerInstalled},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsConflict(c.constrain, c.settings, c.optionFlags, c.userPapers), c.isConflict) << c.name;
    }
}

TEST(BrowserCommand, HasTheLinkAsOneArgument) {
    host::Machine machine;
    const WideText longLink(200, TEXT('x'));
    const WideText longCommand = TEXT("C:\\") + WideText(60, TEXT('y')) + TEXT(".exe");
    const struct {
        WideText command;
        WideText link;
        std::string line;  // empty: none
    } cases[] = {
        {TEXT("\"C:\\b.exe\" -url \"%1\" -new"), TEXT("http://v.example/"),
         "\"C:\\b.exe\" -url \"http://v.example/\" -new"},
        {TEXT("C:\\b.exe %1"), TEXT("http://v.example/"), "C:\\b.exe  \"http://v.example/\" "},
        {TEXT("C:\\b.exe %1 -new"), TEXT("http://v.example/"), "C:\\b.exe  \"http://v.example/\"  -new"},
        {TEXT("C:\\b.exe"), TEXT("http://v.example/"), "C:\\b.exe \"http://v.example/\""},
        {TEXT("C:\\b.exe \"%1\""), TEXT("http://v.example/%1%s"), "C:\\b.exe \"http://v.example/%1%s\""},
        {TEXT("C:\\b.exe \"%1\""), TEXT("x\" & calc \""), ""},
        {TEXT("C:\\b.exe"), TEXT("x\ny"), ""},
        {TEXT("C:\\b.exe"), TEXT("http://v.example\\"), ""},
        {longCommand, longLink, ""},
    };
    for (const auto& c : cases) {
        char line[261];
        const bool isBuilt = BuildBrowserCommand(c.command.c_str(), c.link.c_str(), line, sizeof(line));
        EXPECT_EQ(isBuilt, !c.line.empty()) << ToText(c.command);
        if (isBuilt) {
            EXPECT_EQ(std::string(line), c.line);
        }
    }
}

TEST(HelpTopics, NameEachControlOnce) {
    std::vector<uint32_t> controls;
    for (const HelpTopicRange& range : kHelpTopics) {
        ASSERT_LE(range.firstControl, range.lastControl);
        for (uint32_t control = range.firstControl; control <= range.lastControl; ++control) {
            controls.push_back(control);
        }
    }
    std::sort(controls.begin(), controls.end());
    EXPECT_EQ(std::adjacent_find(controls.begin(), controls.end()), controls.end());
}

}  // namespace
}  // namespace velmora
