// Device modes, device capabilities, drawing and bitmap files (wingdi.h).
#pragma once

#include <windef.h>

#define CCHDEVICENAME 32
#define CCHFORMNAME 32
#define DM_SPECVERSION 0x0401

struct DEVMODEW {
    WCHAR dmDeviceName[CCHDEVICENAME];
    WORD dmSpecVersion;
    WORD dmDriverVersion;
    WORD dmSize;         // bytes of this part
    WORD dmDriverExtra;  // bytes of the private part behind it
    DWORD dmFields;      // DM_… bits
    __extension__ union {
        __extension__ struct {
            SHORT dmOrientation;
            SHORT dmPaperSize;
            SHORT dmPaperLength;  // 0.1 mm
            SHORT dmPaperWidth;   // 0.1 mm
            SHORT dmScale;        // percent
            SHORT dmCopies;
            SHORT dmDefaultSource;
            SHORT dmPrintQuality;  // DMRES_…, or dots an inch
        };
        __extension__ struct {
            POINTL dmPosition;
            DWORD dmDisplayOrientation;
            DWORD dmDisplayFixedOutput;
        };
    };
    SHORT dmColor;
    SHORT dmDuplex;
    SHORT dmYResolution;  // dots an inch
    SHORT dmTTOption;
    SHORT dmCollate;
    WCHAR dmFormName[CCHFORMNAME];
    WORD dmLogPixels;
    DWORD dmBitsPerPel;
    DWORD dmPelsWidth;
    DWORD dmPelsHeight;
    __extension__ union {
        DWORD dmDisplayFlags;
        DWORD dmNup;
    };
    DWORD dmDisplayFrequency;
    DWORD dmICMMethod;
    DWORD dmICMIntent;
    DWORD dmMediaType;
    DWORD dmDitherType;
    DWORD dmReserved1;
    DWORD dmReserved2;
    DWORD dmPanningWidth;
    DWORD dmPanningHeight;
};
using PDEVMODEW = DEVMODEW*;
using LPDEVMODEW = DEVMODEW*;
using DEVMODE = DEVMODEW;
using PDEVMODE = DEVMODEW*;
using LPDEVMODE = DEVMODEW*;
static_assert(sizeof(DEVMODEW) == 220);
static_assert(offsetof(DEVMODEW, dmSpecVersion) == 64);
static_assert(offsetof(DEVMODEW, dmFields) == 72);
static_assert(offsetof(DEVMODEW, dmOrientation) == 76);
static_assert(offsetof(DEVMODEW, dmColor) == 92);
static_assert(offsetof(DEVMODEW, dmFormName) == 102);
static_assert(offsetof(DEVMODEW, dmLogPixels) == 166);
static_assert(offsetof(DEVMODEW, dmNup) == 180);
static_assert(offsetof(DEVMODEW, dmICMMethod) == 188);
static_assert(offsetof(DEVMODEW, dmPanningHeight) == 216);

// dmFields.
#define DM_ORIENTATION 0x00000001
#define DM_PAPERSIZE 0x00000002
#define DM_PAPERLENGTH 0x00000004
#define DM_PAPERWIDTH 0x00000008
#define DM_SCALE 0x00000010
#define DM_POSITION 0x00000020
#define DM_NUP 0x00000040
#define DM_DISPLAYORIENTATION 0x00000080
#define DM_COPIES 0x00000100
#define DM_DEFAULTSOURCE 0x00000200
#define DM_PRINTQUALITY 0x00000400
#define DM_COLOR 0x00000800
#define DM_DUPLEX 0x00001000
#define DM_YRESOLUTION 0x00002000
#define DM_TTOPTION 0x00004000
#define DM_COLLATE 0x00008000
#define DM_FORMNAME 0x00010000
#define DM_LOGPIXELS 0x00020000
#define DM_BITSPERPEL 0x00040000
#define DM_PELSWIDTH 0x00080000
#define DM_PELSHEIGHT 0x00100000
#define DM_DISPLAYFLAGS 0x00200000
#define DM_DISPLAYFREQUENCY 0x00400000
#define DM_ICMMETHOD 0x00800000
#define DM_ICMINTENT 0x01000000
#define DM_MEDIATYPE 0x02000000
#define DM_DITHERTYPE 0x04000000
#define DM_PANNINGWIDTH 0x08000000
#define DM_PANNINGHEIGHT 0x10000000

