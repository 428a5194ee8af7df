// Code pages and the user's language (winnls.h).
#pragma once

#include <windef.h>

#define CP_ACP 0
#define CP_UTF8 65001
#define MB_PRECOMPOSED 0x00000001
#define MB_ERR_INVALID_CHARS 0x00000008
#define WC_ERR_INVALID_CHARS 0x00000080
#define WC_NO_BEST_FIT_CHARS 0x00000400

extern "C" {
// Lengths and sizes in bytes for the multi-byte side and in characters for the wide side; -1: up to and with the NUL.
int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR buffer, int size);
int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, LPSTR buffer, int size,
                               LPCSTR defaultChar, LPBOOL usedDefaultChar);
UINT WINAPI GetACP();
BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte);
LANGID WINAPI GetUserDefaultLangID();
}
