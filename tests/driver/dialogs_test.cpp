// The dialogs of every language module: laid out alike, with room for every text, and usable by keyboard.
#include <algorithm>
#include <set>

#include "platform/kernel/text.h"
#include "tests/driver/built_modules.h"
#include "tests/driver/machine.h"
#include "tests/driver/module_resources.h"

namespace driver_test {
namespace {

constexpr int kMargin = 7;  // dialog units, as all measures here
constexpr int kButtonHeight = 14;
constexpr int kButtonWidth = 50;  // at least
constexpr int kButtonPadding = 8;
constexpr int kLineHeight = 8;
constexpr int kListPadding = 4;
constexpr int kComboHeight = 14;   // closed
constexpr int kComboPadding = 12;  // with the arrow

// The widths of characters: Latin ones and kana differ, so these are averages of running text.
double WidthOf(char16_t c) {
    return c < 0x2E80 ? 3.6 : c >= 0x3040 && c <= 0x30FF ? 6.5 : 8;
}
constexpr double kSpare = 1.2;  // of a text's width

// Keys that the sheet around a page has for its own buttons in one of the languages.
constexpr std::u16string_view kSheetKeys = u"ABH";

// What a dialog shows beside what is written in its template.
struct DialogRules {
    unsigned id;
    std::vector<unsigned> titles;
    std::map<int, std::vector<unsigned>> strings;  // by control; any other without text has the string of its id
    std::vector<std::pair<std::set<int>, std::set<int>>> alternatives;  // of which only one side is seen
    std::set<int> untitled;  // pictures, and what gets its text from elsewhere
};

// Controls of the summary's other rows, which are like the first one, and some more.
std::set<int> SummaryRest(std::set<int> controls) {
    for (int control = 5039; control <= 5068; ++control) {
        controls.insert(control);
    }
    return controls;
}

const std::vector<DialogRules> kDialogs = {
    {1004, {1099}, {}, {}, {1820}},
    {1050,
     {1093, 1094, 1095, 1096, 1097, 1098},
     {{1821, {2533, 2509, 2513, 2505, 2529, 2537}},
      {1822, {2534, 2510, 2514, 2506, 2530, 2538}},
      {1823, {2535, 2511, 2515, 2507, 2531, 2539}},
      {1824, {2536, 2512, 2516, 2508, 2532, 2540}}},
     {{{1816}, {1821, 1822, 1823, 1824}}, {{1604}, {1602, 1603}}},
     {1815, 1816}},
    {5000,
     {5001},
     {{5006, {2013, 2014, 2016, 2017, 2018, 2020, 2021, 2000, 2003, 2004, 2038, 2024, 2030, 2052, 5104}},
      {5008, {5105, 5107, 5108, 5111, 5113, 5114, 5115, 5117, 5118, 5119, 5120}},
      {5010, {2855, 2856, 2857}},
      {5012, {11, 12, 16, 242, 243, 244, 245, 246, 247, 248, 249}},
      {5033, {3056, 3057, 3059, 2371, 2372, 2373}},
      {3136, {2630, 2631}},
      // The summary: each label and each separator somewhere.
      {5036, {5073, 5074, 5075, 5076, 5080, 5081, 5082, 5083, 5084}},
      {5037, {5085}},
      {5038, {5086, 5087, 5088, 5089, 5090, 5091, 5093, 5094, 5095, 5096, 5097, 5098, 5099, 5100, 5101, 5102, 5103}}},
     {},
     SummaryRest({5002, 5004, 5020, 5014, 5017, 5018, 5022, 5023})},
    {5200, {5200}, {{5236, {5240, 5241}}, {IDOK, {5238}}, {IDCANCEL, {5239}}}, {}, {5224, 5225, 5228, 5229, 5232}},
    {5300,
     {5300},
     {{5304, {5319, 5320}}, {5309, {5319, 5320}}, {5312, {5363}}, {5313, {5364}}, {5316, {5337, 5338}}},
     {},
     {5302, 5303, 5305, 5307, 5308, 5310, 5315}},
    {6000,
     {6001},
     {{3136, {2630, 2631}},
      {6013, {3160}},
      {6021, {6156, 6154, 6157}},
      {6023, {6156, 6154, 6157}},
      {6025, {6156, 6154, 6157}},
      {6028, {5094, 5095, 5096}},
      {6030, {5097, 5098, 5099, 5100}},
      {6032, {5101, 5102, 5103}}},
     {{{6004, 6006, 6008, 6010, 6011, 6012, 6013, 6014, 6016, 6017, 6019}, {6020, 6021, 6022, 6023, 6024, 6025}}},
     {}},
    {6101,
     {6100, 6102},
     {{6104, {6150, 6151, 6152, 6153}}, {6106, {6154, 6155, 6156, 6157}}, {6148, {6035}}},
     {},
     {6107, 6112, 6113, 6116, 6118, 6119, 6122, 6124, 6125, 6128,
      6135, 6136, 6137, 6140, 6141, 6142, 6145, 6146, 6147, 6149}},
    {6201, {6202}, {{6226, {6035}}}, {}, {6211, 6212, 6213, 6215, 6216, 6217, 6219, 6220, 6221, 6223, 6224, 6225}},
    {6300, {6301}, {{IDCANCEL, {6310}}}, {}, {6303, 6306}},
    {6400, {6401}, {{6405, {6408}}, {IDOK, {6406}}, {IDCANCEL, {6407}}}, {}, {}},
    {7000,
     {7001},
     {{7005, {2490, 2491, 2492, 2493, 2494, 2495}},
      {7012, {2541, 2542, 2543, 2544}},
      {7017, {2840, 2841, 2842, 2843, 2844, 2845, 2846, 2847}},
      {7019, {2517, 2522, 2518, 2523, 2524, 2520, 2525}},
      {3107, {3048, 2490, 2491, 2492, 2493, 2494, 2495}},
      {3136, {2630, 2631}}},
     {},
     {7010, 7014, 7015, 7023, 7025, 7026, 7029}},
    {9000, {9001}, {{9008, {2856, 2857}}, {9017, {9018}}, {3136, {2630, 2631}}}, {}, {9010}},
    {10000, {10001}, {{3136, {2630, 2631}}}, {}, {10002}},
    {11000, {11001}, {{11004, {11010, 11011}}, {11007, {11010, 11011}}}, {}, {11009}},
};

bool IsButton(const DialogItem& item) {
    return item.windowClass == u"BUTTON" && (item.style & 0xF) <= BS_DEFPUSHBUTTON;
}

bool IsSpin(const DialogItem& item) {
    return item.windowClass == u"MSCTLS_UPDOWN32";
}

// A combo box as it is seen: its height in the template is that of the opened list.
RECT PlaceOf(const DialogItem& item) {
    RECT place = item.place;
    if (item.windowClass == u"COMBOBOX") {
        place.bottom = place.top + kComboHeight;
    }
    return place;
}

bool IsFrame(const DialogItem& item) {
    return (item.windowClass == u"STATIC" && (item.style & SS_TYPEMASK) == SS_ETCHEDFRAME) ||
           (item.windowClass == u"BUTTON" && (item.style & 0xF) == BS_GROUPBOX);
}

bool Contains(const RECT& outer, const RECT& inner) {
    return inner.left > outer.left && inner.top > outer.top && inner.right < outer.right && inner.bottom < outer.bottom;
}

bool Overlap(const RECT& a, const RECT& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool AreSeenTogether(const DialogRules& rules, int a, int b) {
    return std::ranges::none_of(rules.alternatives, [&](const auto& sides) {
        return (sides.first.contains(a) && sides.second.contains(b)) ||
               (sides.first.contains(b) && sides.second.contains(a));
    });
}

// Without the mark of the access key, and with what numbers of a format come to at most.
double WidthOf(std::u16string text) {
    std::erase(text, u'&');
    for (const std::u16string_view number : {u"%d", u"%02d"}) {
        for (size_t at = text.find(number); at != text.npos; at = text.find(number)) {
            text.replace(at, number.size(), number == u"%d" ? u"8888" : u"88");
        }
    }
    double width = 0;
    for (const char16_t c : text) {
        width += WidthOf(c);
    }
    return width;
}

// The room for texts: of all lines together.
double RoomOf(const DialogItem& item) {
    const int width = item.place.right - item.place.left;
    if (item.windowClass == u"STATIC") {
        return width * std::max<int>(1, (item.place.bottom - item.place.top) / kLineHeight);
    }
    return width - (item.windowClass == u"LISTBOX"    ? kListPadding
                    : item.windowClass == u"COMBOBOX" ? kComboPadding
                                                      : kButtonPadding);
}

// The access key of a text, upper case; 0: none.
char16_t AccessKey(const std::u16string& text) {
    const size_t mark = text.find(u'&');
    return mark == text.npos ? u'\0' : host::UpperCase(text[mark + 1]);
}

class DialogCheck {
  public:
    DialogCheck(const DialogRules& rules, const Dialog& dialog, const std::map<unsigned, std::u16string>& strings)
        : rules_(rules), dialog_(dialog), strings_(strings) {}

    // What is wrong, a line each.
    Texts Run() {
        for (const unsigned title : rules_.titles) {
            String(title);
        }
        for (size_t i = 0; i < dialog_.items.size(); ++i) {
            const DialogItem& item = dialog_.items[i];
            CheckPlace(item);
            CheckTexts(item);
            if (item.windowClass != u"STATIC" && !IsFrame(item) && !IsSpin(item)) {
                CheckKeyboard(item, i > 0 ? &dialog_.items[i - 1] : nullptr);
            }
            for (size_t other = i + 1; other < dialog_.items.size(); ++other) {
                CheckPair(item, dialog_.items[other]);
            }
        }
        return faults_;
    }

  private:
    void Say(int id, const std::string& what) { faults_.push_back(std::to_string(id) + " " + what); }

    std::u16string String(unsigned id) {
        const auto found = strings_.find(id);
        if (found == strings_.end()) {
            Say(static_cast<int>(id), "is no string");
            return u"";
        }
        return found->second;
    }

    std::vector<std::u16string> TextsOf(const DialogItem& item) {
        if (!item.text.empty() || rules_.untitled.contains(item.id)) {
            return {item.text};
        }
        const auto found = rules_.strings.find(item.id);
        std::vector<std::u16string> texts;
        for (const unsigned id : found != rules_.strings.end() ? found->second : std::vector{unsigned(item.id)}) {
            texts.push_back(String(id));
        }
        return texts;
    }

    void CheckPlace(const DialogItem& item) {
        const RECT inside = {kMargin - 1, kMargin - 1, dialog_.width - kMargin + 1, dialog_.height - kMargin + 1};
        if (!Contains(inside, PlaceOf(item))) {
            Say(item.id, "reaches into the margin");
        }
        if (IsButton(item) && (item.place.bottom - item.place.top != kButtonHeight ||
                               item.place.right - item.place.left < kButtonWidth)) {
            Say(item.id, "hasn't the size of buttons");
        }
    }

    void CheckTexts(const DialogItem& item) {
        for (const std::u16string& text : TextsOf(item)) {
            if (WidthOf(text) * kSpare > RoomOf(item)) {
                Say(item.id, "is too narrow for \"" + host::ToUtf8(text) + "\"");
            }
            const bool isLabel = item.windowClass != u"LISTBOX" && (item.style & SS_NOPREFIX) == 0;
            if (const char16_t key = isLabel ? AccessKey(text) : u'\0'; key != 0) {
                if (IsTaken(key, item.id)) {
                    Say(item.id, "has a key that is taken");
                }
                keys_.emplace_back(key, item.id);
            }
        }
    }

    bool IsTaken(char16_t key, int id) const {
        return kSheetKeys.find(key) != kSheetKeys.npos || std::ranges::any_of(keys_, [&](const auto& other) {
                   return other.first == key && AreSeenTogether(rules_, other.second, id);
               });
    }

    // A scroll bar or slider shares the label of the edit before it.
    void CheckKeyboard(const DialogItem& item, const DialogItem* before) {
        if ((item.style & WS_TABSTOP) == 0) {
            Say(item.id, "isn't reached by Tab");
        }
        const bool isBar = item.windowClass == u"SCROLLBAR" || item.windowClass == u"MSCTLS_TRACKBAR32";
        if (isBar && before && before->windowClass == u"EDIT") {
            return;
        }
        if (item.windowClass != u"BUTTON" &&
            (!before || before->windowClass != u"STATIC" || AccessKey(TextsOf(*before)[0]) == 0)) {
            Say(item.id, "has no label with a key before it");
        }
    }

    void CheckPair(const DialogItem& item, const DialogItem& other) {
        if (item.id == other.id && item.id != -1) {
            Say(item.id, "is there twice");
        }
        if (Overlap(PlaceOf(item), PlaceOf(other)) && AreSeenTogether(rules_, item.id, other.id) &&
            !(IsFrame(item) && Contains(item.place, PlaceOf(other)))) {
            Say(item.id, "overlaps " + std::to_string(other.id));
        }
    }

    const DialogRules& rules_;
    const Dialog& dialog_;
    const std::map<unsigned, std::u16string>& strings_;
    std::vector<std::pair<char16_t, int>> keys_;  // and their controls
    Texts faults_;
};

TEST(Dialogs, AreLaidOutByTheRules) {
    std::vector<Dialog> english;
    for (const PackageFile& module : BuiltLanguageModules()) {
        SCOPED_TRACE(host::ToUtf8(module.name));
        const bool isJapanese = module.name == u"KV62JAPA.DLL";
        const ModuleResources resources = ReadModuleResources(module.bytes);
        EXPECT_EQ(std::set(resources.languages.begin(), resources.languages.end()).size(), 1u);
        EXPECT_EQ(resources.dialogs.size(), kDialogs.size());
        for (size_t i = 0; i < kDialogs.size(); ++i) {
            SCOPED_TRACE(kDialogs[i].id);
            const Dialog& dialog = resources.dialogs.at(kDialogs[i].id);
            EXPECT_EQ(DialogCheck(kDialogs[i], dialog, resources.strings).Run(), Texts());
            EXPECT_EQ(dialog.pointSize, isJapanese ? 9 : 8);
            EXPECT_EQ(dialog.charSet, isJapanese ? SHIFTJIS_CHARSET : ANSI_CHARSET);
            english.push_back(dialog);
            EXPECT_TRUE(std::ranges::equal(dialog.items, english[i].items, [](const auto& a, const auto& b) {
                return a.id == b.id && a.windowClass == b.windowClass && a.style == b.style;
            })) << "has other controls than in English";
        }
    }
}

}  // namespace
}  // namespace driver_test
