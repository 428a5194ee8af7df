#include "driver/job/pjl_block.h"

#include <functional>

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
    using Change = std::function<void(DescriptionBuilder*)>;
    const auto asIs = [](DescriptionBuilder*) {};
    const auto flags = [](uint8_t jobNameFlags, uint8_t descriptionFlags) {
        return [=](DescriptionBuilder* builder) {
            builder->fields.jobNameFlags = jobNameFlags;
            builder->fields.descriptionFlags = descriptionFlags;
        };
    };
    const std::string gray = "@PJL SET RENDERMODE=GRAYSCALE\r\n";
    const std::string color = "@PJL SET RENDERMODE=COLOR\r\n";
    struct Case {
        const char* name;
        uint16_t pdlType;
        uint16_t colorCapability;
        Change change;
        const char* settings;
        const WCHAR* jobName;
        std::string expected;
    };
    const Case cases[] = {
        {"plain", kPdlPcl6, kColorNone, asIs, "", nullptr, std::string("R0\r\n") + kFeatures},
        {"named", kPdlPcl5, kColorNone, flags(1, 0), "", TEXT("Job"),
         std::string("@PJL JOB NAME=\"Job\"\r\nR0\r\n") + kFeatures},
        {"named by display", kPdlPcl5, kColorNone, flags(4, 0), "", TEXT("Job"),
         std::string("@PJL JOB DISPLAY=\"Job\"\r\nR0\r\n") + kFeatures},
        {"in colour", kPdlXps, kColor, flags(0, 0xFD), "dmColor=2", nullptr, color + "R0\r\n" + kFeatures},
        {"in gray", kPdlXps, kColor, asIs, "dmColor=1", nullptr, gray + "R0\r\n" + kFeatures},
        {"data mode in colour", kPdlPostScript, kColor, flags(0, 2), "dmColor=2", nullptr,
         color + "@PJL SET DATAMODE=COLOR\r\nR0\r\n" + kFeatures},
        {"data mode in gray", kPdlPostScript, kColor, flags(0, 2), "", nullptr,
         gray + "@PJL SET DATAMODE=GRAYSCALE\r\nR0\r\n" + kFeatures},
        {"another kind of colour", kPdlPcl6, kColorSecondKind, flags(0, 2), "dmColor=2", nullptr,
         std::string("R0\r\n") + kFeatures},
        {"second resolution and medium", kPdlPcl6, kColorNone, asIs, "resolutionIndex=1 mediaIndex=2", nullptr,
         std::string("R1\r\nM1\r\n") + kFeatures},
        {"resolution without command, first medium", kPdlPcl6, kColorNone, asIs, "resolutionIndex=2 mediaIndex=1",
         nullptr, std::string("M0\r\n") + kFeatures},
        {"no such resolution or medium", kPdlPcl6, kColorNone, asIs, "resolutionIndex=3 mediaIndex=3", nullptr,
         kFeatures},
        {"negative resolution and medium", kPdlPcl6, kColorNone, asIs, "resolutionIndex=-1 mediaIndex=-1", nullptr,
         kFeatures},
        {"extra keyword", kPdlPcl6, kColorNone, asIs, "extraKeywordIndex=2", nullptr,
         std::string("R0\r\n@PJL SET EXTRA=E2\r\n") + kFeatures},
        // What is asked for is the device mode's, whether the model lists it or not.
        {"extra keyword without a table", kPdlPcl6, kColorNone,
         [](DescriptionBuilder* builder) { builder->SetSlot(offsetof(DeviceModel, extraKeywordTable), 0); },
         "extraKeywordIndex=1", nullptr, std::string("R0\r\n@PJL SET EXTRA=E1\r\n") + kFeatures},
        {"PostScript without job name", kPdlPostScript, kColor, asIs, "noJobName=1", TEXT("Job"), "%!PS-Adobe-3.0\r\n"},
        {"PCL without job name", kPdlPcl5, kColorNone, asIs, "noJobName=1", nullptr, std::string("R0\r\n") + kFeatures},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        DescriptionBuilder builder = JobModel(c.pdlType, c.colorCapability);
        c.change(&builder);
        Use(builder);
        EXPECT_EQ(Start(c.settings, c.jobName), c.expected);
    }
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
        const WideText name(length, u'n');
        const std::string block = Start("", name.c_str());
        const std::string shown = block.substr(0, block.find("\r\n"));
        ASSERT_EQ(shown, "@PJL JOB NAME=\"" + std::string(std::min<size_t>(length, 493), 'n') + "\"");
        ASSERT_TRUE(block.ends_with(kFeatures));
    }
    // A character of two bytes isn't halved where the name is cut.
    machine_.SetAnsiCodePage(932);
    WideText name(600, u'\x3042');
    name[0] = u'n';
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
