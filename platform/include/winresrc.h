// What resource scripts name: constants alone, since the resource compiler reads nothing else. Values as published
// (winnt.h, winuser.h, verrsrc.h).
#pragma once

#ifdef RC_INVOKED
#define LANG_GERMAN 0x07
#define LANG_ENGLISH 0x09
#define LANG_JAPANESE 0x11
#define SUBLANG_DEFAULT 0x01
#define SUBLANG_ENGLISH_US 0x01
#define SUBLANG_GERMAN 0x01

#define VOS_NT_WINDOWS32 0x00040004
#define VFT_DLL 0x00000002

#define VS_VERSION_INFO 1

#define DS_FIXEDSYS 0x0008
#define DS_SETFONT 0x0040
#define DS_SHELLFONT (DS_SETFONT | DS_FIXEDSYS)
#define DS_MODALFRAME 0x0080
#define DS_CONTROL 0x0400
#define DS_CENTER 0x0800
#define WS_POPUP 0x80000000
#define WS_CHILD 0x40000000
#define WS_VISIBLE 0x10000000
#define WS_DISABLED 0x08000000
#define WS_CAPTION 0x00C00000
#define WS_BORDER 0x00800000
#define WS_VSCROLL 0x00200000
#define WS_SYSMENU 0x00080000
#define WS_GROUP 0x00020000
#define WS_TABSTOP 0x00010000
#define SS_LEFT 0x00000000
#define SS_ICON 0x00000003
#define SS_ETCHEDFRAME 0x00000012
#define SS_NOPREFIX 0x00000080
#define SS_CENTERIMAGE 0x00000200
#define LBS_NOTIFY 0x0001
#define LBS_NOINTEGRALHEIGHT 0x0100
#endif
