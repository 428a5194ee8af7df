#include "driver/ptprovider/class_factory.h"

#include "driver/ptprovider/com_object.h"
#include "driver/ptprovider/provider.h"

namespace velmora {
namespace {

volatile LONG lockCount = 0;
volatile LONG objectCount = 0;

// Gives an object that was made (null: it couldn't be) by one of its interfaces, and with no other reference.
HRESULT GiveObject(IUnknown* made, REFIID interfaceId, void** object) {
    if (!made) {
        return E_OUTOFMEMORY;
    }
    const HRESULT result = made->QueryInterface(interfaceId, object);
    made->Release();
    return result;
}

class IPTPCCF final : public ComObject<IPTPCCF, IClassFactory, IID_IClassFactory> {
  public:
    IPTPCCF() = default;
    ~IPTPCCF() = default;

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer) {
            return CLASS_E_NOAGGREGATION;
        }
        // The print system asks for the provider's own interface, and for no other at first.
        if (!IsEqualIID(interfaceId, IID_IPrintTicketProvider)) {
            return CLASS_E_CLASSNOTAVAILABLE;
        }
        return GiveObject(new IPTProvider, interfaceId, object);
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock) {
            InterlockedIncrement(&lockCount);
        } else {
            InterlockedDecrement(&lockCount);
        }
        return S_OK;
    }
};

}  // namespace

HRESULT GetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    if (!IsEqualCLSID(classId, kProviderClass)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    return GiveObject(new IPTPCCF, interfaceId, object);
}

bool CanUnloadNow() {
    return objectCount == 0 && lockCount == 0;
}

void CountObject() {
    InterlockedIncrement(&objectCount);
}

void UncountObject() {
    InterlockedDecrement(&objectCount);
}

}  // namespace velmora
