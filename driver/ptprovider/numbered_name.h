// Names that differ by the number at their ends.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/base/format.h"

namespace velmora {

struct NumberedName {
    NumberedName(const WCHAR* prefix, size_t number) {
        FormatWide(text, kCapacity, TEXT("%s%d"), prefix, static_cast<int>(number));
    }

    static constexpr size_t kCapacity = 64;
    WCHAR text[kCapacity];
};

}  // namespace velmora
