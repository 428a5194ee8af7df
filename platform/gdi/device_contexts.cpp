#include "platform/gdi/device_contexts.h"

#include <algorithm>

#include "platform/gdi/fonts.h"
#include "platform/gdi/stock_objects.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

constexpr int kBlackOnWhite = 1;  // the stretch mode of a fresh context
constexpr int kDotsPerInch = 96;

template <class T>
Selected<T> Select(HGDIOBJ handle) {
    return {handle, FindThing<T>(handle)};
}

void Describe(const Font& font, LOGFONTW* logFont, NEWTEXTMETRICW* metric) {
    *logFont = {};
    *metric = {};
    font.face.copy(logFont->lfFaceName, LF_FACESIZE - 1);
    logFont->lfCharSet = font.charSet;
    metric->tmCharSet = font.charSet;
}

HDC AddContext(std::unique_ptr<DeviceContext> context) {
    return static_cast<HDC>(AddObject(std::move(context)));
}

template <class T>
HGDIOBJ Exchange(Selected<T>* selected, HGDIOBJ handle) {
    return std::exchange(*selected, Select<T>(handle)).handle;
}

// A bitmap is in one memory context at a time.
bool MaySelect(const DeviceContext& context, const GdiObject& object, HGDIOBJ bitmap) {
    if (context.target != DeviceContext::Target::kMemory) {
        return false;
    }
    const auto hasIt = [&](const ContextState& state) { return state.bitmap.handle == bitmap; };
    return object.owner == Owner::kMachine || !object.IsSelected() || hasIt(context.state) ||
           std::any_of(context.saved.begin(), context.saved.end(), hasIt);
}

RECT Moved(RECT rect, LONG dx, LONG dy) {
    OffsetRect(&rect, dx, dy);
    return rect;
}

int KindOf(const RECT& region) {
    return IsRectEmpty(&region) ? NULLREGION : SIMPLEREGION;
}

// Sets an attribute of a context and returns what it was, or `failure` where there is no such context.
template <class T, class Result>
Result ExchangeAttribute(HDC context, T ContextState::*attribute, T value, Result failure) {
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    return found ? static_cast<Result>(std::exchange(found->state.*attribute, value)) : failure;
}

template <class T>
T AttributeOf(HDC context, T ContextState::*attribute, T failure) {
    const MachineLock lock;
    const DeviceContext* const found = FindContext(context);
    return found ? found->state.*attribute : failure;
}

// False where nothing but text is drawn in the context's scale.
bool IsUnscaled(const DeviceContext& context) {
    return context.state.mapping.Scale() == 1 || FailUnsupported("drawing anything but text in another scale");
}

BOOL ExchangeExtent(HDC context, int Mapping::*extent, SIZE value, LPSIZE previous) {
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    if (!found) {
        return FALSE;
    }
    Mapping& mapping = found->state.mapping;
    if (previous) {
        *previous = {mapping.*extent, mapping.*extent};
    }
    if (mapping.mode == MM_TEXT) {
        return TRUE;  // there it means nothing
    }
    if (value.cx <= 0 || value.cx != value.cy) {
        return FailUnsupported("a mapping that turns pictures over or distorts them");
    }
    mapping.*extent = value.cx;
    return TRUE;
}

BOOL MoveOrigin(HDC context, POINT ContextState::*origin, int x, int y, LPPOINT previous) {
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    if (!found) {
        return FALSE;
    }
    const POINT old = std::exchange(found->state.*origin, POINT{x, y});
    if (previous) {
        *previous = old;
    }
    return TRUE;
}

}  // namespace

DeviceContext::DeviceContext(Target target) : GdiObject(GdiKind::kContext, Owner::kProgram), target(target) {
    state.pen = Select<Pen>(StockObject(BLACK_PEN));
    state.brush = Select<Brush>(StockObject(WHITE_BRUSH));
    state.font = Select<LogicalFont>(StockObject(SYSTEM_FONT));
    if (target == Target::kMemory) {
        state.bitmap = Select<Bitmap>(DefaultBitmap());
    }
    state.stretchMode = kBlackOnWhite;
}

std::string DeviceContext::Describe() const {
    switch (target) {
        case Target::kDisplay:
            return "display context";
        case Target::kMemory:
            return "memory context";
        case Target::kSurface:
            break;
    }
    return "context of a window";
}

DeviceContext* FindContext(HDC context) {
    return static_cast<DeviceContext*>(FindGdiObject(context, GdiKind::kContext));
}

std::optional<Canvas> FindCanvas(HDC handle, const char* call) {
    auto canvas = FindScaledCanvas(handle, call);
    return canvas && IsUnscaled(*canvas->context) ? canvas : std::nullopt;
}

