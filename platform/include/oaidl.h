// Values of any type (oaidl.h).
#pragma once

#include <unknwn.h>

// Calls by name aren't there.
struct IDispatch : IUnknown {};

// A text or an interface in it is owned by whoever has the VARIANT; one that is passed by value stays its caller's.
struct VARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        ULONG ulVal;
        SHORT iVal;
        VARIANT_BOOL boolVal;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        PVOID byref;
        PVOID reserved[2];
    };
};
using VARIANTARG = VARIANT;
using LPVARIANT = VARIANT*;
static_assert(sizeof(VARIANT) == 24 && offsetof(VARIANT, bstrVal) == 8);
