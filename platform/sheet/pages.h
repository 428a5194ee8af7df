// Pages that a program made for property sheets.
#pragma once

#include <prsht.h>
#include <windows.h>

#include <string>

#include "platform/kernel/objects.h"

namespace host {

// The program's to destroy until a sheet takes it.
class PropertyPage final : public Object {
  public:
    explicit PropertyPage(const PROPSHEETPAGEW& given);
    std::string Describe() const override;

    // What the page's dialog gets as the parameter of WM_INITDIALOG: the given structure as far as its size goes, the
    // rest 0. Its texts are copies.
    PROPSHEETPAGEW given = {};

  private:
    std::u16string template_;
    std::u16string title_;
};

// Null with ERROR_INVALID_HANDLE where it is no page.
PropertyPage* FindPage(HPROPSHEETPAGE page);

// The text of an argument that is one or the id of a string of the module; empty where that has none.
std::u16string TextOrString(HINSTANCE module, LPCWSTR textOrId);

}  // namespace host
