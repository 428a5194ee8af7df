// Types of COM's interfaces (wtypes.h, wtypesbase.h).
#pragma once

#include <guiddef.h>
#include <windef.h>

using OLECHAR = WCHAR;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;

// A text with its length: a 32-bit count of bytes stands before the first character, a NUL that it doesn't count behind
// the last. Null is an empty text. From SysAllocString and its fellows, to SysFreeString.
using BSTR = OLECHAR*;

using VARIANT_BOOL = int16_t;
#define VARIANT_TRUE (static_cast<VARIANT_BOOL>(-1))
#define VARIANT_FALSE (static_cast<VARIANT_BOOL>(0))

// What a VARIANT holds.
using VARTYPE = uint16_t;
enum VARENUM {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_BOOL = 11,
    VT_UNKNOWN = 13,
    VT_UI4 = 19,
};

// Where a class may run.
enum CLSCTX {
    CLSCTX_INPROC_SERVER = 0x1,
    CLSCTX_LOCAL_SERVER = 0x4,
};
