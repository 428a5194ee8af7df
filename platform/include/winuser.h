// Windows, messages, dialogs and the controls of user32; strings and resource ids (winuser.h).
#pragma once

#include <windef.h>
#include <wingdi.h>

#define MAKEINTRESOURCEW(id) (reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(id))))
#define MAKEINTRESOURCEA(id) (reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(id))))
#define IS_INTRESOURCE(name) ((reinterpret_cast<ULONG_PTR>(name) >> 16) == 0)
#define RT_BITMAP MAKEINTRESOURCEW(2)
#define RT_ICON MAKEINTRESOURCEW(3)
#define RT_DIALOG MAKEINTRESOURCEW(5)
#define RT_STRING MAKEINTRESOURCEW(6)
#define RT_RCDATA MAKEINTRESOURCEW(10)
#define RT_GROUP_ICON MAKEINTRESOURCEW(14)
#define RT_VERSION MAKEINTRESOURCEW(16)

extern "C" {
// The text in place, or, where the pointer's high part is 0, the one character in its low word.
LPWSTR WINAPI CharUpperW(LPWSTR text);
// Size 0: `buffer` is taken for an LPCWSTR* that receives the text's address in the module (not NUL-terminated).
int WINAPI LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size);
}

// --- Windows ---------------------------------------------------------------------------------------------------------

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using WNDENUMPROC = BOOL(CALLBACK*)(HWND, LPARAM);
using TIMERPROC = VOID(CALLBACK*)(HWND, UINT, UINT_PTR, DWORD);

#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOWNOACTIVATE 4
#define SW_SHOW 5
#define SW_SHOWNA 8

#define WS_OVERLAPPED 0x00000000u
#define WS_POPUP 0x80000000u
#define WS_CHILD 0x40000000u
#define WS_VISIBLE 0x10000000u
#define WS_DISABLED 0x08000000u
#define WS_CLIPSIBLINGS 0x04000000u
#define WS_CLIPCHILDREN 0x02000000u
#define WS_CAPTION 0x00C00000u
#define WS_BORDER 0x00800000u
#define WS_VSCROLL 0x00200000u
#define WS_HSCROLL 0x00100000u
#define WS_SYSMENU 0x00080000u
#define WS_THICKFRAME 0x00040000u
#define WS_GROUP 0x00020000u
#define WS_TABSTOP 0x00010000u
#define WS_EX_DLGMODALFRAME 0x00000001u
#define WS_EX_NOPARENTNOTIFY 0x00000004u
#define WS_EX_TOPMOST 0x00000008u
#define WS_EX_CLIENTEDGE 0x00000200u
#define WS_EX_RTLREADING 0x00002000u
#define WS_EX_CONTROLPARENT 0x00010000u
#define WS_EX_STATICEDGE 0x00020000u

#define CS_VREDRAW 0x0001
#define CS_HREDRAW 0x0002
#define CS_DBLCLKS 0x0008

struct WNDCLASSW {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;  // a brush, or a COLOR_ value plus 1
    LPCWSTR lpszMenuName;
    LPCWSTR lpszClassName;
};

struct CREATESTRUCTW {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCWSTR lpszName;
    LPCWSTR lpszClass;
    DWORD dwExStyle;
};

struct WINDOWPLACEMENT {
    UINT length;
    UINT flags;
    UINT showCmd;
    POINT ptMinPosition;
    POINT ptMaxPosition;
    RECT rcNormalPosition;
};

#define CW_USEDEFAULT (static_cast<int>(0x80000000u))
#define HWND_BROADCAST (reinterpret_cast<HWND>(static_cast<ULONG_PTR>(0xFFFF)))
#define HWND_TOP (static_cast<HWND>(nullptr))
#define HWND_BOTTOM (reinterpret_cast<HWND>(static_cast<LONG_PTR>(1)))
#define HWND_TOPMOST (reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1)))

#define SWP_NOSIZE 0x0001
#define SWP_NOMOVE 0x0002
#define SWP_NOZORDER 0x0004
#define SWP_NOREDRAW 0x0008
#define SWP_NOACTIVATE 0x0010
#define SWP_FRAMECHANGED 0x0020
#define SWP_SHOWWINDOW 0x0040
#define SWP_HIDEWINDOW 0x0080

