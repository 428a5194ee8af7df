#include <string>
#include <utility>
#include <vector>

#include "platform/com/results.h"
#include "platform/kernel/faults.h"
#include "platform/xml/classes.h"
#include "platform/xml/interface_ids.h"
#include "platform/xml/namespace_scope.h"
#include "platform/xml/node.h"

namespace host {
namespace {

struct Declaration {
    std::u16string prefix;
    std::u16string uri;  // empty: the prefix is bound to no namespace

    Binding AsBinding() const { return {this, &uri}; }
};

// Bound everywhere and never otherwise.
const Declaration kFixed[] = {
    {u"xml", std::u16string(kXmlUri)},
    {u"xmlns", std::u16string(kXmlnsUri)},
};

// A prefix and what binds it.
struct PrefixBinding {
    std::u16string_view prefix;
    const void* place = nullptr;  // null: there is none
};

// What is asked for among bindings that are gone through nearest first.
class PrefixSearch {
  public:
    PrefixSearch(std::u16string_view uri, LONG index) : uri_(uri), left_(index) {}

    // True where this is the one: bound to the namespace, not hidden (`resolve` finds it for its prefix), and none of
    // those before it.
    template <class Resolve>
    bool Take(std::u16string_view prefix, const Binding& binding, Resolve resolve) {
        if (!SameText(*binding.uri, uri_) || resolve(prefix).place != binding.place || left_-- > 0) {
            return false;
        }
        found_ = {prefix, binding.place};
        return true;
    }

    const PrefixBinding& Found() const { return found_; }

