// What a printer can do, as applications and the spooler ask for it.
#pragma once

#include <windows.h>

#include <cstddef>

namespace velmora {

// Characters of a name's slot in a list of names, as DeviceCapabilitiesW (winspool.h) publishes them. A name that fills
// its slot has no terminator.
inline constexpr size_t kBinNameCapacity = 24;
inline constexpr size_t kPersonalityCapacity = 32;
inline constexpr size_t kPaperNameCapacity = 64;  // of media too

// Answers a capability (DC_, wingdi.h) of a printer: its value, or the number of a list's entries. 0 for one that isn't
// known, or that this driver says nothing of. What holds for a printer without a model is answered where the model, or
// the printer, can't be had.
//
// A list is written to `output`, which may lie at any address and must have room for as many entries as the answer
// without an output says; null: nothing is written. Only lists are: other capabilities leave it alone. Names are in the
// user's language and fill their slots up with zeros.
DWORD GetDeviceCapability(HANDLE printer, WORD capability, void* output);

}  // namespace velmora
