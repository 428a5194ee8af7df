// The language resource module: every text, dialog and picture that the user sees.
#pragma once

#include <windows.h>

#include "driver/base/handles.h"
#include "driver/entry/printer_access.h"

namespace velmora {

// What the sheets keep of the user's language.
struct ResourceContext {
    WCHAR helpPath[MAX_PATH];   // full path of the help file, empty where there is none
    WORD language;              // primary language (LANG_, winnt.h) of the module that is used
    WORD sublanguage;           // its sublanguage (SUBLANG_)
    WCHAR decimalSeparator[8];  // the user's
};

// The four-letter code of a language, or null where there is none. `primary` is at most 1023.
const WCHAR* LanguageCode(WORD primary, WORD sublanguage);

// The user's primary language: the low 10 bits of the user's default language id.
WORD UserPrimaryLanguage();

// Loads the module for the user's language, or the U.S. English one where it has none; empty where neither can be had.
// `context` may be null; it is filled in either case.
OwnedModule LoadResourceModule(const DriverFiles& files, ResourceContext* context);
OwnedModule LoadResourceModule(HANDLE printer, ResourceContext* context);

}  // namespace velmora