std::optional<Canvas> FindScaledCanvas(HDC handle, const char* call) {
    DeviceContext* const context = call && FaultAsked(call) ? nullptr : FindContext(handle);
    if (!context) {
        return std::nullopt;
    }
    if (context->target == DeviceContext::Target::kDisplay) {
        FailUnsupported("drawing on the display itself");
        return std::nullopt;
    }
    const ContextState& state = context->state;
    Surface* const surface = state.bitmap.thing ? state.bitmap.thing->surface.get() : context->surface.get();
    RECT clip = {0, 0, surface->width, surface->height};
    if (context->target == DeviceContext::Target::kSurface) {
        IntersectRect(&clip, &clip, &context->visible);
    }
    if (state.clip) {
        const RECT chosen = Moved(*state.clip, context->origin.x, context->origin.y);
        IntersectRect(&clip, &clip, &chosen);
    }
    return Canvas{context,
                  surface,
                  {context->origin.x + state.viewport.x, context->origin.y + state.viewport.y},
                  clip,
                  state.mapping.Scale()};
}

HDC MakeSurfaceContext(const std::shared_ptr<Surface>& surface, POINT origin, const RECT& clip) {
    const MachineLock lock;
    auto context = std::make_unique<DeviceContext>(DeviceContext::Target::kSurface);
    context->surface = surface;
    context->origin = origin;
    context->visible = clip;
    return AddContext(std::move(context));
}

}  // namespace host

using namespace host;

extern "C" {

HDC WINAPI CreateDCW(LPCWSTR driver, LPCWSTR, LPCWSTR, const DEVMODEW*) {
    if (FaultAsked("CreateDCW")) {
        return nullptr;
    }
    if (!driver || !EqualsIgnoringCase(driver, u"DISPLAY")) {
        FailUnsupported("CreateDCW (a device context of anything but the display)");
        return nullptr;
    }
    const MachineLock lock;
    return AddContext(std::make_unique<DeviceContext>(DeviceContext::Target::kDisplay));
}

HDC WINAPI CreateCompatibleDC(HDC context) {
    if (FaultAsked("CreateCompatibleDC")) {
        return nullptr;
    }
    const MachineLock lock;
    if (context && !FindContext(context)) {
        return nullptr;
    }
    if (AllocationFails()) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    return AddContext(std::make_unique<DeviceContext>(DeviceContext::Target::kMemory));
}

BOOL WINAPI DeleteDC(HDC context) {
    const MachineLock lock;
    return FindContext(context) && RemoveObject(context, Resource::kGdiObject);
}

int WINAPI SaveDC(HDC context) {
    if (FaultAsked("SaveDC")) {
        return 0;
    }
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    if (!found) {
        return 0;
    }
    found->saved.push_back(found->state);
    return static_cast<int>(found->saved.size());
}

BOOL WINAPI RestoreDC(HDC context, int saved) {
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    if (!found) {
        return FALSE;
    }
    const int count = static_cast<int>(found->saved.size());
    const int level = saved < 0 ? count + saved + 1 : saved;
    if (level < 1 || level > count) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    found->state = std::move(found->saved[static_cast<size_t>(level - 1)]);
    found->saved.resize(static_cast<size_t>(level - 1));
    return TRUE;
}

int WINAPI GetDeviceCaps(HDC context, int index) {
    const MachineLock lock;
    const DeviceContext* const found = FindContext(context);
    if (!found) {
        return 0;
    }
    switch (index) {
        case LOGPIXELSX:
        case LOGPIXELSY:
            return kDotsPerInch;
        case BITSPIXEL:
            return found->state.bitmap.thing && found->state.bitmap.thing->surface->monochrome ? 1 : 32;
        default:
            FailUnsupported("GetDeviceCaps (of this index)");
            return 0;
    }
}

int WINAPI EnumFontFamiliesW(HDC context, LPCWSTR family, FONTENUMPROCW proc, LPARAM parameter) {
    if (FaultAsked("EnumFontFamiliesW") || !FindObject(context, Resource::kGdiObject)) {
        return 0;
    }
    int result = 1;
    for (const Font& font : DisplayFonts()) {
        if (family && !EqualsIgnoringCase(font.face, family)) {
            continue;
        }
        ENUMLOGFONTW logFont = {};
        NEWTEXTMETRICW metric;
        Describe(font, &logFont.elfLogFont, &metric);
        result = proc(&logFont.elfLogFont, reinterpret_cast<const TEXTMETRICW*>(&metric), font.type, parameter);
        if (result == 0) {
            break;
        }
    }
    return result;
}

HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ handle) {
    if (FaultAsked("SelectObject")) {
        return nullptr;
    }
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    const auto* const object = found ? FindObject<GdiObject>(handle, Resource::kGdiObject) : nullptr;
    if (!object) {
        return nullptr;
    }
    ContextState& state = found->state;
    switch (object->gdiKind) {
        case GdiKind::kPen:
            return Exchange(&state.pen, handle);
        case GdiKind::kBrush:
            return Exchange(&state.brush, handle);
        case GdiKind::kFont:
            return Exchange(&state.font, handle);
        case GdiKind::kBitmap:
            if (MaySelect(*found, *object, handle)) {
                return Exchange(&state.bitmap, handle);
            }
            break;
        default:
            break;
    }
    Fail(ERROR_INVALID_HANDLE);
    return nullptr;
}

