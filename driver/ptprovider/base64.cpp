#include "driver/ptprovider/base64.h"

#include <cstdint>

namespace velmora {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

bool Base64Encode(const BYTE* bytes, size_t length, char* output, size_t* capacity) {
    if (!capacity) {
        return false;
    }
    if (!bytes || !output || length == 0 || *capacity < Base64Size(length)) {
        *capacity = 0;
        return false;
    }
    char* next = output;
    for (size_t i = 0; i < length; i += 3) {
        const size_t left = length - i;
        const uint32_t group = static_cast<uint32_t>(bytes[i]) << 16 |
                               static_cast<uint32_t>(left > 1 ? bytes[i + 1] : 0) << 8 |
                               static_cast<uint32_t>(left > 2 ? bytes[i + 2] : 0);
        *next++ = kAlphabet[group >> 18];
        *next++ = kAlphabet[group >> 12 & 63];
        *next++ = left > 1 ? kAlphabet[group >> 6 & 63] : '=';
        *next++ = left > 2 ? kAlphabet[group & 63] : '=';
    }
    *capacity = static_cast<size_t>(next - output);
    return true;
}

}  // namespace velmora
