// Description files made in memory over the driver's own declarations of their layout. Nothing is checked: a hostile
// file is written as easily as a good one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "driver/devdesc/description_format.h"
#include "driver/devdesc/device_model.h"

namespace driver_test {

class DescriptionBuilder {
  public:
    DescriptionBuilder();

    // The fields of the device block; its pointer slots are set by the calls below.
    velmora::DeviceModel fields = {};
    // The command blob.
    std::string blob;

    // Appends records and a terminating one of zeros to the block and lets the slot (an offset in DeviceModel) lead to
    // them. Returns their offset in the block.
    template <class Record>
    uint32_t Table(size_t slot, const std::vector<Record>& records) {
        std::string bytes(reinterpret_cast<const char*>(records.data()), records.size() * sizeof(Record));
        return Bytes(slot, bytes + std::string(sizeof(Record), '\0'));
    }
    // The same for bytes as they are, without a terminator.
    uint32_t Bytes(size_t slot, std::string_view bytes);
    // An 8-bit text and its terminator.
    uint32_t Text(size_t slot, std::string_view text) { return Bytes(slot, std::string(text) + '\0'); }
    void SetSlot(size_t slot, uint32_t offset) { slots_.emplace_back(slot, offset); }

    // Each adds an entry and returns its reference: strings, names and texts count from 1, images, patterns and fonts
    // from 0. `terminated` false leaves the NUL out. Adding a font raises fields.fontCount.
    uint16_t AddString(std::string_view text) { return strings_.Add(std::string(text) + '\0'); }
    uint16_t AddName(std::string_view text, bool terminated = true) {
        return names_.Add(std::string(text) + std::string(terminated, '\0'));
    }
    uint16_t AddText(std::string_view text, bool terminated = true) {
        return texts_.Add(std::string(text) + std::string(terminated, '\0'));
    }
    uint16_t AddImage(std::string_view bytes) { return images_.Add(bytes); }
    uint16_t AddPattern(std::string_view bytes) { return patterns_.Add(bytes); }
    uint16_t AddFont(std::string_view bytes) {
        ++fields.fontCount;
        return fonts_.Add(bytes);
    }

    // The index in front of a language's first string; all languages begin at 0.
    void SetLanguageBase(uint16_t primaryLanguage, uint16_t base) { languages_[primaryLanguage] = base; }
    // The base at which the string that is added next has reference 1.
    uint16_t NextLanguageBase() const { return static_cast<uint16_t>(strings_.offsets.size() - 1); }

    // The whole file. The parts lie in the order of the header's fields but for the text pool, which ends at the font
    // pool.
    std::string Build() const;

  private:
    template <class Offset>
    struct Pool {
        std::vector<Offset> offsets;
        std::string bytes;

        uint16_t Add(std::string_view entry) {
            offsets.push_back(static_cast<Offset>(bytes.size()));
            bytes += entry;
            return static_cast<uint16_t>(offsets.size() - 1);
        }
        std::string_view Index() const {
            return {reinterpret_cast<const char*>(offsets.data()), offsets.size() * sizeof(Offset)};
        }
    };

    std::string tables_;                              // what follows the fields in the block
    std::vector<std::pair<size_t, uint32_t>> slots_;  // offsets in the block by slot
    std::vector<uint16_t> languages_;
    Pool<uint16_t> strings_;
    Pool<uint16_t> names_;
    Pool<uint16_t> texts_;
    Pool<uint32_t> images_;
    Pool<uint32_t> patterns_;
    Pool<uint32_t> fonts_;
};

// The header of a built file, to be changed in place.
velmora::DescriptionFileHeader& HeaderOf(std::string& file);

// An option table of these name references (0 ends a run), laid out as this page description language has it.
std::string OptionBytes(const std::vector<uint16_t>& nameRefs, uint16_t pdlType);

// A complete small model: A4, Letter and a card; two trays; two media; resolutions of 600, 1200 x 600 and 1200 dpi of
// which the first two have patterns; margins for all papers and custom sizes up to 297 x 432 mm; two features, the
// second without options; memory; two default fonts.
DescriptionBuilder SmallModel(uint16_t pdlType, uint16_t colorCapability = velmora::kColorNone);

}  // namespace driver_test
