// A printer's model with its texts, as the driver reads them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "driver/devdesc/device_model.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/device_info.h"

namespace velmora {

class PrinterModel {
  public:
    // Throws a CommandError for an unknown printer and for one without a description that can be read.
    explicit PrinterModel(const std::string& printerName);

    HANDLE Printer() const { return printer_.Get(); }
    HANDLE File() const { return file_.Get(); }
    const DeviceModel* operator->() const { return model_.Get(); }
    const DeviceModel& operator*() const { return *model_; }
    const DeviceInfo& Options() const { return *options_; }

    // UTF-8, in the user's language where it is localised; empty where there is none. References have 16 bits.
    std::string Localized(int reference) const;
    std::string Name(int reference) const;
    // As it stands in the file; quoted and escaped, empty for no text.
    std::string Text(int reference) const;

    // Display names, empty where the model has no such record.
    std::string PaperName(int64_t paperId) const;
    std::string PaperOrCustomSizeName(int64_t paperId) const;  // "custom size 2" for one of the user's
    std::string TrayName(int64_t binId) const;
    std::string MediumName(int64_t index) const;  // 0-based
    std::string ColorModeName(const ColorModeRecord& mode) const;

  private:
    OwnedPrinter printer_;
    OwnedFile file_;
    HeapOwner<DeviceModel> model_;
    HeapOwner<DeviceInfo> options_;
    OwnedModule texts_;
};

// Empty where the printer has none that can be read.
std::optional<PrinterModel> ModelOf(const std::string& printerName);

}  // namespace velmora
