#include <oleauto.h>

#include "platform/com/results.h"
#include "platform/kernel/text.h"

namespace host {

HRESULT GiveText(std::u16string_view text, VARIANT* out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    VariantInit(out);
    const HRESULT result = GiveText(text, &out->bstrVal);
    if (result == S_OK) {
        out->vt = VT_BSTR;
    }
    return result;
}

HRESULT GiveNoText(VARIANT* out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    VariantInit(out);
    out->vt = VT_NULL;
    return S_FALSE;
}

std::optional<std::u16string> TextOf(const VARIANT& value) {
    switch (value.vt) {
        case VT_BSTR:
            return std::u16string(TextOf(value.bstrVal));
        case VT_I4:
            return ToWide(std::to_string(value.lVal));
        case VT_UI4:
            return ToWide(std::to_string(value.ulVal));
        case VT_I2:
        case VT_BOOL:  // true is -1
            return ToWide(std::to_string(value.iVal));
        default:
            return std::nullopt;
    }
}

}  // namespace host

extern "C" {

void WINAPI VariantInit(VARIANTARG* value) {
    *value = VARIANT{};
}

HRESULT WINAPI VariantClear(VARIANTARG* value) {
    switch (value->vt) {
        case VT_EMPTY:
        case VT_NULL:
        case VT_I2:
        case VT_I4:
        case VT_BOOL:
        case VT_UI4:
            break;
        case VT_BSTR:
            SysFreeString(value->bstrVal);
            break;
        case VT_DISPATCH:
        case VT_UNKNOWN:
            if (value->punkVal != nullptr) {
                value->punkVal->Release();
            }
            break;
        default:
            return DISP_E_BADVARTYPE;
    }
    VariantInit(value);
    return S_OK;
}

}  // extern "C"
