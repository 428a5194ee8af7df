#include "tools/xpic/layout.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <utility>

#include "tools/xpic/byte_text.h"

namespace velmora {
namespace {

// The shortest run of bytes that is copied: a shorter one isn't shorter to write.
constexpr size_t kShortestCopy = 8;
constexpr size_t kLargestFile = UINT32_MAX;
// Given bytes stand in texts of at most so many.
constexpr size_t kGivenPerText = 48;
constexpr size_t kCrc32Digits = 8;

// CRC-32 as in ISO 3309 (polynomial 0xEDB88320, reflected).
uint32_t Crc32(const Bytes& bytes) {
    static const std::array<uint32_t, 256> kTable = [] {
        std::array<uint32_t, 256> table{};
        for (uint32_t i = 0; i < table.size(); ++i) {
            uint32_t remainder = i;
            for (int bit = 0; bit < 8; ++bit) {
                remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? 0xEDB88320u : 0u);
            }
            table[i] = remainder;
        }
        return table;
    }();
    uint32_t crc = ~0u;
    for (std::byte byte : bytes) {
        crc = (crc >> 8) ^ kTable[(crc ^ static_cast<uint32_t>(byte)) & 0xFF];
    }
    return ~crc;
}

std::string Crc32Text(uint32_t crc) {
    Bytes bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::byte>(crc >> shift & 0xFF));
    }
    return EncodeHex(bytes);
}

uint64_t WindowAt(const Bytes& bytes, size_t at) {
    uint64_t window;
    static_assert(sizeof window == kShortestCopy);
    std::memcpy(&window, bytes.data() + at, sizeof window);
    return window;
}

// How many bytes the file has from `at` on as the compiler's output has from `place` on.
size_t CommonLength(const Bytes& own, size_t place, const Bytes& file, size_t at) {
    const size_t most = place < own.size() ? std::min(own.size() - place, file.size() - at) : 0;
    size_t length = 0;
    while (length < most && own[place + length] == file[at + length]) {
        ++length;
    }
    return length;
}

LayoutPiece ReadPiece(SourceContext& context, const SourceValue& value, size_t ofSize) {
    LayoutPiece piece;
    if (value.json->is_string()) {
        const std::optional<Bytes> given = DecodeHex(value.json->get_ref<const std::string&>());
        if (!given || given->empty()) {
            context.Report(value.path, Describe(*value.json), "pairs of hexadecimal digits");
        }
        piece.given = given.value_or(Bytes{});
        return piece;
    }
    const std::vector<SourceValue> numbers = ReadElements(context, value);
    if (numbers.size() != 2) {
        if (value.json->is_array()) {
            context.Report(value.path, "an array of " + std::to_string(numbers.size()), "a start and a length");
        }
        return piece;
    }
    const auto most = static_cast<int64_t>(ofSize);
    piece.start = static_cast<size_t>(ReadInteger(context, numbers[0], {0, most - 1}).value_or(0));
    piece.length = static_cast<size_t>(
        ReadInteger(context, numbers[1], {1, most - static_cast<int64_t>(piece.start)}).value_or(0));
    return piece;
}

}  // namespace

FileLayout FindLayout(const Bytes& own, const Bytes& file) {
    std::vector<std::pair<uint64_t, size_t>> places;  // the windows of the compiler's output with their places, sorted
    for (size_t place = 0; place + kShortestCopy <= own.size(); ++place) {
        places.emplace_back(WindowAt(own, place), place);
    }
    std::sort(places.begin(), places.end());
    FileLayout layout{own.size(), Crc32(own), file.size(), {}};
    size_t at = 0;
    ptrdiff_t shift = 0;  // from a place in the file to the one that the last copy would go on with
    while (at < file.size()) {
        size_t place = static_cast<size_t>(static_cast<ptrdiff_t>(at) + shift);
        size_t length = CommonLength(own, place, file, at);
        if (length < kShortestCopy && at + kShortestCopy <= file.size()) {
            const uint64_t window = WindowAt(file, at);
            const auto found = std::lower_bound(places.begin(), places.end(), std::pair(window, size_t{0}));
            if (found != places.end() && found->first == window) {
                place = found->second;
                length = CommonLength(own, place, file, at);
            }
        }
        if (length >= kShortestCopy) {
            layout.pieces.push_back({place, length, {}});
            shift = static_cast<ptrdiff_t>(place) - static_cast<ptrdiff_t>(at);
            at += length;
            continue;
        }
        if (layout.pieces.empty() || layout.pieces.back().length != 0) {
            layout.pieces.emplace_back();
        }
        layout.pieces.back().given.push_back(file[at++]);
    }
    return layout;
}

std::optional<Bytes> ApplyLayout(const FileLayout& layout, const Bytes& own) {
    if (own.size() != layout.ofSize || Crc32(own) != layout.ofCrc32) {
        return std::nullopt;
    }
    Bytes file;
    for (const LayoutPiece& piece : layout.pieces) {
        const auto first = own.begin() + static_cast<ptrdiff_t>(piece.start);
        file.insert(file.end(), first, first + static_cast<ptrdiff_t>(piece.length));
        file.insert(file.end(), piece.given.begin(), piece.given.end());
    }
    return file;
}

Json WriteLayout(const FileLayout& layout) {
    Json pieces = Json::array();
    for (const LayoutPiece& piece : layout.pieces) {
        if (piece.length != 0) {
            pieces.push_back({piece.start, piece.length});
        }
        for (size_t at = 0; at < piece.given.size(); at += kGivenPerText) {
            pieces.push_back(
                EncodeHex(std::span(piece.given).subspan(at, std::min(kGivenPerText, piece.given.size() - at))));
        }
    }
    Json json;
    json["of"] = {{"size", layout.ofSize}, {"crc32", Crc32Text(layout.ofCrc32)}};
    json["size"] = layout.size;
    json["pieces"] = std::move(pieces);
    return json;
}

FileLayout ReadLayout(SourceContext& context, const SourceValue& value) {
    FileLayout layout;
    ObjectReader object(context, value);
    if (const std::optional<SourceValue> of = object.Require("of", "what the pieces were cut from")) {
        ObjectReader origin(context, *of);
        layout.ofSize = static_cast<size_t>(origin.Integer("size", {1, kLargestFile}, std::nullopt));
        if (const std::optional<SourceValue> crc = origin.Require("crc32", "a checksum")) {
            const std::string text = ReadString(context, *crc).value_or("");
            const std::optional<Bytes> bytes = DecodeHex(text);
            if (!bytes || bytes->size() * 2 != kCrc32Digits) {
                context.Report(crc->path, Describe(*crc->json), "eight hexadecimal digits");
            }
            for (std::byte byte : bytes.value_or(Bytes{})) {
                layout.ofCrc32 = layout.ofCrc32 << 8 | static_cast<uint32_t>(byte);
            }
        }
    }
    layout.size = static_cast<size_t>(object.Integer("size", {1, kLargestFile}, std::nullopt));
    size_t sum = 0;
    for (const SourceValue& element : object.Elements("pieces")) {
        layout.pieces.push_back(ReadPiece(context, element, layout.ofSize));
        sum += layout.pieces.back().length + layout.pieces.back().given.size();
    }
    if (sum != layout.size) {
        context.Report(object.PathOf("pieces"), "pieces of " + std::to_string(sum) + " bytes",
                       "pieces that come to the size, " + std::to_string(layout.size) + " bytes");
    }
    return layout;
}

std::string DescribeOutput(const Bytes& own) {
    return "a model of " + std::to_string(own.size()) + " bytes with the checksum " + Crc32Text(Crc32(own));
}

}  // namespace velmora