#define DMORIENT_PORTRAIT 1
#define DMORIENT_LANDSCAPE 2

#define DMPAPER_LETTER 1
#define DMPAPER_LETTERSMALL 2
#define DMPAPER_TABLOID 3
#define DMPAPER_LEDGER 4
#define DMPAPER_LEGAL 5
#define DMPAPER_STATEMENT 6
#define DMPAPER_EXECUTIVE 7
#define DMPAPER_A3 8
#define DMPAPER_A4 9
#define DMPAPER_A4SMALL 10
#define DMPAPER_A5 11
#define DMPAPER_B4 12
#define DMPAPER_B5 13
#define DMPAPER_FOLIO 14
#define DMPAPER_QUARTO 15
#define DMPAPER_10X14 16
#define DMPAPER_11X17 17
#define DMPAPER_NOTE 18
#define DMPAPER_ENV_9 19
#define DMPAPER_ENV_10 20
#define DMPAPER_ENV_11 21
#define DMPAPER_ENV_12 22
#define DMPAPER_ENV_14 23
#define DMPAPER_CSHEET 24
#define DMPAPER_DSHEET 25
#define DMPAPER_ESHEET 26
#define DMPAPER_ENV_DL 27
#define DMPAPER_ENV_C5 28
#define DMPAPER_ENV_C3 29
#define DMPAPER_ENV_C4 30
#define DMPAPER_ENV_C6 31
#define DMPAPER_ENV_C65 32
#define DMPAPER_ENV_B4 33
#define DMPAPER_ENV_B5 34
#define DMPAPER_ENV_B6 35
#define DMPAPER_ENV_ITALY 36
#define DMPAPER_ENV_MONARCH 37
#define DMPAPER_ENV_PERSONAL 38
#define DMPAPER_FANFOLD_US 39
#define DMPAPER_FANFOLD_STD_GERMAN 40
#define DMPAPER_FANFOLD_LGL_GERMAN 41
#define DMPAPER_ISO_B4 42
#define DMPAPER_JAPANESE_POSTCARD 43
#define DMPAPER_9X11 44
#define DMPAPER_10X11 45
#define DMPAPER_15X11 46
#define DMPAPER_ENV_INVITE 47
#define DMPAPER_LETTER_EXTRA 50
#define DMPAPER_LEGAL_EXTRA 51
#define DMPAPER_TABLOID_EXTRA 52
#define DMPAPER_A4_EXTRA 53
#define DMPAPER_LETTER_TRANSVERSE 54
#define DMPAPER_A4_TRANSVERSE 55
#define DMPAPER_LETTER_EXTRA_TRANSVERSE 56
#define DMPAPER_A_PLUS 57
#define DMPAPER_B_PLUS 58
#define DMPAPER_LETTER_PLUS 59
#define DMPAPER_A4_PLUS 60
#define DMPAPER_A5_TRANSVERSE 61
#define DMPAPER_B5_TRANSVERSE 62
#define DMPAPER_A3_EXTRA 63
#define DMPAPER_A5_EXTRA 64
#define DMPAPER_B5_EXTRA 65
#define DMPAPER_A2 66
#define DMPAPER_A3_TRANSVERSE 67
#define DMPAPER_A3_EXTRA_TRANSVERSE 68
#define DMPAPER_DBL_JAPANESE_POSTCARD 69
#define DMPAPER_A6 70
#define DMPAPER_JENV_KAKU2 71
#define DMPAPER_JENV_KAKU3 72
#define DMPAPER_JENV_CHOU3 73
#define DMPAPER_JENV_CHOU4 74
#define DMPAPER_LETTER_ROTATED 75
#define DMPAPER_A3_ROTATED 76
#define DMPAPER_A4_ROTATED 77
#define DMPAPER_A5_ROTATED 78
#define DMPAPER_B4_JIS_ROTATED 79
#define DMPAPER_B5_JIS_ROTATED 80
#define DMPAPER_JAPANESE_POSTCARD_ROTATED 81
#define DMPAPER_DBL_JAPANESE_POSTCARD_ROTATED 82
#define DMPAPER_A6_ROTATED 83
#define DMPAPER_JENV_KAKU2_ROTATED 84
#define DMPAPER_JENV_KAKU3_ROTATED 85
#define DMPAPER_JENV_CHOU3_ROTATED 86
#define DMPAPER_JENV_CHOU4_ROTATED 87
#define DMPAPER_B6_JIS 88
#define DMPAPER_B6_JIS_ROTATED 89
#define DMPAPER_12X11 90
#define DMPAPER_JENV_YOU4 91
#define DMPAPER_JENV_YOU4_ROTATED 92
#define DMPAPER_P16K 93
#define DMPAPER_P32K 94
#define DMPAPER_P32KBIG 95
#define DMPAPER_PENV_1 96
#define DMPAPER_PENV_10 105
#define DMPAPER_P16K_ROTATED 106
#define DMPAPER_P32K_ROTATED 107
#define DMPAPER_P32KBIG_ROTATED 108
#define DMPAPER_PENV_1_ROTATED 109
#define DMPAPER_PENV_10_ROTATED 118
#define DMPAPER_LAST DMPAPER_PENV_10_ROTATED
#define DMPAPER_USER 256

