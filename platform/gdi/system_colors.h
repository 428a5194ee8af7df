// The colours of windows and controls.
#pragma once

#include <windows.h>

#include <optional>

namespace host {

// Indices are below it.
inline constexpr size_t kSystemColors = 32;

// None: the layer has no colour of this index.
std::optional<COLORREF> SystemColor(int index);

}  // namespace host