  private:
    std::u16string_view uri_;
    LONG left_;
    PrefixBinding found_;
};

class NamespaceManager final : public BlockObject<IMXNamespaceManager> {
  public:
    ~NamespaceManager() override { reset(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        return GiveInterface(this, interfaceId, {&IID_IUnknown, &kIidNamespaceManager}, object);
    }

    HRESULT STDMETHODCALLTYPE putAllowOverride(VARIANT_BOOL allow) override {
        allowOverride_ = allow != VARIANT_FALSE;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE getAllowOverride(VARIANT_BOOL* allow) override {
        return GiveValue(allowOverride_ ? VARIANT_TRUE : VARIANT_FALSE, allow);
    }

    HRESULT STDMETHODCALLTYPE reset() override {
        while (contexts_.size() > 1) {
            popContext();
        }
        contexts_.front().declared.clear();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE pushContext() override { return Push(nullptr, false); }

    HRESULT STDMETHODCALLTYPE pushNodeContext(IXMLDOMNode* contextNode, VARIANT_BOOL deep) override {
        Node* node = NodeOf(contextNode);
        return node == nullptr ? E_INVALIDARG : Push(node, deep != VARIANT_FALSE);
    }

    HRESULT STDMETHODCALLTYPE popContext() override {
        if (contexts_.size() == 1) {
            return E_FAIL;
        }
        Node* node = contexts_.back().node;
        contexts_.pop_back();
        if (node != nullptr) {
            LetNodeGo(node);
        }
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE declarePrefix(const WCHAR* prefix, const WCHAR* uri) override {
        const std::u16string_view name = prefix != nullptr ? prefix : TEXT("");
        if (uri == nullptr || FixedBinding(name).place != nullptr) {
            return E_INVALIDARG;
        }
        Declaration* known = nullptr;
        for (Declaration& declaration : contexts_.back().declared) {
            known = SameText(declaration.prefix, name) ? &declaration : known;
        }
        if (known != nullptr && !allowOverride_) {
            return E_FAIL;
        }
        if (AllocationFails()) {
            return E_OUTOFMEMORY;
        }
        if (known != nullptr) {
            known->uri = uri;
            return S_FALSE;
        }
        contexts_.back().declared.push_back({std::u16string(name), uri});
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE getDeclaredPrefix(LONG index, WCHAR* prefix, int* prefixChars) override {
        if (prefixChars == nullptr) {
            return E_POINTER;
        }
        // The first context declares "xml".
        const auto& declared = contexts_.back().declared;
        const size_t fixed = contexts_.size() == 1 ? 1 : 0;
        const auto position = static_cast<size_t>(index);
        if (index < 0 || position >= fixed + declared.size()) {
            return E_FAIL;
        }
        return Fill(position < fixed ? kFixed[position].prefix : declared[position - fixed].prefix, prefix,
                    prefixChars);
    }

    HRESULT STDMETHODCALLTYPE getPrefix(const WCHAR* uri, LONG index, WCHAR* prefix, int* prefixChars) override {
        if (uri == nullptr || *uri == 0 || prefixChars == nullptr) {
            return E_INVALIDARG;
        }
        const PrefixBinding found = index < 0 ? PrefixBinding{} : FindPrefix(uri, index);
        return found.place != nullptr ? Fill(found.prefix, prefix, prefixChars) : E_FAIL;
    }

    HRESULT STDMETHODCALLTYPE getURI(const WCHAR* prefix, IXMLDOMNode* contextNode, WCHAR* uri,
                                     int* uriChars) override {
        if (prefix == nullptr) {
            return E_INVALIDARG;
        }
        if (uriChars == nullptr) {
            return E_POINTER;
        }
        Binding binding;
        if (contextNode == nullptr) {
            binding = Resolve(prefix);
        } else if (const Node* node = NodeOf(contextNode)) {
            binding = FixedBinding(prefix);
            binding = binding.place != nullptr ? binding : FindBinding(ScopeElement(node), true, prefix);
        } else {
            return E_INVALIDARG;
        }
        if (binding.place == nullptr || binding.uri->empty()) {
            if (uri != nullptr && *uriChars > 0) {
                *uri = 0;
            }
            *uriChars = 0;
            return S_FALSE;
        }
        return Fill(*binding.uri, uri, uriChars);
    }

  private:
    struct Context {
        Node* node;           // held; null: of declarations only
        const Node* element;  // whose bindings the node's are; null: none
        bool deep;
        std::vector<Declaration> declared;  // nearer than the node's
    };

    HRESULT Push(Node* node, bool deep) {
        if (AllocationFails()) {
            return E_OUTOFMEMORY;
        }
        contexts_.push_back({node, node != nullptr ? ScopeElement(node) : nullptr, deep, {}});
        if (node != nullptr) {
            HoldNode(node);
        }
        return S_OK;
    }

    static HRESULT Fill(std::u16string_view text, WCHAR* buffer, int* chars) {
        const int length = static_cast<int>(text.size());
        if (buffer != nullptr) {
            if (*chars <= length) {
                return E_XML_BUFFERTOOSMALL;
            }
            text.copy(buffer, text.size());
            buffer[length] = 0;
        }
        *chars = length;
        return S_OK;
    }

    static Binding FixedBinding(std::u16string_view prefix) {
        for (const Declaration& fixed : kFixed) {
            if (SameText(fixed.prefix, prefix)) {
                return fixed.AsBinding();
            }
        }
        return {};
    }

    // The nearest binding of the prefix.
    Binding Resolve(std::u16string_view prefix) const {
        if (const Binding fixed = FixedBinding(prefix); fixed.place != nullptr) {
            return fixed;
        }
        for (auto context = contexts_.rbegin(); context != contexts_.rend(); ++context) {
            for (const Declaration& declaration : context->declared) {
                if (SameText(declaration.prefix, prefix)) {
                    return declaration.AsBinding();
                }
            }
            if (const Binding binding = FindBinding(context->element, context->deep, prefix);
                binding.place != nullptr) {
                return binding;
            }
        }
        return {};
    }

    PrefixBinding FindPrefix(std::u16string_view uri, LONG index) const {
        PrefixSearch search(uri, index);
        const auto take = [&](std::u16string_view prefix, const Binding& binding) {
            return search.Take(prefix, binding, [this](std::u16string_view text) { return Resolve(text); });
        };
        for (auto context = contexts_.rbegin(); context != contexts_.rend(); ++context) {
            for (const Declaration& declaration : context->declared) {
                if (take(declaration.prefix, declaration.AsBinding())) {
                    return search.Found();
                }
            }
            for (const Node* element = context->element; element != nullptr && element->type == NODE_ELEMENT;
                 element = context->deep ? element->parent : nullptr) {
                if (TakeOwn(element, take)) {
                    return search.Found();
                }
            }
        }
        for (const Declaration& fixed : kFixed) {
            if (take(fixed.prefix, fixed.AsBinding())) {
                return search.Found();
            }
        }
        return {};
    }

    // The bindings of an element itself.
    template <class Take>
    static bool TakeOwn(const Node* element, Take take) {
        if (element->hasDeclarations) {
            for (const Node* attribute = element->firstAttribute; attribute != nullptr; attribute = attribute->next) {
                if (IsDeclaration(attribute) && take(DeclaredPrefix(attribute), {attribute, &attribute->value})) {
                    return true;
                }
            }
        }
        return take(element->name->Prefix(), {element, element->name->uri});
    }

    std::vector<Context> contexts_ = std::vector<Context>(1);
    bool allowOverride_ = true;
};

}  // namespace

HRESULT MakeNamespaceManager(REFIID interfaceId, void** object) {
    auto* manager = new (std::nothrow) NamespaceManager;
    if (manager == nullptr) {
        return E_OUTOFMEMORY;
    }
    const HRESULT result = manager->QueryInterface(interfaceId, object);
    manager->Release();
    return result;
}

}  // namespace host
