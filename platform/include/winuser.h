// Strings, resource ids and the show states of a window (winuser.h).
#pragma once

#include <windef.h>

#define MAKEINTRESOURCEW(id) (reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(id))))
#define IS_INTRESOURCE(name) ((reinterpret_cast<ULONG_PTR>(name) >> 16) == 0)
#define RT_CURSOR MAKEINTRESOURCEW(1)
#define RT_BITMAP MAKEINTRESOURCEW(2)
#define RT_ICON MAKEINTRESOURCEW(3)
#define RT_MENU MAKEINTRESOURCEW(4)
#define RT_DIALOG MAKEINTRESOURCEW(5)
#define RT_STRING MAKEINTRESOURCEW(6)
#define RT_RCDATA MAKEINTRESOURCEW(10)
#define RT_GROUP_CURSOR MAKEINTRESOURCEW(12)
#define RT_GROUP_ICON MAKEINTRESOURCEW(14)
#define RT_VERSION MAKEINTRESOURCEW(16)

#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOW 5

extern "C" {
// The text in place, or, where the pointer's high part is 0, the one character in its low word.
LPWSTR WINAPI CharUpperW(LPWSTR text);
DWORD WINAPI CharUpperBuffW(LPWSTR text, DWORD length);
// Size 0: `buffer` is taken for an LPCWSTR* that receives the text's address in the module (not NUL-terminated).
int WINAPI LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size);
}
