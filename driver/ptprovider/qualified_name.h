// Names of the Print Schema as documents write them, "prefix:name", and what they stand for.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/base/com.h"

namespace velmora {

// A name that was read.
struct QualifiedName {
    OwnedBstr uri;  // empty: a name of no namespace
    OwnedBstr localName;

    // Names differ early, namespaces late.
    bool Is(const WCHAR* otherUri, const WCHAR* otherName) const { return localName.Is(otherName) && uri.Is(otherUri); }
    void Clear() {
        uri.Reset();
        localName.Reset();
    }
};

// Joins the first characters of two texts with a colon between them. E_OUTOFMEMORY, and nothing given, without memory.
HRESULT JoinName(const WCHAR* prefix, size_t prefixLength, const WCHAR* name, size_t nameLength, OwnedBstr* text);

// Where a written name's local part begins: behind the first colon where there is one.
const WCHAR* LocalPart(const WCHAR* written);

}  // namespace velmora
