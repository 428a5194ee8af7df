#include "driver/ui/pictures.h"

#include "driver/base/text.h"
#include "driver/ui/controls.h"

namespace velmora {
namespace {

constexpr const WCHAR* kImageModule = TEXT("KV62im.dll");
constexpr size_t kLibraryNameLength = 9;  // of "KV62E.DLL", which ends the rendering library's path

}  // namespace

OwnedModule LoadImageModule(const SheetContext& context) {
    WCHAR path[MAX_PATH];
    const size_t length = CopyText(path, ARRAYSIZE(path), context.renderLibrary);
    if (length < kLibraryNameLength) {
        return {};
    }
    path[length - kLibraryNameLength] = 0;
    AppendText(path, ARRAYSIZE(path), kImageModule);
    return OwnedModule(LoadLibraryW(path));
}

void DrawBitmapInControl(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control, bool isStretched) {
    const OwnedBitmap bitmap(LoadBitmapW(module, name));
    RECT place = ControlRect(dialog, control);
    BITMAP size;
    if (!isStretched && GetObjectW(bitmap.Get(), sizeof(size), &size) != 0) {
        place.right = place.left + size.bmWidth;
        place.bottom = place.top + size.bmHeight;
    }
    StretchBitmap(target, bitmap.Get(), place);
}

void StretchBitmap(HDC target, HBITMAP bitmap, const RECT& place) {
    const OwnedDeviceContext memory(CreateCompatibleDC(target));
    BITMAP size;
    if (!bitmap || !memory || GetObjectW(bitmap, sizeof(size), &size) == 0) {
        return;
    }
    const HGDIOBJ replaced = SelectObject(memory.Get(), bitmap);
    const int mode = SetStretchBltMode(target, HALFTONE);
    SetBrushOrgEx(target, 0, 0, nullptr);
    StretchBlt(target, place.left, place.top, place.right - place.left, place.bottom - place.top, memory.Get(), 0, 0,
               size.bmWidth, size.bmHeight, SRCCOPY);
    SetStretchBltMode(target, mode);
    SelectObject(memory.Get(), replaced);
}

void DrawBitmapTransparent(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control) {
    const OwnedBitmap bitmap(LoadBitmapW(module, name));
    BITMAP size;
    if (!bitmap || GetObjectW(bitmap.Get(), sizeof(size), &size) == 0) {
        return;
    }
    // One bit a pixel: set where the bitmap is white.
    const OwnedBitmap mask(CreateBitmap(size.bmWidth, size.bmHeight, 1, 1, nullptr));
    const OwnedDeviceContext source(CreateCompatibleDC(target));
    const OwnedDeviceContext maskSource(CreateCompatibleDC(target));
    if (!mask || !source || !maskSource) {
        return;
    }
    const HGDIOBJ replaced = SelectObject(source.Get(), bitmap.Get());
    const HGDIOBJ replacedMask = SelectObject(maskSource.Get(), mask.Get());
    SetBkColor(source.Get(), RGB(255, 255, 255));
    BitBlt(maskSource.Get(), 0, 0, size.bmWidth, size.bmHeight, source.Get(), 0, 0, SRCCOPY);
    // Inverting twice leaves what was there; in between, the mask blackens what isn't to stay.
    const COLORREF background = SetBkColor(target, RGB(255, 255, 255));
    const COLORREF foreground = SetTextColor(target, RGB(0, 0, 0));
    const int mode = SetStretchBltMode(target, COLORONCOLOR);
    const RECT place = ControlRect(dialog, control);
    const struct {
        HDC source;
        DWORD operation;
    } passes[] = {{source.Get(), SRCINVERT}, {maskSource.Get(), SRCAND}, {source.Get(), SRCINVERT}};
    for (const auto& pass : passes) {
        StretchBlt(target, place.left, place.top, place.right - place.left, place.bottom - place.top, pass.source, 0, 0,
                   size.bmWidth, size.bmHeight, pass.operation);
    }
    SetStretchBltMode(target, mode);
    SetTextColor(target, foreground);
    SetBkColor(target, background);
    SelectObject(maskSource.Get(), replacedMask);
    SelectObject(source.Get(), replaced);
}

void DrawIconInControl(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control) {
    if (const HICON icon = module ? LoadIconW(module, name) : nullptr) {
        const RECT place = ControlRect(dialog, control);
        DrawIcon(target, place.left, place.top, icon);
    }
}

}  // namespace velmora