#define GWLP_WNDPROC (-4)
#define GWLP_HINSTANCE (-6)
#define GWLP_HWNDPARENT (-8)
#define GWLP_ID (-12)
#define GWL_STYLE (-16)
#define GWL_EXSTYLE (-20)
#define GWLP_USERDATA (-21)
#define DWLP_MSGRESULT 0
#define DWLP_DLGPROC 8
#define DWLP_USER 16

#define GW_HWNDFIRST 0
#define GW_HWNDLAST 1
#define GW_HWNDNEXT 2
#define GW_HWNDPREV 3
#define GW_OWNER 4
#define GW_CHILD 5
#define GA_PARENT 1
#define GA_ROOT 2

#define SM_CXSCREEN 0
#define SM_CYSCREEN 1
#define SM_CXVSCROLL 2
#define SM_CYHSCROLL 3
#define SM_CYCAPTION 4
#define SM_CXBORDER 5
#define SM_CYBORDER 6
#define SM_CXICON 11
#define SM_CYICON 12
#define SM_CXEDGE 45
#define SM_CYEDGE 46

#define COLOR_SCROLLBAR 0
#define COLOR_WINDOW 5
#define COLOR_WINDOWFRAME 6
#define COLOR_WINDOWTEXT 8
#define COLOR_ACTIVECAPTION 2
#define COLOR_CAPTIONTEXT 9
#define COLOR_HIGHLIGHT 13
#define COLOR_HIGHLIGHTTEXT 14
#define COLOR_BTNFACE 15
#define COLOR_3DFACE COLOR_BTNFACE
#define COLOR_BTNSHADOW 16
#define COLOR_GRAYTEXT 17
#define COLOR_BTNTEXT 18
#define COLOR_BTNHIGHLIGHT 20
#define COLOR_3DDKSHADOW 21
#define COLOR_3DLIGHT 22

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};
using LPPAINTSTRUCT = PAINTSTRUCT*;

extern "C" {

ATOM WINAPI RegisterClassW(const WNDCLASSW* windowClass);
BOOL WINAPI UnregisterClassW(LPCWSTR name, HINSTANCE instance);
HWND WINAPI CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR name, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menuOrId, HINSTANCE instance, LPVOID parameter);
BOOL WINAPI DestroyWindow(HWND window);
BOOL WINAPI IsWindow(HWND window);
LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI CallWindowProcW(WNDPROC proc, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value);
LONG WINAPI GetWindowLongW(HWND window, int index);
LONG WINAPI SetWindowLongW(HWND window, int index, LONG value);
int WINAPI GetClassNameW(HWND window, LPWSTR name, int capacity);

HWND WINAPI GetParent(HWND window);
HWND WINAPI GetAncestor(HWND window, UINT kind);
HWND WINAPI GetWindow(HWND window, UINT kind);
HWND WINAPI GetDesktopWindow();
BOOL WINAPI IsChild(HWND parent, HWND window);
BOOL WINAPI EnumThreadWindows(DWORD thread, WNDENUMPROC proc, LPARAM parameter);
HWND WINAPI FindWindowW(LPCWSTR className, LPCWSTR name);

BOOL WINAPI ShowWindow(HWND window, int command);
BOOL WINAPI IsWindowVisible(HWND window);
BOOL WINAPI EnableWindow(HWND window, BOOL enable);
BOOL WINAPI IsWindowEnabled(HWND window);
BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL WINAPI GetWindowPlacement(HWND window, WINDOWPLACEMENT* placement);
BOOL WINAPI GetWindowRect(HWND window, LPRECT rect);
BOOL WINAPI GetClientRect(HWND window, LPRECT rect);
BOOL WINAPI AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL menu, DWORD exStyle);
BOOL WINAPI ClientToScreen(HWND window, LPPOINT point);
BOOL WINAPI ScreenToClient(HWND window, LPPOINT point);
int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);
HWND WINAPI WindowFromPoint(POINT point);
BOOL WINAPI SetForegroundWindow(HWND window);
HWND WINAPI GetActiveWindow();
HWND WINAPI SetFocus(HWND window);
HWND WINAPI GetFocus();
HWND WINAPI SetCapture(HWND window);
HWND WINAPI GetCapture();
BOOL WINAPI ReleaseCapture();

BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text);
int WINAPI GetWindowTextW(HWND window, LPWSTR text, int capacity);
int WINAPI GetWindowTextLengthW(HWND window);

HDC WINAPI BeginPaint(HWND window, LPPAINTSTRUCT paint);
BOOL WINAPI EndPaint(HWND window, const PAINTSTRUCT* paint);
HDC WINAPI GetDC(HWND window);
HDC WINAPI GetWindowDC(HWND window);
int WINAPI ReleaseDC(HWND window, HDC context);
BOOL WINAPI InvalidateRect(HWND window, const RECT* rect, BOOL erase);
BOOL WINAPI ValidateRect(HWND window, const RECT* rect);
BOOL WINAPI UpdateWindow(HWND window);
#define RDW_INVALIDATE 0x0001
#define RDW_ERASE 0x0004
#define RDW_ALLCHILDREN 0x0080
#define RDW_UPDATENOW 0x0100
BOOL WINAPI RedrawWindow(HWND window, const RECT* rect, HRGN region, UINT flags);

int WINAPI GetSystemMetrics(int index);
DWORD WINAPI GetSysColor(int index);
HBRUSH WINAPI GetSysColorBrush(int index);
BOOL WINAPI MessageBeep(UINT type);

BOOL WINAPI SetRect(LPRECT rect, int left, int top, int right, int bottom);
BOOL WINAPI OffsetRect(LPRECT rect, int dx, int dy);
BOOL WINAPI IntersectRect(LPRECT destination, const RECT* a, const RECT* b);
BOOL WINAPI IsRectEmpty(const RECT* rect);
BOOL WINAPI EqualRect(const RECT* a, const RECT* b);
BOOL WINAPI PtInRect(const RECT* rect, POINT point);

}  // extern "C"

// --- Messages --------------------------------------------------------------------------------------------------------

#define WM_NULL 0x0000
#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_MOVE 0x0003
#define WM_SIZE 0x0005
#define WM_ACTIVATE 0x0006
#define WM_SETFOCUS 0x0007
#define WM_KILLFOCUS 0x0008
#define WM_ENABLE 0x000A
#define WM_SETREDRAW 0x000B
#define WM_SETTEXT 0x000C
#define WM_GETTEXT 0x000D
#define WM_GETTEXTLENGTH 0x000E
#define WM_PAINT 0x000F
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_ERASEBKGND 0x0014
#define WM_SHOWWINDOW 0x0018
#define WM_DEVMODECHANGE 0x001B
#define WM_SETCURSOR 0x0020
#define WM_MOUSEACTIVATE 0x0021
#define WM_NEXTDLGCTL 0x0028
#define WM_DRAWITEM 0x002B
#define WM_MEASUREITEM 0x002C
#define WM_SETFONT 0x0030
#define WM_GETFONT 0x0031
#define WM_VKEYTOITEM 0x002E
#define WM_CHARTOITEM 0x002F
#define WM_QUERYDRAGICON 0x0037
#define WM_COMPAREITEM 0x0039
#define WM_NOTIFY 0x004E
#define WM_HELP 0x0053
#define WM_CONTEXTMENU 0x007B
#define WM_GETICON 0x007F
#define WM_SETICON 0x0080
#define WM_NCCREATE 0x0081
#define WM_NCDESTROY 0x0082
#define WM_NCCALCSIZE 0x0083
#define WM_NCHITTEST 0x0084
#define WM_NCPAINT 0x0085
#define WM_GETDLGCODE 0x0087
#define WM_NCMOUSEMOVE 0x00A0
#define WM_NCLBUTTONDOWN 0x00A1
#define WM_NCLBUTTONUP 0x00A2
#define WM_NCRBUTTONDOWN 0x00A4
#define WM_NCRBUTTONUP 0x00A5
#define WM_KEYDOWN 0x0100
#define WM_KEYUP 0x0101
#define WM_CHAR 0x0102
#define WM_SYSKEYDOWN 0x0104
#define WM_SYSKEYUP 0x0105
#define WM_SYSCHAR 0x0106
#define WM_INITDIALOG 0x0110
#define WM_COMMAND 0x0111
#define WM_SYSCOMMAND 0x0112
#define WM_TIMER 0x0113
#define WM_HSCROLL 0x0114
#define WM_VSCROLL 0x0115
#define WM_ENTERIDLE 0x0121
#define WM_CTLCOLORMSGBOX 0x0132
#define WM_CTLCOLOREDIT 0x0133
#define WM_CTLCOLORLISTBOX 0x0134
#define WM_CTLCOLORBTN 0x0135
#define WM_CTLCOLORDLG 0x0136
#define WM_CTLCOLORSCROLLBAR 0x0137
#define WM_CTLCOLORSTATIC 0x0138
#define WM_MOUSEMOVE 0x0200
#define WM_LBUTTONDOWN 0x0201
#define WM_LBUTTONUP 0x0202
#define WM_LBUTTONDBLCLK 0x0203
#define WM_RBUTTONDOWN 0x0204
#define WM_RBUTTONUP 0x0205
#define WM_MOUSEWHEEL 0x020A
#define WM_PARENTNOTIFY 0x0210
#define WM_CAPTURECHANGED 0x0215
#define WM_IME_CHAR 0x0286
#define WM_CUT 0x0300
#define WM_COPY 0x0301
#define WM_PASTE 0x0302
#define WM_CLEAR 0x0303
#define WM_UNDO 0x0304
#define WM_USER 0x0400

