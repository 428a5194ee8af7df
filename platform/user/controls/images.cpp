#include "platform/user/controls/images.h"

#include "platform/user/controls/style.h"

namespace host {

SIZE SizeOf(const Image& image) {
    if (image.type == IMAGE_ICON) {
        return {GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)};
    }
    BITMAP bitmap = {};
    GetObjectW(image.handle, sizeof(bitmap), &bitmap);
    return {bitmap.bmWidth, bitmap.bmHeight};
}

void DrawImageAt(HDC context, int x, int y, const Image& image) {
    const SIZE size = SizeOf(image);
    if (image.type == IMAGE_ICON) {
        DrawIconEx(context, x, y, static_cast<HICON>(image.handle), size.cx, size.cy, 0, nullptr, DI_NORMAL);
        return;
    }
    const HDC source = CreateCompatibleDC(context);
    if (!source) {
        return;
    }
    const HGDIOBJ previous = SelectObject(source, image.handle);
    BitBlt(context, x, y, size.cx, size.cy, source, 0, 0, SRCCOPY);
    SelectObject(source, previous);
    DeleteDC(source);
}

void DrawImageCentered(HDC context, const RECT& rect, const Image& image) {
    const SIZE size = SizeOf(image);
    DrawImageAt(context, rect.left + (Width(rect) - size.cx) / 2, rect.top + (Height(rect) - size.cy) / 2, image);
}

}  // namespace host
