#include "driver/install/renderer_data.h"

#include <algorithm>
#include <cstring>

#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/device_info.h"
#include "driver/settings/font_substitutions.h"

namespace velmora {
namespace {

constexpr int16_t kLastStandardPaper = 256;
constexpr size_t kPaperNameCapacity = 15;
constexpr size_t kMediumNameCapacity = 64;

// What values are made from.
struct ValueSource {
    HANDLE printer;
    HANDLE descriptionFile;
    const DeviceModel& model;
    DeviceInfo info;  // what is installed
};

bool IsAny(const DeviceModel&) {
    return true;
}
bool HasMemoryTable(const DeviceModel& model) {
    return model.memoryTable != nullptr;
}
bool HasFonts(const DeviceModel& model) {
    return model.fontCount > 0;
}
bool HasMargins(const DeviceModel& model) {
    return model.marginTable != nullptr;
}
bool IsPcl(const DeviceModel& model) {
    return model.pdlType == kPdlPcl6 || model.pdlType == kPdlPcl5;
}
bool IsPcl6(const DeviceModel& model) {
    return model.pdlType == kPdlPcl6;
}
bool IsColorModel(const DeviceModel& model) {
    return model.colorCapability != kColorNone;
}
bool HasMedia(const DeviceModel& model) {
    return CountRecords(model.mediaTable) > 0;
}

bool MakeDeviceInfo(const ValueSource& source, ValueContent* content) {
    return content->Append(&source.info, sizeof(source.info));
}

bool MakeMemory(const ValueSource& source, ValueContent* content) {
    const DeviceModel& model = source.model;
    int megabytes = LookupMemorySize(model, model.memoryKeyBase + model.memoryKeyStep);
    if ((source.info.optionFlags & kExtraInstalled) != 0) {
        megabytes += model.extraMemory;
    }
    return content->Append(&megabytes, sizeof(DWORD));
}

bool MakeFontSubs(const ValueSource& source, ValueContent* content) {
    const DWORD length = BuildFontSubstitutionTable(source.printer, source.model, nullptr, 0, true);
    auto* const table = reinterpret_cast<WCHAR*>(content->Extend(length * sizeof(WCHAR)));
    return table && BuildFontSubstitutionTable(source.printer, source.model, table, length, true) > 0;
}

bool MakeMargins(const ValueSource& source, ValueContent* content) {
    const MarginRecord* const table = source.model.marginTable;
    return content->Append(table, (CountRecords(table) + 1) * sizeof(MarginRecord));
}

bool MakePaperSizes(const ValueSource& source, ValueContent* content) {
    bool isComplete = true;
    for (const PaperRecord& paper : RecordList(source.model.paperTable)) {
        if (paper.paperId > kLastStandardPaper) {
            const int16_t entry[] = {paper.paperId, paper.width, paper.length};
            isComplete = isComplete && content->Append(entry, sizeof(entry));
        }
    }
    return isComplete;
}

bool MakeStandardPapers(const ValueSource& source, ValueContent* content) {
    bool isComplete = true;
    for (const PaperRecord& paper : RecordList(source.model.paperTable)) {
        if (paper.pclSizeCode >= 0) {
            const int16_t entry[] = {paper.paperId, paper.pclSizeCode};
            isComplete = isComplete && content->Append(entry, sizeof(entry));
        }
    }
    return isComplete;
}

template <size_t kCapacity>
bool AppendName(const ValueSource& source, uint16_t reference, ValueContent* content) {
    char name[kCapacity];
    ReadName(source.descriptionFile, static_cast<int16_t>(reference), name, ARRAYSIZE(name));
    return content->Append(name, TextLength(name) + 1);
}

bool MakePaperNames(const ValueSource& source, ValueContent* content) {
    bool isComplete = true;
    for (const PaperRecord& paper : RecordList(source.model.paperTable)) {
        if (paper.rendererNameRef != 0) {
            const int16_t paperId = paper.paperId;
            isComplete = isComplete && content->Append(&paperId, sizeof(paperId)) &&
                         AppendName<kPaperNameCapacity>(source, paper.rendererNameRef, content);
        }
    }
    return isComplete;
}

// One zero byte stands for no commands.
bool MakeColorData(const ValueSource& source, ValueContent* content) {
    const size_t size = ReadBlob(source.descriptionFile, nullptr, 0);
    const auto blob = HeapOwner<BYTE>::Allocate(size > 0 ? size : 1);
    return blob && content->Append(blob.Get(), std::max<size_t>(ReadBlob(source.descriptionFile, blob.Get(), size), 1));
}

bool MakeMediaTypes(const ValueSource& source, ValueContent* content) {
    bool isComplete = true;
    for (const MediaRecord& medium : RecordList(source.model.mediaTable)) {
        isComplete = isComplete &&
                     AppendName<kMediumNameCapacity>(source, static_cast<uint16_t>(medium.rendererNameRef), content);
    }
    return isComplete && content->Extend(1);
}

// A value of the printer's data. `make` is false where its content could not be made; the value is then left as it is,
// as it is where there is no content.
struct PrinterValue {
    const WCHAR* name;
    DWORD type;
    bool (*isFor)(const DeviceModel& model);
    bool (*make)(const ValueSource& source, ValueContent* content);
};

// In the order of writing.
constexpr PrinterValue kPrinterValues[] = {
    {kDeviceInfoValue, REG_BINARY, IsAny, MakeDeviceInfo},
    {kMemoryValue, REG_DWORD, HasMemoryTable, MakeMemory},
    {kFontSubsValue, REG_MULTI_SZ, HasFonts, MakeFontSubs},
    {TEXT("Margin"), REG_BINARY, HasMargins, MakeMargins},
    {kPaperSizesValue, REG_BINARY, IsAny, MakePaperSizes},
    {TEXT("StdPapers"), REG_BINARY, IsPcl, MakeStandardPapers},
    {TEXT("PaperNames"), REG_BINARY, IsPcl6, MakePaperNames},
    {TEXT("ColorData"), REG_BINARY, IsColorModel, MakeColorData},
    {TEXT("MediaTypes"), REG_BINARY, HasMedia, MakeMediaTypes},
};

}  // namespace

void InitializePrinterData(HANDLE printer, HANDLE descriptionFile, const DeviceModel& model) {
    const ValueSource source = {printer, descriptionFile, model, DefaultDeviceInfo(printer, &model)};
    for (const PrinterValue& value : kPrinterValues) {
        ValueContent content;
        if (value.isFor(model) && value.make(source, &content) && content.Size() > 0) {
            WritePrinterValue(printer, value.name, value.type, content.Bytes(), content.Size());
        }
    }
}

bool ValueContent::Append(const void* bytes, size_t count) {
    if (count == 0) {
        return true;
    }
    BYTE* const place = Extend(count);
    if (place) {
        memcpy(place, bytes, count);
    }
    return place != nullptr;
}

BYTE* ValueContent::Extend(size_t count) {
    if (count > capacity_ - size_) {
        constexpr size_t kFirstCapacity = 256;
        const size_t capacity = std::max({kFirstCapacity, 2 * capacity_, size_ + count});
        auto grown = HeapOwner<BYTE>::Allocate(capacity);
        if (!grown) {
            return nullptr;
        }
        if (size_ > 0) {
            memcpy(grown.Get(), bytes_.Get(), size_);
        }
        bytes_ = static_cast<HeapOwner<BYTE>&&>(grown);
        capacity_ = capacity;
    }
    BYTE* const place = bytes_.Get() + size_;
    size_ += count;
    return place;
}

}  // namespace velmora