#define DMBIN_UPPER 1
#define DMBIN_ONLYONE 1
#define DMBIN_LOWER 2
#define DMBIN_MIDDLE 3
#define DMBIN_MANUAL 4
#define DMBIN_ENVELOPE 5
#define DMBIN_ENVMANUAL 6
#define DMBIN_AUTO 7
#define DMBIN_TRACTOR 8
#define DMBIN_SMALLFMT 9
#define DMBIN_LARGEFMT 10
#define DMBIN_LARGECAPACITY 11
#define DMBIN_CASSETTE 14
#define DMBIN_FORMSOURCE 15
#define DMBIN_USER 256

#define DMRES_DRAFT (-1)
#define DMRES_LOW (-2)
#define DMRES_MEDIUM (-3)
#define DMRES_HIGH (-4)

#define DMCOLOR_MONOCHROME 1
#define DMCOLOR_COLOR 2
#define DMDUP_SIMPLEX 1
#define DMDUP_VERTICAL 2
#define DMDUP_HORIZONTAL 3
#define DMTT_BITMAP 1
#define DMTT_DOWNLOAD 2
#define DMTT_SUBDEV 3
#define DMTT_DOWNLOAD_OUTLINE 4
#define DMCOLLATE_FALSE 0
#define DMCOLLATE_TRUE 1
#define DMNUP_SYSTEM 1
#define DMNUP_ONEUP 2
#define DMICMMETHOD_NONE 1
#define DMICMMETHOD_SYSTEM 2
#define DMICMMETHOD_DRIVER 3
#define DMICMMETHOD_DEVICE 4
#define DMICMMETHOD_USER 256
#define DMICM_SATURATE 1
#define DMICM_CONTRAST 2
#define DMICM_COLORIMETRIC 3
#define DMICM_ABS_COLORIMETRIC 4
#define DMICM_USER 256
#define DMMEDIA_STANDARD 1
#define DMMEDIA_TRANSPARENCY 2
#define DMMEDIA_GLOSSY 3
#define DMMEDIA_USER 256
#define DMDITHER_NONE 1
#define DMDITHER_COARSE 2
#define DMDITHER_FINE 3
#define DMDITHER_LINEART 4
#define DMDITHER_ERRORDIFFUSION 5
#define DMDITHER_GRAYSCALE 10
#define DMDITHER_USER 256

// Modes of the document properties calls.
#define DM_UPDATE 1
#define DM_COPY 2
#define DM_PROMPT 4
#define DM_MODIFY 8
#define DM_IN_BUFFER DM_MODIFY
#define DM_IN_PROMPT DM_PROMPT
#define DM_OUT_BUFFER DM_COPY
#define DM_OUT_DEFAULT DM_UPDATE

