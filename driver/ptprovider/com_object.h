// What the driver's COM objects have in common.
#pragma once

#include <unknwn.h>
#include <windows.h>

#include <cstddef>

#include "driver/base/heap.h"

namespace velmora {

// An object with one interface, made with one reference and destroyed with its last. It lies in the process heap;
// making one gives null where there is no memory. `Object` is the class itself, `interfaceId` its interface beside
// IUnknown.
template <class Object, class Interface, const IID& interfaceId>
class ComObject : public Interface {
  public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        if (!IsEqualIID(wanted, IID_IUnknown) && !IsEqualIID(wanted, interfaceId)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            delete static_cast<Object*>(this);
        }
        return static_cast<ULONG>(left);
    }

    static void* operator new(size_t size) noexcept { return AllocateBytes(size); }
    static void operator delete(void* memory) { HeapFree(GetProcessHeap(), 0, memory); }

  protected:
    ComObject() = default;
    ~ComObject() = default;

  private:
    volatile LONG references_ = 1;
};

}  // namespace velmora
