// Code pages: 1252, 932 and UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace host {

// Text in the machine's ANSI code page. What a page doesn't have becomes its default character.
std::u16string FromAnsi(std::string_view text);
std::string ToAnsi(std::u16string_view text);

}  // namespace host
