#include "driver/ui/about_page.h"

#include "driver/ui/controls.h"
#include "driver/ui/page.h"
#include "driver/ui/web_link.h"

namespace velmora {
namespace {

constexpr int kClose = 1602;     // has the text of the string of its own number
constexpr int kBelowSheet = 80;  // pixels from the sheet's top

BOOL InitAboutPage(HWND dialog, SheetContext* context) {
    SetWindowTextW(dialog, context->aboutTitle);
    SetControlText(dialog, kClose, kClose);
    PlaceDialog(dialog, kCentred, kBelowSheet);
    return TRUE;
}

// The page is its sheet: with the one the other closes.
void OnAboutCommand(HWND dialog, SheetContext*, int id, int) {
    if (id == kClose || id == IDCANCEL) {
        PostMessageW(GetParent(dialog), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
        EndDialog(dialog, 0);
    }
}

void OnAboutMouse(HWND dialog, SheetContext* context, UINT message, POINT point) {
    if (message == WM_MOUSEMOVE) {
        UpdateLinkCursor(dialog, context, point);
    } else {
        OnLinkButton(dialog, context, message, point);
    }
}

void PaintNothing(HWND, SheetContext*, HDC) {}

constexpr PageFunctions kAboutPage = {
    kAboutSlot, InitAboutPage, OnAboutCommand, nullptr, nullptr, PaintNothing, nullptr, OnAboutMouse,
};

}  // namespace

INT_PTR CALLBACK AboutPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RoutePageMessage(kAboutPage, dialog, message, wParam, lParam);
}

}  // namespace velmora
