// Window classes that every machine has.
#pragma once

#include <windows.h>

#include <span>

namespace host {

struct SystemClass {
    const char16_t* name;  // compared without regard to case
    WNDPROC proc;
    UINT style;       // CS_
    int windowExtra;  // bytes that GetWindowLongPtrW reaches from index 0 on; zero at first
};

// The controls' classes. A window of one still gets WM_NCDESTROY where the machine ends before it is destroyed, so
// that what it keeps is freed.
std::span<const SystemClass> ControlClasses();

}  // namespace host
