// Pictures of windows under Wine.
#pragma once

#include <windows.h>

#include <filesystem>

namespace contract {

// Brings a window up to date and writes it as a PNG file of 24-bit colours. Throws std::runtime_error, saying which
// step failed.
void SaveWindowPicture(HWND window, const std::filesystem::path& file);

}  // namespace contract
