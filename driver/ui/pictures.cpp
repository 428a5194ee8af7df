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
    SetStretchBltMode(target, HALFTONE);
    SetBrushOrgEx(target, 0, 0, nullptr);
    StretchBlt(target, place.left, place.top, place.right - place.left, place.bottom - place.top, memory.Get(), 0, 0,
               size.bmWidth, size.bmHeight, SRCCOPY);
    SelectObject(memory.Get(), replaced);
}

}  // namespace velmora
