// Base types, handles and bit arithmetic (windef.h, winnt.h, minwindef.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#define WINAPI
#define APIENTRY
#define CALLBACK
#define STDMETHODCALLTYPE
#define VOID void

using CHAR = char;
using WCHAR = char16_t;  // 16 bits, as there
using TCHAR = WCHAR;
using BYTE = uint8_t;
using UCHAR = uint8_t;
using BOOLEAN = uint8_t;
using SHORT = int16_t;
using USHORT = uint16_t;
using WORD = uint16_t;
using INT = int32_t;
using UINT = uint32_t;
using LONG = int32_t;
using ULONG = uint32_t;
using DWORD = uint32_t;
using BOOL = int;
using INT64 = int64_t;
using UINT64 = uint64_t;
using LONGLONG = int64_t;
using ULONGLONG = uint64_t;
using DWORDLONG = uint64_t;
using DWORD64 = uint64_t;
using INT_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using LONG_PTR = intptr_t;
using ULONG_PTR = uintptr_t;
using DWORD_PTR = uintptr_t;
using SIZE_T = size_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using HRESULT = LONG;
using LANGID = WORD;
using LCID = DWORD;
using ATOM = WORD;
using COLORREF = DWORD;
using ACCESS_MASK = DWORD;
using PSECURITY_DESCRIPTOR = void*;

using PVOID = void*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using PSTR = char*;
using PCSTR = const char*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using PWSTR = WCHAR*;
using PCWSTR = const WCHAR*;
using LPTSTR = TCHAR*;
using LPCTSTR = const TCHAR*;
using PBYTE = BYTE*;
using LPBYTE = BYTE*;
using PWORD = WORD*;
using LPWORD = WORD*;
using PDWORD = DWORD*;
using LPDWORD = DWORD*;
using PLONG = LONG*;
using LPLONG = LONG*;
using PUINT = UINT*;
using PBOOL = BOOL*;
using LPBOOL = BOOL*;
using PULONG = ULONG*;

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260
#define ARRAYSIZE(array) (sizeof(array) / sizeof((array)[0]))

#define VELMORA_WIDE_LITERAL(text) u##text
#define TEXT(text) VELMORA_WIDE_LITERAL(text)

// Handles. Each kind is a type of its own, so that the compiler tells them apart.
using HANDLE = void*;
using LPHANDLE = HANDLE*;
#define DECLARE_HANDLE(name) \
    struct name##__ {        \
        int unused;          \
    };                       \
    using name = name##__*
DECLARE_HANDLE(HINSTANCE);
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HKEY);
DECLARE_HANDLE(HRSRC);
DECLARE_HANDLE(HDC);
DECLARE_HANDLE(HICON);
DECLARE_HANDLE(HBITMAP);
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HFONT);
DECLARE_HANDLE(HPEN);
DECLARE_HANDLE(HRGN);
DECLARE_HANDLE(HPALETTE);
DECLARE_HANDLE(HMENU);
using HMODULE = HINSTANCE;
using HGLOBAL = HANDLE;
using HLOCAL = HANDLE;
using HGDIOBJ = void*;
using HCURSOR = HICON;
using PHKEY = HKEY*;
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))

using FARPROC = INT_PTR (*)();

struct POINT {
    LONG x;
    LONG y;
};
using POINTL = POINT;
using LPPOINT = POINT*;
struct SIZE {
    LONG cx;
    LONG cy;
};
using SIZEL = SIZE;
using LPSIZE = SIZE*;
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using RECTL = RECT;
using LPRECT = RECT*;
using LPCRECT = const RECT*;

struct FILETIME {
    DWORD dwLowDateTime;  // 100-nanosecond intervals since 1601-01-01 UTC, low half
    DWORD dwHighDateTime;
};
using LPFILETIME = FILETIME*;

union LARGE_INTEGER {
    __extension__ struct {
        DWORD LowPart;
        LONG HighPart;
    };
    LONGLONG QuadPart;
};
using PLARGE_INTEGER = LARGE_INTEGER*;
static_assert(sizeof(LARGE_INTEGER) == 8);

#define LOBYTE(value) (static_cast<BYTE>(static_cast<DWORD_PTR>(value) & 0xFF))
#define LOWORD(value) (static_cast<WORD>((DWORD_PTR)(value)&0xFFFF))
#define HIWORD(value) (static_cast<WORD>(((DWORD_PTR)(value) >> 16) & 0xFFFF))
#define MAKELONG(low, high) (static_cast<LONG>(LOWORD(low) | (static_cast<DWORD>(LOWORD(high)) << 16)))
#define MAKEWPARAM(low, high) (static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(low, high))))
#define MAKELPARAM(low, high) (static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(low, high))))
#define MAKELRESULT(low, high) (static_cast<LRESULT>(static_cast<DWORD>(MAKELONG(low, high))))

#define ZeroMemory(destination, length) memset((destination), 0, (length))

// Languages.
#define MAKELANGID(primary, sub) (static_cast<WORD>((static_cast<WORD>(sub) << 10) | static_cast<WORD>(primary)))
#define PRIMARYLANGID(language) (static_cast<WORD>(static_cast<WORD>(language) & 0x3FF))
#define SUBLANGID(language) (static_cast<WORD>(static_cast<WORD>(language) >> 10))
#define LANG_NEUTRAL 0x00
#define LANG_GERMAN 0x07
#define LANG_ENGLISH 0x09
#define LANG_FRENCH 0x0C
#define LANG_JAPANESE 0x11
#define SUBLANG_NEUTRAL 0x00
#define SUBLANG_DEFAULT 0x01
#define SUBLANG_SYS_DEFAULT 0x02
#define SUBLANG_ENGLISH_US 0x01

// Access rights.
#define DELETE 0x00010000
#define SYNCHRONIZE 0x00100000
#define STANDARD_RIGHTS_REQUIRED 0x000F0000
#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define GENERIC_EXECUTE 0x20000000u
#define GENERIC_ALL 0x10000000u
#define MAXIMUM_ALLOWED 0x02000000
