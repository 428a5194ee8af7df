// What the output options page decides, apart from its window. What the page's controls show is an OutputPage: read
// from the device mode when the page opens, and from the controls when it is applied.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/devmode/private_devmode.h"
#include "driver/settings/device_info.h"
#include "driver/ui/choice_list.h"

namespace velmora {

// Values of finishSide.
inline constexpr uint8_t kFirstSide = 1;
inline constexpr uint8_t kSecondSide = 2;  // needs the second tray

inline constexpr ChoiceEntry kSideChoices[] = {{kAlwaysOffered, 2856, kFirstSide}, {1, 2857, kSecondSide}, {}};

// The filter of kSideChoices for a printer.
constexpr uint32_t SideFilter(const DeviceInfo& installed) {
    return installed.secondTray == 1 ? 1 : 0;
}

struct OutputPage {
    bool isFlagA;                                   // 9003
    uint8_t choice;                                 // 9004 to 9006, which of them
    uint8_t side;                                   // 9008
    bool isFlagB;                                   // 9009
    char text[sizeof(PrivateDevMode::outputText)];  // 9010, in the ANSI code page
    bool flags[3];                                  // 9012 to 9014
    bool isFlagC;                                   // 9015

    bool operator==(const OutputPage&) const = default;
};

// The page as a device mode has it. A side that needs a tray that isn't there becomes the first one, in the device mode
// too.
OutputPage OpenOutputPage(PrivateDevMode* devMode, const DeviceInfo& installed);

// What button 9017 restores.
OutputPage OutputDefaults();

// Whether a selected side is another than the device mode's. Whatever isn't the second side counts as the first.
bool IsOtherSide(uint32_t selected, const PrivateDevMode& devMode);

// Sets finishFlagC, which a bit of optionFlags mirrors.
void SetFinishFlagC(bool isOn, PrivateDevMode* devMode);

// Writes the page into the device mode; CommitPage comes after it.
void ApplyOutputPage(const OutputPage& page, PrivateDevMode* devMode);

}  // namespace velmora
