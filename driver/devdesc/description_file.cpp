#include "driver/devdesc/description_file.h"

#include <cstring>
#include <utility>

#include "driver/base/text.h"

namespace velmora {
namespace {

// Zeros behind a loaded block: a list that doesn't end in the block ends here, however its last record lies.
constexpr size_t kBlockTail = 2 * sizeof(ConstraintRecord);

// Font records are loaded by groups of at most this many bytes.
constexpr uint64_t kMostGroupBytes = 32767;

// Reads up to `size` bytes at a position of the file; returns the bytes that arrived.
size_t ReadAt(HANDLE file, uint64_t position, void* destination, size_t size) {
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(position);
    DWORD arrived = 0;
    if (!SetFilePointerEx(file, place, nullptr, FILE_BEGIN) ||
        !ReadFile(file, destination, static_cast<DWORD>(size), &arrived, nullptr)) {
        return 0;
    }
    return arrived;
}

template <class Value>
bool ReadValueAt(HANDLE file, uint64_t position, Value* value) {
    return ReadAt(file, position, value, sizeof(Value)) == sizeof(Value);
}

// Entry `index` of a table of Values; false where the file ends before it.
template <class Value>
bool ReadEntry(HANDLE file, uint32_t tableOffset, uint64_t index, Value* value) {
    return ReadValueAt(file, tableOffset + index * sizeof(Value), value);
}

// Terminates the text of which `count` bytes were read into a buffer of `capacity`, without half a character at its
// end.
void EndText(char* text, size_t count, size_t capacity) {
    const size_t length = TextLength(text, count < capacity ? count : capacity - 1);
    text[length < capacity - 1 ? length : WholeCharacters(text, length)] = 0;
}

void ReadWideText(HANDLE file, uint64_t position, WCHAR* destination, size_t capacity) {
    const auto bytes = HeapOwner<char>::Allocate(capacity);
    if (bytes) {
        WidenText(destination, capacity, bytes.Get(), ReadAt(file, position, bytes.Get(), capacity));
    }
}

// The position of a name; false where the reference has none.
bool FindName(HANDLE file, int16_t reference, uint64_t* position) {
    if (reference <= 0) {
        return false;
    }
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    uint16_t offset = 0;
    if (!header || !ReadEntry(file, header->nameIndexOffset, static_cast<uint64_t>(reference), &offset)) {
        return false;
    }
    *position = uint64_t{header->namePoolOffset} + offset;
    return true;
}

// Where all font records lie, one behind the other.
struct FontPool {
    uint64_t position;
    uint32_t size;  // bytes; 0 where there are none
};

FontPool FindFontPool(HANDLE file, const DeviceModel& model) {
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    uint32_t first = 0;
    uint32_t last = 0;
    if (!header || model.fontCount <= 0 || !ReadEntry(file, header->fontIndexOffset, 0, &first) ||
        !ReadEntry(file, header->fontIndexOffset, static_cast<uint64_t>(model.fontCount), &last)) {
        return {};
    }
    return {uint64_t{header->fontPoolOffset} + first, last - first};
}

// True where a slot's offset leads to a table: into the block of `length` bytes, but not into the record at its
// beginning. Its slots become addresses, which differ each time; a list over them would be another one each time.
bool LeadsToTable(uint32_t offset, size_t length) {
    return offset >= sizeof(DeviceModel) && offset < length;
}

// Fills the block's array of font group starts, whose slot still holds its offset.
void FillFontGroups(HANDLE file, const DescriptionFileHeader& header, char* block, size_t length) {
    const auto* model = reinterpret_cast<const DeviceModel*>(block);
    uint32_t arrayOffset = 0;
    memcpy(&arrayOffset, block + offsetof(DeviceModel, fontGroups), sizeof(arrayOffset));
    if (!LeadsToTable(arrayOffset, length) || model->fontCount == 0) {
        return;
    }
    const auto count = static_cast<size_t>(model->fontCount);
    const auto offsets = HeapOwner<uint32_t>::Allocate(count + 1);
    const size_t bytes = (count + 1) * sizeof(uint32_t);
    if (!offsets || ReadAt(file, header.fontIndexOffset, offsets.Get(), bytes) != bytes) {
        return;
    }
    const size_t room = (length - arrayOffset) / sizeof(uint16_t);
    size_t groups = 0;
    const auto storeGroup = [&](size_t firstRecord) {
        if (groups < room) {
            const auto start = static_cast<uint16_t>(firstRecord + 1);
            memcpy(block + arrayOffset + groups * sizeof(start), &start, sizeof(start));
            ++groups;
        }
    };
    size_t groupFirst = 0;
    uint64_t groupBytes = 0;
    for (size_t i = 0; i < count; ++i) {
        const uint32_t recordBytes = offsets.Get()[i + 1] - offsets.Get()[i];
        if (i > groupFirst && groupBytes + recordBytes > kMostGroupBytes) {
            storeGroup(groupFirst);
            groupFirst = i;
            groupBytes = 0;
        }
        groupBytes += recordBytes;
    }
    storeGroup(groupFirst);
}

// Turns each slot's offset into the address of its table, or null where it leads to none.
void ResolvePointerSlots(char* block, size_t length) {
    for (const size_t slot : kPointerSlots) {
        uint32_t offset = 0;
        memcpy(&offset, block + slot, sizeof(offset));
        const char* target = LeadsToTable(offset, length) ? block + offset : nullptr;
        memcpy(block + slot, &target, sizeof(target));
    }
}

}  // namespace

bool FindDescriptionFile(const DriverFiles& files, WCHAR* path) {
    return files.Find(TEXT("XPI"), TEXT(".XPI"), path);
}

bool FindDescriptionFile(HANDLE printer, WCHAR* path) {
    return FindDescriptionFile(DriverFiles(printer), path);
}

OwnedFile OpenDescriptionFile(HANDLE printer) {
    WCHAR path[MAX_PATH];
    return FindDescriptionFile(printer, path) ? OpenDescriptionFileAt(path) : OwnedFile();
}

OwnedFile OpenDescriptionFileAt(const WCHAR* path) {
    return OwnedFile(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

HeapOwner<DescriptionFileHeader> ReadFileHeader(HANDLE file) {
    auto header = HeapOwner<DescriptionFileHeader>::Allocate();
    if (header && !ReadValueAt(file, 0, header.Get())) {
        header.Reset(nullptr);
    }
    return header;
}

HeapOwner<DeviceModel> LoadDeviceModel(HANDLE file) {
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    if (!header) {
        return {};
    }
    const auto length = static_cast<uint16_t>(header->languageTableOffset - header->deviceBlockOffset);
    if (length == 0) {
        return {};
    }
    const size_t held = length > sizeof(DeviceModel) ? length : sizeof(DeviceModel);
    auto model = HeapOwner<DeviceModel>::AllocateSize(held + kBlockTail);
    auto* block = reinterpret_cast<char*>(model.Get());
    if (!model || ReadAt(file, header->deviceBlockOffset, block, length) != length) {
        return {};
    }
    if (model->fontCount < 0) {
        model->fontCount = 0;
    }
    FillFontGroups(file, *header, block, length);
    ResolvePointerSlots(block, length);
    return model;
}

void ReadLocalizedString(HANDLE file, WORD language, HMODULE module, int16_t reference, WCHAR* destination,
                         size_t capacity) {
    if (capacity == 0) {
        return;
    }
    destination[0] = 0;
    if (reference < 0) {
        if (module) {
            LoadStringW(module, static_cast<UINT>(-reference), destination, static_cast<int>(capacity));
        }
        return;
    }
    if (reference == 0) {
        return;
    }
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    uint16_t base = 0;
    uint16_t offset = 0;
    if (!header || !ReadEntry(file, header->languageTableOffset, language, &base) ||
        !ReadEntry(file, header->stringIndexOffset, uint64_t{base} + static_cast<uint64_t>(reference), &offset)) {
        return;
    }
    ReadWideText(file, uint64_t{header->stringPoolOffset} + offset, destination, capacity);
}

void ReadName(HANDLE file, int16_t reference, WCHAR* destination, size_t capacity) {
    uint64_t position = 0;
    if (capacity > 0) {
        destination[0] = 0;
        if (FindName(file, reference, &position)) {
            ReadWideText(file, position, destination, capacity);
        }
    }
}

void ReadName(HANDLE file, int16_t reference, char* destination, size_t capacity) {
    uint64_t position = 0;
    if (capacity > 0) {
        destination[0] = 0;
        if (FindName(file, reference, &position)) {
            EndText(destination, ReadAt(file, position, destination, capacity), capacity);
        }
    }
}

TextPool::TextPool(HANDLE file) : file_(file) {
    DescriptionFileHeader header;
    if (!ReadValueAt(file, 0, &header) || header.textPoolOffset >= header.fontPoolOffset) {
        return;
    }
    indexOffset_ = header.textIndexOffset;
    poolOffset_ = header.textPoolOffset;
    // Offsets in the pool have 16 bits.
    constexpr size_t kMostBytes = size_t{UINT16_MAX} + kTextCapacity;
    const size_t size = header.fontPoolOffset - header.textPoolOffset;
    size_ = size < kMostBytes ? size : kMostBytes;
}

void TextPool::Load() {
    // One read for both where no more than an index can be between them.
    constexpr size_t kMostIndexBytes = (size_t{INT16_MAX} + 1) * sizeof(uint16_t);
    const bool isBefore = indexOffset_ < poolOffset_ && poolOffset_ - indexOffset_ <= kMostIndexBytes;
    const size_t indexSize = isBefore ? poolOffset_ - indexOffset_ : 0;
    bytes_ = HeapOwner<char>::Allocate(indexSize + size_);
    if (bytes_) {
        const size_t arrived = ReadAt(file_, poolOffset_ - indexSize, bytes_.Get(), indexSize + size_);
        indexSize_ = arrived < indexSize ? arrived : indexSize;
        size_ = arrived - indexSize_;
    }
}

bool TextPool::FindOffset(int16_t reference, uint16_t* offset) const {
    const size_t place = static_cast<size_t>(reference) * sizeof(*offset);
    if (place + sizeof(*offset) > indexSize_) {
        return ReadEntry(file_, indexOffset_, static_cast<uint64_t>(reference), offset);
    }
    memcpy(offset, bytes_.Get() + place, sizeof(*offset));
    return true;
}

void TextPool::Read(int16_t reference, char* destination, size_t capacity) const {
    destination[0] = 0;
    uint16_t offset = 0;
    if (reference <= 0 || size_ == 0 || !FindOffset(reference, &offset) || offset >= size_) {
        return;
    }
    const size_t count = size_ - offset < capacity ? size_ - offset : capacity;
    size_t arrived = count;
    if (bytes_) {
        memcpy(destination, bytes_.Get() + indexSize_ + offset, count);
    } else {
        arrived = ReadAt(file_, uint64_t{poolOffset_} + offset, destination, count);
    }
    EndText(destination, arrived, capacity);
}

void ReadText(HANDLE file, int16_t reference, char* destination) {
    TextPool(file).ReadText(reference, destination);
}

void ReadShortText(HANDLE file, int16_t reference, char* destination) {
    TextPool(file).ReadShortText(reference, destination);
}

StringPool::StringPool(HANDLE file, WORD language, HMODULE module) : StringPool(file, language, module, true) {}

StringPool::StringPool(HANDLE file, WORD language, HMODULE module, bool hasStrings)
    : file_(file), language_(language), module_(module) {
    DescriptionFileHeader header;
    LARGE_INTEGER fileSize;
    if (!ReadValueAt(file, 0, &header) || !GetFileSizeEx(file, &fileSize)) {
        return;
    }
    const auto size = static_cast<uint64_t>(fileSize.QuadPart);
    uint16_t base = 0;
    if (hasStrings && ReadEntry(file, header.languageTableOffset, language, &base)) {
        strings_.Load(file, size, header.stringIndexOffset + uint64_t{base} * sizeof(base), header.stringPoolOffset);
    }
    names_.Load(file, size, header.nameIndexOffset, header.namePoolOffset);
}

void StringPool::Texts::Load(HANDLE file, uint64_t fileSize, uint64_t indexPosition, uint64_t poolPosition) {
    // Bytes of the file behind a position, as far as they can be reached: by a positive reference, and by an offset.
    const auto reachable = [&](uint64_t position, size_t most) {
        const uint64_t left = position < fileSize ? fileSize - position : 0;
        return left < most ? static_cast<size_t>(left) : most;
    };
    const size_t indexBytes = reachable(indexPosition, (size_t{INT16_MAX} + 1) * sizeof(uint16_t));
    const size_t poolBytes = reachable(poolPosition, size_t{UINT16_MAX} + kTextCapacity);
    offsets = HeapOwner<uint16_t>::AllocateSize(indexBytes);
    bytes = HeapOwner<char>::Allocate(poolBytes);
    if (IsLoaded()) {
        count = ReadAt(file, indexPosition, offsets.Get(), indexBytes) / sizeof(uint16_t);
        size = ReadAt(file, poolPosition, bytes.Get(), poolBytes);
    }
}

void StringPool::Texts::Read(int16_t reference, WCHAR* destination, size_t capacity) const {
    if (capacity == 0) {
        return;
    }
    destination[0] = 0;
    if (reference <= 0 || static_cast<size_t>(reference) >= count || offsets.Get()[reference] >= size) {
        return;
    }
    const size_t offset = offsets.Get()[reference];
    WidenText(destination, capacity, bytes.Get() + offset, size - offset < capacity ? size - offset : capacity);
}

void StringPool::ReadLocalizedString(int16_t reference, WCHAR* destination, size_t capacity) const {
    if (reference > 0 && strings_.IsLoaded()) {
        strings_.Read(reference, destination, capacity);
    } else {
        velmora::ReadLocalizedString(file_, language_, module_, reference, destination, capacity);
    }
}

void StringPool::ReadName(int16_t reference, WCHAR* destination, size_t capacity) const {
    if (names_.IsLoaded()) {
        names_.Read(reference, destination, capacity);
    } else {
        velmora::ReadName(file_, reference, destination, capacity);
    }
}

HeapOwner<BITMAPFILEHEADER> ReadImage(HANDLE file, uint16_t index) {
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    uint32_t offset = 0;
    LARGE_INTEGER fileSize;
    if (!header || !ReadEntry(file, header->imageIndexOffset, index, &offset) || !GetFileSizeEx(file, &fileSize)) {
        return {};
    }
    const uint64_t position = uint64_t{header->imagePoolOffset} + offset;
    BITMAPFILEHEADER bitmap;
    // A size that the file can't hold is refused before memory of that size is asked for.
    if (!ReadValueAt(file, position, &bitmap) || bitmap.bfSize < sizeof(bitmap) ||
        bitmap.bfSize > static_cast<uint64_t>(fileSize.QuadPart) - position) {
        return {};
    }
    auto image = HeapOwner<BITMAPFILEHEADER>::AllocateSize(bitmap.bfSize);
    if (!image || ReadAt(file, position, image.Get(), bitmap.bfSize) != bitmap.bfSize) {
        return {};
    }
    return image;
}

uint16_t ReadBlob(HANDLE file, void* destination, size_t capacity) {
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    if (!header || header->blobSize == 0) {
        return 0;
    }
    if (destination &&
        (header->blobSize > capacity || ReadAt(file, header->blobOffset, destination, header->blobSize) == 0)) {
        return 0;
    }
    return static_cast<uint16_t>(header->blobSize);
}

HeapOwner<BYTE> LoadBlob(HANDLE file, size_t* size) {
    *size = 0;
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    if (!header || header->blobSize == 0) {
        return {};
    }
    constexpr size_t kMostBytes = 2 * size_t{UINT16_MAX};
    const size_t wanted = header->blobSize < kMostBytes ? header->blobSize : kMostBytes;
    auto blob = HeapOwner<BYTE>::Allocate(wanted);
    if (blob) {
        *size = ReadAt(file, header->blobOffset, blob.Get(), wanted);
    }
    return *size > 0 ? std::move(blob) : HeapOwner<BYTE>();
}

uint32_t ReadPatternBlock(HANDLE file, int16_t index, void* destination, size_t count) {
    const HeapOwner<DescriptionFileHeader> header = ReadFileHeader(file);
    uint32_t offset = 0;
    if (!header || index < 0 || !ReadEntry(file, header->patternIndexOffset, static_cast<uint64_t>(index), &offset)) {
        return 0;
    }
    if (destination && count > 0) {
        ReadAt(file, uint64_t{header->patternPoolOffset} + offset, destination, count);
    }
    return offset;
}

uint32_t GetFontDataSize(HANDLE file, const DeviceModel& model) {
    return FindFontPool(file, model).size;
}

size_t ReadFontData(HANDLE file, const DeviceModel& model, uint32_t position, void* destination, size_t count) {
    const FontPool pool = FindFontPool(file, model);
    if (position >= pool.size) {
        return 0;
    }
    const size_t left = pool.size - position;
    return ReadAt(file, pool.position + position, destination, count < left ? count : left);
}

}  // namespace velmora
