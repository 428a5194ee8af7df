// Device contexts: what is selected into them, and where their drawing goes.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/gdi/gdi_objects.h"
#include "platform/gdi/surfaces.h"

namespace host {

template <class T>
struct Selected {
    HGDIOBJ handle = nullptr;
    std::shared_ptr<T> thing;
};

// Logical units and device pixels, alike across and down.
struct Mapping {
    int mode = MM_TEXT;
    int window = 1;    // so many logical units lie on
    int viewport = 1;  // so many pixels

    double Scale() const { return static_cast<double>(viewport) / window; }
};

// What SaveDC keeps.
struct ContextState {
    Selected<Pen> pen;
    Selected<Brush> brush;
    Selected<LogicalFont> font;
    Selected<Bitmap> bitmap;  // of a memory context only
    COLORREF textColor = RGB(0, 0, 0);
    COLORREF backColor = RGB(255, 255, 255);
    int backMode = OPAQUE;
    UINT align = TA_LEFT | TA_TOP;
    int stretchMode;
    POINT brushOrigin = {0, 0};
    POINT viewport = {0, 0};  // device position of logical (0, 0)
    Mapping mapping;
    POINT position = {0, 0};   // of the pen, logical
    std::optional<RECT> clip;  // device positions; none: no clipping
};

class DeviceContext : public GdiObject {
  public:
    // A display context without a surface tells of the display and its fonts, and nothing can be drawn on it.
    enum class Target { kDisplay, kMemory, kSurface };

    explicit DeviceContext(Target target);
    std::string Describe() const override;

    const Target target;
    ContextState state;
    std::vector<ContextState> saved;
    // Target::kSurface.
    std::shared_ptr<Surface> surface;
    POINT origin = {0, 0};  // device (0, 0) in the surface's pixels
    RECT visible = {};      // in the surface's pixels
};

// Null (last error ERROR_INVALID_HANDLE) where the handle is no context. Under the machine's lock.
DeviceContext* FindContext(HDC context);

// A context with the surface that it draws on.
struct Canvas {
    DeviceContext* context;
    Surface* surface;
    POINT origin;  // logical (0, 0) in the surface's pixels
    RECT clip;     // in the surface's pixels and within it; empty where nothing can be seen
    double scale;  // pixels of a logical unit
};

// None where the handle is no context or the context has no surface, or where the test wants `call` to fail (null: a
// call that asks for that itself). Under the machine's lock. The first is for what is drawn in every scale; the second
// has the scale 1, and is none in another.
std::optional<Canvas> FindScaledCanvas(HDC context, const char* call = nullptr);
std::optional<Canvas> FindCanvas(HDC context, const char* call = nullptr);

}  // namespace host
