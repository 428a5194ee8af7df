// The exports' answers that the contract tests don't ask for.
#include "driver/devmode/default_devmode.h"
#include "driver/entry/driver_interface.h"
#include "tests/driver/machine.h"
#include "tools/velmora/devmode_differences.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID);

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class Exports : public MachineTest {
  protected:
    void SetUp() override {
        Install(SmallModel(kPdlPcl6, kColor).Build());
        BuildDefaultDevMode(Printer(), kPrinterName, &default_);
        memset(&output_, 0x55, sizeof(output_));
    }

    WideText name_ = kPrinterName;
    VelmoraDevMode default_;
    VelmoraDevMode output_;
};

TEST(EntryRoutine, KnowsFourReasons) {
    for (const DWORD reason : {0u, 1u, 2u, 3u, 4u}) {
        EXPECT_EQ(DllMain(nullptr, reason, nullptr), reason < 4 ? TRUE : FALSE) << reason;
    }
}

TEST_F(Exports, AnswerWithoutTheirArguments) {
    EXPECT_EQ(DrvDocumentPropertySheets(nullptr, 0), 0);
    EXPECT_EQ(DrvDevicePropertySheets(nullptr, 0), 0);
    PROPSHEETUI_INFO info = {};
    for (const WORD reason : {PROPSHEETUI_REASON_INIT, PROPSHEETUI_REASON_DESTROY, PROPSHEETUI_REASON_SET_RESULT}) {
        info.Reason = reason;
        EXPECT_EQ(DrvDevicePropertySheets(&info, 0), reason == PROPSHEETUI_REASON_INIT ? 0 : 1) << reason;
    }
    for (const INT event : {1, 2, 3, 4, 5}) {
        EXPECT_EQ(DrvPrinterEvent(nullptr, event, 0, 0), event == PRINTER_EVENT_INITIALIZE ? FALSE : TRUE) << event;
    }
    EXPECT_EQ(GuiStartSheet(nullptr, nullptr), GuiEndJob(nullptr, nullptr, nullptr, nullptr));
    EXPECT_NE(GuiStartJob(nullptr, nullptr, nullptr, nullptr), GuiStartSheet(nullptr, nullptr));
}

TEST_F(Exports, DocumentSheetsWithPromptBuildTheDeviceMode) {
    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = Printer();
    header.pszPrinterName = name_.data();
    header.pdmOut = &output_.publicPart;
    header.cbOut = sizeof(output_);
    header.fMode = DM_OUT_BUFFER | DM_PROMPT;
    PROPSHEETUI_INFO info = {};
    info.Reason = PROPSHEETUI_REASON_INIT;
    info.Result = 7;
    info.lParamInit = reinterpret_cast<LPARAM>(&header);
    const LONG result = DrvDocumentPropertySheets(&info, 0);
    EXPECT_EQ(ValueOf(info.Result), static_cast<ULONG_PTR>(result));
    // Only the user's folder is filled in.
    EXPECT_EQ(DifferenceLines(default_, output_).size(), 1u);
    EXPECT_NE(output_.privatePart.settingsFolder[0], 0);
    for (int i = 0; i < 2; ++i) {
        info.Reason = PROPSHEETUI_REASON_DESTROY;
        EXPECT_EQ(DrvDocumentPropertySheets(&info, 0), 1);
    }
}

}  // namespace
}  // namespace velmora
