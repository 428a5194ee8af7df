#include "platform/user/controls/scroll_control.h"

namespace host {

LRESULT ScrollControl::HandleInput(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            Redraw();
            return 0;
        case WM_KEYDOWN:
            return PressKey(wParam) ? 0 : HandleCommon(message, wParam, lParam);
        case WM_KEYUP:
            if (movedByKey_) {
                movedByKey_ = false;
                Tell(SB_ENDSCROLL);
            }
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            Press(PointOf(lParam));
            return 0;
        case WM_MOUSEMOVE:
            Drag(PointOf(lParam));
            return 0;
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED:
            Release();
            return 0;
        default:
            return HandleCommon(message, wParam, lParam);
    }
}

void ScrollControl::Tell(UINT code, int position) const {
    SendMessageW(GetParent(window_), IsVertical() ? WM_VSCROLL : WM_HSCROLL, MAKEWPARAM(code, position),
                 reinterpret_cast<LPARAM>(window_));
}

bool ScrollControl::PressKey(WPARAM key) {
    static constexpr struct {
        WPARAM key;
        UINT code;
    } kKeys[] = {{VK_UP, SB_LINEUP}, {VK_LEFT, SB_LINEUP}, {VK_DOWN, SB_LINEDOWN}, {VK_RIGHT, SB_LINEDOWN},
                 {VK_HOME, SB_TOP},  {VK_END, SB_BOTTOM},  {VK_PRIOR, SB_PAGEUP},  {VK_NEXT, SB_PAGEDOWN}};
    for (const auto& row : kKeys) {
        if (row.key == key) {
            movedByKey_ = true;
            Step(row.code);
            return true;
        }
    }
    return false;
}

}  // namespace host
