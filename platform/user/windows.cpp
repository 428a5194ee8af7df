// Windows from CreateWindowExW to WM_NCDESTROY, and what they are asked by index.
#include "platform/user/windows.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/text.h"
#include "platform/user/dialogs.h"

namespace host {
namespace {

// Which machine it is, so that threads notice that theirs has gone.
std::atomic<uint64_t> machineNumber = 1;
Window* desktop = nullptr;

// Controls free what they keep, whatever stands before their procedures; nothing else is told.
void EndMachine() {
    for (const HANDLE handle : ObjectsOfKind(Resource::kWindow)) {
        auto* window = FindObject<Window>(handle, Resource::kWindow);
        if (window != nullptr && window->windowClass != nullptr && window->windowClass->isSystem &&
            window->windowClass->proc != DefDlgProcW) {
            window->windowClass->proc(window->handle, WM_NCDESTROY, 0, 0);
        }
    }
    SetInputUser(nullptr);
    ++machineNumber;
    desktop = nullptr;
    ForgetClasses();
}

void WatchMachine() {
    static const bool watched = [] {
        AddOpenList({[] { return std::vector<std::string>(); }, EndMachine});
        return true;
    }();
    static_cast<void>(watched);
}

HWND Register(std::unique_ptr<Window> made) {
    Window* const window = made.get();
    window->handle = static_cast<HWND>(AddObject(std::move(made)));
    return window->handle;
}

bool IsShownByDefault(int value) {
    return value == CW_USEDEFAULT;
}

// Makes the record and its place among its siblings. Null with the last error set.
Window* MakeWindow(const CREATESTRUCTW& create, std::shared_ptr<const WindowClass> windowClass) {
    auto made = std::make_unique<Window>();
    Window& window = *made;
    window.thread = GetCurrentThreadId();
    window.windowClass = std::move(windowClass);
    window.proc = window.windowClass->proc;
    window.instance = create.hInstance;
    window.style = static_cast<DWORD>(create.style) & ~WS_VISIBLE;
    window.exStyle = create.dwExStyle;
    window.extra.resize(static_cast<size_t>(window.windowClass->windowExtra));
    window.rect = {create.x, create.y, create.x + create.cx, create.y + create.cy};
    if (window.IsChild()) {
        window.parent = create.hwndParent;
        window.id = reinterpret_cast<LONG_PTR>(create.hMenu);
    } else if (create.hwndParent != nullptr && create.hwndParent != Desktop().handle) {
        Window* const owner = FindWindowObject(create.hwndParent);
        window.owner = owner != nullptr ? RootOf(*owner).handle : nullptr;
    }
    Register(std::move(made));
    PlaceInOrder(window, window.IsChild() ? HWND_BOTTOM : HWND_TOP);
    return &window;
}

void NotifyParent(HWND window, UINT what) {
    const Window* const found = FindWindowObject(window);
    if (found != nullptr && found->IsChild() && (found->exStyle & WS_EX_NOPARENTNOTIFY) == 0) {
        Send(found->parent, WM_PARENTNOTIFY, MAKEWPARAM(what, found->id), reinterpret_cast<LPARAM>(window));
    }
}

// WM_DESTROY to the window, then to what is in it.
void SendDestroy(HWND window) {
    Send(window, WM_DESTROY);
    const Window* const left = FindWindowObject(window);
    if (left == nullptr) {
        return;
    }
    for (const HWND child : std::vector<HWND>(left->children)) {
        if (IsWindow(child)) {
            SendDestroy(child);
        }
    }
}

// WM_NCDESTROY to what is in the window, then to the window, which is no more after it.
void Remove(HWND window) {
    if (Window* const left = FindWindowObject(window)) {
        left->isBeingDestroyed = true;
        for (const HWND child : std::vector<HWND>(left->children)) {
            if (IsWindow(child)) {
                Remove(child);
            }
        }
        Send(window, WM_NCDESTROY);
    }
    Window* const left = FindWindowObject(window);
    if (left == nullptr) {
        return;
    }
    ForgetInQueue(window);
    ThreadWindows& thread = ThisThread();
    for (HWND* const mark : {&thread.active, &thread.focus, &thread.capture}) {
        if (*mark == window) {
            *mark = nullptr;
        }
    }
    TakeOutOfOrder(*left);
    ++thread.changes;
    RemoveObject(window, Resource::kWindow);
}

// The bytes of a window's own memory at an index; null with ERROR_INVALID_INDEX.
BYTE* ExtraBytes(Window& window, int index, size_t size) {
    if (index < 0 || static_cast<size_t>(index) + size > window.extra.size()) {
        Fail(ERROR_INVALID_INDEX);
        return nullptr;
    }
    return window.extra.data() + index;
}

LONG_PTR GetLong(HWND handle, int index, size_t size, const char* call) {
    Window* const window = FindWindowObject(handle);
    if (window == nullptr) {
        return 0;
    }
    switch (index) {
        case GWLP_WNDPROC:
            return reinterpret_cast<LONG_PTR>(window->proc);
        case GWLP_HINSTANCE:
            return reinterpret_cast<LONG_PTR>(window->instance);
        case GWLP_HWNDPARENT:
            return reinterpret_cast<LONG_PTR>(window->IsChild() ? window->parent : window->owner);
        case GWLP_ID:
            return window->id;
        case GWL_STYLE:
            return static_cast<LONG>(window->style);
        case GWL_EXSTYLE:
            return static_cast<LONG>(window->exStyle);
        case GWLP_USERDATA:
            return window->userData;
        default:
            break;
    }
    if (index < 0) {
        return FailUnsupported((std::string(call) + " at index " + std::to_string(index)).c_str());
    }
    LONG_PTR value = 0;
    if (const BYTE* const bytes = ExtraBytes(*window, index, size)) {
        memcpy(&value, bytes, size);
    }
    return size == sizeof(LONG) ? static_cast<LONG>(value) : value;
}

LONG_PTR SetLong(HWND handle, int index, size_t size, LONG_PTR value, const char* call) {
    Window* const window = FindWindowObject(handle);
    if (window == nullptr) {
        return 0;
    }
    SetLastError(ERROR_SUCCESS);
    const LONG_PTR previous = GetLong(handle, index, size, call);
    switch (index) {
        case GWLP_WNDPROC:
            window->proc = reinterpret_cast<WNDPROC>(value);
            return previous;
        case GWLP_ID:
            window->id = value;
            return previous;
        case GWL_STYLE:
            window->style = static_cast<DWORD>(value);
            return previous;
        case GWL_EXSTYLE:
            window->exStyle = static_cast<DWORD>(value);
            return previous;
        case GWLP_USERDATA:
            window->userData = value;
            return previous;
        default:
            break;
    }
    if (index < 0) {
        return FailUnsupported((std::string(call) + " at index " + std::to_string(index)).c_str());
    }
    if (BYTE* const bytes = ExtraBytes(*window, index, size)) {
        memcpy(bytes, &value, size);
    }
    return previous;
}

}  // namespace

Window::Window() : Object(Resource::kWindow) {}

Window::~Window() = default;

std::string Window::Describe() const {
    const std::string name = windowClass != nullptr ? ToUtf8(windowClass->name) : "desktop";
    return text.empty() ? name : name + " \"" + ToUtf8(text) + "\"";
}

ThreadWindows& ThisThread() {
    thread_local ThreadWindows thread;
    WatchMachine();
    if (thread.machine != machineNumber) {
        thread = ThreadWindows();
        thread.machine = machineNumber;
    }
    return thread;
}

Window& Desktop() {
    const MachineLock lock;
    WatchMachine();
    if (desktop == nullptr) {
        auto made = std::make_unique<Window>();
        desktop = made.get();
        desktop->style = WS_VISIBLE;
        desktop->rect = {0, 0, kScreenWidth, kScreenHeight};
        desktop->client = desktop->rect;
        Register(std::move(made));
    }
    return *desktop;
}

Window* FindWindowObject(HWND handle) {
    auto* const window = FindObject<Window>(handle, Resource::kWindow);
    if (window == nullptr) {
        Fail(ERROR_INVALID_WINDOW_HANDLE);
        return nullptr;
    }
    if (window->thread != 0 && window->thread != GetCurrentThreadId()) {
        FailUnsupported("a window of another thread");
        return nullptr;
    }
    return window;
}

}  // namespace host

