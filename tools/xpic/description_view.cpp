#include "tools/xpic/description_view.h"

#include <algorithm>

namespace velmora {

DescriptionView::DescriptionView(std::span<const std::byte> file) : file_(file) {
    if (const auto header = At<DescriptionFileHeader>(0)) {
        header_ = *header;
    }
    sections_ = {header_.deviceBlockOffset, header_.languageTableOffset, header_.stringIndexOffset,
                 header_.stringPoolOffset,  header_.textIndexOffset,     header_.textPoolOffset,
                 header_.fontIndexOffset,   header_.fontPoolOffset,      header_.imageIndexOffset,
                 header_.imagePoolOffset,   header_.patternIndexOffset,  header_.patternPoolOffset,
                 header_.nameIndexOffset,   header_.namePoolOffset};
    if (header_.blobSize != 0) {
        sections_.push_back(header_.blobOffset);
    }
    std::sort(sections_.begin(), sections_.end());
}

uint64_t DescriptionView::EndOfSection(uint32_t start) const {
    const auto next = std::upper_bound(sections_.begin(), sections_.end(), start);
    return next != sections_.end() ? std::min<uint64_t>(*next, file_.size()) : file_.size();
}

std::optional<std::span<const std::byte>> DescriptionView::BytesAt(uint64_t position, uint64_t size) const {
    if (position > file_.size() || size > file_.size() - position) {
        return std::nullopt;
    }
    return file_.subspan(position, size);
}

PoolText DescriptionView::String(uint16_t base, uint16_t reference, size_t limit) const {
    return TextOf(header_.stringIndexOffset, uint64_t{base} + reference, header_.stringPoolOffset, file_.size(), limit);
}

PoolText DescriptionView::Name(uint16_t reference, size_t limit) const {
    return Fixed(header_.nameIndexOffset, reference, header_.namePoolOffset, file_.size(), limit);
}

PoolText DescriptionView::JobText(uint16_t reference, size_t limit) const {
    return Fixed(header_.textIndexOffset, reference, header_.textPoolOffset, header_.fontPoolOffset, limit);
}

PoolText DescriptionView::Fixed(uint32_t index, uint16_t reference, uint64_t pool, uint64_t poolEnd,
                                size_t limit) const {
    if (reference == 0) {
        return {};
    }
    if (reference > INT16_MAX) {  // readers take it for a negative one
        return {{}, FindingCode("reference-without-entry").kind};
    }
    return TextOf(index, reference, pool, poolEnd, limit);
}

PoolText DescriptionView::TextOf(uint32_t index, uint64_t entry, uint64_t pool, uint64_t poolEnd, size_t limit) const {
    const auto offset = Entry<uint16_t>(index, entry);
    if (!offset) {
        return {{}, FindingCode("reference-without-entry").kind};
    }
    const uint64_t position = pool + *offset;
    const uint64_t end = std::min<uint64_t>(poolEnd, file_.size());
    return TextIn(position < end ? file_.subspan(position, end - position) : std::span<const std::byte>(), limit);
}

PoolText TextIn(std::span<const std::byte> bytes, size_t limit) {
    const size_t readable = limit < bytes.size() ? limit + 1 : bytes.size();
    const auto* first = reinterpret_cast<const char*>(bytes.data());
    const void* end = readable != 0 ? std::memchr(first, 0, readable) : nullptr;
    if (end != nullptr) {
        return {std::string_view(first, static_cast<size_t>(static_cast<const char*>(end) - first)), nullptr};
    }
    return {{}, readable > limit ? FindingCode("text-too-long").kind : FindingCode("text-not-ended").kind};
}

}  // namespace velmora
