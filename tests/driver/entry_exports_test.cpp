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

TEST_F(Exports, FixedAnswers) {
    for (const DWORD reason : {0u, 1u, 2u, 3u, 4u}) {
        EXPECT_EQ(DllMain(nullptr, reason, nullptr), reason < 4 ? TRUE : FALSE) << reason;
    }
    EXPECT_EQ(DrvDocumentProperties(nullptr, Printer(), name_.data(), &output_.publicPart, nullptr, 0), 4088);
    EXPECT_EQ(DrvAdvancedDocumentProperties(nullptr, nullptr, nullptr, nullptr, nullptr), 10);
    EXPECT_EQ(DevQueryPrintEx(nullptr), TRUE);
    EXPECT_EQ(DrvUpgradePrinter(1, nullptr), TRUE);
    for (const INT event : {-1, 1, 2, 3, 4, 5}) {
        EXPECT_EQ(DrvPrinterEvent(name_.data(), event, 0, 0), TRUE) << event;
    }
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

TEST_F(Exports, Conversion) {
    const auto convert = [this](WideText name, LONG* size) {
        return DrvConvertDevMode(name.data(), nullptr, &output_.publicPart, size, 0) ? 0 : GetLastError();
    };
    LONG needed = 220;
    EXPECT_EQ(convert(name_, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(convert(name_, &needed), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(needed, 4088);
    EXPECT_EQ(convert(TEXT("Unknown"), &needed), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_TRUE(convert(name_, &needed) == 0 && GetLastError() == ERROR_SUCCESS);
    EXPECT_EQ(DifferenceLines(default_, output_), Texts());
}

}  // namespace
}  // namespace velmora
