// Owners of the platform's handles.
#pragma once

#include <windows.h>

#include <utility>

namespace velmora {

// Owns a handle; Traits say its type, the value that means none, and how it is closed.
template <class Traits>
class HandleOwner {
  public:
    using Handle = typename Traits::Handle;

    HandleOwner() = default;
    explicit HandleOwner(Handle handle) : handle_(handle) {}
    HandleOwner(HandleOwner&& other) noexcept : handle_(other.Release()) {}
    HandleOwner& operator=(HandleOwner&& other) noexcept {
        if (this != &other) {
            Close();
            handle_ = other.Release();
        }
        return *this;
    }
    HandleOwner(const HandleOwner&) = delete;
    HandleOwner& operator=(const HandleOwner&) = delete;
    ~HandleOwner() { Close(); }

    Handle Get() const { return handle_; }
    explicit operator bool() const { return handle_ != Traits::None(); }

    // Gives the handle to the caller.
    Handle Release() { return std::exchange(handle_, Traits::None()); }

    void Close() {
        if (handle_ != Traits::None()) {
            Traits::Close(handle_);
            handle_ = Traits::None();
        }
    }

  private:
    Handle handle_ = Traits::None();
};

struct FileTraits {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(Handle file) { CloseHandle(file); }
};
using OwnedFile = HandleOwner<FileTraits>;

struct EventTraits {
    using Handle = HANDLE;
    static Handle None() { return nullptr; }
    static void Close(Handle event) { CloseHandle(event); }
};
using OwnedEvent = HandleOwner<EventTraits>;

struct SearchTraits {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(Handle search) { FindClose(search); }
};
using OwnedSearch = HandleOwner<SearchTraits>;

struct ModuleTraits {
    using Handle = HMODULE;
    static Handle None() { return nullptr; }
    static void Close(Handle module) { FreeLibrary(module); }
};
using OwnedModule = HandleOwner<ModuleTraits>;

struct RegistryKeyTraits {
    using Handle = HKEY;
    static Handle None() { return nullptr; }
    static void Close(Handle key) { RegCloseKey(key); }
};
using OwnedRegistryKey = HandleOwner<RegistryKeyTraits>;

struct DeviceContextTraits {
    using Handle = HDC;
    static Handle None() { return nullptr; }
    static void Close(Handle context) { DeleteDC(context); }
};
using OwnedDeviceContext = HandleOwner<DeviceContextTraits>;

// Of an object that is selected into no context.
template <class Object>
struct GdiObjectTraits {
    using Handle = Object;
    static Handle None() { return nullptr; }
    static void Close(Handle object) { DeleteObject(object); }
};
using OwnedBitmap = HandleOwner<GdiObjectTraits<HBITMAP>>;
using OwnedBrush = HandleOwner<GdiObjectTraits<HBRUSH>>;
using OwnedFont = HandleOwner<GdiObjectTraits<HFONT>>;
using OwnedPen = HandleOwner<GdiObjectTraits<HPEN>>;

}  // namespace velmora
