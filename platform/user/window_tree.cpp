// Parents, owners, siblings and their order.
#include <windows.h>

#include <algorithm>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/text.h"
#include "platform/user/windows.h"

namespace host {
namespace {

HWND Sibling(Window& window, LONG_PTR step) {
    Window* const parent = TreeParent(window);
    if (parent == nullptr) {
        return nullptr;
    }
    const std::vector<HWND>& siblings = ChildrenOf(*parent);
    const auto at = std::find(siblings.begin(), siblings.end(), window.handle) - siblings.begin() + step;
    return at >= 0 && at < static_cast<LONG_PTR>(siblings.size()) ? siblings[static_cast<size_t>(at)] : nullptr;
}

BOOL Enumerate(const std::vector<HWND>& windows, WNDENUMPROC proc, LPARAM parameter) {
    for (const HWND window : windows) {
        if (IsWindow(window) && !proc(window, parameter)) {
            return FALSE;
        }
    }
    return TRUE;
}

}  // namespace

std::vector<HWND>& ChildrenOf(Window& window) {
    return window.thread == 0 ? ThisThread().topLevels : window.children;
}

Window* TreeParent(const Window& window) {
    if (window.thread == 0) {
        return nullptr;
    }
    return window.parent != nullptr ? FindWindowObject(window.parent) : &Desktop();
}

Window& RootOf(Window& window) {
    Window* root = &window;
    while (root->parent != nullptr) {
        Window* const parent = FindWindowObject(root->parent);
        if (parent == nullptr) {
            break;
        }
        root = parent;
    }
    return *root;
}

bool IsInside(HWND window, HWND ancestor) {
    while (window != nullptr && window != ancestor) {
        const Window* const found = IsWindow(window) ? FindWindowObject(window) : nullptr;
        window = found != nullptr ? found->parent : nullptr;
    }
    return window != nullptr;
}

void PlaceInOrder(Window& window, HWND after) {
    Window* const parent = TreeParent(window);
    if (parent == nullptr) {
        return;
    }
    std::vector<HWND>& siblings = ChildrenOf(*parent);
    std::erase(siblings, window.handle);
    auto at = siblings.end();
    if (after == HWND_TOP || after == HWND_TOPMOST) {
        at = siblings.begin();
    } else if (after != HWND_BOTTOM) {
        const auto before = std::find(siblings.begin(), siblings.end(), after);
        at = before != siblings.end() ? before + 1 : before;
    }
    siblings.insert(at, window.handle);
}

void TakeOutOfOrder(Window& window) {
    if (Window* const parent = TreeParent(window)) {
        std::erase(ChildrenOf(*parent), window.handle);
    }
}

}  // namespace host

using namespace host;

extern "C" {

HWND WINAPI GetParent(HWND window) {
    const Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return nullptr;
    }
    if (found->IsChild()) {
        return found->parent != nullptr ? found->parent : Desktop().handle;
    }
    return (found->style & WS_POPUP) != 0 ? found->owner : nullptr;
}

HWND WINAPI GetAncestor(HWND window, UINT kind) {
    Window* const found = FindWindowObject(window);
    if (found == nullptr || found->thread == 0) {
        return nullptr;
    }
    switch (kind) {
        case GA_PARENT:
            return found->parent != nullptr ? found->parent : Desktop().handle;
        case GA_ROOT:
            return RootOf(*found).handle;
        default:
            FailUnsupported("GetAncestor of that kind");
            return nullptr;
    }
}

HWND WINAPI GetWindow(HWND window, UINT kind) {
    Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return nullptr;
    }
    Window* const parent = TreeParent(*found);
    switch (kind) {
        case GW_HWNDFIRST:
            return parent != nullptr ? ChildrenOf(*parent).front() : nullptr;
        case GW_HWNDLAST:
            return parent != nullptr ? ChildrenOf(*parent).back() : nullptr;
        case GW_HWNDNEXT:
            return Sibling(*found, 1);
        case GW_HWNDPREV:
            return Sibling(*found, -1);
        case GW_OWNER:
            return found->owner;
        case GW_CHILD:
            return ChildrenOf(*found).empty() ? nullptr : ChildrenOf(*found).front();
        default:
            FailUnsupported("GetWindow of that kind");
            return nullptr;
    }
}

HWND WINAPI GetDesktopWindow() {
    return Desktop().handle;
}

BOOL WINAPI IsChild(HWND parent, HWND window) {
    return FindWindowObject(parent) != nullptr && FindWindowObject(window) != nullptr && window != parent &&
           IsInside(window, parent);
}

BOOL WINAPI EnumThreadWindows(DWORD thread, WNDENUMPROC proc, LPARAM parameter) {
    if (thread != GetCurrentThreadId()) {
        return FailUnsupported("EnumThreadWindows for another thread");
    }
    return Enumerate(std::vector<HWND>(ThisThread().topLevels), proc, parameter);
}

HWND WINAPI FindWindowW(LPCWSTR className, LPCWSTR name) {
    for (const HWND window : ThisThread().topLevels) {
        const Window* const found = FindWindowObject(window);
        if (found != nullptr && (className == nullptr || EqualsIgnoringCase(found->windowClass->name, className)) &&
            (name == nullptr || EqualsIgnoringCase(found->text, name))) {
            return window;
        }
    }
    return nullptr;
}

}  // extern "C"
