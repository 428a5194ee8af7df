#include "tests/contract/wine_namespace_manager.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "driver/ptprovider/dom_classes.h"
#include "tests/contract/dom_document.h"

namespace contract {
namespace {

struct Binding {
    std::wstring prefix;
    std::wstring uri;  // empty: the prefix is bound to nothing here, whatever it is bound to outside
};
using Bindings = std::vector<Binding>;

constexpr wchar_t kXmlPrefix[] = L"xml";
constexpr wchar_t kXmlUri[] = L"http://www.w3.org/XML/1998/namespace";

const Binding* Find(const Bindings& bindings, std::wstring_view prefix) {
    const auto found = std::find_if(bindings.begin(), bindings.end(),
                                    [prefix](const Binding& binding) { return binding.prefix == prefix; });
    return found == bindings.end() ? nullptr : &*found;
}

// The first of the bindings of a prefix counts.
void AddInner(Bindings* bindings, Binding binding) {
    if (Find(*bindings, binding.prefix) == nullptr) {
        bindings->push_back(std::move(binding));
    }
}

// --- What a node's element binds. Wine's DOM gives some declarations as attributes, and the default namespace's not at
// all; all of them stand in the start tag of the saved element.

// The text of an attribute as it is saved, with references for what can't stand there.
std::wstring Unescape(std::wstring_view saved) {
    static constexpr struct {
        std::wstring_view reference;
        wchar_t character;
    } kReferences[] = {{L"&amp;", L'&'}, {L"&lt;", L'<'}, {L"&gt;", L'>'}, {L"&quot;", L'"'}, {L"&apos;", L'\''}};
    std::wstring text;
    while (!saved.empty()) {
        const auto* const reference =
            std::find_if(std::begin(kReferences), std::end(kReferences),
                         [&](const auto& candidate) { return saved.starts_with(candidate.reference); });
        const bool found = reference != std::end(kReferences);
        text += found ? reference->character : saved.front();
        saved.remove_prefix(found ? reference->reference.size() : 1);
    }
    return text;
}

// The declarations in a start tag, in their order.
Bindings DeclarationsIn(std::wstring_view tag) {
    static constexpr std::wstring_view kDeclaration = L"xmlns";
    Bindings bindings;
    size_t name = tag.find_first_of(L" \t\r\n/>");
    while ((name = tag.find_first_not_of(L" \t\r\n", name)) < tag.size() && tag[name] != L'/' && tag[name] != L'>') {
        const size_t equals = tag.find(L'=', name);
        const size_t value = equals == tag.npos ? tag.npos : equals + 2;
        const size_t end = value < tag.size() ? tag.find(tag[value - 1], value) : tag.npos;
        if (end == tag.npos) {
            break;
        }
        const std::wstring_view written = tag.substr(name, equals - name);
        if (written == kDeclaration ||
            (written.starts_with(kDeclaration) && written.substr(kDeclaration.size()).starts_with(L':'))) {
            const size_t prefix = std::min(written.size(), kDeclaration.size() + 1);
            AddInner(&bindings, {std::wstring(written.substr(prefix)), Unescape(tag.substr(value, end - value))});
        }
        name = end + 1;
    }
    return bindings;
}

// A copy without its content is saved with the start tag alone; where the element's own prefix is declared further out,
// the copy declares it. It is saved as another document's, `scratch`, which is empty before and afterwards: saving an
// element of a document takes the XML declaration out of it there.
Bindings DeclarationsOf(IXMLDOMNode* element, IXMLDOMDocument2* scratch) {
    ComReference<IXMLDOMNode> copy;
    OwnedBstr saved;
    if (element->cloneNode(VARIANT_FALSE, copy.Receive()) != S_OK ||
        scratch->appendChild(copy.Get(), nullptr) != S_OK) {
        return {};
    }
    const HRESULT result = scratch->get_xml(saved.Receive());
    scratch->removeChild(copy.Get(), nullptr);
    return result == S_OK ? DeclarationsIn(saved.Text()) : Bindings();
}

// What a node binds, with `deep` all that is in scope there; the nearest first.
Bindings BindingsAt(IXMLDOMNode* node, bool deep, IXMLDOMDocument2* scratch) {
    Bindings bindings;
    node->AddRef();
    ComReference<IXMLDOMNode> current(node);
    while (current) {
        DOMNodeType type = NODE_INVALID;
        if (current->get_nodeType(&type) == S_OK && type == NODE_ELEMENT) {
            for (Binding& binding : DeclarationsOf(current.Get(), scratch)) {
                AddInner(&bindings, std::move(binding));
            }
        }
        ComReference<IXMLDOMNode> parent;
        if (deep) {
            current->get_parentNode(parent.Receive());
        }
        current = std::move(parent);
    }
    return bindings;
}

// `*length` is the buffer's size before and the text's length afterwards. A null buffer asks for the length.
HRESULT GiveText(const std::wstring& text, wchar_t* buffer, int* length) {
    const int size = *length;
    const int needed = static_cast<int>(text.size());
    if (buffer != nullptr && size <= needed) {
        return E_XML_BUFFERTOOSMALL;
    }
    *length = needed;
    if (buffer != nullptr) {
        std::copy_n(text.c_str(), text.size() + 1, buffer);
    }
    return S_OK;
}

class NamespaceManager final : public IMXNamespaceManager {
  public:
    virtual ~NamespaceManager() = default;

