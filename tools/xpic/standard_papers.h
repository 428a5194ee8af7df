// The published papers that model sources name.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "tools/xpic/model_source.h"

namespace velmora {

struct StandardPaper {
    std::string_view name;  // as sources write it
    int16_t id;             // DMPAPER_ (wingdi.h)
    int16_t width;          // 0.1 mm
    int16_t length;         // 0.1 mm
    bool isMetric;
    std::string_view label;         // English display name
    std::string_view keyword;       // Print Schema keyword without prefix; empty where none is published
    int16_t pclSizeCode;            // PCL page size code, 0 where none is published
    std::string_view rendererName;  // the PCL 6 renderer's name, empty where it knows none
};

extern const std::span<const StandardPaper> kStandardPapers;

// Null for an unknown one.
const StandardPaper* FindStandardPaper(std::string_view name);
const StandardPaper* FindStandardPaper(int64_t id);

// What a source gets that gives a standard paper's name and nothing else; the label and the name are left out.
PaperSource PaperOf(const StandardPaper& standard, uint16_t pdlType);

constexpr bool IsPcl(uint16_t pdlType) {
    return pdlType == kPdlPcl6 || pdlType == kPdlPcl5;
}

// The id by which the paper lookup of PCL models counts the papers with negative pclSizeCode; `before` of them come
// earlier in the table.
constexpr int16_t CardPaperId(size_t before) {
    return static_cast<int16_t>(511 - before);
}

}  // namespace velmora
