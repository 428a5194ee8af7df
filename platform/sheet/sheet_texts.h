// The texts that sheets bring along, in the user's language.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace host {

struct SheetTexts {
    WORD primaryLanguage;
    const char16_t* ok;
    const char16_t* cancel;
    const char16_t* apply;
    const char16_t* help;
    // Captions, with "%" in the place of a name.
    const char16_t* properties;
    const char16_t* printingPreferences;
};

// English where the language has none.
const SheetTexts& TextsOfUser();

// A caption with its name.
std::u16string Caption(std::u16string_view format, std::u16string_view name);

}  // namespace host