#define WA_INACTIVE 0
#define WA_ACTIVE 1
#define WHEEL_DELTA 120
#define GET_WHEEL_DELTA_WPARAM(wParam) (static_cast<SHORT>(HIWORD(wParam)))
#define MK_LBUTTON 0x0001
#define MK_RBUTTON 0x0002
#define MK_SHIFT 0x0004
#define MK_CONTROL 0x0008
#define MA_ACTIVATE 1
#define MA_NOACTIVATE 3
#define HTTRANSPARENT (-1)
#define HTNOWHERE 0
#define HTCLIENT 1
#define HTCAPTION 2
#define HTBORDER 18
#define HTCLOSE 20
#define SC_CLOSE 0xF060
#define ICON_BIG 1

#define DLGC_WANTARROWS 0x0001
#define DLGC_WANTTAB 0x0002
#define DLGC_WANTMESSAGE 0x0004
#define DLGC_HASSETSEL 0x0008
#define DLGC_DEFPUSHBUTTON 0x0010
#define DLGC_UNDEFPUSHBUTTON 0x0020
#define DLGC_RADIOBUTTON 0x0040
#define DLGC_WANTCHARS 0x0080
#define DLGC_STATIC 0x0100
#define DLGC_BUTTON 0x2000

#define VK_LBUTTON 0x01
#define VK_RBUTTON 0x02
#define VK_BACK 0x08
#define VK_TAB 0x09
#define VK_RETURN 0x0D
#define VK_SHIFT 0x10
#define VK_CONTROL 0x11
#define VK_MENU 0x12
#define VK_ESCAPE 0x1B
#define VK_SPACE 0x20
#define VK_PRIOR 0x21
#define VK_NEXT 0x22
#define VK_END 0x23
#define VK_HOME 0x24
#define VK_LEFT 0x25
#define VK_UP 0x26
#define VK_RIGHT 0x27
#define VK_DOWN 0x28
#define VK_DELETE 0x2E
#define VK_F1 0x70
#define VK_F4 0x73
#define VK_F10 0x79
#define VK_APPS 0x5D
#define VK_PACKET 0xE7

#define PM_NOREMOVE 0x0000
#define PM_REMOVE 0x0001

struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};
using LPNMHDR = NMHDR*;

#define HELPINFO_WINDOW 0x0001
struct HELPINFO {
    UINT cbSize;
    int iContextType;  // HELPINFO_WINDOW
    int iCtrlId;
    HANDLE hItemHandle;  // the control's window
    DWORD_PTR dwContextId;
    POINT MousePos;  // screen
};
using LPHELPINFO = HELPINFO*;

