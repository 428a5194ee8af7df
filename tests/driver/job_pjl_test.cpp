#include "driver/job/pjl_block.h"

#include "driver/settings/device_info.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/job_model.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr const char* kFeatures = "@PJL SET FA=A0\r\n@PJL SET FC=C0\r\n@PJL SET FD=D0\r\n";

class PjlBlock : public MachineTest {
  protected:
    void SetUp() override { Install(PackageOf("")); }

    // The model of the printer's jobs.
    void Use(const DescriptionBuilder& builder) {
        file_.Close();
        file_ = OpenDescription(builder.Build());
        model_ = LoadDeviceModel(file_.Get());
        ASSERT_TRUE(model_);
    }

    JobPrinter Job() const { return {Printer(), kPrinterName, file_.Get(), *model_}; }

    // The block in a buffer of exactly the size that was told.
    std::string Start(const std::string& settings, const WCHAR* jobName = nullptr) {
        const VelmoraDevMode devMode = With({}, settings);
        DWORD size = 0;
        EXPECT_FALSE(BuildPjlStart(nullptr, &size, jobName, Job(), devMode));
        const DWORD needed = size;
        std::string block(needed, '\0');
        EXPECT_TRUE(BuildPjlStart(block.data(), &size, jobName, Job(), devMode));
        EXPECT_EQ(size, needed);
        EXPECT_EQ(block.find('\0') + 1, needed);
        block.pop_back();
        return block;
    }
};

TEST_F(PjlBlock, StartHasTheLinesOfTheModelAndTheSettings) {
    const std::string gray = "@PJL SET RENDERMODE=GRAYSCALE\r\n";
    const std::string color = "@PJL SET RENDERMODE=COLOR\r\n";
    const struct {
        const char* name;
        uint16_t pdlType;
        uint16_t colorCapability;
        const char* settings;
        std::string lines;  // before those of the features
        const WCHAR* jobName = nullptr;
        uint8_t jobNameFlags = 0;
        uint8_t descriptionFlags = 0;
    } cases[] = {
        {"plain", kPdlPcl6, kColorNone, "", "R0\r\n"},
        {"named", kPdlPcl5, kColorNone, "", "@PJL JOB NAME=\"Job\"\r\nR0\r\n", TEXT("Job"), 1},
        {"named by display", kPdlPcl5, kColorNone, "", "@PJL JOB DISPLAY=\"Job\"\r\nR0\r\n", TEXT("Job"), 4},
        {"in colour", kPdlXps, kColor, "dmColor=2", color + "R0\r\n", nullptr, 0, 0xFD},
        {"in gray", kPdlXps, kColor, "dmColor=1", gray + "R0\r\n"},
        {"data mode in colour", kPdlPostScript, kColor, "dmColor=2", color + "@PJL SET DATAMODE=COLOR\r\nR0\r\n",
         nullptr, 0, 2},
        {"data mode in gray", kPdlPostScript, kColor, "", gray + "@PJL SET DATAMODE=GRAYSCALE\r\nR0\r\n", nullptr, 0,
         2},
        {"another kind of colour", kPdlPcl6, kColorSecondKind, "dmColor=2", "R0\r\n", nullptr, 0, 2},
        {"second resolution and medium", kPdlPcl6, kColorNone, "resolutionIndex=1 mediaIndex=2", "R1\r\nM1\r\n"},
        {"resolution without command, first medium", kPdlPcl6, kColorNone, "resolutionIndex=2 mediaIndex=1", "M0\r\n"},
        {"no such resolution or medium", kPdlPcl6, kColorNone, "resolutionIndex=3 mediaIndex=3", ""},
        {"negative resolution and medium", kPdlPcl6, kColorNone, "resolutionIndex=-1 mediaIndex=-1", ""},
        {"extra keyword", kPdlPcl6, kColorNone, "extraKeywordIndex=2", "R0\r\n@PJL SET EXTRA=E2\r\n"},
        {"PCL without job name", kPdlPcl5, kColorNone, "noJobName=1", "R0\r\n"},
    };
    for (const auto& c : cases) {
        DescriptionBuilder builder = JobModel(c.pdlType, c.colorCapability);
        builder.fields.jobNameFlags = c.jobNameFlags;
        builder.fields.descriptionFlags = c.descriptionFlags;
        Use(builder);
        EXPECT_EQ(Start(c.settings, c.jobName), c.lines + kFeatures) << c.name;
    }
    Use(JobModel(kPdlPostScript, kColor));
    EXPECT_EQ(Start("noJobName=1", TEXT("Job")), "%!PS-Adobe-3.0\r\n");
    // What is asked for is the device mode's, whether the model lists it or not.
    DescriptionBuilder builder = JobModel(kPdlPcl6);
    builder.SetSlot(offsetof(DeviceModel, extraKeywordTable), 0);
    Use(builder);
    EXPECT_EQ(Start("extraKeywordIndex=1"), std::string("R0\r\n@PJL SET EXTRA=E1\r\n") + kFeatures);
}

