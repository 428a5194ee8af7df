#include "driver/ui/number_control.h"

#include <commctrl.h>

#include "driver/base/text.h"
#include "driver/ui/controls.h"

namespace velmora {

void InitNumber(HWND dialog, const NumberControl& control, const NumberField& field) {
    UDACCEL steps = {0, 1};
    SendDlgItemMessageW(dialog, control.edit, EM_LIMITTEXT, NumberField::kCapacity - 1, 0);
    SendDlgItemMessageW(dialog, control.spin, UDM_SETACCEL, 1, reinterpret_cast<LPARAM>(&steps));
    ShowNumber(dialog, control, field);
}

void ShowNumber(HWND dialog, const NumberControl& control, const NumberField& field) {
    SendDlgItemMessageW(dialog, control.spin, UDM_SETRANGE32, static_cast<WPARAM>(field.lowest), field.highest);
    UpdateControlText(dialog, control.edit, field.text);
}

bool TakeNumber(HWND dialog, const NumberControl& control, NumberField* field) {
    WCHAR text[NumberField::kCapacity] = {};
    GetDlgItemTextW(dialog, control.edit, text, ARRAYSIZE(text));
    if (TextsEqual<WCHAR>(text, field->text)) {
        return false;
    }
    TypeNumber(field, text);
    return true;
}

}  // namespace velmora