#define SMTO_ABORTIFHUNG 0x0002

// Input as the keyboard and the mouse make it.
#define INPUT_MOUSE 0
#define INPUT_KEYBOARD 1
#define KEYEVENTF_KEYUP 0x0002
#define KEYEVENTF_UNICODE 0x0004
#define MOUSEEVENTF_MOVE 0x0001
#define MOUSEEVENTF_LEFTDOWN 0x0002
#define MOUSEEVENTF_LEFTUP 0x0004
#define MOUSEEVENTF_RIGHTDOWN 0x0008
#define MOUSEEVENTF_RIGHTUP 0x0010
#define MOUSEEVENTF_WHEEL 0x0800
#define MOUSEEVENTF_ABSOLUTE 0x8000  // dx, dy: 0 to 65535 across the screen
struct MOUSEINPUT {
    LONG dx;
    LONG dy;
    DWORD mouseData;
    DWORD dwFlags;
    DWORD time;
    ULONG_PTR dwExtraInfo;
};
struct KEYBDINPUT {
    WORD wVk;
    WORD wScan;
    DWORD dwFlags;
    DWORD time;
    ULONG_PTR dwExtraInfo;
};
struct INPUT {
    DWORD type;
    __extension__ union {
        MOUSEINPUT mi;
        KEYBDINPUT ki;
    };
};
using LPINPUT = INPUT*;
static_assert(sizeof(INPUT) == 40);

extern "C" {

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI SendMessageTimeoutW(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags, UINT timeout,
                                   DWORD_PTR* result);
BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
VOID WINAPI PostQuitMessage(int exitCode);
BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT first, UINT last);
BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT remove);
BOOL WINAPI TranslateMessage(const MSG* message);
LRESULT WINAPI DispatchMessageW(const MSG* message);
SHORT WINAPI GetKeyState(int key);
UINT WINAPI SendInput(UINT count, LPINPUT inputs, int bytesOfOne);
BOOL WINAPI GetCursorPos(LPPOINT point);
UINT_PTR WINAPI SetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC proc);
BOOL WINAPI KillTimer(HWND window, UINT_PTR id);

}  // extern "C"

// --- Clipboard -------------------------------------------------------------------------------------------------------

#define CF_UNICODETEXT 13

extern "C" {

BOOL WINAPI OpenClipboard(HWND window);
BOOL WINAPI CloseClipboard();
// The clipboard's own memory (GlobalLock), null where it holds no text. Only CF_UNICODETEXT.
HANDLE WINAPI GetClipboardData(UINT format);

}  // extern "C"

// --- Dialogs ---------------------------------------------------------------------------------------------------------

#define DS_3DLOOK 0x0004
#define DS_FIXEDSYS 0x0008
#define DS_SETFONT 0x0040
#define DS_MODALFRAME 0x0080
#define DS_CONTROL 0x0400
#define DS_CENTER 0x0800
#define DS_SHELLFONT (DS_SETFONT | DS_FIXEDSYS)
#define DM_GETDEFID (WM_USER + 0)
#define DM_SETDEFID (WM_USER + 1)
#define DC_HASDEFID 0x534B

#define DLGWINDOWEXTRA 30

#define IDOK 1
#define IDCANCEL 2
#define IDYES 6
#define IDNO 7

#pragma pack(push, 2)
struct DLGTEMPLATE {
    DWORD style;
    DWORD dwExtendedStyle;
    WORD cdit;
    short x;
    short y;
    short cx;
    short cy;
};
#pragma pack(pop)
using LPCDLGTEMPLATEW = const DLGTEMPLATE*;

#define MB_OK 0x0000
#define MB_OKCANCEL 0x0001
#define MB_YESNO 0x0004
#define MB_ICONERROR 0x0010
#define MB_ICONQUESTION 0x0020
#define MB_ICONWARNING 0x0030
#define MB_ICONINFORMATION 0x0040

