// Globally unique ids (guiddef.h).
#pragma once

#include <windef.h>

struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
static_assert(sizeof(GUID) == 16);

using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
using LPGUID = GUID*;

inline int IsEqualGUID(REFGUID a, REFGUID b) {
    return memcmp(&a, &b, sizeof(GUID)) == 0;
}
inline int IsEqualIID(REFIID a, REFIID b) {
    return IsEqualGUID(a, b);
}
inline int IsEqualCLSID(REFCLSID a, REFCLSID b) {
    return IsEqualGUID(a, b);
}
inline bool operator==(REFGUID a, REFGUID b) {
    return IsEqualGUID(a, b) != 0;
}
