#include "driver/settings/font_list.h"

#include "driver/base/text.h"

namespace velmora {
namespace {

// What an enumeration fills. The first pass has no room and only counts.
struct Enumeration {
    FontList* list;
    size_t room;    // fonts that the list can hold
    size_t length;  // characters of the faces so far
    size_t fontsFound = 0;
};

uint32_t TypeCode(DWORD fontType) {
    if ((fontType & TRUETYPE_FONTTYPE) != 0) {
        return kTrueTypeFont;
    }
    return (fontType & DEVICE_FONTTYPE) != 0 ? kDeviceFont : 0;
}

int CALLBACK AddFont(const LOGFONTW* font, const TEXTMETRICW*, DWORD fontType, LPARAM parameter) {
    auto* const enumeration = reinterpret_cast<Enumeration*>(parameter);
    FontList* const list = enumeration->list;
    const uint32_t type = TypeCode(fontType);
    if (type == 0) {
        return 1;
    }
    ++enumeration->fontsFound;
    WCHAR face[LF_FACESIZE] = {};
    CopyText<WCHAR>(face, ARRAYSIZE(face), font->lfFaceName);
    // A second pass may find more than the first.
    if (list->count == enumeration->room || face[0] == 0 || HasFont(*list, face)) {
        return 1;
    }
    enumeration->length += CopyText<WCHAR>(list->faces.Get() + enumeration->length, ARRAYSIZE(face), face) + 1;
    list->types.Get()[list->count] = type;
    list->charSets.Get()[list->count] = font->lfCharSet;
    ++list->count;
    return 1;
}

size_t Enumerate(HDC context, FontList* list, size_t room) {
    Enumeration enumeration = {list, room, 0};
    EnumFontFamiliesW(context, nullptr, AddFont, reinterpret_cast<LPARAM>(&enumeration));
    return enumeration.fontsFound;
}

}  // namespace

FontList BuildFontList(HDC context) {
    FontList list;
    const size_t room = context ? Enumerate(context, &list, 0) : 0;
    if (room == 0) {
        return list;
    }
    list.faces = HeapOwner<WCHAR>::Allocate(room * LF_FACESIZE);
    list.types = HeapOwner<uint32_t>::Allocate(room);
    list.charSets = HeapOwner<uint16_t>::Allocate(room);
    if (!list.faces || !list.types || !list.charSets) {
        return {};
    }
    Enumerate(context, &list, room);
    return list;
}

size_t FindFont(const FontList& list, const WCHAR* face) {
    const WCHAR* listed = list.faces.Get();
    for (size_t i = 0; i < list.count; ++i, listed += TextLength(listed) + 1) {
        if (TextsEqual(listed, face)) {
            return i;
        }
    }
    return list.count;
}

bool HasFont(const FontList& list, const WCHAR* face) {
    return FindFont(list, face) != list.count;
}

}  // namespace velmora
