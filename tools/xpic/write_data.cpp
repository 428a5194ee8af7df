// Bytes that sources bring along: patterns, fonts and bitmaps.
#include <algorithm>

#include "tools/xpic/byte_text.h"
#include "tools/xpic/pattern_generator.h"
#include "tools/xpic/source_writer.h"

namespace velmora {
namespace {

constexpr size_t kLongestHex = 64;         // bytes; Base64 is shorter
constexpr size_t kLargestInSource = 1024;  // bytes; larger data goes into a file of its own where there may be one

// What the job and printer languages consist of: printable characters, line and page ends, tabulators and escapes.
bool IsText(std::span<const std::byte> bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](std::byte byte) {
        const auto c = static_cast<char>(byte);
        return (c >= ' ' && c <= '~') || std::string_view("\r\n\f\t\x1B").find(c) != std::string_view::npos;
    });
}

}  // namespace

Json WriteBytes(SourceWriter& writer, std::span<const std::byte> bytes, const std::string& fileName) {
    if (!writer.style.fileStem.empty() && bytes.size() > kLargestInSource) {
        writer.files.push_back({writer.style.fileStem + "-" + fileName, Bytes(bytes.begin(), bytes.end())});
        return {{"file", writer.files.back().name}};
    }
    if (IsText(bytes)) {
        return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    if (bytes.size() <= kLongestHex) {
        return {{"hex", EncodeHex(bytes)}};
    }
    return {{"base64", EncodeBase64(bytes)}};
}

void WritePatterns(SourceWriter& writer) {
    size_t count = 0;
    for (const PatternSource& pattern : writer.model.patterns) {
        Json& record = writer.root["patterns"][pattern.name];
        ++count;
        if (const Word* shape = FindPatternShape(static_cast<size_t>(pattern.size), pattern.block)) {
            record["shape"] = shape->name;
        } else {
            record["block"] = WriteBytes(writer, pattern.block, "pattern-" + std::to_string(count) + ".bin");
        }
        record["size"] = pattern.size;
    }
}

void WriteFonts(SourceWriter& writer) {
    size_t count = 0;
    for (const Bytes& font : writer.model.fonts) {
        writer.root["fonts"].push_back(WriteBytes(writer, font, "font-" + std::to_string(++count) + ".bin"));
    }
}

void WriteImages(SourceWriter& writer) {
    size_t count = 0;
    for (const Bytes& image : writer.model.images) {
        writer.root["images"].push_back(WriteBytes(writer, image, "image-" + std::to_string(++count) + ".bmp"));
    }
}

}  // namespace velmora
