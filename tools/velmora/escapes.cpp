#include "tools/velmora/escapes.h"

#include <cstdio>

#include "platform/kernel/text.h"

namespace velmora {
namespace {

constexpr bool IsHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

std::string EscapeOf(char16_t c) {
    switch (c) {
        case u'"':
            return "\\\"";
        case u'\\':
            return "\\\\";
        case u'\r':
            return "\\r";
        case u'\n':
            return "\\n";
        case u'\t':
            return "\\t";
        default:
            break;
    }
    char text[8];
    snprintf(text, sizeof(text), "\\u%04X", static_cast<unsigned>(c));
    return text;
}

std::string Escape(std::u16string_view text, bool isQuoted) {
    std::string escaped;
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (IsHighSurrogate(c) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            escaped += host::ToUtf8(text.substr(i, 2));
            ++i;
        } else if (c < 0x20 || (c == u'"' && isQuoted) || c == u'\\' || (c >= 0x7F && c < 0xA0) || IsHighSurrogate(c) ||
                   IsLowSurrogate(c)) {
            escaped += EscapeOf(c);
        } else {
            escaped += host::ToUtf8(text.substr(i, 1));
        }
    }
    return escaped;
}

}  // namespace

std::string Escaped(std::u16string_view text) {
    return Escape(text, false);
}

std::string Quoted(std::u16string_view text) {
    return "\"" + Escape(text, true) + "\"";
}

std::u16string FromAnsi(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.empty()) {
        return {};
    }
    const int length = static_cast<int>(text.size());
    std::u16string wide(text.size(), 0);
    const int written = MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), length);
    wide.resize(static_cast<size_t>(written));
    return wide;
}

std::u16string_view UntilNul(std::u16string_view text) {
    return text.substr(0, text.find(u'\0'));
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
