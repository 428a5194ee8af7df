// What opening the Paper page, its dependencies and applying it have in common.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_rules.h"

namespace velmora {

inline constexpr int kMostCopies = 999;
inline constexpr int kLeastZoom = 25;
inline constexpr int kMostZoom = 400;
inline constexpr int kMostZoomOfLong = 300;
inline constexpr int kUsualZoom = 100;

// Lengths of custom sizes (0.01 mm) that are zoomed as the long papers are: when the page opens, and afterwards.
inline constexpr int32_t kLongAtOpening = 29700;
inline constexpr int32_t kLong = 29710;
inline constexpr int32_t kLongest = 35560;

inline constexpr uint16_t kStoredNoFitPaper = 65535;  // uiFitToPaper

template <size_t N>
bool IsAnyOf(uint32_t value, const uint32_t (&group)[N]) {
    return std::find(group, group + N, value) != group + N;
}

inline bool IsWithin(int32_t value, const int32_t (&limits)[2]) {
    return value >= limits[0] && value <= limits[1];
}

// A value that has no class, which a list of the page can't bring up, is treated as `otherwise` is.
template <size_t N>
size_t ClassOf(uint32_t value, const uint32_t (&classes)[N], size_t otherwise) {
    const auto index = static_cast<size_t>(std::find(classes, classes + N, value) - classes);
    return index < N ? index : otherwise;
}

// A paper without a class (a user's form) is treated as A4, which every printer takes from everywhere.
inline size_t PaperClassOf(const PaperChoices& page) {
    return ClassOf(page.paper.selected, kPaperClasses, kA4Class);
}

inline size_t FitClassOf(const PaperChoices& page) {
    return ClassOf(page.fitPaper.selected, kFitClasses, 0);
}

inline const ChoiceEntry* PapersOf(const PaperChoices& page) {
    return page.isJapanese ? kJapanesePapers : kPapers;
}

inline const ChoiceEntry* FitPapersOf(const PaperChoices& page) {
    return page.isJapanese ? kJapaneseFitPapers : kFitPapers;
}

inline const ChoiceEntry* BothSidesMediaOf(const PaperChoices& page) {
    return page.isJapanese ? kJapaneseBothSidesMedia : kBothSidesMedia;
}

inline void OfferPapers(PaperChoices* page, uint32_t filter, bool hasCustomSize) {
    page->paper.lastChoice = hasCustomSize ? &kCustomSizeChoice : nullptr;
    RefillChoices(&page->paper, {PapersOf(*page), filter});
}

inline int MostZoomOf(const PaperChoices& page, int32_t longFrom) {
    const bool isLong =
        IsAnyOf(page.paper.selected, kLongPapers) ||
        (page.paper.selected == kCustomSizePaper && IsWithin(page.details.customLength, {longFrom, kLongest}));
    return isLong ? kMostZoomOfLong : kMostZoom;
}

inline void ShowZoom(PaperChoices* page, bool isShown) {
    page->zoom.isShown = isShown;
    page->zoom.isEnabled = isShown;
    page->isZoomPercentEnabled = isShown;
}

inline void ClearBox(CheckBox* box) {
    box->isChecked = false;
    box->isEnabled = false;
}

// The filter of the layouts where a sheet may have more than one page.
inline uint32_t LayoutFilterOf(const PaperChoices& page, bool isOnBothSides) {
    if (isOnBothSides) {
        return kNoPosters;
    }
    const uint32_t fit = page.fitPaper.selected;
    const bool isLegal = fit == DMPAPER_LEGAL || (fit == kNoFitPaper && page.paper.selected == DMPAPER_LEGAL);
    return isLegal ? kNoLargestPoster : kEveryChoice;
}

}  // namespace velmora
