// Bytes that sources bring along: patterns, fonts, bitmaps and the command blob.
#include <algorithm>
#include <cstring>

#include "tools/xpic/model_reader.h"
#include "tools/xpic/pattern_generator.h"

namespace velmora {
namespace {

size_t ReadPatternSize(SourceContext& context, ObjectReader& object) {
    const std::optional<SourceValue> value = object.Require("size", "8, 16 or 32");
    if (!value) {
        return 0;
    }
    for (size_t size : kPatternSizes) {
        if (*value->json == size) {
            return size;
        }
    }
    context.Report(value->path, Describe(*value->json), "8, 16 or 32");
    return 0;
}

// Commands as parts of a given blob.
void ReadSlices(ModelReader& reader) {
    for (const auto& [name, value] : reader.root.Members("commands")) {
        reader.names.commands.Add(reader.context, value.path, name);
        ObjectReader object(reader.context, value);
        const auto start = static_cast<uint16_t>(object.Integer("at", {0, UINT16_MAX}, {}));
        const auto length = static_cast<uint16_t>(object.Integer("length", {0, kLongestCommand}, {}));
        if (start + length > static_cast<int>(reader.model.blob.size())) {
            reader.context.Report(value.path, "a command that ends at byte " + std::to_string(start + length),
                                  "a part of the blob's " + std::to_string(reader.model.blob.size()) + " bytes");
        }
        reader.names.commandSlices.push_back({start, length});
    }
}

}  // namespace

void ReadPatterns(ModelReader& reader) {
    for (const auto& [name, value] : reader.root.Members("patterns")) {
        reader.names.patterns.Add(reader.context, value.path, name);
        ObjectReader object(reader.context, value);
        PatternSource pattern;
        pattern.name = name;
        const size_t size = ReadPatternSize(reader.context, object);
        pattern.size = static_cast<int16_t>(size);
        if (object.Has("shape")) {
            const auto shape = static_cast<PatternShape>(object.Choice("shape", kPatternShapeWords, {}, {}));
            pattern.block = GeneratePatternBlock(shape, size);
        } else if (const auto bytes = object.Require("block", "a block, or a \"shape\" to make one")) {
            pattern.block = ReadBytes(reader.context, *bytes).value_or(Bytes{});
            if (size != 0 && pattern.block.size() != PatternBlockSize(size)) {
                reader.context.Report(
                    bytes->path, "a block of " + std::to_string(pattern.block.size()) + " bytes",
                    std::to_string(PatternBlockSize(size)) + " bytes for a pattern of size " + std::to_string(size));
            }
        }
        reader.model.patterns.push_back(std::move(pattern));
    }
}

void ReadFonts(ModelReader& reader) {
    for (const SourceValue& element : reader.root.Elements("fonts")) {
        reader.model.fonts.push_back(ReadBytes(reader.context, element).value_or(Bytes{}));
    }
    if (reader.model.fonts.size() > INT16_MAX) {
        reader.context.Report(reader.root.PathOf("fonts"), std::to_string(reader.model.fonts.size()) + " fonts",
                              "at most " + std::to_string(INT16_MAX));
        return;
    }
    reader.model.device.fontCount = static_cast<int16_t>(reader.model.fonts.size());
}

void ReadImages(ModelReader& reader) {
    constexpr size_t kFileHeaderSize = 14;  // BITMAPFILEHEADER (wingdi.h): "BM", then the u32 size of the whole file
    for (const SourceValue& element : reader.root.Elements("images")) {
        std::optional<Bytes> image = ReadBytes(reader.context, element);
        if (!image) {
            continue;
        }
        uint32_t size = 0;
        if (image->size() >= kFileHeaderSize) {
            std::memcpy(&size, image->data() + 2, sizeof size);
        }
        if (size != image->size() || std::memcmp(image->data(), "BM", 2) != 0) {
            reader.context.Report(element.path, std::to_string(image->size()) + " bytes that are no bitmap file",
                                  "a whole bitmap file whose header gives its size");
        }
        reader.model.images.push_back(std::move(*image));
    }
}

void ReadCommands(ModelReader& reader) {
    Bytes& blob = reader.model.blob;
    if (const std::optional<SourceValue> whole = reader.root.Find("commandBlob")) {
        blob = ReadBytes(reader.context, *whole).value_or(Bytes{});
        if (blob.size() > UINT16_MAX) {
            reader.context.Report(whole->path, "a blob of " + std::to_string(blob.size()) + " bytes",
                                  "at most " + std::to_string(UINT16_MAX) + " bytes");
        }
        ReadSlices(reader);
        return;
    }
    for (const auto& [name, value] : reader.root.Members("commands")) {
        reader.names.commands.Add(reader.context, value.path, name);
        const Bytes command = ReadBytes(reader.context, value).value_or(Bytes{});
        if (command.size() > kLongestCommand) {
            reader.context.Report(value.path, "a command of " + std::to_string(command.size()) + " bytes",
                                  "at most " + std::to_string(kLongestCommand) + " bytes");
        }
        if (blob.size() > UINT16_MAX) {
            reader.context.Report(value.path, std::to_string(blob.size()) + " bytes of commands before it",
                                  "at most " + std::to_string(UINT16_MAX) + " bytes");
        }
        reader.names.commandSlices.push_back(
            {static_cast<uint16_t>(blob.size()), static_cast<uint16_t>(command.size())});
        blob.insert(blob.end(), command.begin(), command.end());
    }
}

}  // namespace velmora
