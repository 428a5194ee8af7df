#include "driver/install/driver_ini_settings.h"

#include "driver/base/handles.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/resource_module.h"
#include "driver/install/printer_forms.h"
#include "driver/install/renderer_data.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"

namespace velmora {
namespace {

constexpr uint32_t kMicrometresPerHundredth = 10;
constexpr uint32_t kHundredthsPerTenth = 10;
constexpr uint32_t kMostFormSize = 100000000;  // 0.01 mm; of a greater size there is no form

void StoreCustomSizes(HANDLE printer, const WCHAR* printerName, const DeviceModel* model, const WCHAR* iniFile) {
    const CustomSizeList sizes = ReadCustomSizes(iniFile);
    if (!sizes.records || sizes.count == 0) {
        return;
    }
    SaveCustomSizes(printerName, sizes.records.Get(), sizes.count);
    DWORD heldSize = 0;
    const HeapOwner<BYTE> held = ReadPrinterValue(printer, kPaperSizesValue, REG_BINARY, &heldSize);
    ValueContent papers;
    // What can't be read must not be lost.
    bool isComplete = (held || IsPrinterValueEmpty(printer, kPaperSizesValue)) && papers.Append(held.Get(), heldSize);
    for (int i = 0; i < sizes.count; ++i) {
        const CustomSizeRecord& size = sizes.records.Get()[i];
        const int paperId = kFirstCustomPaper + i;
        if (size.width <= kMostFormSize && size.length <= kMostFormSize) {
            ReplacePrinterForm(printer, model, paperId, size.name,
                               static_cast<LONG>(size.width * kMicrometresPerHundredth),
                               static_cast<LONG>(size.length * kMicrometresPerHundredth));
        }
        const uint16_t entry[] = {static_cast<uint16_t>(paperId),
                                  static_cast<uint16_t>(size.width / kHundredthsPerTenth),
                                  static_cast<uint16_t>(size.length / kHundredthsPerTenth)};
        isComplete = isComplete && papers.Append(entry, sizeof(entry));
    }
    if (isComplete) {
        WritePrinterValue(printer, kPaperSizesValue, REG_BINARY, papers.Bytes(), papers.Size());
    }
}

void StoreWatermarks(const WCHAR* printerName, HMODULE module, const WCHAR* iniFile) {
    WatermarkList watermarks = ReadWatermarkList(iniFile);
    if (!watermarks.records) {
        return;
    }
    if (watermarks.count == 0) {
        watermarks = BuildDefaultWatermarkList(module);
    }
    if (watermarks.count > 0) {
        SaveWatermarkList(printerName, watermarks.records.Get(), watermarks.count);
    }
}

}  // namespace

void SyncDriverIniSettings(HANDLE printer, const WCHAR* printerName, const DeviceModel* model) {
    WCHAR iniFile[MAX_PATH];
    if (!FindDriverIniFile(printer, iniFile)) {
        return;
    }
    const OwnedModule module = LoadResourceModule(printer, nullptr);
    StoreCustomSizes(printer, printerName, model, iniFile);
    StoreWatermarks(printerName, module.Get(), iniFile);
}

}  // namespace velmora
