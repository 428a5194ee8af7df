// A driver package whose sheets have everything: the project's language modules, its pictures, and a model that can't
// print one paper.
#pragma once

#include <windows.h>

#include "tests/driver/package.h"

namespace driver_test {

// The paper that the model can't print, and what it says of it.
inline constexpr SHORT kConflictPaper = DMPAPER_LETTER;
inline constexpr const char* kConflictMessage = "This printer can't print on Letter paper.";

inline constexpr const char* kModelLink = "https://velmora.example/model";

DriverPackage SheetPackage();

}  // namespace driver_test
