// The device settings page of the device sheet: which optional hardware the printer has.
#pragma once

#include <windows.h>

#include "driver/settings/device_info.h"
#include "driver/ui/sheet_context.h"

namespace velmora {

INT_PTR CALLBACK DevicePageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// The page's rules, apart from its window.

// The options as the printer's record has them. The other options of DeviceInfo.optionFlags are none of the page's: the
// duplex unit is the lowest bit alone, unless the whole low byte says that the model can't have one.
OptionStates ReadOptionStates(const DeviceInfo& info);

// The record with these options in it; what else it holds stays.
DeviceInfo WithOptionStates(const DeviceInfo& info, const OptionStates& states);

// Name of the printer's picture in the module with the pictures.
const WCHAR* PrinterPicture(const OptionStates& states);

}  // namespace velmora
