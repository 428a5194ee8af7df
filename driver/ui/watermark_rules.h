// What the Watermark page decides, apart from its windows. What its controls show is the context's WatermarkChoices:
// read from the list and the device mode when the page opens, from the controls afterwards, and changed by the rule of
// what the user did. The list is the context's; it is stored by apply alone. Where there is no memory for a change of
// the list, the list stays as it was.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/ui/choice_list.h"
#include "driver/ui/sheet_context.h"

namespace velmora {

inline constexpr int kFewestPoints = 8;
inline constexpr int kMostPoints = 400;
inline constexpr int kMostDegrees = 355;
inline constexpr int kNameLimit = 32;  // characters that can be typed

// WatermarkChoices::style.
inline constexpr uint32_t kBoldStyle = 1;
inline constexpr uint32_t kItalicStyle = 2;

// The choices of combo boxes: 7012, 7017, 7019.
inline constexpr ChoiceEntry kStyleChoices[] = {
    {kAlwaysOffered, 2541, 0},
    {kAlwaysOffered, 2542, kBoldStyle},
    {kAlwaysOffered, 2543, kItalicStyle},
    {kAlwaysOffered, 2544, kBoldStyle | kItalicStyle},
    {},
};
inline constexpr ChoiceEntry kFamilyChoices[] = {
    {kAlwaysOffered, 2840, kGrayFamily},
    {kAlwaysOffered, 2841, 1},
    {kAlwaysOffered, 2842, 2},
    {kAlwaysOffered, 2843, 3},
    {kAlwaysOffered, 2844, 4},
    {kAlwaysOffered, 2845, 5},
    {kAlwaysOffered, 2846, 6},
    {kAlwaysOffered, 2847, kWhiteFamily},
    {},
};
inline constexpr ChoiceEntry kPositionChoices[] = {
    {kAlwaysOffered, 2517, 0}, {kAlwaysOffered, 2522, 6}, {kAlwaysOffered, 2518, 2}, {kAlwaysOffered, 2523, 7},
    {kAlwaysOffered, 2524, 8}, {kAlwaysOffered, 2520, 4}, {kAlwaysOffered, 2525, 9}, {},
};

// The entry at an index, null where the list has none in use there.
const WatermarkRecord* WatermarkAt(const SheetContext& context, size_t index);

// Whether an entry can be changed and deleted: those that aren't built in.
bool IsUserWatermark(const SheetContext& context, size_t index);

// The page opens with the device mode's entry, or with the first where there is none.
void OpenWatermarks(SheetContext* context);

// 7003.
void SwitchWatermark(SheetContext* context, bool isOn);

// 7005, typed and selected.
void EditWatermarkName(SheetContext* context, const WCHAR* name);
void SelectWatermark(SheetContext* context, size_t index);

// 7025, typed, and 7026; `isThumb` where the thumb is dragged, which stops at every 5 degrees.
void TurnWatermark(SheetContext* context, int degrees, bool isThumb);

// 7010, 7012, 7014 and 7019, once the choices have what the user chose.
void EditWatermark(SheetContext* context);

// 7017 and 7023.
void ChooseWatermarkColor(SheetContext* context, int family, int shade);

// 7006 and 7007: the choices go into the entry of their name. Where there is none, the former makes a new one while the
// list has room, and otherwise both give the current one the name. Do nothing without a name or a list.
void AddWatermark(SheetContext* context);
void ChangeWatermark(SheetContext* context);

// 7008: takes the entry with the name from the list; does nothing where that is built in or there is none.
void DeleteWatermark(SheetContext* context);

// 7030, with the page open. Names stay; all entries stay as they are where the module names no font for them.
void RestoreWatermarks(SheetContext* context);

// The same where the page isn't open: the watermark is switched off at once.
void ResetBuiltinWatermarks(SheetContext* context);

// 3107: whether it lists the entry at an index, and the index that it selects, kNoneReady for its first item.
inline constexpr int kNoneReady = -1;
bool IsReady(const SheetContext& context, size_t index);
int SelectedReady(const SheetContext& context);

// The choices as a text watermark that is in no list.
WatermarkRecord ShownWatermark(const SheetContext& context);

// Whether the choices, the list or the device mode's entry aren't as they were committed, or the list isn't as it is
// stored. Reads the stored list.
bool IsWatermarkChanged(const SheetContext& context);

// Renders a watermark's files and fills in what is known of them; returns the result, 0 and -1 for failure.
using WatermarkMaker = int32_t (*)(const SheetContext& context, WatermarkRecord* record, bool isMonochromeOnly);

// Writes the choices into the list and the device mode, removes rendered files that aren't of use any more, renders the
// chosen watermark where it has no file, and stores the list; CommitPage comes after it. With a watermark that can't be
// rendered the switch stays on, but the job has none until the apply of a changed page renders it. A list that couldn't
// be loaded isn't stored.
void ApplyWatermarks(SheetContext* context, WatermarkMaker make);

}  // namespace velmora