extern "C" {

HWND WINAPI CreateDialogParamW(HINSTANCE instance, LPCWSTR name, HWND parent, DLGPROC proc, LPARAM parameter);
HWND WINAPI CreateDialogIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialogTemplate, HWND parent, DLGPROC proc,
                                       LPARAM parameter);
// -1 where the dialog can't be made.
INT_PTR WINAPI DialogBoxParamW(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC proc, LPARAM parameter);
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result);
LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI IsDialogMessageW(HWND dialog, LPMSG message);
BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rect);
HWND WINAPI GetDlgItem(HWND dialog, int id);
int WINAPI GetDlgCtrlID(HWND window);
LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text);
UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int capacity);
BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check);
UINT WINAPI IsDlgButtonChecked(HWND dialog, int id);
BOOL WINAPI CheckRadioButton(HWND dialog, int first, int last, int check);
HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous);
HWND WINAPI GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous);
int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);

}  // extern "C"

// --- Pictures of resources -------------------------------------------------------------------------------------------

#define IDI_APPLICATION MAKEINTRESOURCEW(32512)
#define IDI_HAND MAKEINTRESOURCEW(32513)
#define IDI_ERROR IDI_HAND
#define IDI_QUESTION MAKEINTRESOURCEW(32514)
#define IDI_EXCLAMATION MAKEINTRESOURCEW(32515)
#define IDI_WARNING IDI_EXCLAMATION
#define IDI_ASTERISK MAKEINTRESOURCEW(32516)
#define IDI_INFORMATION IDI_ASTERISK
#define IDC_ARROW MAKEINTRESOURCEW(32512)
#define IDC_WAIT MAKEINTRESOURCEW(32514)
#define IDC_SIZEWE MAKEINTRESOURCEW(32644)
#define IDC_HAND MAKEINTRESOURCEW(32649)

#define IMAGE_BITMAP 0
#define IMAGE_ICON 1
#define IMAGE_CURSOR 2
#define LR_DEFAULTCOLOR 0x0000
#define LR_CREATEDIBSECTION 0x2000
#define LR_SHARED 0x8000
#define DI_NORMAL 0x0003

extern "C" {

HBITMAP WINAPI LoadBitmapW(HINSTANCE instance, LPCWSTR name);
HICON WINAPI LoadIconW(HINSTANCE instance, LPCWSTR name);  // shared: never destroyed by the caller
HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name);
HANDLE WINAPI LoadImageW(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags);
BOOL WINAPI DestroyIcon(HICON icon);
BOOL WINAPI DrawIcon(HDC context, int x, int y, HICON icon);
BOOL WINAPI DrawIconEx(HDC context, int x, int y, HICON icon, int width, int height, UINT step, HBRUSH brush,
                       UINT flags);
HCURSOR WINAPI SetCursor(HCURSOR cursor);
HCURSOR WINAPI GetCursor();

}  // extern "C"

// --- Controls --------------------------------------------------------------------------------------------------------

#define BS_PUSHBUTTON 0x0000
#define BS_DEFPUSHBUTTON 0x0001
#define BS_CHECKBOX 0x0002
#define BS_AUTOCHECKBOX 0x0003
#define BS_RADIOBUTTON 0x0004
#define BS_GROUPBOX 0x0007
#define BS_AUTORADIOBUTTON 0x0009
#define BS_OWNERDRAW 0x000B
#define BS_TYPEMASK 0x000F
#define BS_LEFTTEXT 0x0020
#define BS_MULTILINE 0x2000
#define BS_NOTIFY 0x4000
#define BN_CLICKED 0
#define BN_SETFOCUS 6
#define BN_KILLFOCUS 7
#define BM_GETCHECK 0x00F0
#define BM_SETCHECK 0x00F1
#define BM_GETSTATE 0x00F2
#define BM_SETSTATE 0x00F3
#define BM_SETSTYLE 0x00F4
#define BM_CLICK 0x00F5
#define BM_GETIMAGE 0x00F6
#define BM_SETIMAGE 0x00F7
#define BST_UNCHECKED 0
#define BST_CHECKED 1
#define BST_PUSHED 0x0004
#define BST_FOCUS 0x0008

