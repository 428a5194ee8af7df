// Dialogs as resource compilers write them, in the plain and the extended form.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

struct DialogFont {
    WORD points = 0;
    LONG weight = FW_NORMAL;
    bool italic = false;
    BYTE charSet = DEFAULT_CHARSET;
    std::u16string face;
};

struct DialogItem {
    DWORD style = 0;
    DWORD exStyle = 0;
    int x = 0;  // in dialog units, as all places here
    int y = 0;
    int width = 0;
    int height = 0;
    DWORD id = 0;
    std::u16string className;
    std::u16string text;         // or 0xFFFF and the number of a resource
    const BYTE* data = nullptr;  // creation data, beginning with its size; in the template; null: none
};

struct DialogTemplate {
    DWORD style = 0;
    DWORD exStyle = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool hasMenu = false;
    std::u16string className;  // empty: the dialogs'
    std::u16string title;
    std::optional<DialogFont> font;
    std::vector<DialogItem> items;
};

// None where the bytes end too early or a control's class isn't known by its number.
std::optional<DialogTemplate> ParseDialogTemplate(const BYTE* bytes, size_t size);

}  // namespace host
