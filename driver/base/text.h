// Bounded operations on NUL-terminated texts. Capacities count characters, the terminator included.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/heap.h"

namespace velmora {

// Characters before the terminator.
template <class Character>
size_t TextLength(const Character* text) {
    size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return length;
}

// Characters before the terminator, or `limit` where there is none within it.
template <class Character>
size_t TextLength(const Character* text, size_t limit) {
    size_t length = 0;
    while (length < limit && text[length] != 0) {
        ++length;
    }
    return length;
}

// Whether there is no text: null or empty.
inline bool IsEmpty(const WCHAR* text) {
    return !text || *text == 0;
}

// Copies `text` up to `capacity` - 1 characters and terminates it. Returns the characters copied. `text` may be null
// (the destination becomes empty) and must not overlap the destination.
template <class Character>
size_t CopyText(Character* destination, size_t capacity, const Character* text) {
    if (capacity == 0) {
        return 0;
    }
    size_t length = 0;
    while (text && length < capacity - 1 && text[length] != 0) {
        destination[length] = text[length];
        ++length;
    }
    destination[length] = 0;
    return length;
}

// Appends as CopyText copies; `destination` holds a terminated text.
template <class Character>
void AppendText(Character* destination, size_t capacity, const Character* text) {
    const size_t length = TextLength(destination, capacity);
    CopyText(destination + length, capacity - length, text);
}

template <class Character>
bool TextsEqual(const Character* a, const Character* b) {
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

template <class Character>
bool TextBeginsWith(const Character* text, const Character* beginning) {
    while (*beginning != 0 && *text == *beginning) {
        ++text;
        ++beginning;
    }
    return *beginning == 0;
}

// The first place where `part` stands in `text`, or null. An empty part stands at the beginning.
template <class Character>
Character* FindText(Character* text, const Character* part) {
    for (Character* place = text;; ++place) {
        if (TextBeginsWith(static_cast<const Character*>(place), part)) {
            return place;
        }
        if (*place == 0) {
            return nullptr;
        }
    }
}

inline const WCHAR* FindText(const WCHAR* text, const WCHAR* part) {
    return FindText<WCHAR>(const_cast<WCHAR*>(text), part);
}

// What follows the last backslash; the whole text where there is none.
inline const WCHAR* FileNamePart(const WCHAR* path) {
    const WCHAR* name = path;
    for (; *path != 0; ++path) {
        if (*path == TEXT('\\')) {
            name = path + 1;
        }
    }
    return name;
}

// Whether a text is read from right to left: by its first letter.
bool ReadsRightToLeft(const WCHAR* text);

// The number in front of `text`, after blanks, which ends at the first character that is no digit of the base; more
// than 32 bits wrap. A base of 16 takes both cases and no prefix. No digit: 0.
uint32_t ParseNumber(const WCHAR* text, unsigned base);

// The decimal number in front of `text`, after white space and a sign, which ends at the first character that is no
// digit. No digit: 0. A number beyond 32 bits becomes the nearest that isn't; the negative of an unsigned number counts
// back from 2^32.
int32_t ParseInteger(const WCHAR* text);
uint32_t ParseUnsigned(const WCHAR* text);

// Text between the ANSI code page and UTF-16, terminated: at most `length` bytes up to the first NUL, without half a
// character at their end, or a whole text. What can't be converted comes out empty; no memory: an empty owner.
HeapOwner<WCHAR> Widen(const char* text, size_t length);
HeapOwner<char> Narrow(const WCHAR* text);

// Widen into a buffer, cut to `capacity` - 1 characters. Returns the characters written.
size_t WidenText(WCHAR* destination, size_t capacity, const char* text, size_t length);

// How many of the first `length` bytes of a text are whole characters of the ANSI code page.
size_t WholeCharacters(const char* text, size_t length);

// Fills a field of `size` bytes with the whole characters of a text (ANSI code page) that leave room for a terminator,
// and with 0 after them.
void StoreAnsiText(char* field, size_t size, const char* text);

}  // namespace velmora