    HRESULT WINAPI QueryInterface(REFIID interfaceId, void** object) override {
        const bool known = interfaceId == IID_IUnknown || interfaceId == velmora::kIidNamespaceManager;
        *object = known ? this : nullptr;
        if (known) {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG WINAPI AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG WINAPI Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            delete this;
        }
        return static_cast<ULONG>(left);
    }

    HRESULT WINAPI putAllowOverride(VARIANT_BOOL allow) override {
        allowOverride_ = allow;
        return S_OK;
    }
    HRESULT WINAPI getAllowOverride(VARIANT_BOOL* allow) override {
        if (allow == nullptr) {
            return E_POINTER;
        }
        *allow = allowOverride_;
        return S_OK;
    }
    HRESULT WINAPI reset() override {
        contexts_.assign(1, {});
        return S_OK;
    }
    HRESULT WINAPI pushContext() override {
        contexts_.emplace_back();
        return S_OK;
    }
    HRESULT WINAPI pushNodeContext(IXMLDOMNode* node, VARIANT_BOOL deep) override {
        if (node == nullptr) {
            return E_INVALIDARG;
        }
        contexts_.push_back(BindingsAt(node, deep != VARIANT_FALSE, scratch_.Get()));
        return S_OK;
    }
    HRESULT WINAPI popContext() override {
        if (contexts_.size() == 1) {
            return E_FAIL;
        }
        contexts_.pop_back();
        return S_OK;
    }

    HRESULT WINAPI declarePrefix(const wchar_t* prefix, const wchar_t* uri) override {
        const std::wstring name = prefix == nullptr ? L"" : prefix;
        if (uri == nullptr || name == kXmlPrefix || name == L"xmlns") {
            return E_INVALIDARG;
        }
        Bindings& context = contexts_.back();
        const auto former = std::find_if(context.begin(), context.end(),
                                         [&name](const Binding& binding) { return binding.prefix == name; });
        if (former == context.end()) {
            context.push_back({name, uri});
            return S_OK;
        }
        if (allowOverride_ == VARIANT_FALSE) {
            return E_FAIL;
        }
        former->uri = uri;
        return S_FALSE;
    }

    HRESULT WINAPI getDeclaredPrefix(LONG index, wchar_t* prefix, int* prefixChars) override {
        const Bindings& context = contexts_.back();
        if (prefixChars == nullptr) {
            return E_POINTER;
        }
        if (index < 0 || static_cast<size_t>(index) > context.size()) {
            return E_FAIL;
        }
        return GiveText(index == 0 ? kXmlPrefix : context[static_cast<size_t>(index) - 1].prefix, prefix, prefixChars);
    }

    HRESULT WINAPI getPrefix(const wchar_t* uri, LONG index, wchar_t* prefix, int* prefixChars) override {
        if (uri == nullptr || *uri == 0 || prefixChars == nullptr) {
            return E_INVALIDARG;
        }
        for (const Binding& binding : Visible()) {
            if (binding.uri == uri && index-- == 0) {
                return GiveText(binding.prefix, prefix, prefixChars);
            }
        }
        return E_FAIL;
    }

    HRESULT WINAPI getURI(const wchar_t* prefix, IXMLDOMNode* node, wchar_t* uri, int* uriChars) override {
        if (prefix == nullptr) {
            return E_INVALIDARG;
        }
        if (uriChars == nullptr) {
            return E_POINTER;
        }
        Bindings bindings = node != nullptr ? BindingsAt(node, true, scratch_.Get()) : Visible();
        AddInner(&bindings, {kXmlPrefix, kXmlUri});
        const Binding* const binding = Find(bindings, prefix);
        const HRESULT result = GiveText(binding == nullptr ? L"" : binding->uri, uri, uriChars);
        return result == S_OK && (binding == nullptr || binding->uri.empty()) ? S_FALSE : result;
    }

  private:
    // The bindings of all contexts, the inmost first, without those that an inner one hides.
    Bindings Visible() const {
        Bindings bindings;
        for (auto context = contexts_.rbegin(); context != contexts_.rend(); ++context) {
            for (const Binding& binding : *context) {
                AddInner(&bindings, binding);
            }
        }
        AddInner(&bindings, {kXmlPrefix, kXmlUri});
        return bindings;
    }

    LONG references_ = 1;
    VARIANT_BOOL allowOverride_ = VARIANT_TRUE;
    std::vector<Bindings> contexts_ = {{}};
    const ComReference<IXMLDOMDocument2> scratch_ = NewDocument();
};

}  // namespace

IMXNamespaceManager* MakeNamespaceManager() {
    return new NamespaceManager();
}

}  // namespace contract
