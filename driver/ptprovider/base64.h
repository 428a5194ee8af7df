// Base64 (RFC 4648, section 4), without line breaks.
#pragma once

#include <windows.h>

#include <cstddef>

namespace velmora {

// 8-bit characters that `length` bytes become, padding included.
constexpr size_t Base64Size(size_t length) {
    return (length / 3 + (length % 3 != 0 ? 1 : 0)) * 4;
}

// Encodes `length` bytes into `output`, which has room for `*capacity` characters and gets no terminator. `*capacity`
// becomes the number of characters written. False, and `*capacity` 0, where either buffer is null, there is nothing to
// encode, or the room is less than Base64Size; false where `capacity` is null.
bool Base64Encode(const BYTE* bytes, size_t length, char* output, size_t* capacity);

}  // namespace velmora
