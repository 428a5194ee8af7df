// Task memory, COM on a thread, making objects, and the exports of a COM server (objbase.h, combaseapi.h).
#pragma once

#include <guiddef.h>
#include <unknwn.h>
#include <windows.h>

enum COINIT {
    COINIT_MULTITHREADED = 0x0,
    COINIT_APARTMENTTHREADED = 0x2,
    COINIT_DISABLE_OLE1DDE = 0x4,
    COINIT_SPEED_OVER_MEMORY = 0x8,
};

extern "C" {
LPVOID WINAPI CoTaskMemAlloc(SIZE_T bytes);
void WINAPI CoTaskMemFree(LPVOID memory);  // null: nothing

// Each that succeeds needs its CoUninitialize on the same thread. S_FALSE: the thread had COM already;
// RPC_E_CHANGED_MODE: in another mode, which it keeps. `reserved` is null.
HRESULT WINAPI CoInitializeEx(LPVOID reserved, DWORD mode);
void WINAPI CoUninitialize();

// *object is an owned reference; null on failure. CO_E_NOTINITIALIZED where the thread hasn't COM, REGDB_E_CLASSNOTREG
// where there is no such class, CLASS_E_NOAGGREGATION with an outer object.
HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID interfaceId, LPVOID* object);

// Exported by servers.
HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, LPVOID* object);
HRESULT WINAPI DllCanUnloadNow();
}
