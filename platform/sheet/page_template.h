// The dialog templates that pages are made of.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

// What dialog units are measured by.
struct DialogFont {
    WORD points = 8;
    WORD weight = 400;
    BYTE isItalic = FALSE;
    BYTE charSet = DEFAULT_CHARSET;
    std::u16string face = u"MS Shell Dlg";
};

struct PageTemplate {
    SIZE units;  // the dialog's size in dialog units
    std::u16string title;
    DialogFont font;
    // The template as a page's: a child without a frame, hidden at first, whose controls the keyboard reaches from its
    // sheet. As many 4-byte words as it needs, so that it lies as templates must.
    std::vector<DWORD> words;

    LPCDLGTEMPLATEW Get() const { return reinterpret_cast<LPCDLGTEMPLATEW>(words.data()); }
};

// The dialog of the module; empty, and the last error set, where it has none of this name or what it has is none.
std::optional<PageTemplate> LoadPageTemplate(HINSTANCE module, LPCWSTR name);

}  // namespace host
