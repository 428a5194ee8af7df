#include "tools/velmora/devmode_differences.h"

#include <algorithm>
#include <cstring>

#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

// The bytes of a text up to its NUL, or all of them.
size_t TextSize(const FieldDescriptor& field, const BYTE* place) {
    const size_t unit = field.kind == FieldKind::kWideText ? sizeof(WCHAR) : sizeof(char);
    constexpr BYTE kNul[sizeof(WCHAR)] = {};
    size_t size = 0;
    while (size < field.width && memcmp(place + size, kNul, unit) != 0) {
        size += unit;
    }
    return size;
}

class PartComparison {
  public:
    PartComparison(const DevModePart& part, const VelmoraDevMode& before, const VelmoraDevMode& after)
        : part_(part), before_(part.In(before)), after_(part.In(after)) {}

    std::vector<DevModeDifference> Compare() {
        std::vector<bool> isNamed(part_.size);
        for (const FieldDescriptor& field : part_.fields) {
            for (size_t i = 0; i < field.count; ++i) {
                const DevModeElement element = {&part_, &field, i};
                CompareElement(element);
                std::fill_n(isNamed.begin() + static_cast<ptrdiff_t>(element.Offset()), field.width, true);
            }
        }
        AddBytes({&part_, nullptr, 0}, 0, part_.size, [&](size_t at) { return Differs(at) && !isNamed[at]; });
        std::ranges::stable_sort(found_, {}, &DevModeDifference::offset);
        return std::move(found_);
    }

  private:
    bool Differs(size_t at) const { return before_[at] != after_[at]; }

    void CompareElement(const DevModeElement& element) {
        const FieldDescriptor& field = *element.field;
        const size_t offset = element.Offset();
        if (memcmp(before_ + offset, after_ + offset, field.width) == 0) {
            return;
        }
        size_t same = 0;  // bytes of a text that is the same on both sides
        if (IsText(field)) {
            same = TextSize(field, before_ + offset);
            if (same != TextSize(field, after_ + offset) || memcmp(before_ + offset, after_ + offset, same) != 0) {
                found_.push_back({element, true, offset, field.width});
                return;
            }
        }
        if (IsNumber(field)) {
            found_.push_back({element, true, offset, field.width});
        } else {
            AddBytes(element, offset + same, offset + field.width, [&](size_t at) { return Differs(at); });
        }
    }

    // Runs of bytes from `begin` to `end` that are to be told.
    template <class IsTold>
    void AddBytes(const DevModeElement& element, size_t begin, size_t end, IsTold isTold) {
        for (size_t first = begin; first < end; ++first) {
            size_t next = first;
            while (next < end && isTold(next)) {
                ++next;
            }
            if (next > first) {
                found_.push_back({element, false, first, next - first});
                first = next;
            }
        }
    }

    const DevModePart& part_;
    const BYTE* before_;
    const BYTE* after_;
    std::vector<DevModeDifference> found_;
};

}  // namespace

std::string DevModeDifference::Name() const {
    return isValue ? element.Name() : ByteRangeName(*element.part, offset, size);
}

std::vector<DevModeDifference> CompareDevModes(const VelmoraDevMode& before, const VelmoraDevMode& after) {
    std::vector<DevModeDifference> differences;
    for (const DevModePart& part : DevModeParts()) {
        const std::vector<DevModeDifference> found = PartComparison(part, before, after).Compare();
        differences.insert(differences.end(), found.begin(), found.end());
    }
    return differences;
}

ElementValue ReadSide(const DevModeDifference& difference, const VelmoraDevMode& side, const NumberNames& names) {
    if (difference.isValue) {
        return ReadElement(difference.element, side, names);
    }
    const std::string hex = HexBytes(std::span(difference.element.part->In(side) + difference.offset, difference.size));
    return {hex, hex, nullptr};
}

std::vector<std::string> DifferenceLines(const VelmoraDevMode& before, const VelmoraDevMode& after) {
    std::vector<std::string> lines;
    for (const DevModeDifference& difference : CompareDevModes(before, after)) {
        lines.push_back(difference.Name() + ": " + ReadSide(difference, before).text + " -> " +
                        ReadSide(difference, after).text);
    }
    return lines;
}

}  // namespace velmora
