#include "tools/xpic/text_encoding.h"

#include <iconv.h>

#include <stdexcept>

namespace velmora {

TextEncoder::~TextEncoder() {
    for (auto& [encoding, converter] : converters_) {
        iconv_close(converter);
    }
}

std::optional<std::string> TextEncoder::Encode(std::string_view utf8, const char* encoding) {
    auto found = converters_.find(encoding);
    if (found == converters_.end()) {
        const iconv_t opened = iconv_open(encoding, "UTF-8");
        if (opened == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error(std::string("this system has no code page ") + encoding);
        }
        found = converters_.emplace(encoding, opened).first;
    }
    iconv(found->second, nullptr, nullptr, nullptr, nullptr);
    // No code page here takes more bytes for a character than UTF-8 does.
    std::string encoded(utf8.size(), '\0');
    char* input = const_cast<char*>(utf8.data());
    size_t inputLeft = utf8.size();
    char* output = encoded.data();
    size_t outputLeft = encoded.size();
    // A positive result counts characters that were replaced by something like them.
    if (iconv(found->second, &input, &inputLeft, &output, &outputLeft) != 0) {
        return std::nullopt;
    }
    encoded.resize(encoded.size() - outputLeft);
    return encoded;
}

}  // namespace velmora
