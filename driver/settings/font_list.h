// The fonts of a device context that documents can be set in.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/heap.h"

namespace velmora {

// FontList::types.
inline constexpr uint32_t kTrueTypeFont = 64018;
inline constexpr uint32_t kDeviceFont = 64062;

struct FontList {
    size_t count = 0;
    HeapOwner<WCHAR> faces;        // one terminated name behind the other; room for LF_FACESIZE characters a font
    HeapOwner<uint32_t> types;     // of font i
    HeapOwner<uint16_t> charSets;  // of font i (wingdi.h)
};

// The TrueType and device fonts of a device context, each face once, in the order of the platform's enumeration. A font
// that is both is a TrueType font. Empty without a context and without memory.
FontList BuildFontList(HDC context);

// The index of the font of exactly this face; the list's count where it has none.
size_t FindFont(const FontList& list, const WCHAR* face);

// True where the list has a font of exactly this face.
bool HasFont(const FontList& list, const WCHAR* face);

}  // namespace velmora