#define SS_LEFT 0x0000
#define SS_CENTER 0x0001
#define SS_RIGHT 0x0002
#define SS_ICON 0x0003
#define SS_BLACKFRAME 0x0007
#define SS_GRAYFRAME 0x0008
#define SS_LEFTNOWORDWRAP 0x000C
#define SS_OWNERDRAW 0x000D
#define SS_BITMAP 0x000E
#define SS_ETCHEDHORZ 0x0010
#define SS_ETCHEDVERT 0x0011
#define SS_ETCHEDFRAME 0x0012
#define SS_TYPEMASK 0x001F
#define SS_NOPREFIX 0x0080
#define SS_NOTIFY 0x0100
#define SS_CENTERIMAGE 0x0200
#define SS_SUNKEN 0x1000
#define SS_ENDELLIPSIS 0x4000
#define SS_PATHELLIPSIS 0x8000
#define STM_SETICON 0x0170
#define STM_GETICON 0x0171
#define STM_SETIMAGE 0x0172
#define STM_GETIMAGE 0x0173
#define STN_CLICKED 0
#define STN_DBLCLK 1

#define ES_CENTER 0x0001
#define ES_RIGHT 0x0002
#define ES_UPPERCASE 0x0008
#define ES_AUTOHSCROLL 0x0080
#define ES_READONLY 0x0800
#define ES_NUMBER 0x2000
#define EN_SETFOCUS 0x0100
#define EN_KILLFOCUS 0x0200
#define EN_CHANGE 0x0300
#define EN_UPDATE 0x0400
#define EN_MAXTEXT 0x0501
#define EM_GETSEL 0x00B0
#define EM_SETSEL 0x00B1
#define EM_REPLACESEL 0x00C2
#define EM_LIMITTEXT 0x00C5
#define EM_SETLIMITTEXT EM_LIMITTEXT
#define EM_SETREADONLY 0x00CF
#define EM_GETLIMITTEXT 0x00D5

#define LBS_NOTIFY 0x0001
#define LBS_SORT 0x0002
#define LBS_OWNERDRAWFIXED 0x0010
#define LBS_HASSTRINGS 0x0040
#define LBS_NOINTEGRALHEIGHT 0x0100
#define LBS_MULTICOLUMN 0x0200
#define LBN_SELCHANGE 1
#define LBN_DBLCLK 2
#define LBN_SETFOCUS 4
#define LBN_KILLFOCUS 5
#define LB_ERR (-1)
#define LB_ADDSTRING 0x0180
#define LB_INSERTSTRING 0x0181
#define LB_DELETESTRING 0x0182
#define LB_RESETCONTENT 0x0184
#define LB_SETCURSEL 0x0186
#define LB_GETCURSEL 0x0188
#define LB_GETTEXT 0x0189
#define LB_GETTEXTLEN 0x018A
#define LB_GETCOUNT 0x018B
#define LB_SELECTSTRING 0x018C
#define LB_FINDSTRING 0x018F
#define LB_GETTOPINDEX 0x018E
#define LB_SETTOPINDEX 0x0197
#define LB_GETITEMRECT 0x0198
#define LB_GETITEMDATA 0x0199
#define LB_SETITEMDATA 0x019A
#define LB_SETITEMHEIGHT 0x01A0
#define LB_GETITEMHEIGHT 0x01A1
#define LB_SETCOLUMNWIDTH 0x0195
#define LB_FINDSTRINGEXACT 0x01A2