// Device capabilities.
#define DC_FIELDS 1
#define DC_PAPERS 2
#define DC_PAPERSIZE 3
#define DC_MINEXTENT 4
#define DC_MAXEXTENT 5
#define DC_BINS 6
#define DC_DUPLEX 7
#define DC_SIZE 8
#define DC_EXTRA 9
#define DC_VERSION 10
#define DC_DRIVER 11
#define DC_BINNAMES 12
#define DC_ENUMRESOLUTIONS 13
#define DC_FILEDEPENDENCIES 14
#define DC_TRUETYPE 15
#define DC_PAPERNAMES 16
#define DC_ORIENTATION 17
#define DC_COPIES 18
#define DC_BINADJUST 19
#define DC_EMF_COMPLIANT 20
#define DC_DATATYPE_PRODUCED 21
#define DC_COLLATE 22
#define DC_MANUFACTURER 23
#define DC_MODEL 24
#define DC_PERSONALITY 25
#define DC_PRINTRATE 26
#define DC_PRINTRATEUNIT 27
#define DC_PRINTERMEM 28
#define DC_MEDIAREADY 29
#define DC_STAPLE 30
#define DC_PRINTRATEPPM 31
#define DC_COLORDEVICE 32
#define DC_NUP 33
#define DC_MEDIATYPENAMES 34
#define DC_MEDIATYPES 35
#define DCTT_BITMAP 0x00000001
#define DCTT_DOWNLOAD 0x00000002
#define DCTT_SUBDEV 0x00000004
#define DCTT_DOWNLOAD_OUTLINE 0x00000008
#define PRINTRATEUNIT_PPM 1
#define PRINTRATEUNIT_CPS 2
#define PRINTRATEUNIT_LPM 3
#define PRINTRATEUNIT_IPM 4

// Character sets.
#define ANSI_CHARSET 0
#define DEFAULT_CHARSET 1
#define SYMBOL_CHARSET 2
#define SHIFTJIS_CHARSET 128
#define LF_FACESIZE 32
#define LF_FULLFACESIZE 64

// Fonts. Of a font that is enumerated its face and its character set are told.
struct LOGFONTW {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    WCHAR lfFaceName[LF_FACESIZE];
};
static_assert(sizeof(LOGFONTW) == 92);

struct ENUMLOGFONTW {
    LOGFONTW elfLogFont;
    WCHAR elfFullName[LF_FULLFACESIZE];
    WCHAR elfStyle[LF_FACESIZE];
};
static_assert(sizeof(ENUMLOGFONTW) == 284);

struct TEXTMETRICW {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    WCHAR tmFirstChar;
    WCHAR tmLastChar;
    WCHAR tmDefaultChar;
    WCHAR tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};
static_assert(sizeof(TEXTMETRICW) == 60);

struct NEWTEXTMETRICW : TEXTMETRICW {
    DWORD ntmFlags;
    UINT ntmSizeEM;
    UINT ntmCellHeight;
    UINT ntmAvgWidth;
};
static_assert(sizeof(NEWTEXTMETRICW) == 76);

#define RASTER_FONTTYPE 0x0001
#define DEVICE_FONTTYPE 0x0002
#define TRUETYPE_FONTTYPE 0x0004

using FONTENUMPROCW = int(CALLBACK*)(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM);

#define RGB(red, green, blue)                                                                            \
    (static_cast<COLORREF>(static_cast<BYTE>(red) | (static_cast<WORD>(static_cast<BYTE>(green)) << 8) | \
                           (static_cast<DWORD>(static_cast<BYTE>(blue)) << 16)))
#define GetRValue(color) (LOBYTE(color))
#define GetGValue(color) (LOBYTE((color) >> 8))
#define GetBValue(color) (LOBYTE((color) >> 16))
#define CLR_INVALID 0xFFFFFFFFu

// Bitmaps.
#define BI_RGB 0

