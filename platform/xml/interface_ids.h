// Ids of the interfaces (msxml2.h, oaidl.h).
#pragma once

#include <guiddef.h>

namespace host {

// Those of the object model's own interfaces differ in their first part only.
constexpr IID DomInterfaceId(uint32_t firstPart) {
    return {firstPart, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
}

inline constexpr IID kIidDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr IID kIidNode = DomInterfaceId(0x2933BF80);
inline constexpr IID kIidDocument = DomInterfaceId(0x2933BF81);
inline constexpr IID kIidNodeList = DomInterfaceId(0x2933BF82);
inline constexpr IID kIidNamedNodeMap = DomInterfaceId(0x2933BF83);
inline constexpr IID kIidCharacterData = DomInterfaceId(0x2933BF84);
inline constexpr IID kIidAttribute = DomInterfaceId(0x2933BF85);
inline constexpr IID kIidElement = DomInterfaceId(0x2933BF86);
inline constexpr IID kIidText = DomInterfaceId(0x2933BF87);
inline constexpr IID kIidComment = DomInterfaceId(0x2933BF88);
inline constexpr IID kIidProcessingInstruction = DomInterfaceId(0x2933BF89);
inline constexpr IID kIidDocument2 = DomInterfaceId(0x2933BF95);
inline constexpr IID kIidParseError = {0x3EFAA426, 0x272F, 0x11D2, {0x83, 0x6F, 0x00, 0x00, 0xF8, 0x7A, 0x77, 0x82}};
inline constexpr IID kIidNamespaceManager = {
    0xC90352F6, 0x643C, 0x4FBC, {0xBB, 0x23, 0xE9, 0x96, 0xEB, 0x2D, 0x51, 0xFD}};

// The layer's own: gives the Node of an object of the layer, without a reference. Objects of anybody else don't have
// it.
inline constexpr IID kIidLayerNode = {0x5D0C1B3E, 0x9E0F, 0x4B7A, {0xA1, 0x64, 0x2C, 0x90, 0x6B, 0x37, 0xD8, 0x15}};

}  // namespace host
