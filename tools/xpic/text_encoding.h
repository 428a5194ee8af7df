// Between the UTF-8 of sources and the 8-bit code pages that description files hold.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velmora {

// Keeps one converter a code page. Not for use from several threads at once.
class TextEncoder {
  public:
    TextEncoder() = default;
    ~TextEncoder();
    TextEncoder(const TextEncoder&) = delete;
    TextEncoder& operator=(const TextEncoder&) = delete;

    // `encoding` is an iconv name. Nothing when the code page lacks one of the characters. Throws std::runtime_error
    // when the system has no such code page.
    std::optional<std::string> Encode(std::string_view utf8, const char* encoding);
    // The text of bytes in a code page, as UTF-8. Nothing when they aren't text there, and when encoding that text
    // would give other bytes. Throws as Encode.
    std::optional<std::string> Decode(std::string_view bytes, const char* encoding);

  private:
    // Nothing for what can't be converted exactly.
    std::optional<std::string> Convert(std::string_view text, const char* from, const char* to);

    std::map<std::pair<std::string, std::string>, void*> converters_;  // iconv_t by from and to
};

}  // namespace velmora
