#include "driver/ui/device_page.h"

#include "driver/base/text.h"
#include "driver/ui/controls.h"
#include "driver/ui/page.h"
#include "driver/ui/pictures.h"

namespace velmora {
namespace {

constexpr int kSlot = 5;

// Controls. Labels and buttons have the text of the string of their own number.
constexpr int kAvailable = 11004;
constexpr int kInstall = 11005;
constexpr int kInstalled = 11007;
constexpr int kRemove = 11008;
constexpr int kPicture = 11009;
constexpr int kTexts[] = {11002, 11003, kInstall, 11006, kRemove};

constexpr int8_t kIsInstalled = 1;
constexpr int8_t kIsAvailable = 0;
constexpr int8_t kIsNotApplicable = -1;

// Values of DeviceInfo.installedOptions.
constexpr uint32_t kWithSecondTray = 7;
constexpr uint32_t kWithoutSecondTray = 3;

// The options in the order of the lists.
struct Option {
    int8_t OptionStates::*state;
    UINT name;  // string of the language module
};
constexpr Option kOptions[] = {
    {&OptionStates::secondTray, 11010},
    {&OptionStates::duplexUnit, 11011},
};

void FillOptionLists(HWND dialog, const SheetContext& context) {
    for (const int list : {kAvailable, kInstalled}) {
        SendDlgItemMessageW(dialog, list, LB_RESETCONTENT, 0, 0);
    }
    for (const Option& option : kOptions) {
        const int8_t state = context.optionStates.*option.state;
        if (state != kIsAvailable && state != kIsInstalled) {
            continue;
        }
        WCHAR name[kMessageCapacity];
        LoadText(context, option.name, name, ARRAYSIZE(name));
        SendDlgItemMessageW(dialog, state == kIsInstalled ? kInstalled : kAvailable, LB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(name));
    }
}

BOOL InitDevicePage(HWND dialog, SheetContext* context) {
    SetOwnTexts(dialog, kTexts);
    context->optionStates = ReadOptionStates(context->deviceInfo);
    FillOptionLists(dialog, *context);
    return TRUE;
}

// The selected text of a list box; false where nothing is selected.
bool GetSelectedText(HWND dialog, int list, WCHAR (&text)[kMessageCapacity]) {
    const LRESULT selected = SendDlgItemMessageW(dialog, list, LB_GETCURSEL, 0, 0);
    if (selected < 0) {
        return false;
    }
    const LRESULT length = SendDlgItemMessageW(dialog, list, LB_GETTEXTLEN, static_cast<WPARAM>(selected), 0);
    return length >= 0 && length < static_cast<LRESULT>(kMessageCapacity) &&
           SendDlgItemMessageW(dialog, list, LB_GETTEXT, static_cast<WPARAM>(selected),
                               reinterpret_cast<LPARAM>(text)) >= 0;
}

// Gives the option that is selected in a list another state.
void MoveSelected(HWND dialog, SheetContext* context, int list, int8_t state) {
    WCHAR selected[kMessageCapacity];
    if (GetSelectedText(dialog, list, selected)) {
        for (const Option& option : kOptions) {
            WCHAR name[kMessageCapacity];
            LoadText(*context, option.name, name, ARRAYSIZE(name));
            if (TextsEqual(selected, name)) {
                context->optionStates.*option.state = state;
                MarkPageChanged(dialog, context, kSlot);
                break;
            }
        }
    }
    FillOptionLists(dialog, *context);
    InvalidateControl(dialog, kPicture);
}

void OnDeviceCommand(HWND dialog, SheetContext* context, int id, int code) {
    if (code != BN_CLICKED) {
        return;
    }
    if (id == kInstall) {
        MoveSelected(dialog, context, kAvailable, kIsInstalled);
    } else if (id == kRemove) {
        MoveSelected(dialog, context, kInstalled, kIsAvailable);
    }
}

void ApplyDevicePage(HWND, SheetContext* context) {
    context->deviceInfo = WithOptionStates(context->deviceInfo, context->optionStates);
    SetDeviceInfo(context->printer, context->deviceInfo);
    CommitPage(context, kSlot);
}

void PaintDevicePage(HWND dialog, SheetContext* context, HDC target) {
    const OwnedModule pictures = LoadImageModule(*context);
    DrawBitmapInControl(dialog, target, pictures.Get(), PrinterPicture(context->optionStates), kPicture, true);
}

constexpr PageFunctions kDevicePage = {
    kSlot, InitDevicePage, OnDeviceCommand, ApplyDevicePage, nullptr, PaintDevicePage, nullptr, nullptr,
};

}  // namespace

INT_PTR CALLBACK DevicePageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RoutePageMessage(kDevicePage, dialog, message, wParam, lParam);
}

OptionStates ReadOptionStates(const DeviceInfo& info) {
    return {static_cast<int8_t>(info.secondTray), static_cast<int8_t>(DuplexUnitOf(info))};
}

DeviceInfo WithOptionStates(const DeviceInfo& info, const OptionStates& states) {
    DeviceInfo changed = info;
    changed.installedOptions = states.secondTray != 0 ? kWithSecondTray : kWithoutSecondTray;
    changed.secondTray = static_cast<uint32_t>(int32_t{states.secondTray});
    changed.optionFlags = states.duplexUnit == kIsNotApplicable ? static_cast<uint32_t>(int32_t{kIsNotApplicable})
                                                                : (info.optionFlags & ~uint32_t{kDuplexInstalled}) |
                                                                      static_cast<uint8_t>(states.duplexUnit);
    return changed;
}

const WCHAR* PrinterPicture(const OptionStates& states) {
    const bool hasTray = states.secondTray == kIsInstalled;
    if (states.duplexUnit == kIsInstalled) {
        return hasTray ? TEXT("IDB_DUP2A") : TEXT("IDB_DUP1A");
    }
    return hasTray ? TEXT("IDB_TRAY2A") : TEXT("IDB_TRAY1A");
}

}  // namespace velmora
