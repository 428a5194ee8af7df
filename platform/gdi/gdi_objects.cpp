// Making, asking and deleting what is selected into contexts.
#include "platform/gdi/gdi_objects.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/gdi/stock_objects.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

constexpr size_t kStockObjects = 20;

LOGFONTW ShellFont() {
    LOGFONTW font = {};
    font.lfHeight = -11;  // 8 points
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    std::u16string_view(u"MS Shell Dlg").copy(font.lfFaceName, LF_FACESIZE - 1);
    return font;
}

constexpr struct {
    int index;
    Brush brush;
} kStockBrushes[] = {
    {WHITE_BRUSH, {RGB(255, 255, 255)}}, {LTGRAY_BRUSH, {RGB(192, 192, 192)}}, {GRAY_BRUSH, {RGB(128, 128, 128)}},
    {DKGRAY_BRUSH, {RGB(64, 64, 64)}},   {BLACK_BRUSH, {RGB(0, 0, 0)}},        {NULL_BRUSH, {0, true}},
};

constexpr struct {
    int index;
    Pen pen;
} kStockPens[] = {
    {WHITE_PEN, {PS_SOLID, 1, RGB(255, 255, 255)}},
    {BLACK_PEN, {PS_SOLID, 1, RGB(0, 0, 0)}},
    {NULL_PEN, {PS_NULL, 1, 0}},
};

// Copies a description for GetObjectW. With no buffer: how large it is.
template <class T>
int Tell(const T& description, int bytes, LPVOID buffer) {
    if (!buffer) {
        return sizeof(T);
    }
    if (bytes < static_cast<int>(sizeof(T))) {
        Fail(ERROR_INVALID_PARAMETER);
        return 0;
    }
    std::memcpy(buffer, &description, sizeof(T));
    return sizeof(T);
}

BITMAP DescriptionOf(const Bitmap& bitmap) {
    Surface& surface = *bitmap.surface;
    BITMAP description = {};
    description.bmWidth = surface.width;
    description.bmHeight = surface.height;
    description.bmWidthBytes = surface.monochrome ? (surface.width + 15) / 16 * 2 : surface.width * 4;
    description.bmPlanes = 1;
    description.bmBitsPixel = surface.monochrome ? 1 : 32;
    description.bmBits = bitmap.isSection ? surface.Pixels() : nullptr;
    return description;
}

}  // namespace

std::string LogicalFont::Describe() const {
    const std::u16string_view face(description.lfFaceName,
                                   std::find(description.lfFaceName, std::end(description.lfFaceName), u'\0'));
    return "font \"" + ToUtf8(face) + "\"";
}

std::string Bitmap::Describe() const {
    return "bitmap of " + std::to_string(surface->width) + " x " + std::to_string(surface->height);
}

GdiObject* FindGdiObject(HANDLE handle, GdiKind kind) {
    auto* const object = FindObject<GdiObject>(handle, Resource::kGdiObject);
    if (object && object->gdiKind != kind) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return object;
}

bool IsOpen(HANDLE handle) {
    const DWORD before = GetLastError();
    const bool open = handle && FindObject(handle, Resource::kGdiObject);
    SetLastError(before);
    return open;
}

HGDIOBJ StockObject(int index) {
    static std::array<HANDLE, kStockObjects> handles = {};
    for (const auto& row : kStockBrushes) {
        if (row.index == index) {
            return OwnHandle(&handles[static_cast<size_t>(index)], [&] { return row.brush; });
        }
    }
    for (const auto& row : kStockPens) {
        if (row.index == index) {
            return OwnHandle(&handles[static_cast<size_t>(index)], [&] { return row.pen; });
        }
    }
    if (index == SYSTEM_FONT || index == DEFAULT_GUI_FONT) {
        return OwnHandle(&handles[static_cast<size_t>(index)], [] { return LogicalFont{ShellFont()}; });
    }
    return nullptr;
}

HBITMAP DefaultBitmap() {
    static HANDLE handle = nullptr;
    return static_cast<HBITMAP>(OwnHandle(&handle, [] { return Bitmap{std::make_shared<Surface>(1, 1, true)}; }));
}

}  // namespace host

using namespace host;

