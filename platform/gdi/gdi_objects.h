// The things that are selected into device contexts. Handles lead to them; what a context has selected, it owns too.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <utility>

#include "platform/gdi/surfaces.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"

namespace host {

class ScreenFont;

enum class GdiKind { kContext, kPen, kBrush, kFont, kBitmap, kRegion, kIcon, kCursor };

// Who a handle belongs to: what the program makes it must also delete; the machine's own (stock objects, the brushes of
// the system's colours, shared icons) last as long as the machine.
enum class Owner { kProgram, kMachine };

class GdiObject : public Object {
  public:
    GdiObject(GdiKind gdiKind, Owner owner) : Object(Resource::kGdiObject), gdiKind(gdiKind), owner(owner) {}
    bool IsHeldByProgram() const override { return owner == Owner::kProgram; }
    // A context has it selected, or had when it was saved.
    virtual bool IsSelected() const { return false; }

    const GdiKind gdiKind;
    const Owner owner;
};

struct Pen {
    static constexpr GdiKind kKind = GdiKind::kPen;
    std::string Describe() const { return "pen"; }

    int style = PS_SOLID;
    int width = 1;  // at least 1
    COLORREF color = 0;
};

struct Brush {
    static constexpr GdiKind kKind = GdiKind::kBrush;
    std::string Describe() const { return "brush"; }

    COLORREF color = 0;
    bool hollow = false;
};

struct LogicalFont {
    static constexpr GdiKind kKind = GdiKind::kFont;
    std::string Describe() const;

    LOGFONTW description = {};
    const ScreenFont* screenFont = nullptr;  // null: not drawn with yet
};

struct Bitmap {
    static constexpr GdiKind kKind = GdiKind::kBitmap;
    std::string Describe() const;

    std::shared_ptr<Surface> surface;
    bool isSection = false;  // the program knows the address of the pixels
};

struct Region {
    static constexpr GdiKind kKind = GdiKind::kRegion;
    std::string Describe() const { return "region"; }

    RECT rect = {};
};

template <class T>
class HandleOf : public GdiObject {
  public:
    HandleOf(T thing, Owner owner) : GdiObject(T::kKind, owner), thing(std::make_shared<T>(std::move(thing))) {}
    std::string Describe() const override { return thing->Describe(); }
    bool IsSelected() const override { return thing.use_count() > 1; }

    const std::shared_ptr<T> thing;
};

// The object of that kind. Null (last error ERROR_INVALID_HANDLE) where the handle is none. Under the machine's lock.
GdiObject* FindGdiObject(HANDLE handle, GdiKind kind);

template <class T>
std::shared_ptr<T> FindThing(HANDLE handle) {
    GdiObject* const object = FindGdiObject(handle, T::kKind);
    return object ? static_cast<HandleOf<T>*>(object)->thing : nullptr;
}

// A handle of the program's. Null (last error ERROR_NOT_ENOUGH_MEMORY) where the test wants this allocation to fail.
template <class T>
HANDLE AddThing(T thing) {
    if (AllocationFails()) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    return AddObject(std::make_unique<HandleOf<T>>(std::move(thing), Owner::kProgram));
}

// False (the last error stays) for null and for what has been closed.
bool IsOpen(HANDLE handle);

// A handle of the machine's own, kept in `slot`. Where that is of an earlier machine, or empty, `make` makes the thing.
template <class Make>
HANDLE OwnHandle(HANDLE* slot, Make make) {
    const MachineLock lock;
    if (!IsOpen(*slot)) {
        auto thing = make();
        *slot = AddObject(std::make_unique<HandleOf<decltype(thing)>>(std::move(thing), Owner::kMachine));
    }
    return *slot;
}

}  // namespace host
