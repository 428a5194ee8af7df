#include "driver/job/job_hooks.h"

#include <algorithm>

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

}  // namespace
}  // namespace velmora
