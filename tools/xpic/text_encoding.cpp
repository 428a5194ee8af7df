#include "tools/xpic/text_encoding.h"

#include <iconv.h>

#include <stdexcept>

namespace velmora {
namespace {

constexpr const char* kUtf8 = "UTF-8";

}  // namespace

TextEncoder::~TextEncoder() {
    for (auto& [encoding, converter] : converters_) {
        iconv_close(converter);
    }
}

std::optional<std::string> TextEncoder::Encode(std::string_view utf8, const char* encoding) {
    return Convert(utf8, kUtf8, encoding);
}

std::optional<std::string> TextEncoder::Decode(std::string_view bytes, const char* encoding) {
    std::optional<std::string> text = Convert(bytes, encoding, kUtf8);
    return text && Encode(*text, encoding) == bytes ? text : std::nullopt;
}

std::optional<std::string> TextEncoder::Convert(std::string_view text, const char* from, const char* to) {
    auto found = converters_.find({from, to});
    if (found == converters_.end()) {
        const iconv_t opened = iconv_open(to, from);
        if (opened == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error(std::string("this system has no code page ") + (to == kUtf8 ? from : to));
        }
        found = converters_.emplace(std::pair(from, to), opened).first;
    }
    iconv(found->second, nullptr, nullptr, nullptr, nullptr);
    // A byte of a code page is at most 3 of UTF-8, and no code page takes more bytes for a character than UTF-8 does.
    std::string converted(3 * text.size(), '\0');
    char* input = const_cast<char*>(text.data());
    size_t inputLeft = text.size();
    char* output = converted.data();
    size_t outputLeft = converted.size();
    // A positive result counts characters that were replaced by something like them. The second call writes what the
    // converter held back: a letter that might have been followed by an accent.
    if (iconv(found->second, &input, &inputLeft, &output, &outputLeft) != 0 ||
        iconv(found->second, nullptr, nullptr, &output, &outputLeft) != 0) {
        return std::nullopt;
    }
    converted.resize(converted.size() - outputLeft);
    return converted;
}

}  // namespace velmora
