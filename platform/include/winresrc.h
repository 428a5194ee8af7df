// What resource scripts name: constants alone, since the resource compiler reads nothing else. Values as published
// (winnt.h, verrsrc.h).
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
#endif
