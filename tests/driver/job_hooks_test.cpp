#include "driver/job/job_hooks.h"

#include <algorithm>

#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/entry/stored_devmode.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/job_model.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr const char* kFeatures = "@PJL SET FA=A0\r\n@PJL SET FC=C0\r\n@PJL SET FD=D0\r\n";

class JobHooks : public MachineTest {
  protected:
    void Use(const DescriptionBuilder& builder) {
        Install(builder.Build());
        BuildDefaultDevMode(Printer(), kPrinterName, &default_);
        record_.printerName = kPrinterName;
    }
    void UseText() {
        DescriptionBuilder builder = JobModel(kPdlImage);
        builder.fields.descriptionFlags = kDescriptionsAreText;
        Use(builder);
    }

    // A hook's block in a buffer of this size, of which it tells the need in `size_`.
    int Start(VelmoraDevMode* devMode, DWORD capacity) {
        block_.assign(capacity, '\0');
        size_ = capacity;
        record_.sheetBuffer = nullptr;  // where the prompt flag is
        return StartJob(devMode, block_.data(), &size_, &record_);
    }
    int End(VelmoraDevMode* devMode, DWORD capacity) {
        block_.assign(capacity, '\0');
        size_ = capacity;
        return EndJob(devMode, block_.data(), &size_, &record_);
    }
    int Sheet(VelmoraDevMode* devMode, DWORD capacity) {
        block_.assign(capacity, '\0');
        record_.sheetBuffer = block_.data();
        record_.sheetSize = capacity;
        return StartSheet(devMode, &record_);
    }
    bool IsStarted() const { return ValueOf(record_.jobState) != nullptr; }

    VelmoraDevMode default_;
    JobHookRecord record_ = {};
    std::string block_;
    DWORD size_ = 0;
};

TEST_F(JobHooks, AJobOfCommandLines) {
    Use(JobModel(kPdlPcl6));
    const Texts before = host::StillOpen();
    record_.jobState = &size_;  // of a record that wasn't cleared
    record_.result = 7;
    EXPECT_EQ(Start(&default_, 0), kJobBlockTooLarge);
    EXPECT_FALSE(IsStarted());
    EXPECT_EQ(ValueOf(record_.result), 0u);
    EXPECT_EQ(host::StillOpen(), before);
    const DWORD needed = size_;
    EXPECT_EQ(Start(&default_, needed - 1), kJobBlockTooLarge);
    EXPECT_EQ(size_, needed);
    EXPECT_EQ(Start(&default_, needed), kJobDone);
    EXPECT_EQ(size_, needed);
    EXPECT_TRUE(block_.find(kFeatures) != std::string::npos && block_.find("JOB NAME") == std::string::npos);

    Texts open = host::StillOpen();
    std::erase_if(open, [&](const std::string& line) { return std::ranges::count(before, line) > 0; });
    EXPECT_EQ(open.size(), 3u);  // file, model and state
    EXPECT_EQ(Sheet(&default_, 100), kJobDone);
    EXPECT_EQ(ValueOf(record_.sheetSize), 0u);
    EXPECT_EQ(End(&default_, 10), kJobBlockTooLarge);
    EXPECT_EQ(size_, 11u);
    EXPECT_TRUE(IsStarted());
    EXPECT_EQ(End(&default_, 11), kJobDone);
    EXPECT_STREQ(block_.c_str(), "@PJL EOJ\r\n");
    EXPECT_FALSE(IsStarted());
    EXPECT_EQ(host::StillOpen(), before);
    EXPECT_EQ(End(&default_, 11), kJobDone);  // it is over
    EXPECT_EQ(size_, 11u);
    EXPECT_EQ(block_[0], 0);
}

TEST_F(JobHooks, AJobOfDescriptions) {
    UseText();
    const WideText name = TEXT("Job");
    record_.jobName = name.c_str();
    const auto namesJob = [this] { return block_.find("jobName=Job") != std::string::npos; };
    EXPECT_EQ(Start(&default_, 0), kJobBlockTooLarge);
    EXPECT_EQ(Start(&default_, size_), kJobDone);
    EXPECT_TRUE(namesJob());
    EXPECT_EQ(Sheet(&default_, 0), kJobBlockTooLarge);
    const DWORD needed = ValueOf(record_.sheetSize);
    EXPECT_EQ(Sheet(&default_, needed), kJobDone);
    EXPECT_TRUE(block_.starts_with("modelName=") && !namesJob());
    EXPECT_EQ(End(&default_, 0), kJobBlockTooLarge);
    EXPECT_EQ(size_, needed);
    EXPECT_EQ(End(&default_, needed), kJobDone);
    EXPECT_TRUE(block_.starts_with("modelName=") && !namesJob());
}

