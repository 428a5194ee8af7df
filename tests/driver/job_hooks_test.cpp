#include "driver/job/job_hooks.h"

#include "driver/devmode/default_devmode.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/job_model.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using JobHooks = MachineTest;

// The record form tells the renderer's flag to the caller's device mode.
TEST_F(JobHooks, AJobOfRecords) {
    Install(JobModel(kPdlImage).Build());
    VelmoraDevMode devMode;
    BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
    devMode = With(devMode, "uiZoomOn=1 uiFitToPaper=65535 uiFlagD=0 dmPaperSize=9");
    JobHookRecord record = {};
    record.printerName = kPrinterName;
    std::string block(1229, '\0');
    DWORD size = 1229;
    EXPECT_EQ(StartJob(&devMode, block.data(), &size, &record), kJobDone);
    EXPECT_EQ(ValueOf(devMode.privatePart.uiFlagD), 1u);
    EXPECT_EQ(block[984], 1);
    EXPECT_EQ(EndJob(&devMode, block.data(), &size, &record), kJobDone);
}

}  // namespace
}  // namespace velmora