using namespace host;

extern "C" {

HWND WINAPI CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR name, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menuOrId, HINSTANCE instance, LPVOID parameter) {
    if (FaultAsked("CreateWindowExW")) {
        return nullptr;
    }
    std::shared_ptr<const WindowClass> windowClass = FindWindowClass(className, instance);
    if (windowClass == nullptr || (parent != nullptr && FindWindowObject(parent) == nullptr)) {
        return nullptr;
    }
    const bool isChild = (style & WS_CHILD) != 0;
    if (isChild && parent == nullptr) {
        Fail(ERROR_TLW_WITH_WSCHILD);
        return nullptr;
    }
    if (!isChild && menuOrId != nullptr) {
        FailUnsupported("CreateWindowExW with a menu");
        return nullptr;
    }
    if (AllocationFails()) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    if (!isChild) {
        style |= WS_CLIPSIBLINGS;
        if ((style & WS_POPUP) == 0) {
            style |= WS_CAPTION;
        }
        if (IsShownByDefault(x)) {
            x = y = 0;
        }
        if (IsShownByDefault(width)) {
            width = kScreenWidth / 2;
            height = kScreenHeight / 2;
        }
    }
    CREATESTRUCTW create = {
        parameter, instance,  menuOrId, parent, std::max(height, 0), std::max(width, 0), y, x, static_cast<LONG>(style),
        name,      className, exStyle};
    Window* made = MakeWindow(create, std::move(windowClass));
    const HWND window = made->handle;
    if (Send(window, WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&create)) == FALSE) {
        Remove(window);
        return nullptr;
    }
    CalculateClient(window);
    if (Send(window, WM_CREATE, 0, reinterpret_cast<LPARAM>(&create)) == -1) {
        DestroyWindow(window);
        return nullptr;
    }
    made = FindWindowObject(window);
    if (made == nullptr) {
        return nullptr;
    }
    const SIZE size = ClientSize(*made);
    const RECT place = made->rect;
    const RECT client = made->client;
    Send(window, WM_SIZE, 0, MAKELPARAM(size.cx, size.cy));
    Send(window, WM_MOVE, 0, MAKELPARAM(place.left + client.left, place.top + client.top));
    NotifyParent(window, WM_CREATE);
    if ((style & WS_VISIBLE) != 0) {
        ShowWindow(window, SW_SHOW);
    }
    ++ThisThread().changes;
    return IsWindow(window) ? window : nullptr;
}

