// The values of a printer's data that a new printer begins with: what is installed on it, and the model's tables that
// the renderer reads.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/base/heap.h"
#include "driver/devdesc/device_model.h"

namespace velmora {

// Binary: for each of the driver's own papers and custom sizes its id, width and length, 16 bits each, 0.1 mm.
inline constexpr const WCHAR* kPaperSizesValue = TEXT("PaperSizes");

// Writes all of them that the model has something for.
void InitializePrinterData(HANDLE printer, HANDLE descriptionFile, const DeviceModel& model);

// A value's bytes as they are put together.
class ValueContent {
  public:
    // False where memory runs out; the content is then as it was. No bytes may come as null.
    bool Append(const void* bytes, size_t count);
    // Appends `count` zero bytes and gives their place; null where memory runs out.
    BYTE* Extend(size_t count);

    const BYTE* Bytes() const { return bytes_.Get(); }
    size_t Size() const { return size_; }

  private:
    HeapOwner<BYTE> bytes_;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

}  // namespace velmora
