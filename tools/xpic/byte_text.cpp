#include "tools/xpic/byte_text.h"

namespace velmora {
namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

}  // namespace

std::optional<Bytes> DecodeHex(std::string_view text) {
    Bytes bytes;
    int high = -1;
    for (char c : text) {
        if (IsBlank(c)) {
            continue;
        }
        const size_t digit = std::string_view("0123456789abcdefABCDEF").find(c);
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        const int value = static_cast<int>(digit < 16 ? digit : digit - 6);
        if (high < 0) {
            high = value;
        } else {
            bytes.push_back(static_cast<std::byte>(high * 16 + value));
            high = -1;
        }
    }
    return high < 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<Bytes> DecodeBase64(std::string_view text) {
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Bytes bytes;
    uint32_t bits = 0;
    size_t digits = 0;
    size_t padding = 0;
    for (char c : text) {
        if (IsBlank(c)) {
            continue;
        }
        if (c == '=') {
            ++padding;
            continue;
        }
        const size_t value = kAlphabet.find(c);
        if (value == std::string_view::npos || padding != 0) {
            return std::nullopt;
        }
        bits = bits << 6 | static_cast<uint32_t>(value);
        if (++digits % 4 != 1) {
            bytes.push_back(static_cast<std::byte>(bits >> (4 - digits % 4) * 2 % 8 & 0xFF));
        }
    }
    if (digits % 4 == 1 || padding > 2 || (digits + padding) % 4 != 0) {
        return std::nullopt;
    }
    return bytes;
}

}  // namespace velmora
