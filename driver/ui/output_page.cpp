#include "driver/ui/output_page.h"

#include <algorithm>
#include <iterator>

#include "driver/base/text.h"
#include "driver/ui/controls.h"
#include "driver/ui/edit_filter.h"
#include "driver/ui/output_rules.h"
#include "driver/ui/page.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/web_link.h"

namespace velmora {
namespace {

// Controls. Labels, boxes and radio buttons have the text of the string of their own number.
constexpr int kFlagA = 9003;
constexpr int kChoices[] = {9004, 9005, 9006};  // in the order of finishChoice
constexpr int kSideLabel = 9007;
constexpr int kSide = 9008;
constexpr int kFlagB = 9009;
constexpr int kText = 9010;
constexpr int kFlags[] = {9012, 9013, 9014};
constexpr int kFlagC = 9015;
constexpr int kRestore = 9017;
constexpr UINT kRestoreText = 9018;
constexpr int kTexts[] = {kFlagA, 9004, 9005, 9006, kSideLabel, kFlagB, 9011, 9012, 9013, 9014, kFlagC};

// A click on one of these changes the page.
constexpr int kButtons[] = {kFlagA, 9004, 9005, 9006, kFlagB, 9012, 9013, 9014, kFlagC, kRestore};

constexpr EditFilter kTextFilter = {kCodeCharacters, 0};

// What 9010 shows of the device mode's text.
using ShownText = WCHAR[sizeof(OutputPage::text)];

// What the two switches enable.
void EnableDependents(HWND dialog) {
    const bool isFlagA = IsChecked(dialog, kFlagA);
    for (const int control : kChoices) {
        EnableControl(dialog, control, isFlagA);
    }
    EnableControl(dialog, kSideLabel, isFlagA);
    EnableControl(dialog, kSide, isFlagA);
    EnableControl(dialog, kText, IsChecked(dialog, kFlagB));
}

void ShowPage(HWND dialog, const OutputPage& page) {
    for (size_t i = 0; i < std::size(kChoices); ++i) {
        CheckDlgButton(dialog, kChoices[i], i == page.choice ? BST_CHECKED : BST_UNCHECKED);
    }
    SelectComboByData(dialog, kSide, page.side);
    CheckControl(dialog, kFlagA, page.isFlagA);
    ShownText text;
    WidenText(text, ARRAYSIZE(text), page.text, sizeof(page.text));
    UpdateControlText(dialog, kText, text);
    CheckControl(dialog, kFlagB, page.isFlagB);
    for (size_t i = 0; i < std::size(kFlags); ++i) {
        CheckControl(dialog, kFlags[i], page.flags[i]);
    }
    CheckControl(dialog, kFlagC, page.isFlagC);
    EnableDependents(dialog);
}

OutputPage ReadControls(HWND dialog) {
    OutputPage page = {};
    for (size_t i = 0; i < std::size(kChoices); ++i) {
        if (IsChecked(dialog, kChoices[i])) {
            page.choice = static_cast<uint8_t>(i);
        }
    }
    page.side = static_cast<uint8_t>(GetComboData(dialog, kSide));
    page.isFlagA = IsChecked(dialog, kFlagA);
    ReadAnsiText(dialog, kText, page.text, sizeof(page.text));
    page.isFlagB = IsChecked(dialog, kFlagB);
    for (size_t i = 0; i < std::size(kFlags); ++i) {
        page.flags[i] = IsChecked(dialog, kFlags[i]);
    }
    page.isFlagC = IsChecked(dialog, kFlagC);
    return page;
}

BOOL InitOutputPage(HWND dialog, SheetContext* context) {
    SetOwnTexts(dialog, kTexts);
    SetControlText(dialog, kRestore, kRestoreText);
    FillChoiceCombo(dialog, kSide, kSideChoices, SideFilter(context->deviceInfo));
    SendDlgItemMessageW(dialog, kText, EM_LIMITTEXT, sizeof(OutputPage::text) - 1, 0);
    FilterEdit(dialog, kText, &kTextFilter);
    ShowPage(dialog, OpenOutputPage(&context->devMode->privatePart, context->deviceInfo));
    return TRUE;
}

// False for an edit that shows what the device mode has, as it does after the page set it.
bool IsOtherText(HWND dialog, const PrivateDevMode& devMode) {
    ShownText stored;
    WidenText(stored, ARRAYSIZE(stored), devMode.outputText, sizeof(devMode.outputText));
    WCHAR shown[kMessageCapacity] = {};
    GetDlgItemTextW(dialog, kText, shown, ARRAYSIZE(shown));
    return !TextsEqual<WCHAR>(shown, stored);
}

void OnClick(HWND dialog, SheetContext* context, int id) {
    if (std::find(std::begin(kButtons), std::end(kButtons), id) == std::end(kButtons)) {
        return;
    }
    if (id == kRestore) {
        ShowPage(dialog, OutputDefaults());
    }
    EnableDependents(dialog);
    MarkPageChanged(dialog, context, kOutputSlot);
}

void OnOutputCommand(HWND dialog, SheetContext* context, int id, int code) {
    const PrivateDevMode& own = context->devMode->privatePart;
    if (code == BN_CLICKED) {
        OnClick(dialog, context, id);
    } else if ((id == kSide && code == CBN_SELCHANGE && IsOtherSide(GetComboData(dialog, kSide), own)) ||
               (id == kText && code == EN_CHANGE && IsOtherText(dialog, own))) {
        MarkPageChanged(dialog, context, kOutputSlot);
    }
}

void ApplyPage(HWND dialog, SheetContext* context) {
    ApplyOutputPage(ReadControls(dialog), &context->devMode->privatePart);
    CommitPage(context, kOutputSlot);
}

// Sheets of a custom size aren't finished: the first switch follows the Paper page whenever the page comes to the
// front.
void PaintOutputPage(HWND dialog, SheetContext* context, HDC) {
    const HWND paperPage = context->dialogs[kPaperSlot];
    const bool isCustomSize = paperPage && GetComboData(paperPage, kPaperControl) == kCustomSizePaper;
    if (isCustomSize) {
        CheckControl(dialog, kFlagA, false);
    }
    EnableControl(dialog, kFlagA, !isCustomSize);
    EnableDependents(dialog);
}

void OnOutputMouse(HWND dialog, SheetContext* context, UINT message, POINT point) {
    if (message == WM_MOUSEMOVE) {
        UpdateLinkCursor(dialog, context, point);
    }
}

constexpr PageFunctions kOutputPage = {
    kOutputSlot, InitOutputPage, OnOutputCommand, ApplyPage, nullptr, PaintOutputPage, nullptr, OnOutputMouse,
};

}  // namespace

void RestoreOutputDefaults(HWND page, SheetContext* context) {
    OnClick(page, context, kRestore);
}

INT_PTR CALLBACK OutputPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RoutePageMessage(kOutputPage, dialog, message, wParam, lParam);
}

}  // namespace velmora