COLORREF WINAPI SetTextColor(HDC context, COLORREF color) {
    return ExchangeAttribute(context, &ContextState::textColor, color, CLR_INVALID);
}

COLORREF WINAPI GetTextColor(HDC context) {
    return AttributeOf(context, &ContextState::textColor, CLR_INVALID);
}

COLORREF WINAPI SetBkColor(HDC context, COLORREF color) {
    return ExchangeAttribute(context, &ContextState::backColor, color, CLR_INVALID);
}

COLORREF WINAPI GetBkColor(HDC context) {
    return AttributeOf(context, &ContextState::backColor, CLR_INVALID);
}

int WINAPI SetBkMode(HDC context, int mode) {
    if (mode != TRANSPARENT && mode != OPAQUE) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    return ExchangeAttribute(context, &ContextState::backMode, mode, 0);
}

UINT WINAPI SetTextAlign(HDC context, UINT align) {
    constexpr UINT kFailure = 0xFFFFFFFF;
    const UINT across = align & TA_CENTER;
    if ((align & ~static_cast<UINT>(TA_CENTER | TA_BASELINE | TA_RTLREADING)) != 0 || across == 4) {
        FailUnsupported("SetTextAlign (to this alignment)");
        return kFailure;
    }
    return ExchangeAttribute(context, &ContextState::align, align, kFailure);
}

int WINAPI SetStretchBltMode(HDC context, int mode) {
    if (mode != kBlackOnWhite && mode != COLORONCOLOR && mode != HALFTONE) {
        return FailUnsupported("SetStretchBltMode (to this mode)");
    }
    return ExchangeAttribute(context, &ContextState::stretchMode, mode, 0);
}

BOOL WINAPI SetBrushOrgEx(HDC context, int x, int y, LPPOINT previous) {
    return MoveOrigin(context, &ContextState::brushOrigin, x, y, previous);
}

BOOL WINAPI SetViewportOrgEx(HDC context, int x, int y, LPPOINT previous) {
    return MoveOrigin(context, &ContextState::viewport, x, y, previous);
}

int WINAPI SetMapMode(HDC context, int mode) {
    if (FaultAsked("SetMapMode")) {
        return 0;
    }
    if (mode != MM_TEXT && mode != MM_ANISOTROPIC) {
        return FailUnsupported("SetMapMode (to this mode)");
    }
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    return found ? std::exchange(found->state.mapping, Mapping{mode}).mode : 0;
}

BOOL WINAPI SetWindowExtEx(HDC context, int width, int height, LPSIZE previous) {
    return !FaultAsked("SetWindowExtEx") && ExchangeExtent(context, &Mapping::window, {width, height}, previous);
}

BOOL WINAPI SetViewportExtEx(HDC context, int width, int height, LPSIZE previous) {
    return !FaultAsked("SetViewportExtEx") && ExchangeExtent(context, &Mapping::viewport, {width, height}, previous);
}

BOOL WINAPI MoveToEx(HDC context, int x, int y, LPPOINT previous) {
    return MoveOrigin(context, &ContextState::position, x, y, previous);
}

int WINAPI SelectClipRgn(HDC context, HRGN region) {
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    if (!found) {
        return 0;
    }
    if (!region) {
        found->state.clip.reset();
        return SIMPLEREGION;
    }
    const auto chosen = FindThing<Region>(region);
    if (!chosen) {
        return 0;
    }
    found->state.clip = chosen->rect;
    return KindOf(chosen->rect);
}

int WINAPI IntersectClipRect(HDC context, int left, int top, int right, int bottom) {
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    if (!found || !IsUnscaled(*found)) {
        return 0;
    }
    ContextState& state = found->state;
    RECT clip = Moved({left, top, right, bottom}, state.viewport.x, state.viewport.y);
    if (state.clip) {
        IntersectRect(&clip, &clip, &*state.clip);
    }
    state.clip = clip;
    return KindOf(clip);
}

}  // extern "C"
