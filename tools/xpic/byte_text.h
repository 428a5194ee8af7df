// Bytes that are written as text.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/xpic/model_source.h"

namespace velmora {

// The text's own bytes.
Bytes BytesOf(std::string_view text);

// Blanks and line ends may stand anywhere. Nothing when the text is anything else than pairs of hexadecimal digits.
std::optional<Bytes> DecodeHex(std::string_view text);

// Standard Base64 (RFC 4648) with its padding; blanks and line ends may stand anywhere. Nothing for other text.
std::optional<Bytes> DecodeBase64(std::string_view text);

// Capitals, without blanks.
std::string EncodeHex(std::span<const std::byte> bytes);

std::string EncodeBase64(std::span<const std::byte> bytes);

}  // namespace velmora