extern "C" {

HGDIOBJ WINAPI GetStockObject(int index) {
    const HGDIOBJ object = StockObject(index);
    if (!object) {
        FailUnsupported("GetStockObject (of this index)");
    }
    return object;
}

BOOL WINAPI DeleteObject(HGDIOBJ object) {
    const MachineLock lock;
    const auto* const found = FindObject<GdiObject>(object, Resource::kGdiObject);
    if (!found) {
        return FALSE;
    }
    const GdiKind kind = found->gdiKind;
    if (kind == GdiKind::kContext || kind == GdiKind::kIcon || kind == GdiKind::kCursor) {
        return Fail(ERROR_INVALID_HANDLE);
    }
    if (found->owner == Owner::kMachine) {
        return TRUE;  // not harmful, and it stays
    }
    return found->IsSelected() ? Fail(ERROR_INVALID_HANDLE) : RemoveObject(object, Resource::kGdiObject);
}

int WINAPI GetObjectW(HANDLE object, int bytes, LPVOID buffer) {
    const MachineLock lock;
    const auto* const found = FindObject<GdiObject>(object, Resource::kGdiObject);
    if (!found) {
        return 0;
    }
    switch (found->gdiKind) {
        case GdiKind::kBitmap:
            return Tell(DescriptionOf(*FindThing<Bitmap>(object)), bytes, buffer);
        case GdiKind::kFont:
            return Tell(FindThing<LogicalFont>(object)->description, bytes, buffer);
        case GdiKind::kBrush: {
            const auto brush = FindThing<Brush>(object);
            return Tell(LOGBRUSH{brush->hollow ? 1u : 0u, brush->color, 0}, bytes, buffer);
        }
        default:
            FailUnsupported("GetObjectW (of anything but bitmaps, fonts and brushes)");
            return 0;
    }
}

HPEN WINAPI CreatePen(int style, int width, COLORREF color) {
    if (FaultAsked("CreatePen")) {
        return nullptr;
    }
    if (style != PS_SOLID && style != PS_DASH && style != PS_DOT && style != PS_NULL) {
        FailUnsupported("CreatePen (of this style)");
        return nullptr;
    }
    width = std::max(width, 1);
    // Only thin lines are broken.
    return static_cast<HPEN>(AddThing(Pen{width > 1 && style != PS_NULL ? PS_SOLID : style, width, color}));
}

HBRUSH WINAPI CreateSolidBrush(COLORREF color) {
    return FaultAsked("CreateSolidBrush") ? nullptr : static_cast<HBRUSH>(AddThing(Brush{color}));
}

HFONT WINAPI CreateFontIndirectW(const LOGFONTW* font) {
    if (FaultAsked("CreateFontIndirectW")) {
        return nullptr;
    }
    if (!font) {
        Fail(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    if (font->lfWidth != 0) {
        FailUnsupported("CreateFontIndirectW (with a width)");
        return nullptr;
    }
    return static_cast<HFONT>(AddThing(LogicalFont{*font}));
}

HFONT WINAPI CreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                         DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision,
                         DWORD quality, DWORD pitchAndFamily, LPCWSTR face) {
    if (FaultAsked("CreateFontW")) {
        return nullptr;
    }
    LOGFONTW font = {height,
                     width,
                     escapement,
                     orientation,
                     weight,
                     static_cast<BYTE>(italic != 0),
                     static_cast<BYTE>(underline != 0),
                     static_cast<BYTE>(strikeOut != 0),
                     static_cast<BYTE>(charSet),
                     static_cast<BYTE>(outPrecision),
                     static_cast<BYTE>(clipPrecision),
                     static_cast<BYTE>(quality),
                     static_cast<BYTE>(pitchAndFamily),
                     {}};
    if (face) {
        std::u16string_view(face).copy(font.lfFaceName, LF_FACESIZE - 1);
    }
    return CreateFontIndirectW(&font);
}

HRGN WINAPI CreateRectRgn(int left, int top, int right, int bottom) {
    if (FaultAsked("CreateRectRgn")) {
        return nullptr;
    }
    return static_cast<HRGN>(
        AddThing(Region{{std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)}}));
}

}  // extern "C"
