#include "driver/ui/number_control.h"

#include <commctrl.h>

#include "driver/base/text.h"
#include "driver/ui/controls.h"

namespace velmora {
namespace {

int PositionOf(HWND dialog, int spin) {
    return static_cast<int>(SendDlgItemMessageW(dialog, spin, UDM_GETPOS32, 0, 0));
}

}  // namespace

void InitNumber(HWND dialog, const NumberControl& control, const NumberField& field) {
    UDACCEL steps = {0, 1};
    SendDlgItemMessageW(dialog, control.edit, EM_LIMITTEXT, NumberField::kCapacity - 1, 0);
    SendDlgItemMessageW(dialog, control.spin, UDM_SETACCEL, 1, reinterpret_cast<LPARAM>(&steps));
    ShowNumber(dialog, control, field);
}

void ShowNumber(HWND dialog, const NumberControl& control, const NumberField& field) {
    // The spin control puts its position into the edit, which the page may take into the field.
    const NumberField shown = field;
    SendDlgItemMessageW(dialog, control.spin, UDM_SETRANGE32, static_cast<WPARAM>(shown.lowest), shown.highest);
    if (PositionOf(dialog, control.spin) != shown.position) {
        SendDlgItemMessageW(dialog, control.spin, UDM_SETPOS32, 0, shown.position);
    }
    UpdateControlText(dialog, control.edit, shown.text);
}

bool TakeNumber(HWND dialog, const NumberControl& control, NumberField* field) {
    WCHAR text[NumberField::kCapacity] = {};
    GetDlgItemTextW(dialog, control.edit, text, ARRAYSIZE(text));
    if (TextsEqual<WCHAR>(text, field->text)) {
        return false;
    }
    field->position = PositionOf(dialog, control.spin);
    TypeNumber(field, text);
    return true;
}

}  // namespace velmora