#pragma pack(push, 2)
struct BITMAPFILEHEADER {
    WORD bfType;   // "BM"
    DWORD bfSize;  // of the whole file, in bytes
    WORD bfReserved1;
    WORD bfReserved2;
    DWORD bfOffBits;  // of the bits, from the start of the file
};
#pragma pack(pop)
static_assert(sizeof(BITMAPFILEHEADER) == 14);
using PBITMAPFILEHEADER = BITMAPFILEHEADER*;

struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);
using PBITMAPINFOHEADER = BITMAPINFOHEADER*;

struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};
using LPBITMAPINFO = BITMAPINFO*;
struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    LPVOID bmBits;
};
#define DIB_RGB_COLORS 0

// Drawing.
struct LOGBRUSH {
    UINT lbStyle;
    COLORREF lbColor;
    ULONG_PTR lbHatch;
};

#define PS_SOLID 0
#define PS_DASH 1
#define PS_DOT 2
#define PS_NULL 5
#define TRANSPARENT 1
#define OPAQUE 2

#define WHITE_BRUSH 0
#define LTGRAY_BRUSH 1
#define GRAY_BRUSH 2
#define DKGRAY_BRUSH 3
#define BLACK_BRUSH 4
#define NULL_BRUSH 5
#define HOLLOW_BRUSH NULL_BRUSH
#define WHITE_PEN 6
#define BLACK_PEN 7
#define NULL_PEN 8
#define SYSTEM_FONT 13
#define DEFAULT_GUI_FONT 17

#define FW_NORMAL 400
#define FW_BOLD 700
#define OUT_DEFAULT_PRECIS 0
#define CLIP_DEFAULT_PRECIS 0
#define DEFAULT_QUALITY 0
#define DEFAULT_PITCH 0

#define TA_LEFT 0
#define TA_RIGHT 2
#define TA_CENTER 6
#define TA_TOP 0
#define TA_BOTTOM 8
#define TA_BASELINE 24
#define TA_RTLREADING 256
#define ETO_OPAQUE 0x0002
#define ETO_CLIPPED 0x0004
#define ETO_RTLREADING 0x0080

#define DT_CENTER 0x0001
#define DT_RIGHT 0x0002
#define DT_VCENTER 0x0004
#define DT_BOTTOM 0x0008
#define DT_WORDBREAK 0x0010
#define DT_SINGLELINE 0x0020
#define DT_NOCLIP 0x0100
#define DT_CALCRECT 0x0400
#define DT_NOPREFIX 0x0800
#define DT_HIDEPREFIX 0x00100000
#define DT_RTLREADING 0x00020000
#define DT_END_ELLIPSIS 0x8000

#define SRCCOPY 0x00CC0020u
#define SRCPAINT 0x00EE0086u
#define SRCAND 0x008800C6u
#define SRCINVERT 0x00660046u
#define NOTSRCCOPY 0x00330008u
#define PATCOPY 0x00F00021u
#define BLACKNESS 0x00000042u
#define WHITENESS 0x00FF0062u
#define COLORONCOLOR 3
#define HALFTONE 4

#define NULLREGION 1
#define SIMPLEREGION 2

#define MM_TEXT 1
#define MM_ANISOTROPIC 8

#define LOGPIXELSX 88
#define LOGPIXELSY 90
#define BITSPIXEL 12

extern "C" {

// Only the display, "DISPLAY". Null on failure.
HDC WINAPI CreateDCW(LPCWSTR driver, LPCWSTR device, LPCWSTR port, const DEVMODEW* devMode);
HDC WINAPI CreateCompatibleDC(HDC context);  // null: like the display
BOOL WINAPI DeleteDC(HDC context);
int WINAPI SaveDC(HDC context);
BOOL WINAPI RestoreDC(HDC context, int saved);
int WINAPI GetDeviceCaps(HDC context, int index);

// One font of each family, or of the named one, until the callback returns 0; what it returned last.
int WINAPI EnumFontFamiliesW(HDC context, LPCWSTR family, FONTENUMPROCW proc, LPARAM parameter);

HGDIOBJ WINAPI GetStockObject(int index);
HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ object);
BOOL WINAPI DeleteObject(HGDIOBJ object);
int WINAPI GetObjectW(HANDLE object, int bytes, LPVOID buffer);
HPEN WINAPI CreatePen(int style, int width, COLORREF color);
HBRUSH WINAPI CreateSolidBrush(COLORREF color);
HFONT WINAPI CreateFontIndirectW(const LOGFONTW* font);
HFONT WINAPI CreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                         DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision,
                         DWORD quality, DWORD pitchAndFamily, LPCWSTR face);
