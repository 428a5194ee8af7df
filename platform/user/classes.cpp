// Window classes: those that every machine has, and those that programs register.
#include <windows.h>

#include <algorithm>
#include <vector>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/text.h"
#include "platform/user/system_classes.h"
#include "platform/user/windows.h"

namespace host {
namespace {

constexpr ATOM kFirstAtom = 0xC000;
constexpr ATOM kDialogAtom = 0x8002;  // 32770, of which the dialog class has its name

std::shared_ptr<WindowClass> MakeSystemClass(const SystemClass& row, ATOM atom) {
    auto made = std::make_shared<WindowClass>();
    made->name = row.name;
    made->style = row.style;
    made->proc = row.proc;
    made->windowExtra = row.windowExtra;
    made->cursor = LoadCursorW(nullptr, IDC_ARROW);
    made->atom = atom;
    made->isSystem = true;
    return made;
}

struct Classes {
    std::vector<std::shared_ptr<WindowClass>> all;
    ATOM nextAtom = kFirstAtom;
};

Classes& TheClasses() {
    static Classes& classes = *new Classes;
    return classes;
}

void AddSystemClasses(Classes& classes) {
    classes.all.push_back(MakeSystemClass({u"#32770", DefDlgProcW, CS_DBLCLKS, DLGWINDOWEXTRA}, kDialogAtom));
    for (const SystemClass& row : ControlClasses()) {
        classes.all.push_back(MakeSystemClass(row, classes.nextAtom++));
    }
}

bool IsNamed(const WindowClass& windowClass, LPCWSTR name) {
    return IS_INTRESOURCE(name) ? windowClass.atom == LOWORD(reinterpret_cast<ULONG_PTR>(name))
                                : EqualsIgnoringCase(windowClass.name, name);
}

std::shared_ptr<WindowClass> Find(LPCWSTR name, HINSTANCE instance) {
    Classes& classes = TheClasses();
    if (classes.all.empty()) {
        AddSystemClasses(classes);
    }
    const auto found = std::find_if(classes.all.begin(), classes.all.end(), [&](const auto& windowClass) {
        return IsNamed(*windowClass, name) && (windowClass->isSystem || windowClass->instance == instance);
    });
    return found != classes.all.end() ? *found : nullptr;
}

bool IsInUse(const WindowClass& windowClass) {
    const std::vector<HANDLE> windows = ObjectsOfKind(Resource::kWindow);
    return std::any_of(windows.begin(), windows.end(), [&](HANDLE handle) {
        const auto* window = FindObject<Window>(handle, Resource::kWindow);
        return window != nullptr && window->windowClass.get() == &windowClass;
    });
}

}  // namespace

std::shared_ptr<const WindowClass> FindWindowClass(LPCWSTR name, HINSTANCE instance) {
    const MachineLock lock;
    std::shared_ptr<const WindowClass> found = name != nullptr ? Find(name, instance) : nullptr;
    if (found == nullptr) {
        SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
    }
    return found;
}

void ForgetClasses() {
    TheClasses() = Classes();
}

}  // namespace host

using namespace host;

extern "C" {

ATOM WINAPI RegisterClassW(const WNDCLASSW* windowClass) {
    if (FaultAsked("RegisterClassW")) {
        return 0;
    }
    const MachineLock lock;
    if (windowClass == nullptr || windowClass->lpszClassName == nullptr || windowClass->lpfnWndProc == nullptr ||
        windowClass->cbWndExtra < 0) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (IS_INTRESOURCE(windowClass->lpszClassName) || windowClass->cbClsExtra != 0 ||
        windowClass->lpszMenuName != nullptr) {
        return FailUnsupported("RegisterClassW with an atom for a name, class memory or a menu");
    }
    if (Find(windowClass->lpszClassName, windowClass->hInstance) != nullptr) {
        return Fail(ERROR_CLASS_ALREADY_EXISTS);
    }
    Classes& classes = TheClasses();
    auto made = std::make_shared<WindowClass>();
    made->name = windowClass->lpszClassName;
    made->style = windowClass->style;
    made->proc = windowClass->lpfnWndProc;
    made->windowExtra = windowClass->cbWndExtra;
    made->instance = windowClass->hInstance;
    made->icon = windowClass->hIcon;
    made->cursor = windowClass->hCursor;
    made->background = windowClass->hbrBackground;
    made->atom = classes.nextAtom++;
    classes.all.push_back(made);
    return made->atom;
}

BOOL WINAPI UnregisterClassW(LPCWSTR name, HINSTANCE instance) {
    if (FaultAsked("UnregisterClassW")) {
        return FALSE;
    }
    const MachineLock lock;
    const std::shared_ptr<WindowClass> found = name != nullptr ? Find(name, instance) : nullptr;
    if (found == nullptr || found->isSystem) {
        return Fail(ERROR_CLASS_DOES_NOT_EXIST);
    }
    if (IsInUse(*found)) {
        return Fail(ERROR_CLASS_HAS_WINDOWS);
    }
    std::erase(TheClasses().all, found);
    return TRUE;
}

}  // extern "C"
