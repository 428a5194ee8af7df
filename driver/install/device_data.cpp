#include "driver/install/device_data.h"

#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/settings/printer_data_file.h"

namespace velmora {
namespace {

constexpr size_t kFontChunk = 65536;

// Writes behind each other from a place of a file on.
class Appender {
  public:
    Appender(HANDLE file, DWORD position) : file_(file), position_(position) {}

    // False where not all of it could be written; what follows comes behind what was.
    bool Write(const void* bytes, size_t count) {
        LARGE_INTEGER place;
        place.QuadPart = static_cast<LONGLONG>(position_);
        DWORD written = 0;
        if (!SetFilePointerEx(file_, place, nullptr, FILE_BEGIN) ||
            !WriteFile(file_, bytes, static_cast<DWORD>(count), &written, nullptr)) {
            return false;
        }
        position_ += written;
        return written == count;
    }

  private:
    HANDLE file_;
    uint64_t position_;
};

// Patterns that are greater than the whole description file are none: their size is a fault of the file.
void AppendPatterns(HANDLE descriptionFile, const DeviceModel& model, Appender* output) {
    LARGE_INTEGER fileSize;
    if (!GetFileSizeEx(descriptionFile, &fileSize)) {
        return;
    }
    for (const ResolutionRecord& resolution : RecordList(model.resolutionTable)) {
        if (resolution.patternSize == 0) {
            continue;
        }
        const size_t size = PatternBlockSize(resolution);
        if (size > static_cast<uint64_t>(fileSize.QuadPart)) {
            return;
        }
        const auto block = HeapOwner<char>::Allocate(size);
        if (!block) {
            return;
        }
        ReadPatternBlock(descriptionFile, resolution.patternIndex, block.Get(), size);
        if (!output->Write(block.Get(), size)) {
            return;
        }
    }
}

void AppendFonts(HANDLE descriptionFile, const DeviceModel& model, Appender* output) {
    const auto chunk = HeapOwner<char>::Allocate(kFontChunk);
    if (!chunk) {
        return;
    }
    for (uint32_t position = 0;;) {
        const size_t read = ReadFontData(descriptionFile, model, position, chunk.Get(), kFontChunk);
        if (read == 0 || !output->Write(chunk.Get(), read)) {
            return;
        }
        position += static_cast<uint32_t>(read);
    }
}

}  // namespace

void AppendDeviceData(HANDLE printer, const WCHAR* printerName, HANDLE descriptionFile, const DeviceModel& model,
                      DWORD size) {
    if (model.pdlType == kPdlImage || size == kNoPrinterDataFile) {
        return;
    }
    const DWORD needed = GetPatternDataSize(model) + GetFontDataSize(descriptionFile, model);
    if (size >= needed) {
        SetBasePdfSize(printer, size - needed);
        return;
    }
    const OwnedFile file = OpenPrinterDataFile(printerName, GENERIC_WRITE);
    if (!file) {
        return;
    }
    Appender output(file.Get(), size);
    AppendPatterns(descriptionFile, model, &output);
    AppendFonts(descriptionFile, model, &output);
}

}  // namespace velmora
