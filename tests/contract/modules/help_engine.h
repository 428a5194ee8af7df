// An HTML Help engine that shows nothing and keeps what it is asked: a module of the contract tests.
#pragma once

#include <windows.h>

extern "C" {

// The engine's entry point by ordinal 15 (HtmlHelpW); on hosts without ordinals it is found by this name.
HWND WINAPI Ordinal15(HWND window, LPCWSTR file, UINT command, DWORD_PTR data);

// What was asked since the last call, a line each, ended by "\n". Valid until the next call.
const char* WINAPI TakeHelpRequests();
}
