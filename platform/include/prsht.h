// Property sheets of the common controls (prsht.h).
#pragma once

#include <commctrl.h>
#include <windows.h>

typedef struct _PSP* HPROPSHEETPAGE;
struct _PROPSHEETPAGEW;
using LPFNPSPCALLBACKW = UINT(CALLBACK*)(HWND, UINT, struct _PROPSHEETPAGEW*);
using PFNPROPSHEETCALLBACK = int(CALLBACK*)(HWND, UINT, LPARAM);

#define PSP_DEFAULT 0x00000000u
#define PSP_USETITLE 0x00000008u
#define PSP_HASHELP 0x00000020u
#define PSP_USECALLBACK 0x00000080u
#define PSP_PREMATURE 0x00000400u

typedef struct _PROPSHEETPAGEW {
    DWORD dwSize;
    DWORD dwFlags;
    HINSTANCE hInstance;
    union {
        LPCWSTR pszTemplate;
        LPCDLGTEMPLATEW pResource;
    };
    union {
        HICON hIcon;
        LPCWSTR pszIcon;
    };
    LPCWSTR pszTitle;
    DLGPROC pfnDlgProc;
    LPARAM lParam;
    LPFNPSPCALLBACKW pfnCallback;
    UINT* pcRefParent;
    LPCWSTR pszHeaderTitle;
    LPCWSTR pszHeaderSubTitle;
    HANDLE hActCtx;
} PROPSHEETPAGEW, *LPPROPSHEETPAGEW;
using LPCPROPSHEETPAGEW = const PROPSHEETPAGEW*;
// Sizes of the structure's earlier versions: up to pcRefParent, and up to pszHeaderSubTitle.
#define PROPSHEETPAGEW_V1_SIZE (offsetof(PROPSHEETPAGEW, pszHeaderTitle))
#define PROPSHEETPAGEW_V2_SIZE (offsetof(PROPSHEETPAGEW, hActCtx))
static_assert(sizeof(PROPSHEETPAGEW) == 96 && PROPSHEETPAGEW_V1_SIZE == 72);

#define PSH_DEFAULT 0x00000000u
#define PSH_PROPTITLE 0x00000001u
#define PSH_PROPSHEETPAGE 0x00000008u
#define PSH_NOAPPLYNOW 0x00000080u
#define PSH_HASHELP 0x00000200u
#define PSH_MODELESS 0x00000400u
#define PSH_NOCONTEXTHELP 0x02000000u

typedef struct _PROPSHEETHEADERW {
    DWORD dwSize;
    DWORD dwFlags;
    HWND hwndParent;
    HINSTANCE hInstance;
    union {
        HICON hIcon;
        LPCWSTR pszIcon;
    };
    LPCWSTR pszCaption;  // a text, or an id of a string of hInstance
    UINT nPages;
    union {
        UINT nStartPage;
        LPCWSTR pStartPage;
    };
    union {
        LPCPROPSHEETPAGEW ppsp;
        HPROPSHEETPAGE* phpage;
    };
    PFNPROPSHEETCALLBACK pfnCallback;
    union {
        HBITMAP hbmWatermark;
        LPCWSTR pszbmWatermark;
    };
    HPALETTE hplWatermark;
    union {
        HBITMAP hbmHeader;
        LPCWSTR pszbmHeader;
    };
} PROPSHEETHEADERW, *LPPROPSHEETHEADERW;
using LPCPROPSHEETHEADERW = const PROPSHEETHEADERW*;
#define PROPSHEETHEADERW_V1_SIZE (offsetof(PROPSHEETHEADERW, hbmWatermark))
static_assert(sizeof(PROPSHEETHEADERW) == 96 && PROPSHEETHEADERW_V1_SIZE == 72);

typedef struct _PSHNOTIFY {
    NMHDR hdr;
    LPARAM lParam;
} PSHNOTIFY, *LPPSHNOTIFY;

#define PSN_FIRST (0u - 200)
#define PSN_SETACTIVE (PSN_FIRST - 0)
#define PSN_KILLACTIVE (PSN_FIRST - 1)
#define PSN_APPLY (PSN_FIRST - 2)
#define PSN_RESET (PSN_FIRST - 3)
#define PSN_HELP (PSN_FIRST - 5)
#define PSN_QUERYCANCEL (PSN_FIRST - 9)
#define PSNRET_NOERROR 0
#define PSNRET_INVALID 1
#define PSNRET_INVALID_NOCHANGEPAGE 2

#define PSM_SETCURSEL (WM_USER + 101)
#define PSM_CHANGED (WM_USER + 104)
#define PSM_UNCHANGED (WM_USER + 109)
#define PSM_APPLY (WM_USER + 110)
#define PSM_SETTITLEW (WM_USER + 120)
#define PSM_PRESSBUTTON (WM_USER + 113)
#define PSM_GETTABCONTROL (WM_USER + 116)
#define PSM_GETCURRENTPAGEHWND (WM_USER + 118)
#define PSM_INDEXTOHWND (WM_USER + 129)
#define PSBTN_OK 3
#define PSBTN_APPLYNOW 4
#define PSBTN_CANCEL 5
#define PSBTN_HELP 6

extern "C" {

HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page);
BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page);
// Modal: the result of the sheet, -1 on failure. Modeless sheets are not supported.
INT_PTR WINAPI PropertySheetW(LPCPROPSHEETHEADERW header);

}  // extern "C"
