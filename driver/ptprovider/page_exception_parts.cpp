#include "driver/ptprovider/page_exception_parts.h"

#include "driver/entry/printer_access.h"

namespace velmora {

const WatermarkRecord* StoredWatermarks::Find(const ExceptionRecord& exception) {
    if (exception.kind != kWatermarkException) {
        return nullptr;
    }
    if (!isRead_) {
        isRead_ = true;
        const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer_);
        if (info && info->pPrinterName) {
            list_ = LoadWatermarkList(info->pPrinterName);
        }
    }
    return exception.watermark < list_.count ? list_.records.Get() + exception.watermark : nullptr;
}

}  // namespace velmora