#define CBS_SIMPLE 0x0001
#define CBS_DROPDOWN 0x0002
#define CBS_DROPDOWNLIST 0x0003
#define CBS_OWNERDRAWFIXED 0x0010
#define CBS_AUTOHSCROLL 0x0040
#define CBS_SORT 0x0100
#define CBS_HASSTRINGS 0x0200
#define CBS_NOINTEGRALHEIGHT 0x0400
#define CBN_SELCHANGE 1
#define CBN_DBLCLK 2
#define CBN_SETFOCUS 3
#define CBN_KILLFOCUS 4
#define CBN_EDITCHANGE 5
#define CBN_EDITUPDATE 6
#define CBN_DROPDOWN 7
#define CBN_CLOSEUP 8
#define CBN_SELENDOK 9
#define CBN_SELENDCANCEL 10
#define CB_ERR (-1)
#define CB_GETEDITSEL 0x0140
#define CB_LIMITTEXT 0x0141
#define CB_SETEDITSEL 0x0142
#define CB_ADDSTRING 0x0143
#define CB_DELETESTRING 0x0144
#define CB_GETCOUNT 0x0146
#define CB_GETCURSEL 0x0147
#define CB_GETLBTEXT 0x0148
#define CB_GETLBTEXTLEN 0x0149
#define CB_INSERTSTRING 0x014A
#define CB_RESETCONTENT 0x014B
#define CB_FINDSTRING 0x014C
#define CB_SELECTSTRING 0x014D
#define CB_SETCURSEL 0x014E
#define CB_SHOWDROPDOWN 0x014F
#define CB_GETITEMDATA 0x0150
#define CB_SETITEMDATA 0x0151
#define CB_SETITEMHEIGHT 0x0153
#define CB_GETITEMHEIGHT 0x0154
#define CB_GETDROPPEDSTATE 0x0157
#define CB_FINDSTRINGEXACT 0x0158

#define SBS_HORZ 0x0000
#define SBS_VERT 0x0001
#define SB_CTL 2
#define SB_LINEUP 0
#define SB_LINELEFT 0
#define SB_LINEDOWN 1
#define SB_LINERIGHT 1
#define SB_PAGEUP 2
#define SB_PAGELEFT 2
#define SB_PAGEDOWN 3
#define SB_PAGERIGHT 3
#define SB_THUMBPOSITION 4
#define SB_THUMBTRACK 5
#define SB_TOP 6
#define SB_LEFT 6
#define SB_BOTTOM 7
#define SB_RIGHT 7
#define SB_ENDSCROLL 8
#define SBM_SETPOS 0x00E0
#define SBM_GETPOS 0x00E1
#define SBM_SETRANGE 0x00E2
#define SBM_GETRANGE 0x00E3
#define SBM_SETSCROLLINFO 0x00E9
#define SBM_GETSCROLLINFO 0x00EA
#define SIF_RANGE 0x0001
#define SIF_PAGE 0x0002
#define SIF_POS 0x0004
#define SIF_TRACKPOS 0x0010
#define SIF_ALL (SIF_RANGE | SIF_PAGE | SIF_POS | SIF_TRACKPOS)
struct SCROLLINFO {
    UINT cbSize;
    UINT fMask;
    int nMin;
    int nMax;
    UINT nPage;
    int nPos;
    int nTrackPos;
};
using LPSCROLLINFO = SCROLLINFO*;
using LPCSCROLLINFO = const SCROLLINFO*;

// Owner-drawn items.
#define ODT_LISTBOX 2
#define ODT_COMBOBOX 3
#define ODT_BUTTON 4
#define ODT_STATIC 5
#define ODA_DRAWENTIRE 0x0001
#define ODS_SELECTED 0x0001
#define ODS_DISABLED 0x0004
#define ODS_FOCUS 0x0010
#define ODS_COMBOBOXEDIT 0x1000
struct DRAWITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemAction;
    UINT itemState;
    HWND hwndItem;
    HDC hDC;
    RECT rcItem;
    ULONG_PTR itemData;
};
using LPDRAWITEMSTRUCT = DRAWITEMSTRUCT*;
struct MEASUREITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemWidth;
    UINT itemHeight;
    ULONG_PTR itemData;
};
using LPMEASUREITEMSTRUCT = MEASUREITEMSTRUCT*;

extern "C" {

int WINAPI SetScrollPos(HWND window, int bar, int position, BOOL redraw);
int WINAPI GetScrollPos(HWND window, int bar);
BOOL WINAPI SetScrollRange(HWND window, int bar, int lowest, int highest, BOOL redraw);
BOOL WINAPI GetScrollRange(HWND window, int bar, int* lowest, int* highest);
int WINAPI SetScrollInfo(HWND window, int bar, LPCSCROLLINFO info, BOOL redraw);
BOOL WINAPI GetScrollInfo(HWND window, int bar, LPSCROLLINFO info);

}  // extern "C"
