// What scroll bars and track bars have in common: keys and the mouse move them, and they tell their parent by
// WM_HSCROLL or WM_VSCROLL. Codes are those of scroll bars (SB_…); track bars have other names (TB_…) for the same.
#pragma once

#include <windows.h>

#include "platform/user/controls/control.h"

namespace host {

class ScrollControl : public Control {
  public:
    // The control lies upright where its window has `verticalStyle`.
    ScrollControl(HWND window, MessageRange ownMessages, DWORD verticalStyle)
        : Control(window, ownMessages), verticalStyle_(verticalStyle) {}

  protected:
    // Keys, the mouse without its wheel, and the focus; all else goes to HandleCommon.
    LRESULT HandleInput(UINT message, WPARAM wParam, LPARAM lParam);
    // What a key stands for.
    virtual void Step(UINT code) = 0;
    virtual void Press(POINT point) = 0;
    virtual void Drag(POINT point) = 0;
    // Also where nothing was pressed.
    virtual void Release() = 0;

    bool IsVertical() const { return (Style() & verticalStyle_) != 0; }
    void Tell(UINT code, int position = 0) const;

  private:
    bool PressKey(WPARAM key);

    const DWORD verticalStyle_;
    bool movedByKey_ = false;
};

}  // namespace host
