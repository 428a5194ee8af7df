// Texts as the published calls take them: UTF-16, of the type that the host has for it.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace driver_test {

using WideText = std::basic_string<WCHAR>;
using WideView = std::basic_string_view<WCHAR>;

}  // namespace driver_test
