// A window with controls in it, which writes down what they tell it.
#pragma once

#include <commctrl.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/platform/kernel_fixture.h"

namespace host {

class ControlTest : public KernelTest {
  protected:
    ControlTest();
    void TearDown() override;

    // The id is the number of the control, from 1 on.
    HWND Make(LPCWSTR className, DWORD style, LPCWSTR text = TEXT(""), RECT place = {10, 10, 110, 34});
    // What the parent was told since it was last asked: "1 EN_CHANGE", "2 WM_HSCROLL 5 -3" (code, position).
    Lines Told();

    // As the keyboard makes it, to the window that has the focus.
    static void Press(WPARAM key, bool shift = false);
    static void Type(std::u16string_view text);
    // At a point of the control's client area.
    static void Click(HWND control, int x, int y);
    static std::u16string TextOf(HWND window);

    HWND parent_ = nullptr;
    bool destroyControlWhenTold_ = false;
    LRESULT notifyAnswer_ = 0;

  private:
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    Lines told_;
    int made_ = 0;
};

}  // namespace host
