// Between the UTF-8 of sources and the 8-bit code pages that description files hold.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

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

  private:
    std::map<std::string, void*, std::less<>> converters_;  // iconv_t
};

}  // namespace velmora