// Features A, B (needs a stapler), C (follows the margin mode) and D. A feature that isn't installed keeps its place.
TEST_F(PjlBlock, FeaturesFollowSelectionInstallationAndMargins) {
    Use(JobModel(kPdlPcl6));
    struct Case {
        std::vector<int16_t> selection;
        uint16_t marginMode;
        uint32_t optionFlags;
        Texts lines;
    };
    const Case cases[] = {
        {{0, 0, 0, 0}, 0, 0, {"FA=A0", "FC=C0", "FD=D0"}},
        {{1, 1, 1, 1}, 0, 0, {"FA=A1", "FC=C0", "FD=D1"}},
        {{0, 1, 0, 1}, 1, kStaplerInstalled, {"FA=A0", "FB=B1", "FC=C1", "FD=D1"}},
        {{0, 1, 0, 0}, 2, ~uint32_t{kStaplerInstalled}, {"FA=A0", "FC=C0", "FD=D0"}},
        // No line for the third option, one past the last, or none; the one that follows margins doesn't mind.
        {{2, 2, 2, 2}, 0, kStaplerInstalled, {"FC=C0"}},
        {{3, 3, 3, 3}, 1, kStaplerInstalled, {"FC=C1"}},
        {{-1, -1, -1, 1}, 1, kStaplerInstalled, {"FC=C1", "FD=D1"}},
        {{-32768, 32767, 0, 0}, 0, kStaplerInstalled, {"FC=C0", "FD=D0"}},
    };
    for (const Case& c : cases) {
        SetDeviceInfo(Printer(), {1, 0, c.optionFlags, 0});
        VelmoraDevMode devMode = {};
        std::copy(c.selection.begin(), c.selection.end(), devMode.privatePart.featureSelection);
        devMode.privatePart.marginMode = c.marginMode;
        std::string expected = "R0\r\n";
        for (const std::string& line : c.lines) {
            expected += "@PJL SET " + line + "\r\n";
        }
        char block[512] = {};
        DWORD size = sizeof(block);
        EXPECT_TRUE(BuildPjlStart(block, &size, nullptr, Job(), devMode));
        EXPECT_EQ(block, expected);
        EXPECT_EQ(size, expected.size() + 1);
    }
}

// More features than a device mode has selections for.
TEST_F(PjlBlock, FeaturesBehindTheLastSelectionHaveNoLine) {
    DescriptionBuilder builder = JobModel(kPdlPcl6);
    const uint16_t key = builder.AddText("F");
    builder.Table(offsetof(DeviceModel, featureTable), std::vector<FeatureRecord>(40, {1, key, 0, 0, 0}));
    Use(builder);
    const std::string block = Start("");
    size_t lines = 0;
    for (size_t place = block.find("F=A0"); place != std::string::npos; place = block.find("F=A0", place + 1)) {
        ++lines;
    }
    EXPECT_EQ(lines, 32u);
}

// Whatever the name's length, the need that is told is enough, and the line ends.
TEST_F(PjlBlock, JobNamesOfEveryLength) {
    Use(JobModel(kPdlPcl6));
    for (size_t length = 0; length <= 600; ++length) {
        const WideText name(length, TEXT('n'));
        const std::string block = Start("", name.c_str());
        const std::string shown = block.substr(0, block.find("\r\n"));
        ASSERT_EQ(shown, "@PJL JOB NAME=\"" + std::string(std::min<size_t>(length, 493), 'n') + "\"");
        ASSERT_TRUE(block.ends_with(kFeatures));
    }
    // A character of two bytes isn't halved where the name is cut.
    machine_.SetAnsiCodePage(932);
    WideText name(600, TEXT('\x3042'));
    name[0] = TEXT('n');
    EXPECT_EQ(Start("", name.c_str()).find("\"\r\nR0"), 15 + 493u);
}

TEST_F(PjlBlock, LinesThatDoNotFitAreLeftOut) {
    Use(JobModel(kPdlPcl6));
    const std::string whole = std::string("R0\r\n") + kFeatures;
    const struct {
        DWORD capacity;
        std::string expected;
    } cases[] = {{4, ""}, {5, "R0\r\n"}, {20, "R0\r\n"}, {21, whole.substr(0, 20)}, {52, whole.substr(0, 36)}};
    for (const auto& c : cases) {
        std::string buffer(c.capacity + 1, '\0');
        DWORD size = c.capacity;
        EXPECT_FALSE(BuildPjlStart(buffer.data(), &size, nullptr, Job(), With({}, "")));
        EXPECT_EQ(size, whole.size() + 1);
        EXPECT_EQ(buffer.c_str(), c.expected) << c.capacity;
    }
}

TEST_F(PjlBlock, EndOfAJob) {
    const struct {
        uint16_t pdlType;
        uint16_t noJobName;
        DWORD capacity;
        bool fits;
        DWORD size;
        const char* block;
    } cases[] = {
        {kPdlPcl6, 0, 11, true, 11, "@PJL EOJ\r\n"}, {kPdlPcl6, 0, 10, false, 11, ""}, {kPdlPcl6, 1, 11, true, 0, ""},
        {kPdlPostScript, 1, 0, true, 0, ""},         {kPdlXps, 0, 11, true, 0, ""},    {kPdlOwn, 0, 0, false, 11, ""},
    };
    for (const auto& c : cases) {
        Use(JobModel(c.pdlType));
        VelmoraDevMode devMode = {};
        devMode.privatePart.noJobName = c.noJobName;
        char block[16] = {};
        DWORD size = c.capacity;
        EXPECT_EQ(BuildPjlEnd(block, &size, Job(), devMode), c.fits);
        EXPECT_EQ(size, c.size);
        EXPECT_STREQ(block, c.block);
    }
}

}  // namespace
}  // namespace velmora
