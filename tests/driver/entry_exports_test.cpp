#include <objbase.h>

#include <cstring>

#include "driver/devmode/default_devmode.h"
#include "driver/entry/driver_interface.h"
#include "driver/entry/printer_access.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID);

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class Exports : public MachineTest {
  protected:
    void SetUp() override {
        Install(SmallModel(kPdlPcl6, kColor).Build());
        memset(&output_, 0x55, sizeof(output_));
    }

    VelmoraDevMode Default() const {
        VelmoraDevMode devMode;
        BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
        return devMode;
    }

    bool OutputIsUntouched() const {
        const auto* bytes = reinterpret_cast<const unsigned char*>(&output_);
        for (size_t i = 0; i < sizeof(output_); ++i) {
            if (bytes[i] != 0x55) {
                return false;
            }
        }
        return true;
    }

    WideText name_ = kPrinterName;
    VelmoraDevMode output_;
};

TEST_F(Exports, FixedAnswers) {
    EXPECT_EQ(DrvAdvancedDocumentProperties(nullptr, nullptr, nullptr, nullptr, nullptr), 10);
    EXPECT_EQ(DevQueryPrintEx(nullptr), TRUE);
    EXPECT_EQ(DrvUpgradePrinter(1, nullptr), TRUE);
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
    for (const DWORD reason : {0u, 1u, 2u, 3u}) {
        EXPECT_EQ(DllMain(nullptr, reason, nullptr), TRUE) << reason;
    }
    EXPECT_EQ(DllMain(nullptr, 4, nullptr), FALSE);
    for (const INT event : {-1, 0, 1, 2, 3, 4, 5}) {
        EXPECT_EQ(DrvPrinterEvent(name_.data(), event, 0, 0), TRUE) << event;
    }
}

TEST_F(Exports, TheSizeOfTheDeviceMode) {
    EXPECT_EQ(DrvDocumentProperties(nullptr, Printer(), name_.data(), &output_.publicPart, nullptr, 0), 4088);
    EXPECT_EQ(DrvDocumentProperties(nullptr, Printer(), name_.data(), nullptr, nullptr, DM_OUT_BUFFER), 4088);
    DOCUMENTPROPERTYHEADER header = {};
    header.fMode = DM_OUT_BUFFER | DM_PROMPT;
    EXPECT_EQ(DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 4088);
    EXPECT_EQ(header.cbOut, 4088u);
    EXPECT_TRUE(OutputIsUntouched());
}

TEST_F(Exports, DocumentSheets) {
    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = Printer();
    header.pszPrinterName = name_.data();
    header.pdmOut = &output_.publicPart;
    header.cbOut = sizeof(output_);
    PROPSHEETUI_INFO info = {};
    info.lParamInit = reinterpret_cast<LPARAM>(&header);

    header.fMode = DM_OUT_BUFFER;  // no prompt: nothing to do
    info.Reason = PROPSHEETUI_REASON_INIT;
    info.Result = 7;
    EXPECT_EQ(DrvDocumentPropertySheets(&info, 0), 1);
    EXPECT_EQ(ValueOf(info.Result), 7u);
    EXPECT_TRUE(OutputIsUntouched());

    header.fMode = DM_OUT_BUFFER | DM_PROMPT;
    const LONG result = DrvDocumentPropertySheets(&info, 0);
    EXPECT_EQ(ValueOf(info.Result), static_cast<ULONG_PTR>(result));
    const VelmoraDevMode expected = Default();
    EXPECT_EQ(memcmp(&output_, &expected, sizeof(output_)), 0);

    for (const WORD reason : {1, 2, 3, 4}) {
        info.Reason = reason;
        info.Result = 7;
        EXPECT_EQ(DrvDocumentPropertySheets(&info, 0), 1) << reason;
        EXPECT_EQ(ValueOf(info.Result), 1u) << reason;
    }
}

TEST_F(Exports, DeviceSheets) {
    DEVICEPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = Printer();
    header.pszPrinterName = name_.data();
    PROPSHEETUI_INFO info = {};
    info.lParamInit = reinterpret_cast<LPARAM>(&header);
    for (const WORD reason : {1, 2, 3, 4}) {
        info.Reason = reason;
        EXPECT_EQ(DrvDevicePropertySheets(&info, 0), 1) << reason;
    }
}

TEST_F(Exports, Conversion) {
    LONG needed = 220;
    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(DrvConvertDevMode(name_.data(), nullptr, &output_.publicPart, nullptr, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_FALSE(DrvConvertDevMode(name_.data(), nullptr, &output_.publicPart, &needed, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(needed, 4088);
    EXPECT_FALSE(DrvConvertDevMode(name_.data(), nullptr, nullptr, &needed, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    WideText unknown = u"Unknown";
    needed = 5000;
    EXPECT_FALSE(DrvConvertDevMode(unknown.data(), nullptr, &output_.publicPart, &needed, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PRINTER_NAME));
    EXPECT_EQ(needed, 4088);
    EXPECT_TRUE(OutputIsUntouched());

    EXPECT_TRUE(DrvConvertDevMode(name_.data(), nullptr, &output_.publicPart, &needed, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
    const VelmoraDevMode expected = Default();
    EXPECT_EQ(memcmp(&output_, &expected, sizeof(output_)), 0);
}

TEST_F(Exports, DeviceModeCapabilities) {
    const auto ask = [&](WORD capability) {
        return DrvDeviceCapabilities(Printer(), name_.data(), capability, nullptr, nullptr);
    };
    EXPECT_EQ(ask(DC_SIZE), 220u);
    EXPECT_EQ(ask(DC_EXTRA), 3868u);
    EXPECT_EQ(ask(DC_VERSION), 0x401u);
    EXPECT_EQ(ask(DC_DRIVER), 0x0A00u);
}

}  // namespace
}  // namespace velmora
