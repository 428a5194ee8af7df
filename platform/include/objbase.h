// Task memory and the exports of a COM server (objbase.h, combaseapi.h).
#pragma once

#include <guiddef.h>
#include <windows.h>

#define STDAPI extern "C" HRESULT
#define STDAPI_(type) extern "C" type
#define STDMETHODIMP HRESULT
#define STDMETHODIMP_(type) type

extern "C" {
LPVOID WINAPI CoTaskMemAlloc(SIZE_T bytes);
LPVOID WINAPI CoTaskMemRealloc(LPVOID memory, SIZE_T bytes);
void WINAPI CoTaskMemFree(LPVOID memory);  // null: nothing

// Exported by servers.
HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, LPVOID* object);
HRESULT WINAPI DllCanUnloadNow();
}