// The record form tells the renderer's flag to the caller's device mode.
TEST_F(JobHooks, AJobOfRecords) {
    Use(JobModel(kPdlImage));
    VelmoraDevMode devMode = With(default_, "uiZoomOn=1 uiFitToPaper=65535 uiFlagD=0 dmPaperSize=9");
    EXPECT_EQ(Start(&devMode, 1229), kJobDone);
    EXPECT_EQ(ValueOf(devMode.privatePart.uiFlagD), 1u);
    EXPECT_EQ(block_[984], 1);
    EXPECT_EQ(Sheet(&devMode, 1228), kJobBlockTooLarge);
    EXPECT_EQ(ValueOf(record_.sheetSize), 1229u);
    EXPECT_EQ(End(&devMode, 1229), kJobDone);
}

TEST_F(JobHooks, NoDeviceModeStandsForThePrinters) {
    Use(JobModel(kPdlPcl6));
    for (const char* settings : {"resolutionIndex=1 mediaIndex=2", "resolutionIndex=0 mediaIndex=2"}) {
        VelmoraDevMode stored = With(default_, settings);
        ASSERT_TRUE(SetPrinterDevMode(Printer(), &stored.publicPart));
        EXPECT_EQ(Start(nullptr, 500), kJobDone);
        const std::string expected = settings[16] == '1' ? "R1\r\nM1\r\n" : "R0\r\nM1\r\n";
        EXPECT_EQ(block_.c_str(), expected + kFeatures);
        EXPECT_EQ(Sheet(nullptr, 0), kJobDone);
        EXPECT_EQ(End(nullptr, 500), kJobDone);
    }
}

// What can't be repaired is replaced where it stands by the printer's own device mode: the private part, or all.
TEST_F(JobHooks, EachHookRepairsTheDeviceMode) {
    Use(JobModel(kPdlPcl6));
    VelmoraDevMode stored = With(default_, "dmCopies=3 mediaIndex=2");
    ASSERT_TRUE(SetPrinterDevMode(Printer(), &stored.publicPart));
    ASSERT_EQ(GetPrinterDevMode(Printer(), &stored), 1);
    struct Case {
        const char* settings;
        int16_t copies;
        int16_t medium;
    };
    const Case cases[] = {
        {"dmCopies=5 mediaIndex=1", 5, 1},
        {"dmCopies=5 mediaIndex=1 dmSpecVersion=0", 3, 2},
        {"dmCopies=5 mediaIndex=1 privateSignature=0", 5, 2},
        {"dmCopies=0 mediaIndex=1", 1, 1},  // a value that is repaired
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.settings);
        const auto check = [&](const VelmoraDevMode& devMode) {
            EXPECT_EQ(ValueOf(devMode.publicPart.dmCopies), c.copies);
            EXPECT_EQ(ValueOf(devMode.privatePart.mediaIndex), c.medium);
            EXPECT_EQ(ValueOf(devMode.privatePart.privateSignature), kPrivateSignature);
        };
        VelmoraDevMode devMode = With(default_, c.settings);
        EXPECT_EQ(Start(&devMode, 500), kJobDone);
        check(devMode);
        devMode = With(default_, c.settings);
        EXPECT_EQ(Sheet(&devMode, 0), kJobDone);
        check(devMode);
        devMode = With(default_, c.settings);
        EXPECT_EQ(End(&devMode, 500), kJobDone);
        check(devMode);
    }
}

// Blocks that are empty or nothing but a header.
TEST_F(JobHooks, PostScriptWithoutJobNameAndXps) {
    Use(JobModel(kPdlPostScript));
    VelmoraDevMode devMode = With(default_, "noJobName=1");
    EXPECT_EQ(Start(&devMode, 16), kJobBlockTooLarge);
    EXPECT_EQ(Start(&devMode, size_), kJobDone);
    EXPECT_STREQ(block_.c_str(), "%!PS-Adobe-3.0\r\n");
    EXPECT_EQ(End(&devMode, 0), kJobDone);
    EXPECT_EQ(size_, 0u);
    Describe(JobModel(kPdlXps));
    EXPECT_EQ(Start(&default_, 500), kJobDone);
    EXPECT_EQ(End(&default_, 0), kJobDone);
    EXPECT_EQ(size_, 0u);
}

TEST_F(JobHooks, PromptAndUnknownPrinter) {
    Use(JobModel(kPdlPcl6));
    record_.promptFlag = 1;
    record_.jobState = &size_;
    size_ = 500;
    EXPECT_EQ(StartJob(&default_, nullptr, &size_, &record_), kJobPrompted);
    EXPECT_EQ(size_, 0u);
    EXPECT_FALSE(IsStarted());
    for (const WCHAR* name : {TEXT("Unknown"), static_cast<const WCHAR*>(nullptr)}) {
        record_.printerName = name;
        EXPECT_EQ(Start(&default_, 500), kJobImpossible);
        EXPECT_FALSE(IsStarted());
    }
}

}  // namespace
}  // namespace velmora
