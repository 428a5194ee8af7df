// Lists of choices: what a combo box or a group of radio buttons can offer, and what of it is selected, apart from the
// window.
#pragma once

#include <cstdint>

namespace velmora {

// An entry of a static list of choices. A list ends with an entry whose stringId is 0.
struct ChoiceEntry {
    uint32_t requirement;  // bits, one of which must be in the filter; kAlwaysOffered: none needed
    uint16_t stringId;     // of the language module
    uint32_t value;        // the item's data
};
inline constexpr uint32_t kAlwaysOffered = 0xFFFFFFFF;  // a requirement
inline constexpr uint32_t kEveryChoice = 0xFFFFFFFF;    // a filter

constexpr bool IsOffered(const ChoiceEntry& choice, uint32_t filter) {
    return choice.requirement == kAlwaysOffered || filter == kEveryChoice || (choice.requirement & filter) != 0;
}

// A radio button and the value that it stands for.
struct RadioValue {
    int control;
    uint16_t value;
};

// Where choices come from: the entries of a list that a filter lets through.
struct ChoiceSource {
    const ChoiceEntry* choices;
    uint32_t filter;

    bool operator==(const ChoiceSource&) const = default;
};

struct ChoiceList {
    ChoiceSource source;
    const ChoiceEntry* lastChoice;  // one entry that follows those of the source, null for none
    uint32_t selected;              // value of the selected entry

    bool operator==(const ChoiceList&) const = default;
};

// Calls `visit` with each entry of the list, in order, until it returns true. The entry for which it did; null for
// none.
template <class Visit>
const ChoiceEntry* FindEntry(const ChoiceList& list, Visit visit) {
    for (const ChoiceEntry* entry = list.source.choices; entry->stringId != 0; ++entry) {
        if (IsOffered(*entry, list.source.filter) && visit(*entry)) {
            return entry;
        }
    }
    return list.lastChoice && visit(*list.lastChoice) ? list.lastChoice : nullptr;
}

// The entry with this value; null where the list doesn't have it.
inline const ChoiceEntry* FindChoice(const ChoiceList& list, uint32_t value) {
    return FindEntry(list, [value](const ChoiceEntry& entry) { return entry.value == value; });
}

// Selects the entry with this value or, as a combo box does, the first one where the list doesn't have it.
inline void SelectChoice(ChoiceList* list, uint32_t value) {
    const ChoiceEntry* entry = FindChoice(*list, value);
    if (!entry) {
        entry = FindEntry(*list, [](const ChoiceEntry&) { return true; });
    }
    list->selected = entry ? entry->value : UINT32_MAX;
}

// Gives the list other entries. The selection stays where they have it; the first one is selected otherwise.
inline void RefillChoices(ChoiceList* list, const ChoiceSource& source) {
    list->source = source;
    SelectChoice(list, list->selected);
}

}  // namespace velmora
