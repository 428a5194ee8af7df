// Namespaces, and the names that are written with their prefixes.
#include "driver/ptprovider/schema_document.h"

#include <cstring>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/ptprovider/namespace_manager.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/qualified_name.h"

namespace velmora {
namespace {

constexpr uint32_t kPrefixCounterEnd = 65535;
constexpr size_t kLocalNameLimit = 10000;  // a local name is shorter
constexpr size_t kPrefixLimit = 1000;      // a prefix is shorter
constexpr size_t kGeneratedPrefixCapacity = 8;
constexpr size_t kUsualPrefixCapacity = 32;     // longer ones are memory of their own
constexpr size_t kNamespaceNameCapacity = 128;  // of a namespace declaration's name

}  // namespace

void SchemaDocument::DeclareStandardNamespaces() {
    for (const StandardNamespace& standard : kStandardNamespaces) {
        DeclareNamespace(document_.Get(), standard.uri, standard.prefix, nullptr);
    }
}

// Where a node's bindings are looked up. A document declares nothing itself: its root's bindings are what counts.
IXMLDOMNode* SchemaDocument::ScopeOf(IXMLDOMNode* node) const {
    return !node || node == document_.Get() ? root_.Get() : node;
}

// The namespace that a prefix stands for at a node; S_FALSE for none.
HRESULT SchemaDocument::ResolvePrefix(IXMLDOMNode* node, const WCHAR* prefix, OwnedBstr* uri) {
    ManagerText found;
    const HRESULT result = FindNamespace(manager_.Get(), ScopeOf(node), prefix, &found);
    if (result != S_OK) {
        return result;
    }
    *uri = OwnedBstr(found.Text());
    return MadeOf(*uri);
}

// True where the prefix stands for nothing at the node; `ifUnknown` where that can't be told.
bool SchemaDocument::IsPrefixFree(IXMLDOMNode* node, const WCHAR* prefix, bool ifUnknown) {
    OwnedBstr uri;
    const HRESULT result = ResolvePrefix(node, prefix, &uri);
    return FAILED(result) ? ifUnknown : result != S_OK || uri.Length() == 0;
}

HRESULT SchemaDocument::GeneratePrefix(IXMLDOMNode* node, OwnedBstr* prefix) {
    while (prefixCounter_ < kPrefixCounterEnd) {
        WCHAR generated[kGeneratedPrefixCapacity];
        FormatWide(generated, kGeneratedPrefixCapacity, TEXT("ns%.4X"), prefixCounter_);
        ++prefixCounter_;
        if (IsPrefixFree(node, generated, true)) {
            *prefix = OwnedBstr(generated);
            return MadeOf(*prefix);
        }
    }
    ++prefixCounter_;
    return E_FAIL;
}

HRESULT SchemaDocument::DeclareNamespace(IXMLDOMNode* node, const WCHAR* uri, const WCHAR* preferredPrefix,
                                         OwnedBstr* prefix) {
    Wanted<OwnedBstr> bound(prefix);
    bound->Reset();
    if (IsEmpty(uri)) {
        return E_INVALIDARG;
    }
    if (!manager_) {
        return E_FAIL;
    }
    // A preferred prefix that may be in use isn't taken: binding it anew would change what is written already.
    HRESULT result = S_OK;
    if (!IsEmpty(preferredPrefix) && IsPrefixFree(node, preferredPrefix, false)) {
        *bound.Get() = OwnedBstr(preferredPrefix);
        result = MadeOf(*bound.Get());
    } else {
        result = GeneratePrefix(node, bound.Get());
    }
    if (SUCCEEDED(result) && root_) {
        result = AddNamespaceAttribute(uri, bound->Get());
    }
    if (SUCCEEDED(result)) {
        result = manager_->declarePrefix(bound->Get(), uri);
    }
    if (FAILED(result)) {
        bound->Reset();
    }
    return result;
}

HRESULT SchemaDocument::AddNamespaceAttribute(const WCHAR* uri, const WCHAR* prefix) {
    if (IsEmpty(uri) || IsEmpty(prefix)) {
        return E_INVALIDARG;
    }
    for (KnownPrefix& known : knownPrefixes_) {
        known.uri = nullptr;
    }
    for (OwnedBstr& name : elementNames_) {
        name.Reset();
    }
    for (OwnedBstr& name : typeNames_) {
        name.Reset();
    }
    typeAttribute_.Reset();
    WCHAR name[kNamespaceNameCapacity];
    FormatWide(name, kNamespaceNameCapacity, TEXT("xmlns:%s"), prefix);
    return SetAttribute(root_.Get(), name, TEXT(""), uri);
}

HRESULT SchemaDocument::DeclareOnRoot(const WCHAR* uri, const WCHAR* prefix) {
    OwnedBstr bound;
    const bool isBound = ResolvePrefix(root_.Get(), prefix, &bound) == S_OK && bound.Length() > 0;
    if (!isBound || bound.Is(uri)) {
        return AddNamespaceAttribute(uri, prefix);
    }
    OwnedBstr other;
    const HRESULT result = LookupPrefix(root_.Get(), uri, &other);
    return result == S_FALSE ? DeclareNamespace(root_.Get(), uri, nullptr, nullptr) : result;
}

HRESULT SchemaDocument::LookupPrefix(IXMLDOMNode* node, const WCHAR* uri, OwnedBstr* prefix) {
    prefix->Reset();
    ManagerText found;
    const HRESULT result = FindPrefix(manager_.Get(), ScopeOf(node), uri, &found);
    if (result != S_OK) {
        return result;
    }
    *prefix = OwnedBstr(found.Text());
    return MadeOf(*prefix);
}

// A prefix that stands for the namespace at the root, looked up once; null where there is none, or no room to keep it.
const WCHAR* SchemaDocument::PrefixAtRoot(const WCHAR* uri) {
    for (KnownPrefix& known : knownPrefixes_) {
        if (known.uri == uri) {
            return known.prefix.Get();
        }
        if (!known.uri) {
            if (LookupPrefix(root_.Get(), uri, &known.prefix) != S_OK) {
                return nullptr;
            }
            known.uri = uri;
            known.space.Reset();
            return known.prefix.Get();
        }
    }
    return nullptr;
}

// The written name of one of the framework's elements, made once; null where it has to be made where it is written.
BSTR SchemaDocument::ElementNameAtRoot(const WCHAR* uri, const WCHAR* localName) {
    if (!writesAsAtRoot_ || uri != kFrameworkNamespace) {
        return nullptr;
    }
    for (size_t i = 0; i < ARRAYSIZE(kElementNames); ++i) {
        if (kElementNames[i] == localName) {
            if (!elementNames_[i]) {
                MakeQName(root_.Get(), uri, localName, &elementNames_[i]);
            }
            return elementNames_[i].Get();
        }
    }
    return nullptr;
}

// A namespace as the object model takes it, null for none: the framework's, which most nodes are in, one that is known
// at the root, or `made`. Null where it couldn't be made, too.
BSTR SchemaDocument::NamespaceText(const WCHAR* uri, OwnedBstr* made) {
    if (*uri == 0) {
        return nullptr;
    }
    if (uri == kFrameworkNamespace && framework_) {
        return framework_.Get();
    }
    OwnedBstr* text = made;
    for (KnownPrefix& known : knownPrefixes_) {
        text = known.uri == uri ? &known.space : text;
    }
    if (!*text) {
        *text = OwnedBstr(uri);
    }
    return text->Get();
}

// Where the written name of one of the schema's types is, or is put: `made`, unless it is made once for all.
OwnedBstr* SchemaDocument::TypeName(const WCHAR* type, OwnedBstr* made) {
    for (size_t i = 0; writesAsAtRoot_ && i < ARRAYSIZE(kSchemaTypes); ++i) {
        if (kSchemaTypes[i] == type) {
            return &typeNames_[i];
        }
    }
    return made;
}

// The same for an attribute's name.
OwnedBstr* SchemaDocument::AttributeName(const WCHAR* name, const WCHAR* uri, OwnedBstr* made) {
    return writesAsAtRoot_ && name == attribute_name::kType && uri == kInstanceNamespace ? &typeAttribute_ : made;
}

HRESULT SchemaDocument::MakeQName(IXMLDOMNode* node, const WCHAR* uri, const WCHAR* localName, OwnedBstr* text) {
    text->Reset();
    if (IsEmpty(uri) || IsEmpty(localName)) {
        return E_INVALIDARG;
    }
    ManagerText found;
    OwnedBstr declared;
    const WCHAR* prefix = writesAsAtRoot_ ? PrefixAtRoot(uri) : nullptr;
    if (!prefix) {
        HRESULT result = FindPrefix(manager_.Get(), ScopeOf(node), uri, &found);
        if (result == S_FALSE) {
            result = DeclareNamespace(node, uri, nullptr, &declared);
        }
        if (FAILED(result)) {
            return result;
        }
        prefix = declared ? declared.Get() : found.Text();
    }
    const size_t length = TextLength(localName, kLocalNameLimit);
    const size_t prefixLength = TextLength(prefix, kPrefixLimit);
    if (length >= kLocalNameLimit || prefixLength >= kPrefixLimit) {
        return E_INVALIDARG;
    }
    if (prefixLength == 0) {
        *text = OwnedBstr(localName);
        return MadeOf(*text);
    }
    return JoinName(prefix, prefixLength, localName, length, text);
}

HRESULT SchemaDocument::SplitQName(IXMLDOMNode* node, const WCHAR* text, QualifiedName* name) {
    name->Clear();
    if (!text) {
        return E_INVALIDARG;
    }
    const WCHAR* const localName = LocalPart(text);
    const bool hasPrefix = localName != text;
    const size_t prefixLength = hasPrefix ? static_cast<size_t>(localName - text) - 1 : 0;
    WCHAR usual[kUsualPrefixCapacity];
    OwnedBstr longer;
    if (prefixLength >= kUsualPrefixCapacity) {
        longer = OwnedBstr::OfLength(prefixLength);
    }
    WCHAR* const prefix = prefixLength < kUsualPrefixCapacity ? usual : longer.Get();
    name->localName = OwnedBstr(localName);
    HRESULT result = prefix && name->localName ? S_OK : E_OUTOFMEMORY;
    if (SUCCEEDED(result)) {
        std::memcpy(prefix, text, prefixLength * sizeof(WCHAR));
        prefix[prefixLength] = 0;
        result = ResolvePrefix(node, prefix, &name->uri);
        if (result == S_FALSE && !hasPrefix) {
            name->uri = OwnedBstr(TEXT(""));
            result = MadeOf(name->uri);
        }
    }
    if (result != S_OK) {
        name->Clear();
    }
    return result;
}

}  // namespace velmora
