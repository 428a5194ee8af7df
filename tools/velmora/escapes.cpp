#include "tools/velmora/escapes.h"

#include <cstdio>

namespace velmora {
namespace {

constexpr bool IsHighSurrogate(WCHAR c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
constexpr bool IsLowSurrogate(WCHAR c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

std::string EscapeOf(WCHAR c) {
    switch (c) {
        case TEXT('"'):
            return "\\\"";
        case TEXT('\\'):
            return "\\\\";
        case TEXT('\r'):
            return "\\r";
        case TEXT('\n'):
            return "\\n";
        case TEXT('\t'):
            return "\\t";
        default:
            break;
    }
    char text[8];
    snprintf(text, sizeof(text), "\\u%04X", static_cast<unsigned>(c));
    return text;
}

std::string Escape(std::basic_string_view<WCHAR> text, bool isQuoted) {
    std::string escaped;
    for (size_t i = 0; i < text.size(); ++i) {
        const WCHAR c = text[i];
        if (IsHighSurrogate(c) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            escaped += ToUtf8(text.substr(i, 2));
            ++i;
        } else if (c < 0x20 || (c == TEXT('"') && isQuoted) || c == TEXT('\\') || (c >= 0x7F && c < 0xA0) ||
                   IsHighSurrogate(c) || IsLowSurrogate(c)) {
            escaped += EscapeOf(c);
        } else {
            escaped += ToUtf8(text.substr(i, 1));
        }
    }
    return escaped;
}

}  // namespace

std::string Escaped(std::basic_string_view<WCHAR> text) {
    return Escape(text, false);
}

std::string Quoted(std::basic_string_view<WCHAR> text) {
    return "\"" + Escape(text, true) + "\"";
}

std::string ToUtf8(std::basic_string_view<WCHAR> text) {
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    std::string bytes(text.size() * 3, '\0');  // a character's most
    bytes.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(),
                                                         static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

std::basic_string<WCHAR> FromAnsi(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    std::basic_string<WCHAR> wide(text.size(), 0);
    const int written = MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), length);
    wide.resize(static_cast<size_t>(written));
    return wide;
}

std::basic_string_view<WCHAR> UntilNul(std::basic_string_view<WCHAR> text) {
    return text.substr(0, text.find(TEXT('\0')));
}

std::string HexBytes(std::span<const BYTE> bytes) {
    std::string text;
    for (const BYTE byte : bytes) {
        char digits[4];
        snprintf(digits, sizeof(digits), "%02X", static_cast<unsigned>(byte));
        text += text.empty() ? "" : " ";
        text += digits;
    }
    return text;
}

std::string HexNumber(uint64_t number, int digits) {
    char text[24];
    snprintf(text, sizeof(text), "0x%0*llX", digits, static_cast<unsigned long long>(number));
    return text;
}

}  // namespace velmora
