#include "driver/ui/adjustment_sheet.h"

#include <prsht.h>

#include <iterator>
#include <span>

#include "driver/base/text.h"
#include "driver/ui/color_sample.h"
#include "driver/ui/color_values.h"
#include "driver/ui/controls.h"
#include "driver/ui/number_field.h"
#include "driver/ui/page.h"
#include "driver/ui/pictures.h"

namespace velmora {
namespace {

constexpr UINT kCaption = 6100;

// Controls.
constexpr int kSample = 6104;
constexpr int kBaseColor = 6106;
constexpr int kAdjustedPicture = 6107;
constexpr int kPlainPicture = 6149;
constexpr int kResetAdjustment = 6148;
constexpr int kGamma = 6204;
constexpr int kResetCmyk = 6226;

constexpr UINT kResetText = 6035;  // of both buttons

constexpr int kPageOfSlider = 5;

// Labels, which have the text of the string of their own number.
constexpr int kAdjustmentTexts[] = {
    6103, 6105, 6108, 6109, 6111, 6117, 6123, 6130, 6133, 6134, 6138, 6139, 6143, 6144,
};
constexpr int kCmykTexts[] = {kGamma, 6210, 6214, 6218, 6222};

// A page of the sheet. Its values are those of one part.
struct PageControls {
    AdjustmentPart part;
    std::span<const int> texts;
    std::span<const AdjustmentSlider> sliders;
    int reset;
};
constexpr PageControls kAdjustmentControls = {kAdjustmentPart, kAdjustmentTexts, kAdjustmentSliders, kResetAdjustment};
constexpr PageControls kCmykControls = {kCmykPart, kCmykTexts, kCmykSliders, kResetCmyk};

// The page's slider that has this control; null where none has.
const AdjustmentSlider* FindSlider(const PageControls& page, int AdjustmentSlider::*control, int id) {
    for (const AdjustmentSlider& slider : page.sliders) {
        if (slider.*control == id) {
            return &slider;
        }
    }
    return nullptr;
}

HWND ScrollBarOf(HWND dialog, const AdjustmentSlider& slider) {
    return GetDlgItem(dialog, slider.scrollBar);
}

NumberField ReadSlider(HWND dialog, const AdjustmentSlider& slider) {
    NumberField field = {};
    GetDlgItemTextW(dialog, slider.edit, field.text, static_cast<int>(NumberField::kCapacity));
    field.position = GetScrollPos(ScrollBarOf(dialog, slider), SB_CTL);
    field.lowest = -kMostAdjustment;
    field.highest = kMostAdjustment;
    return field;
}

void ShowSlider(HWND dialog, const AdjustmentSlider& slider, const NumberField& field) {
    if (!TextsEqual<WCHAR>(ReadSlider(dialog, slider).text, field.text)) {
        SetDlgItemTextW(dialog, slider.edit, field.text);
    }
}

// The edit's text has changed, by the user or by the page: the scroll bar follows.
void OnSliderTyped(HWND dialog, const AdjustmentSlider& slider) {
    const NumberField shown = ReadSlider(dialog, slider);
    NumberField field = shown;
    TypeNumber(&field, shown.text);
    SetScrollPos(ScrollBarOf(dialog, slider), SB_CTL, field.position, TRUE);
}

void SettleSlider(HWND dialog, const AdjustmentSlider& slider) {
    NumberField field = ReadSlider(dialog, slider);
    SettleNumber(&field, field.lowest, field.highest);
    ShowSlider(dialog, slider, field);
}

void OnSliderMoved(HWND dialog, const AdjustmentSlider& slider, int code, int position) {
    NumberField field = ReadSlider(dialog, slider);
    switch (code) {
        case SB_LINELEFT:
        case SB_LINERIGHT:
            SetNumber(&field, field.position + (code == SB_LINELEFT ? -1 : 1));
            break;
        case SB_PAGELEFT:
        case SB_PAGERIGHT:
            SetNumber(&field, field.position + (code == SB_PAGELEFT ? -kPageOfSlider : kPageOfSlider));
            break;
        case SB_LEFT:
        case SB_RIGHT:
            SetNumber(&field, code == SB_LEFT ? field.lowest : field.highest);
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            SetNumber(&field, position);
            break;
        default:
            return;
    }
    ShowSlider(dialog, slider, field);
}

ColorPreset ReadValues(HWND dialog, const PageControls& page) {
    ColorPreset values = {};
    for (const AdjustmentSlider& slider : page.sliders) {
        values.*slider.value = ReadSlider(dialog, slider).position;
    }
    if (page.part == kAdjustmentPart) {
        values.colorSample = static_cast<int32_t>(GetComboData(dialog, kSample));
        values.baseColor = static_cast<int32_t>(GetComboData(dialog, kBaseColor));
    } else {
        values.gamma = IsChecked(dialog, kGamma) ? 1 : 0;
    }
    return values;
}

void ShowValues(HWND dialog, const PageControls& page, const ColorPreset& values) {
    for (const AdjustmentSlider& slider : page.sliders) {
        NumberField field = ReadSlider(dialog, slider);
        SetNumber(&field, values.*slider.value);
        ShowSlider(dialog, slider, field);
    }
    if (page.part == kAdjustmentPart) {
        SelectComboByData(dialog, kSample, static_cast<uint32_t>(values.colorSample));
        SelectComboByData(dialog, kBaseColor, static_cast<uint32_t>(values.baseColor));
    } else {
        CheckControl(dialog, kGamma, values.gamma != 0);
    }
}

void InvalidateSamples(HWND dialog) {
    for (const int picture : {kPlainPicture, kAdjustedPicture}) {
        InvalidateControl(dialog, picture);
    }
}

BOOL InitPage(HWND dialog, const SheetContext& context, const PageControls& page) {
    SetOwnTexts(dialog, page.texts);
    SetControlText(dialog, page.reset, kResetText);
    FillChoiceCombo(dialog, kSample, kSampleChoices, kEveryChoice);
    FillChoiceCombo(dialog, kBaseColor, kBaseColorChoices, kEveryChoice);
    for (const AdjustmentSlider& slider : page.sliders) {
        SendDlgItemMessageW(dialog, slider.edit, EM_LIMITTEXT, NumberField::kCapacity - 1, 0);
        SetScrollRange(ScrollBarOf(dialog, slider), SB_CTL, -kMostAdjustment, kMostAdjustment, FALSE);
    }
    ColorPreset values = {};
    ReadAdjustment(context.devMode->privatePart, &values);
    ShowValues(dialog, page, values);
    return TRUE;
}

void OnCommand(HWND dialog, const PageControls& page, int id, int code) {
    if (id == page.reset && code == BN_CLICKED) {
        ColorPreset values = {};
        ResetAdjustment(page.part, &values);
        ShowValues(dialog, page, values);
        InvalidateSamples(dialog);
    } else if ((id == kSample || id == kBaseColor) && code == CBN_SELCHANGE) {
        InvalidateSamples(dialog);
    } else if (const AdjustmentSlider* const slider = FindSlider(page, &AdjustmentSlider::edit, id)) {
        if (code == EN_CHANGE) {
            OnSliderTyped(dialog, *slider);
            InvalidateSamples(dialog);
        } else if (code == EN_KILLFOCUS) {
            SettleSlider(dialog, *slider);
        }
    }
}

void ApplyPage(HWND dialog, SheetContext* context, const PageControls& page) {
    for (const AdjustmentSlider& slider : page.sliders) {
        SettleSlider(dialog, slider);
    }
    WriteAdjustment(ReadValues(dialog, page), page.part, &context->devMode->privatePart);
    MarkColorPageChanged(context);
}

void PaintSamples(HWND dialog, SheetContext* context, HDC target) {
    const OwnedModule pictures = LoadImageModule(*context);
    const ColorPreset values = ReadValues(dialog, kAdjustmentControls);
    DrawBitmapInControl(dialog, target, pictures.Get(), kPlainSample, kPlainPicture, true);
    if (values.colorSample >= 0 && values.colorSample < static_cast<int32_t>(std::size(kAdjustedSamples))) {
        AdjustmentTable table;
        BuildAdjustmentTable(AdjustmentOf(values), &table);
        DrawAdjustedSample(dialog, target, pictures.Get(), kAdjustedSamples[values.colorSample], kAdjustedPicture,
                           table);
    }
}

template <const PageControls& page>
BOOL Init(HWND dialog, SheetContext* context) {
    return InitPage(dialog, *context, page);
}

template <const PageControls& page>
void Command(HWND dialog, SheetContext*, int id, int code) {
    OnCommand(dialog, page, id, code);
}

template <const PageControls& page>
void Apply(HWND dialog, SheetContext* context) {
    ApplyPage(dialog, context, page);
}

template <const PageControls& page>
void Scroll(HWND dialog, SheetContext*, UINT, int code, int position, HWND control) {
    if (const AdjustmentSlider* const slider = FindSlider(page, &AdjustmentSlider::scrollBar, GetDlgCtrlID(control))) {
        OnSliderMoved(dialog, *slider, code, position);
    }
}

template <const PageControls& page>
constexpr PageFunctions kFunctions = {
    kNoSlot,      Init<page>, Command<page>,
    Apply<page>,  nullptr,    page.part == kAdjustmentPart ? PaintSamples : nullptr,
    Scroll<page>, nullptr,
};

// The pictures beside the sliders are drawn by their page.
void DrawSliderPicture(const SheetContext& context, const PageControls& page, const DRAWITEMSTRUCT& item) {
    if (const AdjustmentSlider* const slider =
            FindSlider(page, &AdjustmentSlider::picture, static_cast<int>(item.CtlID))) {
        const OwnedModule pictures = LoadImageModule(context);
        const OwnedBitmap bitmap(LoadBitmapW(pictures.Get(), slider->bitmap));
        StretchBitmap(item.hDC, bitmap.Get(), item.rcItem);
    }
}

template <const PageControls& page>
INT_PTR CALLBACK PageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    const SheetContext* const context = ContextOf(dialog);
    if (message == WM_DRAWITEM && context) {
        DrawSliderPicture(*context, page, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    }
    return RoutePageMessage(kFunctions<page>, dialog, message, wParam, lParam);
}

struct SheetPage {
    uint16_t dialogTemplate;
    uint16_t title;  // string
    DLGPROC proc;
};
constexpr SheetPage kPages[] = {
    {6101, 6102, PageProc<kAdjustmentControls>},
    {6201, 6202, PageProc<kCmykControls>},
};

}  // namespace

void RunAdjustmentSheet(HWND colorPage, SheetContext* context, bool hasAdjustmentPage) {
    const std::span<const SheetPage> shown = std::span(kPages).subspan(hasAdjustmentPage ? 0 : 1);
    WCHAR titles[std::size(kPages)][kTitleCapacity];
    PROPSHEETPAGEW pages[std::size(kPages)] = {};
    for (size_t i = 0; i < shown.size(); ++i) {
        LoadText(*context, shown[i].title, titles[i], static_cast<int>(kTitleCapacity));
        pages[i].dwSize = sizeof(pages[i]);
        pages[i].dwFlags = PSP_USETITLE | PSP_HASHELP;
        pages[i].hInstance = context->resources.Get();
        pages[i].pszTemplate = MAKEINTRESOURCEW(shown[i].dialogTemplate);
        pages[i].pszTitle = titles[i];
        pages[i].pfnDlgProc = shown[i].proc;
        pages[i].lParam = reinterpret_cast<LPARAM>(context);
    }
    WCHAR caption[kTitleCapacity];
    LoadText(*context, kCaption, caption, ARRAYSIZE(caption));
    PROPSHEETHEADERW header = {};
    header.dwSize = sizeof(header);
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW;
    header.hwndParent = GetParent(colorPage);
    header.hInstance = context->resources.Get();
    header.pszCaption = caption;
    header.nPages = static_cast<UINT>(shown.size());
    header.ppsp = pages;
    PropertySheetW(&header);
}

}  // namespace velmora