HBITMAP WINAPI CreateCompatibleBitmap(HDC context, int width, int height);
HBITMAP WINAPI CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const VOID* bits);
HBITMAP WINAPI CreateDIBSection(HDC context, const BITMAPINFO* info, UINT usage, VOID** bits, HANDLE section,
                                DWORD offset);
BOOL WINAPI GdiFlush();  // before a DIB section's bits are read
int WINAPI GetDIBits(HDC context, HBITMAP bitmap, UINT start, UINT lines, LPVOID bits, LPBITMAPINFO info, UINT usage);
int WINAPI SetDIBits(HDC context, HBITMAP bitmap, UINT start, UINT lines, const VOID* bits, const BITMAPINFO* info,
                     UINT usage);

COLORREF WINAPI SetTextColor(HDC context, COLORREF color);
COLORREF WINAPI GetTextColor(HDC context);
COLORREF WINAPI SetBkColor(HDC context, COLORREF color);
COLORREF WINAPI GetBkColor(HDC context);
int WINAPI SetBkMode(HDC context, int mode);
UINT WINAPI SetTextAlign(HDC context, UINT align);
int WINAPI SetStretchBltMode(HDC context, int mode);
BOOL WINAPI SetBrushOrgEx(HDC context, int x, int y, LPPOINT previous);
BOOL WINAPI SetViewportOrgEx(HDC context, int x, int y, LPPOINT previous);
int WINAPI SetMapMode(HDC context, int mode);
BOOL WINAPI SetWindowExtEx(HDC context, int width, int height, LPSIZE previous);
BOOL WINAPI SetViewportExtEx(HDC context, int width, int height, LPSIZE previous);

BOOL WINAPI MoveToEx(HDC context, int x, int y, LPPOINT previous);
BOOL WINAPI LineTo(HDC context, int x, int y);
BOOL WINAPI Rectangle(HDC context, int left, int top, int right, int bottom);
BOOL WINAPI Pie(HDC context, int left, int top, int right, int bottom, int x1, int y1, int x2, int y2);
int WINAPI FillRect(HDC context, const RECT* rect, HBRUSH brush);  // a brush, or a COLOR_ value plus 1
int WINAPI FrameRect(HDC context, const RECT* rect, HBRUSH brush);
BOOL WINAPI DrawFocusRect(HDC context, const RECT* rect);
COLORREF WINAPI SetPixel(HDC context, int x, int y, COLORREF color);
COLORREF WINAPI GetPixel(HDC context, int x, int y);
BOOL WINAPI PatBlt(HDC context, int x, int y, int width, int height, DWORD operation);
BOOL WINAPI BitBlt(HDC context, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                   DWORD operation);
BOOL WINAPI StretchBlt(HDC context, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                       int sourceWidth, int sourceHeight, DWORD operation);

BOOL WINAPI ExtTextOutW(HDC context, int x, int y, UINT options, const RECT* rect, LPCWSTR text, UINT length,
                        const INT* advances);
int WINAPI DrawTextW(HDC context, LPCWSTR text, int length, LPRECT rect, UINT format);
BOOL WINAPI GetTextExtentPoint32W(HDC context, LPCWSTR text, int length, LPSIZE size);
BOOL WINAPI GetTextMetricsW(HDC context, TEXTMETRICW* metrics);

HRGN WINAPI CreateRectRgn(int left, int top, int right, int bottom);
int WINAPI SelectClipRgn(HDC context, HRGN region);  // null: no clipping
int WINAPI IntersectClipRect(HDC context, int left, int top, int right, int bottom);

}  // extern "C"
