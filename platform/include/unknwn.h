// The base of all COM interfaces (unknwn.h). Interfaces have no destructor of their own: objects go with their last
// reference.
#pragma once

#include <wtypes.h>

struct IUnknown {
    // Gives an owned reference; E_NOINTERFACE and null where the object doesn't have the interface. For IID_IUnknown an
    // object always gives the same pointer: two pointers are the same object where that is equal.
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) = 0;
    // The number of references afterwards, for tests only.
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};
using LPUNKNOWN = IUnknown*;

struct IClassFactory : IUnknown {
    // `outer` is the object that the new one becomes a part of, or null.
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;
};
using LPCLASSFACTORY = IClassFactory*;

extern "C" {
extern const IID IID_IUnknown;
extern const IID IID_IClassFactory;
}
