// What must be painted, and the device contexts to do it on.
#include <windows.h>

#include <algorithm>

#include "platform/gdi/surfaces.h"
#include "platform/host.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/user/windows.h"

namespace host {
namespace {

RECT ClientRect(const Window& window) {
    const SIZE size = ClientSize(window);
    return {0, 0, size.cx, size.cy};
}

RECT Union(const RECT& a, const RECT& b) {
    if (IsEmptyRect(a) || IsEmptyRect(b)) {
        return IsEmptyRect(a) ? b : a;
    }
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

void Validate(Window& window) {
    window.isInvalid = window.mustErase = window.mustDrawFrame = false;
    window.update = {};
    window.paintsUnanswered = 0;
}

HWND FindInvalid(const std::vector<HWND>& windows) {
    for (const HWND handle : windows) {
        const Window* const window = FindWindowObject(handle);
        if (window == nullptr || !window->IsMarkedVisible()) {
            continue;
        }
        if (window->isInvalid) {
            return handle;
        }
        if (const HWND child = FindInvalid(window->children)) {
            return child;
        }
    }
    return nullptr;
}

// --- Device contexts -------------------------------------------------------------------------------------------------

// Of a window that is larger, what lies beyond isn't drawn: a dialog may have any size, and no screen shows it.
constexpr int kLargestDrawnSide = 4096;

const std::shared_ptr<Surface>& SurfaceOf(Window& root) {
    const int width = std::clamp<int>(root.rect.right - root.rect.left, 1, kLargestDrawnSide);
    const int height = std::clamp<int>(root.rect.bottom - root.rect.top, 1, kLargestDrawnSide);
    if (root.surface == nullptr || root.surface->width != width || root.surface->height != height) {
        root.surface = std::make_shared<Surface>(width, height);
    }
    return root.surface;
}

// A window's whole place in the pixels of its top-level window.
RECT PlaceInRoot(const Window& window, const Window& root) {
    const RECT place = ScreenRect(window);
    return Moved(place, -root.rect.left, -root.rect.top);
}

RECT ClientInRoot(const Window& window, const Window& root) {
    const POINT origin = ClientOrigin(window);
    return Moved(ClientRect(window), origin.x - root.rect.left, origin.y - root.rect.top);
}

// What of an area of the window its parents let be seen.
RECT ClipToParents(RECT area, const Window& window, const Window& root) {
    const Window* parent = window.parent != nullptr ? FindWindowObject(window.parent) : nullptr;
    while (parent != nullptr) {
        area = Intersection(area, ClientInRoot(*parent, root));
        parent = parent->parent != nullptr ? FindWindowObject(parent->parent) : nullptr;
    }
    return Intersection(area, {0, 0, root.rect.right - root.rect.left, root.rect.bottom - root.rect.top});
}

// Windows over the area that drawing in the window must not touch.
std::vector<HWND> WindowsAbove(const Window& window) {
    std::vector<HWND> above;
    if ((window.style & WS_CLIPCHILDREN) != 0) {
        above = window.children;
    }
    const Window* const parent = window.parent != nullptr ? FindWindowObject(window.parent) : nullptr;
    if (parent != nullptr && (window.style & WS_CLIPSIBLINGS) != 0) {
        const auto end = std::find(parent->children.begin(), parent->children.end(), window.handle);
        above.insert(above.end(), parent->children.begin(), end);
    }
    return above;
}

PaintContext::Kept KeepPixels(const Surface& surface, const RECT& rect) {
    PaintContext::Kept kept = {rect, {}};
    for (LONG y = rect.top; y < rect.bottom; ++y) {
        const uint32_t* const row = surface.Row(y);
        kept.pixels.insert(kept.pixels.end(), row + rect.left, row + rect.right);
    }
    return kept;
}

void PutBack(Surface& surface, const PaintContext::Kept& kept) {
    const uint32_t* from = kept.pixels.data();
    const LONG width = kept.rect.right - kept.rect.left;
    for (LONG y = kept.rect.top; y < kept.rect.bottom; ++y, from += width) {
        std::copy_n(from, width, surface.Row(y) + kept.rect.left);
    }
}

// What nothing can be seen of still tells of the display and its fonts.
HDC MakeBlindContext() {
    static const auto& surface = *new std::shared_ptr<Surface>(std::make_shared<Surface>(1, 1));
    return MakeSurfaceContext(surface, {0, 0}, {});
}

// For the client area or the whole window; `update` (client positions; null: all) is what is to be drawn.
HDC OpenContext(Window& window, bool whole, const RECT* update) {
    PaintContext opened = {nullptr, window.handle, nullptr, {}};
    Window& root = RootOf(window);
    if (!IsWindowVisible(window.handle) || window.thread == 0) {
        opened.context = MakeBlindContext();
    } else {
        const RECT area = whole ? PlaceInRoot(window, root) : ClientInRoot(window, root);
        RECT clip = area;
        if (update != nullptr) {
            clip = Intersection(clip, Moved(*update, area.left, area.top));
        }
        clip = ClipToParents(clip, window, root);
        opened.surface = SurfaceOf(root);
        for (const HWND handle : WindowsAbove(window)) {
            const Window* const above = FindWindowObject(handle);
            if (above != nullptr && above->IsMarkedVisible()) {
                const RECT covered = Intersection(clip, PlaceInRoot(*above, root));
                if (!IsEmptyRect(covered)) {
                    opened.kept.push_back(KeepPixels(*opened.surface, covered));
                }
            }
        }
        opened.context = MakeSurfaceContext(opened.surface, {area.left, area.top}, clip);
    }
    if (opened.context != nullptr) {
        ThisThread().contexts.push_back(opened);
    }
    return opened.context;
}

// False where it is none that was given.
bool GiveBack(HDC context) {
    std::vector<PaintContext>& contexts = ThisThread().contexts;
    const auto found = std::find_if(contexts.begin(), contexts.end(),
                                    [context](const PaintContext& open) { return open.context == context; });
    if (found == contexts.end()) {
        return false;
    }
    for (const PaintContext::Kept& kept : found->kept) {
        PutBack(*found->surface, kept);
    }
    contexts.erase(found);
    return RemoveObject(context, Resource::kGdiObject);
}

// --- Pictures --------------------------------------------------------------------------------------------------------

bool IsOpenPopupOf(const Window& window, HWND root) {
    return window.IsMarkedVisible() && window.owner == root && (window.style & WS_CAPTION) != WS_CAPTION;
}

// Copies what both surfaces cover; `offset` is where the source's corner lies in the target.
void CopyPixels(const Surface& from, Surface& to, POINT offset) {
    const RECT both =
        Intersection({offset.x, offset.y, offset.x + from.width, offset.y + from.height}, {0, 0, to.width, to.height});
    for (LONG y = both.top; y < both.bottom; ++y) {
        std::copy_n(from.Row(y - offset.y) + (both.left - offset.x), both.right - both.left, to.Row(y) + both.left);
    }
}

}  // namespace

HDC OpenContext(HWND window, bool whole) {
    Window* const found = window != nullptr ? FindWindowObject(window) : &Desktop();
    return found != nullptr ? OpenContext(*found, whole, nullptr) : nullptr;
}

void CloseContext(HDC context) {
    GiveBack(context);
}

void Invalidate(Window& window, const RECT* rect, bool erase, bool frame, bool children) {
    if (!window.redraws || window.thread == 0 || !IsWindowVisible(window.handle)) {
        return;
    }
    const RECT client = ClientRect(window);
    const RECT part = rect != nullptr ? Intersection(*rect, client) : client;
    if (IsEmptyRect(part) && !frame) {
        return;
    }
    window.update = Union(window.isInvalid ? window.update : RECT{}, part);
    window.isInvalid = true;
    window.mustErase |= erase;
    window.mustDrawFrame |= frame;
    ++ThisThread().changes;
    if (!children && (window.style & WS_CLIPCHILDREN) != 0) {
        return;
    }
    // Children over the one rectangle, which may be more than its parts: all of it is going to be painted.
    const RECT update = window.update;
    for (const HWND handle : window.children) {
        Window* const child = FindWindowObject(handle);
        if (child == nullptr || IsEmptyRect(Intersection(update, child->rect))) {
            continue;
        }
        const RECT inChild =
            Moved(update, -child->rect.left - child->client.left, -child->rect.top - child->client.top);
        Invalidate(*child, &inChild, erase, true, children);
    }
}

void InvalidatePlace(const Window& window, const RECT& rect) {
    if (Window* const parent = window.parent != nullptr ? FindWindowObject(window.parent) : nullptr) {
        Invalidate(*parent, &rect, true);
    }
}

HWND FindInvalidWindow() {
    return FindInvalid(ThisThread().topLevels);
}

bool SavePicture(HWND window, const std::filesystem::path& png) {
    Window* found = FindWindowObject(window);
    if (found == nullptr || found->thread == 0 || !IsWindowVisible(window)) {
        return false;
    }
    const HWND root = RootOf(*found).handle;
    UpdateWindow(root);
    for (const HWND other : std::vector<HWND>(ThisThread().topLevels)) {
        const Window* const popup = IsWindow(other) ? FindWindowObject(other) : nullptr;
        if (popup != nullptr && IsOpenPopupOf(*popup, root)) {
            UpdateWindow(other);
        }
    }
    found = IsWindow(window) ? FindWindowObject(window) : nullptr;
    if (found == nullptr || IsEmptyRect(found->rect)) {
        return false;
    }
    Window& top = RootOf(*found);
    const RECT place = ScreenRect(*found);
    Surface picture(place.right - place.left, place.bottom - place.top);
    CopyPixels(*SurfaceOf(top), picture, {top.rect.left - place.left, top.rect.top - place.top});
    const std::vector<HWND>& others = ThisThread().topLevels;
    for (auto other = others.rbegin(); other != others.rend(); ++other) {
        Window* const popup = FindWindowObject(*other);
        if (popup != nullptr && IsOpenPopupOf(*popup, root)) {
            CopyPixels(*SurfaceOf(*popup), picture, {popup->rect.left - place.left, popup->rect.top - place.top});
        }
    }
    return WritePng(picture, png);
}

}  // namespace host

using namespace host;

extern "C" {

HDC WINAPI BeginPaint(HWND window, LPPAINTSTRUCT paint) {
    *paint = {};
    Window* found = FindWindowObject(window);
    if (FaultAsked("BeginPaint") || found == nullptr) {
        return nullptr;
    }
    if (found->mustDrawFrame) {
        found->mustDrawFrame = false;
        Send(window, WM_NCPAINT, 1);
        found = FindWindowObject(window);
        if (found == nullptr) {
            return nullptr;
        }
    }
    const RECT update = found->isInvalid ? found->update : RECT{};
    const bool erase = found->mustErase;
    Validate(*found);
    const HDC context = OpenContext(*found, false, &update);
    if (context == nullptr) {
        return nullptr;
    }
    paint->hdc = context;
    paint->rcPaint = update;
    paint->fErase = erase && Send(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(context)) == 0;
    return context;
}

BOOL WINAPI EndPaint(HWND, const PAINTSTRUCT* paint) {
    CloseContext(paint->hdc);
    return TRUE;
}

HDC WINAPI GetDC(HWND window) {
    return FaultAsked("GetDC") ? nullptr : OpenContext(window, false);
}

HDC WINAPI GetWindowDC(HWND window) {
    return FaultAsked("GetWindowDC") ? nullptr : OpenContext(window, true);
}

int WINAPI ReleaseDC(HWND, HDC context) {
    return GiveBack(context);
}

BOOL WINAPI InvalidateRect(HWND window, const RECT* rect, BOOL erase) {
    if (window == nullptr) {
        return FailUnsupported("InvalidateRect of all windows");
    }
    Window* const found = FindWindowObject(window);
    if (found != nullptr) {
        Invalidate(*found, rect, erase != FALSE);
    }
    return found != nullptr;
}

BOOL WINAPI ValidateRect(HWND window, const RECT* rect) {
    Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return FALSE;
    }
    // One rectangle is all that is kept: a part that doesn't cover it leaves it as it is.
    const RECT covered = rect != nullptr ? Intersection(*rect, found->update) : found->update;
    if (memcmp(&covered, &found->update, sizeof covered) == 0) {
        Validate(*found);
    }
    return TRUE;
}

BOOL WINAPI UpdateWindow(HWND window) {
    const Window* found = FindWindowObject(window);
    if (found == nullptr) {
        return FALSE;
    }
    if (found->isInvalid && IsWindowVisible(window)) {
        Send(window, WM_PAINT);
        found = IsWindow(window) ? FindWindowObject(window) : nullptr;
    }
    if (found != nullptr) {
        for (const HWND child : std::vector<HWND>(found->children)) {
            if (IsWindow(child)) {
                UpdateWindow(child);
            }
        }
    }
    return TRUE;
}

BOOL WINAPI RedrawWindow(HWND window, const RECT* rect, HRGN region, UINT flags) {
    if (region != nullptr ||
        (flags & ~static_cast<UINT>(RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW)) != 0) {
        return FailUnsupported("RedrawWindow of a region or with such flags");
    }
    Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return FALSE;
    }
    if ((flags & RDW_INVALIDATE) != 0) {
        Invalidate(*found, rect, (flags & RDW_ERASE) != 0, false, (flags & RDW_ALLCHILDREN) != 0);
    }
    return (flags & RDW_UPDATENOW) == 0 || UpdateWindow(window);
}

}  // extern "C"
