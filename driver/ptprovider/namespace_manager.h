// What the platform's namespace manager knows of prefixes and the namespaces that they stand for (msxml2.h).
#pragma once

#include <msxml2.h>
#include <windows.h>

#include <cstddef>

#include "driver/base/heap.h"
#include "driver/ptprovider/dom_classes.h"

namespace velmora {

// A text that the manager gives.
class ManagerText {
  public:
    ManagerText() { usual_[0] = 0; }
    // Into a buffer of the usual size, else into one of the size that the manager tells.
    // `ask`: HRESULT(WCHAR* buffer, int* characters). The text is there after S_OK.
    template <class Ask>
    HRESULT Receive(Ask ask) {
        int length = static_cast<int>(sizeof(usual_) / sizeof(usual_[0]));
        HRESULT result = ask(usual_, &length);
        if (result != kBufferTooSmall) {
            return result;
        }
        length = 0;
        result = ask(nullptr, &length);
        if (result != S_OK || length < 0) {
            return FAILED(result) ? result : E_FAIL;
        }
        int capacity = length + 1;
        longer_ = HeapOwner<WCHAR>::Allocate(static_cast<size_t>(capacity));
        return longer_ ? ask(longer_.Get(), &capacity) : E_OUTOFMEMORY;
    }
    const WCHAR* Text() const { return longer_ ? longer_.Get() : usual_; }

  private:
    WCHAR usual_[160];
    HeapOwner<WCHAR> longer_;
};

// A prefix that stands for a namespace at the scope (null: declared on the manager itself), empty for the default
// namespace; S_FALSE for none. E_INVALIDARG for a namespace that is null or empty, E_FAIL without manager.
HRESULT FindPrefix(IMXNamespaceManager* manager, IXMLDOMNode* scope, const WCHAR* uri, ManagerText* prefix);

// The namespace that a prefix stands for at the scope; as above.
HRESULT FindNamespace(IMXNamespaceManager* manager, IXMLDOMNode* scope, const WCHAR* prefix, ManagerText* uri);

}  // namespace velmora