BOOL WINAPI DestroyWindow(HWND window) {
    Window* found = FindWindowObject(window);
    if (found == nullptr || found->isBeingDestroyed) {
        return FALSE;
    }
    if (found->thread == 0) {
        return Fail(ERROR_ACCESS_DENIED);
    }
    found->isBeingDestroyed = true;
    NotifyParent(window, WM_DESTROY);
    if (IsWindow(window)) {
        ShowWindow(window, SW_HIDE);
    }
    for (const HWND other : std::vector<HWND>(ThisThread().topLevels)) {
        const Window* const owned = IsWindow(other) ? FindWindowObject(other) : nullptr;
        if (owned != nullptr && owned->owner == window) {
            DestroyWindow(other);
        }
    }
    if (IsWindow(window)) {
        SendDestroy(window);
    }
    if (IsWindow(window)) {
        Remove(window);
    }
    return TRUE;
}

BOOL WINAPI IsWindow(HWND window) {
    const DWORD before = GetLastError();
    const bool is = FindObject(window, Resource::kWindow) != nullptr;
    SetLastError(is ? before : ERROR_INVALID_WINDOW_HANDLE);
    return is;
}

LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index) {
    return GetLong(window, index, sizeof(LONG_PTR), "GetWindowLongPtrW");
}

LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value) {
    return SetLong(window, index, sizeof(LONG_PTR), value, "SetWindowLongPtrW");
}

LONG WINAPI GetWindowLongW(HWND window, int index) {
    return static_cast<LONG>(GetLong(window, index, sizeof(LONG), "GetWindowLongW"));
}

LONG WINAPI SetWindowLongW(HWND window, int index, LONG value) {
    return static_cast<LONG>(SetLong(window, index, sizeof(LONG), value, "SetWindowLongW"));
}

int WINAPI GetClassNameW(HWND window, LPWSTR name, int capacity) {
    const Window* const found = FindWindowObject(window);
    if (found == nullptr || name == nullptr || capacity <= 0) {
        return 0;
    }
    const std::u16string_view whole =
        found->windowClass != nullptr ? std::u16string_view(found->windowClass->name) : u"#32769";
    name[whole.copy(name, static_cast<size_t>(capacity) - 1)] = 0;
    return static_cast<int>(std::min(whole.size(), static_cast<size_t>(capacity) - 1));
}

// Text goes by messages: a control may keep its own.
BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text) {
    if (FindWindowObject(window) == nullptr) {
        return FALSE;
    }
    return Send(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) >= 0;
}

int WINAPI GetWindowTextW(HWND window, LPWSTR text, int capacity) {
    if (text == nullptr || capacity <= 0) {
        return 0;
    }
    text[0] = 0;
    return static_cast<int>(Send(window, WM_GETTEXT, static_cast<WPARAM>(capacity), reinterpret_cast<LPARAM>(text)));
}

int WINAPI GetWindowTextLengthW(HWND window) {
    return static_cast<int>(Send(window, WM_GETTEXTLENGTH));
}

}  // extern "C"
