// Texts with their length and values of any type (oleauto.h).
#pragma once

#include <oaidl.h>

extern "C" {
// Null: no memory, or `text` is null.
BSTR WINAPI SysAllocString(const OLECHAR* text);
// `length` characters of `text`, or of what the memory holds where it is null. Null: no memory.
BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length);
void WINAPI SysFreeString(BSTR text);  // null: nothing
// In characters and in bytes, the NUL not counted. Null: 0.
UINT WINAPI SysStringLen(BSTR text);
UINT WINAPI SysStringByteLen(BSTR text);

void WINAPI VariantInit(VARIANTARG* value);
// Gives back what the value owns and makes it VT_EMPTY. DISP_E_BADVARTYPE where it isn't of a type that is.
HRESULT WINAPI VariantClear(VARIANTARG* value);
}
