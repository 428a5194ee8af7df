// The registry's keys that the layer itself has a hand in.
#pragma once

#include <string_view>

namespace host {

// Makes the key below HKEY_LOCAL_MACHINE and what leads to it, or removes it with all it holds. Neither writes the
// store: that is for whoever changes more with it.
void MakeMachineKey(std::u16string_view path);
void RemoveMachineKey(std::u16string_view path);

}  // namespace host
