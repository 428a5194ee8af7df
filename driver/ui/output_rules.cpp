#include "driver/ui/output_rules.h"

#include <algorithm>
#include <iterator>

#include "driver/base/text.h"

namespace velmora {
namespace {

constexpr uint32_t kFlagCOption = 1u << 9;  // of optionFlags

constexpr uint8_t SideOf(uint32_t value) {
    return value == kSecondSide ? kSecondSide : kFirstSide;
}

}  // namespace

OutputPage OpenOutputPage(PrivateDevMode* devMode, const DeviceInfo& installed) {
    if (devMode->finishSide == kSecondSide && SideFilter(installed) == 0) {
        devMode->finishSide = kFirstSide;
    }
    OutputPage page = {};
    page.isFlagA = devMode->finishFlagA != 0;
    page.choice = devMode->finishChoice;
    page.side = SideOf(devMode->finishSide);
    page.isFlagB = devMode->finishFlagB != 0;
    CopyText<char>(page.text, sizeof(page.text), devMode->outputText);
    std::transform(std::begin(devMode->finishFlags), std::end(devMode->finishFlags), page.flags,
                   [](uint8_t flag) { return flag != 0; });
    page.isFlagC = devMode->finishFlagC != 0;
    return page;
}

OutputPage OutputDefaults() {
    OutputPage page = {};
    page.side = kFirstSide;
    page.isFlagC = true;
    return page;
}

bool IsOtherSide(uint32_t selected, const PrivateDevMode& devMode) {
    return SideOf(selected) != SideOf(devMode.finishSide);
}

void SetFinishFlagC(bool isOn, PrivateDevMode* devMode) {
    devMode->finishFlagC = isOn ? 1 : 0;
    devMode->optionFlags = isOn ? devMode->optionFlags | kFlagCOption : devMode->optionFlags & ~kFlagCOption;
}

void ApplyOutputPage(const OutputPage& page, PrivateDevMode* devMode) {
    devMode->finishChoice = page.choice;
    devMode->finishSide = SideOf(page.side);
    devMode->finishFlagA = page.isFlagA ? 1 : 0;
    StoreAnsiText(devMode->outputText, sizeof(devMode->outputText), page.text);
    devMode->finishFlagB = page.isFlagB ? 1 : 0;
    std::transform(std::begin(page.flags), std::end(page.flags), devMode->finishFlags,
                   [](bool isOn) { return isOn ? uint8_t{1} : uint8_t{0}; });
    SetFinishFlagC(page.isFlagC, devMode);
}

}  // namespace velmora
