// The driver's own paper sizes as forms of the print server.
#pragma once

#include <windows.h>

#include "driver/devdesc/device_model.h"

namespace velmora {

// Makes a printer form of a paper, in place of any form of its name. Width and length are in micrometres; the area that
// can be printed on is the paper less its margins in portrait use. A paper without a name has no form.
void ReplacePrinterForm(HANDLE printer, const DeviceModel* model, int paperId, const WCHAR* name, LONG width,
                        LONG length);

// Makes forms of the model's papers that aren't standard ones, named in the user's language.
void AddDriverForms(HANDLE printer, HANDLE descriptionFile, const DeviceModel& model);

}  // namespace velmora
