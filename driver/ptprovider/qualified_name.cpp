#include "driver/ptprovider/qualified_name.h"

#include <cstring>

namespace velmora {

HRESULT JoinName(const WCHAR* prefix, size_t prefixLength, const WCHAR* name, size_t nameLength, OwnedBstr* text) {
    *text = OwnedBstr::OfLength(prefixLength + 1 + nameLength);
    if (!*text) {
        return E_OUTOFMEMORY;
    }
    WCHAR* place = text->Get();
    std::memcpy(place, prefix, prefixLength * sizeof(WCHAR));
    place[prefixLength] = TEXT(':');
    std::memcpy(place + prefixLength + 1, name, nameLength * sizeof(WCHAR));
    return S_OK;
}

const WCHAR* LocalPart(const WCHAR* written) {
    const WCHAR* colon = written;
    while (*colon != 0 && *colon != TEXT(':')) {
        ++colon;
    }
    return *colon != 0 ? colon + 1 : written;
}

}  // namespace velmora
