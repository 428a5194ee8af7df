#include <objbase.h>

#include "platform/kernel/faults.h"
#include "platform/xml/classes.h"

namespace host {
namespace {

struct ComClass {
    CLSID id;
    HRESULT (*make)(REFIID interfaceId, void** object);  // an owned reference
};

constexpr ComClass kClasses[] = {
    {{0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}}, MakeXmlDocument},
    {{0x88D96A11, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}}, MakeNamespaceManager},
};

constexpr DWORD kModeMask = COINIT_APARTMENTTHREADED;

// COM on this thread.
thread_local uint32_t timesInitialized = 0;
thread_local DWORD threadMode = 0;

HRESULT AskedFailure() {
    return HRESULT_FROM_WIN32(GetLastError());
}

}  // namespace
}  // namespace host

extern "C" {

const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
const IID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

HRESULT WINAPI CoInitializeEx(LPVOID reserved, DWORD mode) {
    if (host::FaultAsked("CoInitializeEx")) {
        return host::AskedFailure();
    }
    if (reserved != nullptr) {
        return E_INVALIDARG;
    }
    if (host::timesInitialized != 0 && (mode & host::kModeMask) != host::threadMode) {
        return RPC_E_CHANGED_MODE;
    }
    host::threadMode = mode & host::kModeMask;
    return host::timesInitialized++ == 0 ? S_OK : S_FALSE;
}

void WINAPI CoUninitialize() {
    if (host::timesInitialized != 0) {
        --host::timesInitialized;
    }
}

HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID interfaceId, LPVOID* object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (host::FaultAsked("CoCreateInstance")) {
        return host::AskedFailure();
    }
    if (host::timesInitialized == 0) {
        return CO_E_NOTINITIALIZED;
    }
    for (const host::ComClass& made : host::kClasses) {
        if (made.id == classId && (context & CLSCTX_INPROC_SERVER) != 0) {
            return outer != nullptr ? CLASS_E_NOAGGREGATION : made.make(interfaceId, object);
        }
    }
    return REGDB_E_CLASSNOTREG;
}

}  // extern "C"
