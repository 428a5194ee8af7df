// What a description file carries beside its tables: fonts, patterns, bitmaps and the command blob.
#include <map>

#include "tools/xpic/block_builder.h"
#include "tools/xpic/description_reader.h"
#include "tools/xpic/source_document.h"

namespace velmora {
namespace {

Bytes Copy(std::span<const std::byte> bytes) {
    return Bytes(bytes.begin(), bytes.end());
}

// The bitmap file at a position, if there is a whole one.
std::optional<std::span<const std::byte>> BitmapAt(const DescriptionView& view, uint64_t position) {
    constexpr size_t kFileHeaderSize = 14;  // BITMAPFILEHEADER (wingdi.h): "BM", then the u32 size of the whole file
    const auto header = view.BytesAt(position, kFileHeaderSize);
    if (!header || std::memcmp(header->data(), "BM", 2) != 0) {
        return std::nullopt;
    }
    uint32_t size = 0;
    std::memcpy(&size, header->data() + 2, sizeof size);
    return size >= kFileHeaderSize ? view.BytesAt(position, size) : std::nullopt;
}

}  // namespace

void DescriptionReader::ReadFonts() {
    CheckRange("$.fonts", record_.fontCount, 0, INT16_MAX);
    const DescriptionFileHeader& header = view_.Header();
    for (int i = 0; i < record_.fontCount; ++i) {
        const std::string path = ElementPath("$.fonts", static_cast<size_t>(i));
        const auto start = view_.Entry<uint32_t>(header.fontIndexOffset, static_cast<uint64_t>(i));
        const auto end = view_.Entry<uint32_t>(header.fontIndexOffset, static_cast<uint64_t>(i) + 1);
        if (!start || !end) {
            Report("font-outside", path, "the font index has no entries for it");
            break;
        }
        if (*end < *start) {
            Report("fonts-not-ascending", path,
                   "it begins at " + std::to_string(*start) + " and ends at " + std::to_string(*end));
            break;
        }
        const auto bytes = view_.BytesAt(uint64_t{header.fontPoolOffset} + *start, *end - *start);
        if (!bytes) {
            Report("font-outside", path, "it ends behind the file's end");
            break;
        }
        model_.fonts.push_back(Copy(*bytes));
    }
    model_.device.fontCount = static_cast<int16_t>(model_.fonts.size());

    const std::optional<size_t> array = Table(offsetof(DeviceModel, fontGroups), "$.fonts");
    if (model_.fonts.empty() || !array) {
        return;
    }
    const std::vector<uint16_t> groups = FontGroups(model_.fonts);
    const size_t size = groups.size() * sizeof(uint16_t);
    if (*array + size > block_.size()) {
        Report("font-groups-outside", "$.fonts",
               "the device block has no room for " + std::to_string(groups.size()) + " font groups");
        return;
    }
    std::memcpy(block_.data() + *array, groups.data(), size);
}

std::string DescriptionReader::BlockText(size_t offset, const std::string& path, size_t limit) {
    const PoolText text = TextIn(std::span<const std::byte>(block_).subspan(std::min(offset, block_.size())), limit);
    return FixedText(text, path, limit);
}

void DescriptionReader::ReadFontNames() {
    const auto read = [&](size_t slot, const std::string& path, std::string* name) {
        if (const std::optional<size_t> offset = Table(slot, path)) {
            const size_t before = findings_.size();
            *name = BlockText(*offset, path, TextLimit::kFontFace);
            if (name->empty() && findings_.size() == before) {
                Report("text-empty", path, "the name is empty");
            }
        }
    };
    read(offsetof(DeviceModel, defaultFontA), "$.primaryFont", &model_.primaryFont);
    read(offsetof(DeviceModel, defaultFontB), "$.secondaryFont", &model_.secondaryFont);

    std::optional<size_t> offset = Table(offsetof(DeviceModel, defaultFontSubs), "$.fontSubstitutions");
    while (offset) {
        const std::string path = ElementPath("$.fontSubstitutions", model_.fontSubstitutions.size());
        const size_t before = findings_.size();
        FontSubstitution pair;
        pair.face = BlockText(*offset, path + ".face", TextLimit::kSubstitution);
        if (pair.face.empty()) {
            return;  // the end, or a fault that was told
        }
        *offset += pair.face.size() + 1;
        pair.printerFont = BlockText(*offset, path + ".printerFont", TextLimit::kSubstitution);
        *offset += pair.printerFont.size() + 1;
        if (pair.printerFont.empty() && findings_.size() == before) {
            Report("text-empty", path + ".printerFont", "the name is empty");
        }
        if (findings_.size() != before) {
            return;
        }
        model_.fontSubstitutions.push_back(std::move(pair));
    }
}

void DescriptionReader::ReadResolutions() {
    const auto records = RecordsOf<ResolutionRecord>(offsetof(DeviceModel, resolutionTable), "$.resolutions");
    // Patterns are numbered in the order of the file's numbers.
    std::map<std::pair<int16_t, int16_t>, size_t> patterns;  // by number and size: the position in the model
    for (const ResolutionRecord& record : records) {
        if (record.patternSize != 0) {
            patterns.emplace(std::pair(+record.patternIndex, +record.patternSize), 0);
        }
    }
    std::map<std::pair<int16_t, int16_t>, std::string> faults;
    for (auto& [key, position] : patterns) {
        const auto [index, size] = key;
        const bool isSize = size > 0 && std::find(std::begin(kPatternSizes), std::end(kPatternSizes),
                                                  static_cast<size_t>(size)) != std::end(kPatternSizes);
        const auto offset = index >= 0
                                ? view_.Entry<uint32_t>(view_.Header().patternIndexOffset, static_cast<uint64_t>(index))
                                : std::nullopt;
        const auto block = isSize && offset ? view_.BytesAt(uint64_t{view_.Header().patternPoolOffset} + *offset,
                                                            PatternBlockSize(static_cast<size_t>(size)))
                                            : std::nullopt;
        if (!block) {
            faults[key] = "pattern " + std::to_string(index) + " of size " + std::to_string(size) +
                          (isSize ? " isn't in the file" : ": sizes are 8, 16 and 32");
            continue;
        }
        position = model_.patterns.size();
        model_.patterns.push_back({{}, size, Copy(*block)});
    }
    for (size_t i = 0; i < records.size(); ++i) {
        const ResolutionRecord& record = records[i];
        const std::string path = ElementPath("$.resolutions", i);
        ResolutionSource resolution;
        resolution.resolutionId = record.resolutionId;
        resolution.jobText = JobText(record.jobTextRef, path + ".jobText", TextLimit::kJobText);
        resolution.label = Localized(record.nameRef, path + ".label", TextLimit::kLabel);
        resolution.xDpi = record.xDpi;
        resolution.yDpi = record.yDpi;
        CheckRange(path + ".dpi", record.xDpi, 1, INT16_MAX);
        CheckRange(path + ".verticalDpi", record.yDpi, 1, INT16_MAX);
        CheckRange(path + ".resolutionId", record.resolutionId, 1, INT16_MAX);
        if (record.patternSize != 0) {
            const std::pair<int16_t, int16_t> key(record.patternIndex, record.patternSize);
            if (const auto fault = faults.find(key); fault != faults.end()) {
                Report("pattern-outside", path + ".pattern", fault->second);
            } else {
                resolution.pattern = patterns[key];
            }
        }
        resolution.keyword = Keyword(record.keywordRef, path);
        std::memcpy(resolution.ticketValues.data(), record.ticketValues, sizeof record.ticketValues);
        model_.resolutions.push_back(std::move(resolution));
    }
}

void DescriptionReader::ReadImages() {
    const DescriptionFileHeader& header = view_.Header();
    // Their number isn't stored. An index that ends where the pool begins has as many entries as it has room for.
    const uint64_t end = view_.EndOfSection(header.imageIndexOffset);
    const bool isWhole = end == header.imagePoolOffset;
    // Entries may share a bitmap, but an index full of them would multiply the file.
    const size_t mostBytes = 4 * view_.FileSize();
    size_t bytes = 0;
    for (size_t i = 0;; ++i) {
        const auto offset = view_.Entry<uint32_t>(header.imageIndexOffset, i);
        if (!offset) {
            return;
        }
        const auto image = BitmapAt(view_, uint64_t{header.imagePoolOffset} + *offset);
        if (!image || bytes + image->size() > mostBytes) {
            if (isWhole || image) {
                Report("image-outside", ElementPath("$.images", i),
                       image ? "the bitmaps overlap, with more bytes than four times the file's"
                             : "no whole bitmap file at " + std::to_string(*offset) + " of the image pool");
            }
            return;
        }
        bytes += image->size();
        model_.images.push_back(Copy(*image));
    }
}

void DescriptionReader::ReadBlob() {
    const DescriptionFileHeader& header = view_.Header();
    if (header.blobSize == 0) {
        return;
    }
    if (header.blobSize > UINT16_MAX) {
        Report("command-blob-size", "$.commands", "the command blob has " + std::to_string(header.blobSize) + " bytes");
    }
    if (const auto blob = view_.BytesAt(header.blobOffset, header.blobSize)) {
        model_.blob = Copy(*blob);
    } else {
        Report("section-outside", "$.commands",
               "the command blob has " + std::to_string(header.blobSize) + " bytes at " +
                   std::to_string(header.blobOffset) + " of a file of " + std::to_string(view_.FileSize()));
    }
}

}  // namespace velmora
