#include "driver/ui/paper_summary.h"

#include "driver/ui/paper_choices.h"

namespace velmora {
namespace {

constexpr int kAdjustedMode = 5;  // of colorPreset: by a preset, if it has a name

// The strings of a setting's values.
struct ValueText {
    int value;
    uint16_t string;
};
constexpr ValueText kColorPresets[] = {{1, 5086}, {2, 5087}, {3, 5088}, {4, 5089}, {6, 5090}, {7, 5091}};
constexpr ValueText kBaseColors[] = {{1, 6155}, {2, 6156}, {4, 6157}};
constexpr ValueText kResolutions[] = {{0, 5094}, {1, 5095}, {2, 5096}};
constexpr ValueText kRenderings[] = {{1, 5097}, {2, 5098}, {3, 5099}, {4, 5100}};
constexpr ValueText kChoicesA[] = {{1, 5101}, {2, 5102}, {3, 5103}};
constexpr uint16_t kOtherBaseColor = 6154;
constexpr uint16_t kNoPresetName = 3160;
constexpr uint16_t kNoWatermark = 5093;

template <size_t N>
uint16_t StringOf(const ValueText (&texts)[N], int value, uint16_t otherwise = 0) {
    for (const ValueText& text : texts) {
        if (text.value == value) {
            return text.string;
        }
    }
    return otherwise;
}

uint16_t SelectedString(const ChoiceList& list) {
    const ChoiceEntry* const choice = FindChoice(list, list.selected);
    return choice ? choice->stringId : uint16_t{0};
}

}  // namespace

size_t MakeSummary(const PaperChoices& choices, const OtherSettings& other, SummaryRow (&rows)[kMostSummaryRows]) {
    size_t count = 0;
    const auto add = [&](uint16_t label, uint16_t value) { rows[count++] = {label, value, TEXT("")}; };
    const auto addText = [&](uint16_t label, const WCHAR* text) { rows[count++] = {label, 0, text}; };

    add(5073, SelectedString(choices.paper));
    add(5074, SelectedString(choices.fitPaper));
    if (other.colorPreset == kAdjustedMode && !other.isAdvanced) {
        if (*other.presetName != 0) {
            addText(5075, other.presetName);
        } else {
            add(5075, kNoPresetName);
        }
        add(5076, StringOf(kBaseColors, other.baseColor, kOtherBaseColor));
    } else {
        add(5075, StringOf(kColorPresets, other.colorPreset));
    }
    add(5080, StringOf(kResolutions, other.resolutionIndex));
    add(5081, StringOf(kRenderings, other.colorRendering));
    add(5082, SelectedString(choices.layout));
    add(5083, StringOf(kChoicesA, other.colorChoiceA));
    if (other.watermark) {
        addText(5084, other.watermark);
    } else {
        add(5084, kNoWatermark);
    }
    return count;
}

}  // namespace velmora
