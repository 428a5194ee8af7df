// What restoring all defaults makes of each field of a device mode, through real windows of the layer.
#include <algorithm>
#include <iterator>

#include "driver/base/text.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/document_sheet.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr UINT kLastPage = 4;  // of the sheet: the information page
constexpr int kRestoreAll = 10009;

template <class T, size_t count>
void Fill(T (&field)[count], T value) {
    std::fill(std::begin(field), std::end(field), value);
}

class InformationPageTest : public DocumentSheetTest {
  protected:
    void ThenRestore() {
        ThenUse(kInformationSlot, [](HWND page) { Click(page, kRestoreAll); });
        host_->Then([](HWND) {
            EXPECT_EQ(ToText(TextOf(FrontDialog())), "Restore defaults");
            Click(FrontDialog(), IDOK);
        });
    }
    // Keeps what the sheet has made of the device mode by then.
    void ThenKeep(VelmoraDevMode* kept) {
        host_->Then([=, this](HWND) { *kept = *Context().devMode; });
    }
};

// Where two device modes differ.
using Offsets = std::vector<size_t>;
Offsets Differences(const VelmoraDevMode& a, const VelmoraDevMode& b) {
    Offsets offsets;
    for (size_t i = 0; i < sizeof(a); ++i) {
        if (reinterpret_cast<const uint8_t*>(&a)[i] != reinterpret_cast<const uint8_t*>(&b)[i]) {
            offsets.push_back(i);
        }
    }
    return offsets;
}

TEST_F(InformationPageTest, WritesTheDefaultsOfClosedPages) {
    host_->startPage = kLastPage;
    PrepareSettingsFile(kPrinterName);
    const WatermarkList stored = LoadWatermarkList(kPrinterName);
    stored.records.Get()[0].style.size = 99;
    SaveWatermarkList(kPrinterName, stored.records.Get(), stored.count);
    VelmoraDevMode before;
    VelmoraDevMode restored;
    VelmoraDevMode again;
    host_->Then([this](HWND) {
        VelmoraDevMode& devMode = *Context().devMode;
        PrivateDevMode& own = devMode.privatePart;
        std::fill_n(reinterpret_cast<uint8_t*>(&own) + offsetof(PrivateDevMode, uiBinding),
                    offsetof(PrivateDevMode, uiStale) - offsetof(PrivateDevMode, uiBinding), uint8_t{0xA5});
        own.optionFlags = 0x10;
        own.watermarkFlags = 36;
        own.resolutionId = 300;
        own.colorMode = 0;
        own.layoutMode = 3;
        devMode = With(devMode, "dmColor=1 dmPrintQuality=300 dmYResolution=300 dmICMMethod=2 dmICMIntent=3");
    });
    ThenKeep(&before);
    ThenRestore();
    ThenKeep(&restored);
    host_->Then([this](HWND) {
        EXPECT_EQ(Context().watermarks.records.Get()[0].style.size, 50);
        EXPECT_EQ(std::count(std::begin(Context().isChanged), std::end(Context().isChanged), true), 0);
    });
    ThenRestore();
    ThenKeep(&again);
    ThenPress(PSBTN_OK);
    Run();
    EXPECT_EQ(host_->results.size(), 0u);
    EXPECT_EQ(LoadWatermarkList(kPrinterName).records.Get()[0].style.size, 99);
    EXPECT_EQ(Differences(restored, again), Offsets());

    VelmoraDevMode expected = With(
        before,
        "dmColor=2 dmPrintQuality=600 dmYResolution=600 dmICMMethod=1 dmICMIntent=2 optionFlags=0x210 watermarkFlags=0 "
        "resolutionId=600 colorMode=1 colorPreset=1 colorAuto=1 resolutionIndex=1 colorRendering=1 colorChoiceA=1 "
        "resolutionFlag=0 colorFlagB=0 outputSetting=0 colorChoiceB=0 colorFlagA=1 outputFlag=0 outputLevel=0 "
        "finishFlagA=0 finishChoice=0 finishSide=0 finishFlagB=0 finishFlagC=1");
    PrivateDevMode& own = expected.privatePart;
    Fill<int16_t>(own.colorAdjust, 0);
    Fill<int16_t>(own.colorBalance, 0);
    Fill<int16_t>(own.colorLevels, 0);
    Fill<WCHAR>(own.colorPresetName, 0);
    CopyText<WCHAR>(own.colorPresetName, 32, TEXT("Custom"));
    const struct {
        uint16_t mode;
        const WCHAR* name;
    } treatments[] = {{1, TEXT("Deep")}, {3, TEXT("Vivid")}, {2, TEXT("Standard")}};
    for (size_t i = 0; i < std::size(treatments); ++i) {
        own.objectColor[i].mode = treatments[i].mode;
        own.objectColor[i].flag = 0;
        Fill<uint16_t>(own.objectColor[i].values, 0);
        Fill<WCHAR>(own.objectPresetNames[i], 0);
        CopyText<WCHAR>(own.objectPresetNames[i], 11, treatments[i].name);
    }
    Fill<uint8_t>(own.reserved3038, 0);
    std::fill_n(own.outputText, 16, '\0');
    Fill<uint8_t>(own.finishFlags, 0);
    EXPECT_EQ(Differences(restored, expected), Offsets());
}

}  // namespace
}  // namespace velmora
