#include "driver/ui/watermark_rules.h"

#include <algorithm>
#include <cstring>

#include "driver/base/text.h"

namespace velmora {
namespace {

// Watermarks of a list. Japanese has fewer.
constexpr size_t kMostWatermarks = 18;
constexpr size_t kMostJapanese = 16;

constexpr int kTenthsPerDegree = 10;
constexpr int kThumbStep = 5;  // degrees

// What the device mode's fields can hold.
constexpr size_t kLastLevel = 19;       // outputLevel
constexpr uint16_t kLastPlacement = 9;  // watermarkPosition

bool IsJapanese(const SheetContext& context) {
    return context.locale.language == LANG_JAPANESE;
}

size_t BuiltIns(const SheetContext& context) {
    return IsJapanese(context) ? kJapaneseBuiltIns : kBuiltInWatermarks;
}

bool IsFull(const SheetContext& context) {
    return context.watermarks.count >= (IsJapanese(context) ? kMostJapanese : kMostWatermarks);
}

PrivateDevMode& Own(SheetContext* context) {
    return context->devMode->privatePart;
}

// The index in the device mode; beyond every list where it is none.
size_t ChosenIndex(const SheetContext& context) {
    const int index = context.devMode->privatePart.outputLevel;
    return index < 0 ? SIZE_MAX : static_cast<size_t>(index);
}

// The entry with this name; the list's count where there is none.
size_t FindName(const SheetContext& context, const WCHAR* name) {
    for (size_t i = 0; i < context.watermarks.count; ++i) {
        const WatermarkRecord* const record = WatermarkAt(context, i);
        if (record && TextsEqual<WCHAR>(record->text, name)) {
            return i;
        }
    }
    return context.watermarks.count;
}

// Leaves the entries in use of a list with records, and a blank one behind them. `index`, an entry's, becomes the one
// that it has then.
bool Compact(WatermarkList* list, size_t* index) {
    const WatermarkRecord* const records = list->records.Get();
    const size_t length = list->count;
    const auto used = [&](size_t end) {
        return static_cast<uint16_t>(
            std::count_if(records, records + end, [](const WatermarkRecord& record) { return record.type != 0; }));
    };
    WatermarkList compacted = WatermarkList::WithRoomFor(used(length), MakeBlankWatermark);
    if (!compacted.records) {
        return false;
    }
    std::copy_if(records, records + length, compacted.records.Get(),
                 [](const WatermarkRecord& record) { return record.type != 0; });
    *index = used(std::min(*index, length));
    *list = std::move(compacted);
    return true;
}

// The face as the page's list has it.
void CopyListedFace(const FontList& fonts, const WCHAR* face, WCHAR (&listed)[ARRAYSIZE(WatermarkStyle::face)]) {
    const size_t font = FindFont(fonts, face);
    CopyText(listed, ARRAYSIZE(listed),
             font < fonts.count && fonts.types.Get()[font] == kTrueTypeFont ? face : nullptr);
}

// A face that the list doesn't have keeps the character set.
void StoreFace(const FontList& fonts, const WCHAR* face, WatermarkStyle* style) {
    ZeroMemory(style->face, sizeof(style->face));
    CopyText(style->face, ARRAYSIZE(style->face), face);
    const size_t font = FindFont(fonts, face);
    if (font < fonts.count) {
        style->charSet = static_cast<uint8_t>(fonts.charSets.Get()[font]);
    }
}

// A picture has no style: the record becomes a text watermark with a blank one's.
void MakeTextWatermark(WatermarkRecord* record) {
    if (record->type != kTextWatermark) {
        WatermarkRecord blank;
        MakeBlankWatermark(&blank);
        memcpy(record->imageName, blank.imageName, sizeof(record->imageName));
        record->scaleX = 0;
        record->scaleY = 0;
        record->type = kTextWatermark;
    }
}

// What the page shows of a watermark, apart from its shade.
WatermarkChoices ChoicesOf(const SheetContext& context, const WatermarkRecord& record) {
    WatermarkRecord text = record;
    MakeTextWatermark(&text);
    WatermarkChoices choices = {};
    CopyText(choices.name, ARRAYSIZE(choices.name), record.text);
    choices.isRightToLeft = text.style.rightToLeft != 0;
    CopyListedFace(context.fonts, text.style.face, choices.face);
    choices.style = (text.style.bold != 0 ? kBoldStyle : 0) | (text.style.italic != 0 ? kItalicStyle : 0);
    choices.size.lowest = kFewestPoints;
    choices.size.highest = kMostPoints;
    SetNumber(&choices.size, text.style.size);
    choices.color = text.style.color;
    choices.position = std::ranges::any_of(kPositionChoices,
                                           [&](const ChoiceEntry& choice) {
                                               return choice.stringId != 0 && choice.value == text.placement;
                                           })
                           ? text.placement
                           : kPositionChoices[0].value;
    choices.angle = std::min(text.angle / kTenthsPerDegree, kMostDegrees);
    return choices;
}

int PointsOf(const WatermarkChoices& choices) {
    NumberField size = choices.size;
    return ApplyNumber(&size, kFewestPoints, kMostPoints, size.position);
}

// Whether a watermark is as the choices have it, but for its name.
bool HasChoices(const SheetContext& context, const WatermarkRecord& record) {
    const WatermarkChoices& shown = context.watermarkEdit.choices;
    const WatermarkChoices own = ChoicesOf(context, record);
    return TextsEqual<WCHAR>(shown.face, own.face) && shown.style == own.style && PointsOf(shown) == PointsOf(own) &&
           shown.color == own.color && shown.position == own.position && shown.angle == own.angle;
}

// Writes the choices into a record. A face that isn't chosen stays.
void StoreChoices(const SheetContext& context, WatermarkRecord* record) {
    const WatermarkChoices& choices = context.watermarkEdit.choices;
    MakeTextWatermark(record);
    ZeroMemory(record->text, sizeof(record->text));
    CopyText(record->text, ARRAYSIZE(record->text), choices.name);
    if (choices.face[0] != 0) {
        StoreFace(context.fonts, choices.face, &record->style);
    }
    record->style.bold = (choices.style & kBoldStyle) != 0 ? 1 : 0;
    record->style.italic = (choices.style & kItalicStyle) != 0 ? 1 : 0;
    record->style.size = static_cast<uint16_t>(PointsOf(choices));
    record->style.color = choices.color;
    record->style.rightToLeft = choices.isRightToLeft ? 1 : 0;
    record->angle = static_cast<uint16_t>(choices.angle * kTenthsPerDegree);
    record->placement = static_cast<uint16_t>(choices.position);
    record->needsRemake = 1;
}

// The same into an entry of the list, or into a new one at its end; `index` becomes the one that it has then. False
// where the list is full, or couldn't be loaded: the user's own is still in the store.
bool StoreEntry(SheetContext* context, size_t* index) {
    WatermarkList& list = context->watermarks;
    const bool isNew = *index >= list.count;
    if (!list.records || (isNew && IsFull(*context))) {
        return false;
    }
    if (isNew) {
        *index = list.count;
        ++list.count;
    }
    WatermarkRecord* const record = list.records.Get() + *index;
    StoreChoices(*context, record);
    if (!Compact(&list, index) && isNew) {
        MakeBlankWatermark(record);
        --list.count;
        return false;
    }
    return true;
}

// Makes an entry the current one. The buttons are those of a selection; what else the page shows stays.
void TakeEntry(SheetContext* context, size_t index) {
    WatermarkEdit& edit = context->watermarkEdit;
    const bool isUsers = IsUserWatermark(*context, index);
    edit.current = index;
    edit.buttons = {false, isUsers, isUsers};
    const WatermarkRecord* const record = WatermarkAt(*context, index);
    CopyText(edit.choices.name, ARRAYSIZE(edit.choices.name), record ? record->text : nullptr);
}

// Shows an entry; a blank one where there is none.
void ShowEntry(SheetContext* context, size_t index) {
    WatermarkChoices& choices = context->watermarkEdit.choices;
    const bool isOn = choices.isOn;
    WatermarkRecord blank;
    MakeBlankWatermark(&blank);
    const WatermarkRecord* const record = WatermarkAt(*context, index);
    choices = ChoicesOf(*context, record ? *record : blank);
    choices.isOn = isOn;
    TakeEntry(context, index);
}

// The choices into the entry of their name; where there is none into a new one, or into the current one.
void StoreNamed(SheetContext* context, bool mayAdd) {
    const WatermarkEdit& edit = context->watermarkEdit;
    size_t index = FindName(*context, edit.choices.name);
    if (index == context->watermarks.count && (!mayAdd || IsFull(*context))) {
        index = edit.current;
    }
    if (edit.choices.name[0] != 0 && StoreEntry(context, &index)) {
        TakeEntry(context, index);
    }
}

void ShowShade(SheetContext* context, const ShadedColor& shade) {
    context->watermarkEdit.choices.shade = shade;
    Own(context).shadeMaxFlag = shade.isLastShade ? 1 : 0;
}

void ResetBuiltIns(SheetContext* context) {
    WCHAR face[ARRAYSIZE(WatermarkStyle::face)];
    LoadText(*context, kBuiltInFaceString, face, ARRAYSIZE(face));
    const size_t count = face[0] != 0 ? std::min<size_t>(BuiltIns(*context), context->watermarks.count) : 0;
    for (size_t i = 0; i < count; ++i) {
        WatermarkRecord& record = context->watermarks.records.Get()[i];
        MakeTextWatermark(&record);
        StoreFace(context->fonts, face, &record.style);
        record.style.bold = 0;
        record.style.italic = 0;
        record.style.size = kBuiltInPoints;
        record.style.color = kWatermarkColor;
        record.placement = 0;
        record.angle = kWatermarkAngle;
        record.needsRemake = 1;
    }
    Own(context).watermarkFlags = 0;
    Own(context).outputLevel = 0;
}

// --- Apply

// Stores the choices where they aren't stored already and returns the index of the entry that the job uses, beyond
// every list where the device mode can't name it. A full list takes no new name: the current entry keeps its own.
size_t StoreAtApply(SheetContext* context) {
    WatermarkChoices& choices = context->watermarkEdit.choices;
    const WatermarkRecord* const chosen = WatermarkAt(*context, ChosenIndex(*context));
    if (choices.name[0] == 0 && chosen) {
        CopyText(choices.name, ARRAYSIZE(choices.name), chosen->text);
    }
    size_t index = FindName(*context, choices.name);
    const WatermarkRecord* found = WatermarkAt(*context, index);
    if (!found && IsFull(*context)) {
        index = context->watermarkEdit.current;
        found = WatermarkAt(*context, index);
        if (found) {
            CopyText(choices.name, ARRAYSIZE(choices.name), found->text);
        }
    }
    const bool isStored = found && HasChoices(*context, *found);
    if (!isStored && (choices.name[0] == 0 || !StoreEntry(context, &index))) {
        return ChosenIndex(*context);
    }
    TakeEntry(context, index);
    const bool isNamed = index <= kLastLevel;
    Own(context).outputLevel = static_cast<int16_t>(isNamed ? index : 0);
    return isNamed ? index : SIZE_MAX;
}

void RemoveRendering(WatermarkRecord* record) {
    DeleteRenderedFiles(record);
    record->resolution = 0;
    record->width = 0;
    record->height = 0;
}

void RemoveOldRenderings(SheetContext* context) {
    WatermarkEdit& edit = context->watermarkEdit;
    for (size_t i = 0; i < edit.deletedCount; ++i) {
        RemoveRendering(edit.deleted.Get() + i);
    }
    edit.deleted.Reset(nullptr);
    edit.deletedCount = 0;
    for (size_t i = 0; i < context->watermarks.count; ++i) {
        WatermarkRecord& record = context->watermarks.records.Get()[i];
        if (record.needsRemake != 0) {
            RemoveRendering(&record);
            record.needsRemake = 0;
        }
    }
}

// Whether a watermark is rendered, in a size and resolution that device modes can have.
bool HasUsableRendering(const WatermarkRecord& record) {
    return record.fileName[0] != 0 && record.resolution != 0 && record.resolution <= INT16_MAX && record.width != 0 &&
           record.width <= INT32_MAX && record.height != 0 && record.height <= INT32_MAX;
}

// A failed rendering leaves nothing behind: a list is invalid where a file has no size.
void Render(const SheetContext& context, WatermarkMaker make, WatermarkRecord* record) {
    RemoveRendering(record);
    const int32_t result = make(context, record, false);
    if (result == 0 || result == -1 || !HasUsableRendering(*record)) {
        RemoveRendering(record);
    }
}

// The file to print. Device modes of printers without colour can have colour modes, too, until they are validated; a
// watermark that was rendered while the model wasn't known has no colour file.
const WCHAR* RenderedFile(const SheetContext& context, const WatermarkRecord& record) {
    const DeviceModel* const model = context.model.Get();
    const uint32_t mode = context.devMode->privatePart.colorMode;
    const bool isColor =
        mode == kColorSecondKind || (mode == kColor && context.devMode->publicPart.dmColor == DMCOLOR_COLOR);
    const bool hasColor = model && !IsMonochrome(model->colorCapability) && record.colorFileName[0] != 0;
    return isColor && hasColor ? record.colorFileName : record.fileName;
}

void ClearWatermark(PrivateDevMode* own) {
    own->watermarkFlags = 0;
    own->watermarkPages = 0;
    own->watermarkColor = 0;
    own->watermarkBold = 0;
    own->watermarkItalic = 0;
    own->watermarkFontSize = 0;
    own->watermarkAngle = 0;
    own->watermarkIndex = 0;
    own->watermarkPosition = 0;
    own->watermarkOffsetX = 0;
    own->watermarkOffsetY = 0;
    ZeroMemory(own->watermarkFile, sizeof(own->watermarkFile));
}

// Writes the entry at an index, or none, into the device mode: only what makes a valid one.
void WriteWatermark(SheetContext* context, size_t index, WatermarkMaker make) {
    PrivateDevMode& own = Own(context);
    const bool isOn = context->watermarkEdit.choices.isOn;
    own.outputFlag = isOn ? 1 : 0;
    WatermarkRecord* const record =
        isOn && WatermarkAt(*context, index) ? context->watermarks.records.Get() + index : nullptr;
    if (record && !HasUsableRendering(*record)) {
        Render(*context, make, record);
    }
    if (!record || !HasUsableRendering(*record)) {
        ClearWatermark(&own);
        return;
    }
    own.watermarkFlags = kWatermarkUnderPage | kWatermarkIsRendered;
    ZeroMemory(own.watermarkFile, sizeof(own.watermarkFile));
    CopyText(own.watermarkFile, ARRAYSIZE(own.watermarkFile), RenderedFile(*context, *record));
    own.watermarkFontSize = static_cast<int32_t>(record->width);
    own.watermarkAngle = static_cast<int32_t>(record->height);
    own.watermarkIndex = static_cast<int16_t>(record->resolution);
    own.watermarkPosition = record->placement <= kLastPlacement ? record->placement : 0u;
}

}  // namespace

const WatermarkRecord* WatermarkAt(const SheetContext& context, size_t index) {
    const WatermarkRecord* const records = context.watermarks.records.Get();
    return records && index < context.watermarks.count && records[index].type != 0 ? records + index : nullptr;
}

bool IsUserWatermark(const SheetContext& context, size_t index) {
    return index >= BuiltIns(context) && WatermarkAt(context, index);
}

void OpenWatermarks(SheetContext* context) {
    PrivateDevMode& own = Own(context);
    const WatermarkRecord* const chosen = WatermarkAt(*context, ChosenIndex(*context));
    if (!chosen || chosen->text[0] == 0) {
        own.outputLevel = 0;
    }
    ShowEntry(context, ChosenIndex(*context));
    ShowShade(context, FindOpeningShade(context->watermarkEdit.choices.color, own.outputStep));
    SwitchWatermark(context, own.outputFlag != 0);
    context->watermarkEdit.committedCount = context->watermarks.count;
}

void SwitchWatermark(SheetContext* context, bool isOn) {
    WatermarkEdit& edit = context->watermarkEdit;
    edit.choices.isOn = isOn;
    edit.buttons = {false, false, isOn && IsUserWatermark(*context, edit.current)};
}

void EditWatermarkName(SheetContext* context, const WCHAR* name) {
    WatermarkEdit& edit = context->watermarkEdit;
    CopyText(edit.choices.name, ARRAYSIZE(edit.choices.name), name);
    edit.buttons = {};
    if (name[0] == 0) {
        return;
    }
    const size_t named = FindName(*context, name);
    const bool isNew = named == context->watermarks.count;
    const bool isUsers = IsUserWatermark(*context, isNew ? edit.current : named);
    if (IsFull(*context)) {
        edit.buttons = {!isNew && !isUsers, isUsers, !isNew && isUsers};
    } else {
        edit.buttons = {isNew, isNew && isUsers, !isNew && isUsers};
    }
}

void SelectWatermark(SheetContext* context, size_t index) {
    ShowEntry(context, index);
    ShowShade(context, FindSelectedShade(context->watermarkEdit.choices.color));
}

void TurnWatermark(SheetContext* context, int degrees, bool isThumb) {
    context->watermarkEdit.choices.angle =
        std::clamp(isThumb ? degrees - degrees % kThumbStep : degrees, 0, kMostDegrees);
}

void EditWatermark(SheetContext* context) {
    WatermarkEdit& edit = context->watermarkEdit;
    const WatermarkRecord* const current = WatermarkAt(*context, edit.current);
    // A button that a typed name allows stays.
    if (edit.choices.name[0] == 0 || (current && HasChoices(*context, *current))) {
        return;
    }
    if (IsFull(*context)) {
        edit.buttons.canAdd = false;
    }
    const size_t named = FindName(*context, edit.choices.name);
    edit.buttons.canChange = IsUserWatermark(*context, named < context->watermarks.count ? named : edit.current);
}

void ChooseWatermarkColor(SheetContext* context, int family, int shade) {
    WatermarkChoices& choices = context->watermarkEdit.choices;
    ShowShade(context, ShadeOf(family, shade));
    choices.color = ColorOf(choices.shade);
    if (choices.shade.family == kWhiteFamily) {
        Own(context).outputStep = static_cast<int16_t>(choices.shade.shade);
    }
    EditWatermark(context);
}

void AddWatermark(SheetContext* context) {
    StoreNamed(context, true);
}

void ChangeWatermark(SheetContext* context) {
    StoreNamed(context, false);
}

void DeleteWatermark(SheetContext* context) {
    WatermarkEdit& edit = context->watermarkEdit;
    const size_t index = FindName(*context, edit.choices.name);
    auto grown = HeapOwner<WatermarkRecord>::Allocate(edit.deletedCount + 1);
    if (!IsUserWatermark(*context, index) || !grown) {
        return;
    }
    WatermarkRecord& record = context->watermarks.records.Get()[index];
    std::copy_n(edit.deleted.Get(), edit.deletedCount, grown.Get());
    grown.Get()[edit.deletedCount] = record;
    const uint32_t type = record.type;
    record.type = 0;
    size_t first = 0;
    if (!Compact(&context->watermarks, &first)) {
        record.type = type;
        return;
    }
    edit.deleted = std::move(grown);
    ++edit.deletedCount;
    Own(context).outputLevel = 0;
    SelectWatermark(context, 0);
}

void RestoreWatermarks(SheetContext* context) {
    ResetBuiltIns(context);
    if (context->watermarks.records) {
        size_t first = 0;
        Compact(&context->watermarks, &first);
    }
    SelectWatermark(context, 0);
    SwitchWatermark(context, false);
}

void ResetBuiltinWatermarks(SheetContext* context) {
    ResetBuiltIns(context);
    Own(context).outputFlag = 0;
}

bool IsReady(const SheetContext& context, size_t index) {
    const WatermarkRecord* const record = WatermarkAt(context, index);
    return record && record->fileName[0] != 0;
}

int SelectedReady(const SheetContext& context) {
    const PrivateDevMode& own = context.devMode->privatePart;
    const WatermarkRecord* const chosen = (own.watermarkFlags & kWatermarkIsRendered) != 0
                                              ? FindWatermarkByFile(context.watermarks, own.watermarkFile)
                                              : nullptr;
    const auto index = static_cast<size_t>(chosen ? chosen - context.watermarks.records.Get() : 0);
    return chosen && IsReady(context, index) ? static_cast<int>(index) : kNoneReady;
}

WatermarkRecord ShownWatermark(const SheetContext& context) {
    WatermarkRecord record;
    MakeBlankWatermark(&record);
    StoreChoices(context, &record);
    return record;
}

bool IsWatermarkChanged(const SheetContext& context) {
    const WatermarkEdit& edit = context.watermarkEdit;
    const WatermarkRecord* const current = WatermarkAt(context, edit.current);
    if (context.watermarks.count != edit.committedCount ||
        edit.choices.isOn != (context.devMode->privatePart.outputFlag != 0) ||
        static_cast<int64_t>(edit.current) != context.committedPrivate.outputLevel ||
        (current && !HasChoices(context, *current))) {
        return true;
    }
    const WatermarkList stored = LoadWatermarkList(context.printerName);
    return stored.count != context.watermarks.count ||
           (stored.count != 0 && memcmp(stored.records.Get(), context.watermarks.records.Get(),
                                        stored.count * sizeof(WatermarkRecord)) != 0);
}

void ApplyWatermarks(SheetContext* context, WatermarkMaker make) {
    const size_t index = context->watermarkEdit.choices.isOn ? StoreAtApply(context) : ChosenIndex(*context);
    RemoveOldRenderings(context);
    WriteWatermark(context, index, make);
    // A list that couldn't be read when the page was opened doesn't take the place of the stored one.
    if (context->watermarkEdit.committedCount == 0 && LoadWatermarkList(context->printerName).count != 0) {
        return;
    }
    if (context->watermarks.records) {
        SaveWatermarkList(context->printerName, context->watermarks.records.Get(), context->watermarks.count);
    }
    context->watermarkEdit.committedCount = context->watermarks.count;
}

}  // namespace velmora
