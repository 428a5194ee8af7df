// Reading a printer's description file (".XPI"). Nothing in the file is trusted: what points outside it, or ends early,
// reads as null, as the empty text or as an absent table, never beyond what was read. Each operation reads the header
// anew; nothing is cached between calls. The caller owns what is returned.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "driver/devdesc/description_format.h"
#include "driver/entry/printer_access.h"

namespace velmora {

inline constexpr size_t kTextCapacity = 1024;      // bytes that ReadText fills, the terminator included
inline constexpr size_t kShortTextCapacity = 128;  // bytes that ReadShortText fills, the terminator included

// The full path of the printer's description file in `path` (MAX_PATH characters); false and the empty string where it
// has none.
bool FindDescriptionFile(const DriverFiles& files, WCHAR* path);
bool FindDescriptionFile(HANDLE printer, WCHAR* path);

// The printer's description file, or the one at a path, opened for reading; the invalid handle where there is none.
OwnedFile OpenDescriptionFile(HANDLE printer);
OwnedFile OpenDescriptionFileAt(const WCHAR* path);

// Empty where the file is shorter than a header.
HeapOwner<DescriptionFileHeader> ReadFileHeader(HANDLE file);

// The device block with its pointer slots resolved, one block of the process heap. Slots that lead outside the block or
// into its record are null, every list ends inside the allocation, and fontCount isn't negative. Empty for the invalid
// handle, a file that ends before its block does, or no memory.
HeapOwner<DeviceModel> LoadDeviceModel(HANDLE file);

// The string with this reference (0: empty; negative: a string of `module`, which may be null) in a language, given by
// its primary identifier (LANG_, winnt.h). `destination` has `capacity` characters and is always terminated.
void ReadLocalizedString(HANDLE file, WORD language, HMODULE module, int16_t reference, WCHAR* destination,
                         size_t capacity);

// The name with this reference, converted from the ANSI code page or as its bytes are; 0 and negative references are
// empty.
void ReadName(HANDLE file, int16_t reference, WCHAR* destination, size_t capacity);
void ReadName(HANDLE file, int16_t reference, char* destination, size_t capacity);

// The text with this reference, cut to kTextCapacity or kShortTextCapacity bytes; 0 and negative references are empty.
void ReadText(HANDLE file, int16_t reference, char* destination);
void ReadShortText(HANDLE file, int16_t reference, char* destination);

// The same for who reads many. The file has to stay open as long as this.
class TextPool {
  public:
    explicit TextPool(HANDLE file);

    // Reads all texts at once, so that each needs no read of its own; does nothing where there is no memory for them.
    void Load();

    void ReadText(int16_t reference, char* destination) const { Read(reference, destination, kTextCapacity); }
    void ReadShortText(int16_t reference, char* destination) const { Read(reference, destination, kShortTextCapacity); }

  private:
    bool FindOffset(int16_t reference, uint16_t* offset) const;
    void Read(int16_t reference, char* destination, size_t capacity) const;

    HANDLE file_;
    uint32_t indexOffset_ = 0;
    uint32_t poolOffset_ = 0;
    size_t size_ = 0;        // bytes of the pool that texts can reach
    HeapOwner<char> bytes_;  // of the index, where it stands before the pool, and of the pool; empty: not loaded
    size_t indexSize_ = 0;   // bytes of the index there
};

// The localised strings of one language and the names, all read at once. What there is no memory for is read singly,
// so the file has to stay open as long as this.
class StringPool {
  public:
    // `language` is a primary identifier; `module`, which may be null, has the strings of negative references.
    StringPool(HANDLE file, WORD language, HMODULE module);
    // Of names alone, for who reads no strings.
    explicit StringPool(HANDLE file) : StringPool(file, LANG_NEUTRAL, nullptr, false) {}

    // As the functions of the same names.
    void ReadLocalizedString(int16_t reference, WCHAR* destination, size_t capacity) const;
    void ReadName(int16_t reference, WCHAR* destination, size_t capacity) const;

  private:
    StringPool(HANDLE file, WORD language, HMODULE module, bool hasStrings);

    // An index and the texts that it leads to.
    struct Texts {
        HeapOwner<uint16_t> offsets;
        size_t count = 0;
        HeapOwner<char> bytes;
        size_t size = 0;

        void Load(HANDLE file, uint64_t fileSize, uint64_t indexPosition, uint64_t poolPosition);
        bool IsLoaded() const { return offsets && bytes; }
        void Read(int16_t reference, WCHAR* destination, size_t capacity) const;
    };

    HANDLE file_;
    WORD language_;
    HMODULE module_;
    Texts strings_;
    Texts names_;
};

// A whole bitmap file (BITMAPFILEHEADER, header, bits), bfSize bytes. Empty where the file ends before it does.
HeapOwner<BITMAPFILEHEADER> ReadImage(HANDLE file, uint16_t index);

// The low 16 bits of the command blob's size; 0 where there is none. With a destination, whose `capacity` bytes must
// hold the whole blob, the blob is read into it; 0 where that fails.
uint16_t ReadBlob(HANDLE file, void* destination, size_t capacity);

// The part of the command blob that 16-bit slices can reach, and in `*size` the bytes of it that the file has. Empty
// and 0 where there is none or no memory.
HeapOwner<BYTE> LoadBlob(HANDLE file, size_t* size);

// The offset of a pattern block in the pattern pool, 0 where the index has no such entry. With a destination, `count`
// bytes of the block are read into it (32*k*k bytes make it whole; the file may hold fewer).
uint32_t ReadPatternBlock(HANDLE file, int16_t index, void* destination, size_t count);

// Bytes of all font records.
uint32_t GetFontDataSize(HANDLE file, const DeviceModel& model);

// Reads up to `count` bytes of the font records, which lie one behind the other, from byte `position` of the first one
// on. Returns the bytes read, 0 behind the last record.
size_t ReadFontData(HANDLE file, const DeviceModel& model, uint32_t position, void* destination, size_t count);

}  // namespace velmora
