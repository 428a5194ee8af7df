#include "tools/xpic/byte_text.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

bool IsBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

}  // namespace

Bytes BytesOf(std::string_view text) {
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    return Bytes(first, first + text.size());
}

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
        const size_t value = kBase64Digits.find(c);
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

std::string EncodeHex(std::span<const std::byte> bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (std::byte byte : bytes) {
        text += kDigits[static_cast<size_t>(byte) >> 4];
        text += kDigits[static_cast<size_t>(byte) & 0xF];
    }
    return text;
}

std::string EncodeBase64(std::span<const std::byte> bytes) {
    constexpr size_t kGroup = 3;  // bytes that four digits hold
    std::string text;
    for (size_t at = 0; at < bytes.size(); at += kGroup) {
        const size_t count = std::min(kGroup, bytes.size() - at);
        uint32_t bits = 0;
        for (size_t i = 0; i < kGroup; ++i) {
            bits = bits << 8 | (i < count ? static_cast<uint32_t>(bytes[at + i]) : 0);
        }
        for (size_t i = 0; i <= kGroup; ++i) {
            text += i <= count ? kBase64Digits[bits >> (18 - 6 * i) & 0x3F] : '=';
        }
    }
    return text;
}

}  // namespace velmora
