#include "driver/ptprovider/namespace_manager.h"

#include "driver/base/text.h"

namespace velmora {
namespace {

// The bindings at a node and its ancestors, on the manager for as long as this lives. Without node the manager's alone.
class NodeScope {
  public:
    NodeScope(IMXNamespaceManager* manager, IXMLDOMNode* node)
        : manager_(manager), result_(node ? manager->pushNodeContext(node, VARIANT_TRUE) : S_OK) {
        if (!node || FAILED(result_)) {
            manager_ = nullptr;
        }
    }
    NodeScope(const NodeScope&) = delete;
    NodeScope& operator=(const NodeScope&) = delete;
    ~NodeScope() {
        if (manager_) {
            manager_->popContext();
        }
    }

    HRESULT Result() const { return result_; }

  private:
    IMXNamespaceManager* manager_;
    HRESULT result_;
};

}  // namespace

HRESULT FindPrefix(IMXNamespaceManager* manager, IXMLDOMNode* scope, const WCHAR* uri, ManagerText* prefix) {
    if (IsEmpty(uri)) {
        return E_INVALIDARG;
    }
    if (!manager) {
        return E_FAIL;
    }
    const NodeScope bindings(manager, scope);
    if (FAILED(bindings.Result())) {
        return bindings.Result();
    }
    const HRESULT result =
        prefix->Receive([&](WCHAR* buffer, int* length) { return manager->getPrefix(uri, 0, buffer, length); });
    // As the manager says that a namespace has no prefix.
    return result == E_FAIL ? S_FALSE : result;
}

HRESULT FindNamespace(IMXNamespaceManager* manager, IXMLDOMNode* scope, const WCHAR* prefix, ManagerText* uri) {
    if (!manager) {
        return E_FAIL;
    }
    const NodeScope bindings(manager, scope);
    if (FAILED(bindings.Result())) {
        return bindings.Result();
    }
    return uri->Receive([&](WCHAR* buffer, int* length) { return manager->getURI(prefix, nullptr, buffer, length); });
}

}  // namespace velmora
