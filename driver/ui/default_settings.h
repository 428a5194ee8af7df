// What restoring all pages' defaults at once writes into the device mode itself: pages that aren't open have no
// controls that could show them. It isn't always what a new device mode has.
#pragma once

#include "driver/devmode/private_devmode.h"
#include "driver/ui/sheet_context.h"

namespace velmora {

// The custom size and the details of the Paper page's layout.
void ResetLayoutSettings(PrivateDevMode* devMode);

// Everything that the Color page and its dialogs edit. Names are texts of the language module.
void ResetColorSettings(SheetContext* context);

// What the output options page edits.
void ResetOutputSettings(PrivateDevMode* devMode);

}  // namespace velmora
