#include <commctrl.h>
#include <windows.h>

#include "platform/user/controls/controls.h"
#include "platform/user/system_classes.h"

namespace host {

std::span<const SystemClass> ControlClasses() {
    // Each keeps the address of its state.
    static constexpr int kExtra = sizeof(LONG_PTR);
    static constexpr UINT kStyle = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    static constexpr SystemClass kClasses[] = {
        {u"Button", ButtonProc, kStyle, kExtra},
        {u"Static", StaticProc, kStyle, kExtra},
        {u"Edit", EditProc, kStyle, kExtra},
        {u"ListBox", ListBoxProc, kStyle, kExtra},
        {kComboListClass, ListBoxProc, kStyle, kExtra},
        {u"ComboBox", ComboBoxProc, kStyle, kExtra},
        {u"ScrollBar", ScrollBarProc, kStyle, kExtra},
        {TRACKBAR_CLASSW, TrackBarProc, kStyle, kExtra},
        {UPDOWN_CLASSW, UpDownProc, kStyle, kExtra},
        {WC_TABCONTROLW, TabControlProc, kStyle, kExtra},
    };
    return kClasses;
}

}  // namespace host

extern "C" {

// The classes are there from the beginning.
VOID WINAPI InitCommonControls() {}

}  // extern "C"
