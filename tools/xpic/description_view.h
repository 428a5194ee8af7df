// A description file's header, sections and texts as its readers find them. The file isn't trusted: every read is
// bounded by what is there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "driver/devdesc/description_format.h"
#include "tools/xpic/finding_kinds.h"

namespace velmora {

// A text of a pool, or why there is none.
struct PoolText {
    std::string_view text;  // bytes of the file, without the terminator
    const FindingKind* fault = nullptr;
};

class DescriptionView {
  public:
    // Doesn't copy the file. One that is shorter than a header has a header of zeros.
    explicit DescriptionView(std::span<const std::byte> file);

    const DescriptionFileHeader& Header() const { return header_; }
    size_t FileSize() const { return file_.size(); }

    // Where the next section begins, or the file's end.
    uint64_t EndOfSection(uint32_t start) const;

    // What lies at a position of the file; nothing where it doesn't lie inside.
    std::optional<std::span<const std::byte>> BytesAt(uint64_t position, uint64_t size) const;
    template <class Value>
    std::optional<Value> At(uint64_t position) const {
        const auto bytes = BytesAt(position, sizeof(Value));
        if (!bytes) {
            return std::nullopt;
        }
        Value value;
        std::memcpy(&value, bytes->data(), sizeof value);
        return value;
    }
    // Entry `index` of an index section; nothing where the section has none.
    template <class Value>
    std::optional<Value> Entry(uint32_t section, uint64_t index) const {
        const uint64_t position = section + index * sizeof(Value);
        return position + sizeof(Value) <= EndOfSection(section) ? At<Value>(position) : std::nullopt;
    }

    // Texts by their references, which are 0 for none; longer than `limit` bytes is a fault. `base` is a language's.
    PoolText String(uint16_t base, uint16_t reference, size_t limit) const;
    PoolText Name(uint16_t reference, size_t limit) const;
    PoolText JobText(uint16_t reference, size_t limit) const;

  private:
    PoolText Fixed(uint32_t index, uint16_t reference, uint64_t pool, uint64_t poolEnd, size_t limit) const;
    PoolText TextOf(uint32_t index, uint64_t entry, uint64_t pool, uint64_t poolEnd, size_t limit) const;

    std::span<const std::byte> file_;
    DescriptionFileHeader header_{};
    std::vector<uint32_t> sections_;  // where they begin, ascending
};

// The text that begins with the bytes; they may go on behind its terminator.
PoolText TextIn(std::span<const std::byte> bytes, size_t limit);

}  // namespace velmora
