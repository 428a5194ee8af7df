// The fonts of a machine's display.
#pragma once

#include "platform/host.h"

namespace host {

// The machine's font families in alphabetical order, case ignored, each once: those that were set, or the host's.
std::vector<Font> DisplayFonts();

// The machine has these fonts; HostFonts: those that the host's font configuration lists, and those of a fresh machine,
// which families of the host are drawn for.
void SetDisplayFonts(std::vector<Font> fonts);
void SetHostFonts();

// What a machine has for which nothing else is set.
std::vector<Font> FreshFonts();

}  // namespace host
