// Version resources (winver.h).
#pragma once

#include <windef.h>

struct VS_FIXEDFILEINFO {
    DWORD dwSignature;  // 0xFEEF04BD
    DWORD dwStrucVersion;
    DWORD dwFileVersionMS;
    DWORD dwFileVersionLS;
    DWORD dwProductVersionMS;
    DWORD dwProductVersionLS;
    DWORD dwFileFlagsMask;
    DWORD dwFileFlags;
    DWORD dwFileOS;
    DWORD dwFileType;
    DWORD dwFileSubtype;
    DWORD dwFileDateMS;
    DWORD dwFileDateLS;
};
static_assert(sizeof(VS_FIXEDFILEINFO) == 52);

extern "C" {
// Sizes in bytes. Zero: no version information.
DWORD WINAPI GetFileVersionInfoSizeW(LPCWSTR file, LPDWORD zero);
BOOL WINAPI GetFileVersionInfoW(LPCWSTR file, DWORD ignored, DWORD bytes, LPVOID block);
// *value points into the block; *length is in characters for texts (NUL included), in bytes otherwise.
BOOL WINAPI VerQueryValueW(LPCVOID block, LPCWSTR path, LPVOID* value, PUINT length);
}
