// Keys of INI files as the settings stores have them: lists whose keys are numbered, decimal and hexadecimal numbers,
// texts.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace velmora {

// Room for a list's key, in characters.
constexpr size_t kListKeyCapacity = 32;

// The key of a list's entry: the name and the entry's index, from 0, behind it.
void FormListKey(WCHAR (&key)[kListKeyCapacity], const WCHAR* name, unsigned index);

// How many entries a list has by a file; 0 where it doesn't say or the number is negative. More than 16 bits are cut.
uint16_t ReadListCount(const WCHAR* section, const WCHAR* key, const WCHAR* iniFile);

// A hexadecimal number, with or without "0x"; `fallback` where the key is missing or empty.
uint32_t ReadHexKey(const WCHAR* section, const WCHAR* key, uint32_t fallback, const WCHAR* iniFile);

// Writes a number in decimal.
void WriteNumberKey(const WCHAR* section, const WCHAR* key, uint32_t number, const WCHAR* iniFile);

// Writes a text so that it reads as it is: within quotation marks where it begins or ends with a blank or is in
// quotation marks or apostrophes itself, for reading takes away blanks and then one pair of either. `capacity` is the
// room, in characters, that the text has where it stands; without a terminator it ends there. At most MAX_PATH - 1
// characters are written. Null deletes the key.
void WriteTextKey(const WCHAR* section, const WCHAR* key, const WCHAR* text, size_t capacity, const WCHAR* iniFile);

}  // namespace velmora
