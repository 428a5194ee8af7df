// Texts, pictures, lines and frames.
#include <windows.h>

#include <algorithm>

#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/images.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

class Static : public Control {
  public:
    explicit Static(HWND window) : Control(window, {STM_SETICON, STM_GETIMAGE + 4}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    UINT Kind() const { return Style() & SS_TYPEMASK; }
    bool ShowsImage() const { return Kind() == SS_ICON || Kind() == SS_BITMAP; }
    UINT ImageType() const { return Kind() == SS_ICON ? IMAGE_ICON : IMAGE_BITMAP; }
    LRESULT SetImage(UINT type, HANDLE handle);
    void LoadOwnImage(const CREATESTRUCTW& creation);
    void FreeOwnImage();

    void Paint(HDC context, const RECT& client) override;
    void PaintText(HDC context, const RECT& client) const;
    void DrawByOwner(HDC context, const RECT& client) const;

    Image image_;
    HBITMAP ownBitmap_ = nullptr;  // loaded by the name in the window's text
};

// The control takes on the picture's size, unless the picture is centred in it.
LRESULT Static::SetImage(UINT type, HANDLE handle) {
    if (!ShowsImage() || type != ImageType()) {
        return 0;
    }
    const HANDLE previous = image_.handle;
    image_ = {type, handle};
    if (handle && !(Style() & SS_CENTERIMAGE)) {
        const SIZE size = SizeOf(image_);
        SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    Redraw();
    return reinterpret_cast<LRESULT>(previous);
}

void Static::LoadOwnImage(const CREATESTRUCTW& creation) {
    if (!ShowsImage() || !creation.lpszName || !*creation.lpszName) {
        return;
    }
    const LPCWSTR name =
        creation.lpszName[0] == 0xFFFF ? MAKEINTRESOURCEW(creation.lpszName[1]) : creation.lpszName;  // by its number
    if (Kind() == SS_ICON) {
        SetImage(IMAGE_ICON, LoadIconW(creation.hInstance, name));
    } else {
        ownBitmap_ = LoadBitmapW(creation.hInstance, name);
        SetImage(IMAGE_BITMAP, ownBitmap_);
    }
}

void Static::FreeOwnImage() {
    if (ownBitmap_) {
        DeleteObject(ownBitmap_);
    }
    ownBitmap_ = nullptr;
    image_ = {};
}

LRESULT Static::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            LoadOwnImage(*reinterpret_cast<const CREATESTRUCTW*>(lParam));
            return 0;
        case WM_DESTROY:
            FreeOwnImage();
            return 0;
        case WM_GETDLGCODE:
            return DLGC_STATIC;
        case WM_NCHITTEST:
            return Style() & SS_NOTIFY ? HandleCommon(message, wParam, lParam) : HTTRANSPARENT;
        case WM_SETTEXT: {
            const LRESULT result = HandleCommon(message, wParam, lParam);
            Redraw();
            return result;
        }
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            if (Style() & SS_NOTIFY) {
                SendCommand(message == WM_LBUTTONDOWN ? STN_CLICKED : STN_DBLCLK);
            }
            return 0;
        case STM_SETICON:
            return SetImage(IMAGE_ICON, reinterpret_cast<HANDLE>(wParam));
        case STM_SETIMAGE:
            return SetImage(static_cast<UINT>(wParam), reinterpret_cast<HANDLE>(lParam));
        case STM_GETICON:
            return Kind() == SS_ICON ? reinterpret_cast<LRESULT>(image_.handle) : 0;
        case STM_GETIMAGE:
            return wParam == image_.type ? reinterpret_cast<LRESULT>(image_.handle) : 0;
        default:
            return HandleCommon(message, wParam, lParam);
    }
}

void Static::Paint(HDC context, const RECT& client) {
    if (Kind() == SS_OWNERDRAW) {
        DrawByOwner(context, client);
        return;
    }
    FillRect(context, &client, AskColors(context, WM_CTLCOLORSTATIC));
    switch (Kind()) {
        case SS_ICON:
        case SS_BITMAP:
            if (image_.handle && Style() & SS_CENTERIMAGE) {
                DrawImageCentered(context, client, image_);
            } else if (image_.handle) {
                DrawImageAt(context, 0, 0, image_);
            }
            break;
        case SS_BLACKFRAME:
            FrameColor(context, client, GetSysColor(COLOR_WINDOWFRAME));
            break;
        case SS_GRAYFRAME:
            FrameColor(context, client, kFieldLine);
            break;
        case SS_ETCHEDFRAME:
            FrameColor(context, client, kGroupLine);
            break;
        case SS_ETCHEDHORZ:
            FillColor(context, {client.left, client.top, client.right, client.top + 1}, kGroupLine);
            break;
        case SS_ETCHEDVERT:
            FillColor(context, {client.left, client.top, client.left + 1, client.bottom}, kGroupLine);
            break;
        default:
            PaintText(context, client);
            break;
    }
    if (Style() & SS_SUNKEN) {
        FrameColor(context, client, kGroupLine);
    }
}

void Static::PaintText(HDC context, const RECT& client) const {
    const DWORD style = Style();
    UINT format = 0;
    switch (Kind()) {
        case SS_CENTER:
            format = DT_CENTER | DT_WORDBREAK;
            break;
        case SS_RIGHT:
            format = DT_RIGHT | DT_WORDBREAK;
            break;
        case SS_LEFTNOWORDWRAP:
            break;
        default:
            format = DT_WORDBREAK;
            break;
    }
    if (style & (SS_ENDELLIPSIS | SS_PATHELLIPSIS)) {
        format = (format & ~DT_WORDBREAK) | DT_SINGLELINE | DT_END_ELLIPSIS;
    }
    if (style & SS_CENTERIMAGE) {
        format = (format & ~DT_WORDBREAK) | DT_SINGLELINE | DT_VCENTER;
    }
    if (style & SS_NOPREFIX) {
        format |= DT_NOPREFIX;
    }
    DrawLabel(context, Text(), client, format,
              IsEnabled() ? GetTextColor(context) : static_cast<COLORREF>(GetSysColor(COLOR_GRAYTEXT)));
}

void Static::DrawByOwner(HDC context, const RECT& client) const {
    AskColors(context, WM_CTLCOLORSTATIC);
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_STATIC;
    item.itemAction = ODA_DRAWENTIRE;
    item.hDC = context;
    item.rcItem = client;
    host::DrawByOwner(window_, item);
}

}  // namespace

LRESULT CALLBACK StaticProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<Static>(window, message, wParam, lParam);
}

}  // namespace host
