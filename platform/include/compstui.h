// The common property-sheet host: what it tells a driver's sheet functions, and what they ask of it.
#pragma once

#include <prsht.h>
#include <windows.h>

#include <cstddef>

// PROPSHEETUI_INFO.Reason.
#define PROPSHEETUI_REASON_INIT 0
#define PROPSHEETUI_REASON_GET_INFO_HEADER 1
#define PROPSHEETUI_REASON_DESTROY 2
#define PROPSHEETUI_REASON_SET_RESULT 3
#define PROPSHEETUI_REASON_GET_ICON 4

#define PROPSHEETUI_INFO_VERSION 0x0100

// PROPSHEETUI_INFO.Flags.
#define PSUIINFO_UNICODE 0x0001

// Functions of PROPSHEETUI_INFO.pfnComPropSheet.
#define CPSFUNC_ADD_PROPSHEETPAGEW 1
#define CPSFUNC_SET_RESULT 9

// Results of a sheet.
#define CPSUI_CANCEL 0
#define CPSUI_OK 1

// Negative results of the host's functions.
#define ERR_CPSUI_GETLASTERROR (-1)
#define ERR_CPSUI_INVALID_PDATA (-3)
#define ERR_CPSUI_INVALID_LPARAM (-4)
#define ERR_CPSUI_NO_PROPSHEETPAGE (-8)
#define ERR_CPSUI_CREATEPROPPAGE_FAILED (-10)
#define ERR_CPSUI_FUNCTION_NOT_IMPLEMENTED (-9999)

typedef LONG_PTR(CALLBACK* PFNCOMPROPSHEET)(HANDLE hComPropSheet, UINT Function, LPARAM lParam1, LPARAM lParam2);

typedef struct _PROPSHEETUI_INFO {
    WORD cbSize;
    WORD Version;
    WORD Flags;
    WORD Reason;
    HANDLE hComPropSheet;
    PFNCOMPROPSHEET pfnComPropSheet;
    LPARAM lParamInit;
    ULONG_PTR UserData;
    ULONG_PTR Result;
} PROPSHEETUI_INFO, *PPROPSHEETUI_INFO;

static_assert(sizeof(PROPSHEETUI_INFO) == 48 && offsetof(PROPSHEETUI_INFO, lParamInit) == 24);

typedef struct _PROPSHEETUI_INFO_HEADER {
    WORD cbSize;
    WORD Flags;
    LPWSTR pTitle;
    HWND hWndParent;
    HINSTANCE hInst;
    union {
        HICON hIcon;
        ULONG_PTR IconID;
    };
} PROPSHEETUI_INFO_HEADER, *PPROPSHEETUI_INFO_HEADER;

static_assert(sizeof(PROPSHEETUI_INFO_HEADER) == 40);

typedef struct _SETRESULT_INFO {
    WORD cbSize;
    WORD wReserved;
    HANDLE hSetResult;
    LRESULT Result;
} SETRESULT_INFO, *PSETRESULT_INFO;

static_assert(sizeof(SETRESULT_INFO) == 24);

typedef LONG (*PFNPROPSHEETUI)(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam);
