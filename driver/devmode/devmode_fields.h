// The fields of the device mode as data: where each stands, how wide it is, what it means, its value in a new device
// mode and what it may hold. The template of new device modes is made of this table, and dumps and documentation read
// it.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "driver/devmode/private_devmode.h"

namespace velmora {

enum class FieldKind : uint8_t {
    kUnsigned,
    kSigned,
    kWideText,  // NUL-terminated UTF-16
    kAnsiText,  // NUL-terminated, ANSI code page
    kBytes,
};

// A value of a field and what it stands for.
struct ValueName {
    int64_t value;
    const char* name;
};

// Values from `low` to `high`.
struct ValueRange {
    int64_t low;
    int64_t high;
};

// Ranges from their bounds and from single values, as the table of fields names them.
template <int64_t... bounds>
consteval auto MakeRanges() {
    static_assert(sizeof...(bounds) % 2 == 0);
    constexpr size_t kCount = sizeof...(bounds) / 2;
    const int64_t list[] = {bounds...};
    std::array<ValueRange, kCount> ranges = {};
    for (size_t i = 0; i < kCount; ++i) {
        ranges[i] = {list[2 * i], list[2 * i + 1]};
    }
    return ranges;
}
template <int64_t... bounds>
inline constexpr auto kRangesOf = MakeRanges<bounds...>();
template <int64_t... values>
inline constexpr std::array<ValueRange, sizeof...(values)> kValues = {ValueRange{values, values}...};

struct FieldDescriptor {
    const char* name;
    uint16_t offset;  // from the start of its part, public or private
    uint16_t width;   // bytes of one element; of the whole text for texts, of the whole area for bytes
    FieldKind kind;
    uint16_t count;                        // elements
    uint16_t stride;                       // bytes from one element to the next
    const char* meaning;                   // what it is, with its unit
    int64_t defaultValue;                  // every element's number in a new device mode, before the model is looked at
    const char* defaultText;               // the same for texts; null: empty
    const char* defaultNote;               // null, or how a model or the builder changes the default
    std::span<const ValueRange> accepted;  // the valid values; empty: see validNote
    const char* validNote;  // null, or what is valid beyond that: what depends on the model or other fields
    bool isInDots;          // counts device dots of the chosen resolution
    std::span<const ValueName> names;

    // False for a number that is none of the accepted ones; what isn't plainly told by them isn't judged.
    constexpr bool Accepts(int64_t number) const {
        for (const ValueRange& range : accepted) {
            if (number >= range.low && number <= range.high) {
                return true;
            }
        }
        return accepted.empty();
    }

    // The table below is built by these.
    constexpr FieldDescriptor Text(const char* text) const {
        FieldDescriptor field = *this;
        field.defaultText = text;
        return field;
    }
    constexpr FieldDescriptor Default(const char* note) const {
        FieldDescriptor field = *this;
        field.defaultNote = note;
        return field;
    }
    // Pairs of lowest and highest.
    template <int64_t... bounds>
    constexpr FieldDescriptor Ranges() const {
        FieldDescriptor field = *this;
        field.accepted = kRangesOf<bounds...>;
        return field;
    }
    template <int64_t low, int64_t high>
    constexpr FieldDescriptor Range() const {
        return Ranges<low, high>();
    }
    template <int64_t... values>
    constexpr FieldDescriptor Only() const {
        FieldDescriptor field = *this;
        field.accepted = kValues<values...>;
        return field;
    }
    constexpr FieldDescriptor InDots() const {
        FieldDescriptor field = *this;
        field.isInDots = true;
        return field;
    }
    constexpr FieldDescriptor Valid(const char* note) const {
        FieldDescriptor field = *this;
        field.validNote = note;
        return field;
    }
    constexpr FieldDescriptor Names(std::span<const ValueName> list) const {
        FieldDescriptor field = *this;
        field.names = list;
        return field;
    }
};

// A field's descriptor from its declared type: numbers, texts (char and WCHAR arrays) and arrays of either.
template <class Declared>
constexpr FieldDescriptor DescribeField(const char* name, size_t offset, const char* meaning, int64_t defaultValue) {
    using Element = std::remove_extent_t<Declared>;
    FieldDescriptor field = {};
    field.name = name;
    field.offset = static_cast<uint16_t>(offset);
    field.meaning = meaning;
    field.defaultValue = defaultValue;
    if constexpr (std::is_array_v<Element>) {
        field = DescribeField<Element>(name, offset, meaning, defaultValue);
        field.count = static_cast<uint16_t>(std::extent_v<Declared>);
        return field;
    } else if constexpr (std::is_same_v<Element, WCHAR> || std::is_same_v<Element, char>) {
        field.kind = std::is_same_v<Element, char> ? FieldKind::kAnsiText : FieldKind::kWideText;
        field.width = static_cast<uint16_t>(sizeof(Declared));
        field.count = 1;
    } else {
        field.kind = std::is_signed_v<Element> ? FieldKind::kSigned : FieldKind::kUnsigned;
        field.width = static_cast<uint16_t>(sizeof(Element));
        field.count = std::is_array_v<Declared> ? static_cast<uint16_t>(std::extent_v<Declared>) : 1;
    }
    field.stride = field.width;
    return field;
}

// The fields of DEVMODEW that the driver uses or keeps at 0, and those of PrivateDevMode, each in the order of their
// offsets.
std::span<const FieldDescriptor> PublicFields();
std::span<const FieldDescriptor> PrivateFields();

// The number that element `index` of a numeric field holds in `part`, the start of the field's part. `index` is below
// count.
int64_t ReadFieldNumber(const FieldDescriptor& field, const void* part, size_t index);

// Stores a number, narrowed to the field's width.
void WriteFieldNumber(const FieldDescriptor& field, void* part, size_t index, int64_t value);

// Fills a device mode with the table's defaults and 0 elsewhere.
void WriteDevModeTemplate(VelmoraDevMode* devMode);

}  // namespace velmora
