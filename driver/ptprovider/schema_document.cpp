#include "driver/ptprovider/schema_document.h"

#include <objbase.h>

#include <cstring>

#include "driver/base/format.h"
#include "driver/base/heap.h"
#include "driver/base/text.h"
#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/print_schema.h"

namespace velmora {
namespace {

constexpr uint32_t kPrefixCounterEnd = 65535;
constexpr size_t kLocalNameLimit = 10000;       // a local name is shorter
constexpr size_t kPrefixLimit = 1000;           // a prefix is shorter
constexpr size_t kUsualPrefixCapacity = 32;     // longer ones are memory of their own
constexpr size_t kAttributeNameCapacity = 64;   // of an attribute's written name
constexpr size_t kNamespaceNameCapacity = 128;  // of a namespace declaration's name
// 72 blanks: what a banner's text is framed by.
constexpr const WCHAR* kBannerEdge = TEXT("                                                                        ");
constexpr size_t kBannerCapacity = 128;
constexpr size_t kNumberCapacity = 16;

bool IsEmpty(const WCHAR* text) {
    return !text || *text == 0;
}

// A text that is passed to the object model; E_OUTOFMEMORY of one that couldn't be made is for whoever uses it.
HRESULT MadeOf(const OwnedBstr& text) {
    return text ? S_OK : E_OUTOFMEMORY;
}

// Joins two texts with a colon between them.
HRESULT JoinName(const WCHAR* prefix, size_t prefixLength, const WCHAR* name, size_t nameLength, OwnedBstr* text) {
    *text = OwnedBstr::OfLength(prefixLength + 1 + nameLength);
    if (!*text) {
        return E_OUTOFMEMORY;
    }
    WCHAR* place = text->Get();
    std::memcpy(place, prefix, prefixLength * sizeof(WCHAR));
    place[prefixLength] = TEXT(':');
    std::memcpy(place + prefixLength + 1, name, nameLength * sizeof(WCHAR));
    return S_OK;
}

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

// True for the Print Schema's own namespaces, whose attributes are written without prefix.
bool IsPrintSchema(const WCHAR* uri) {
    return uri == kFrameworkNamespace || TextsEqual(uri, kFrameworkNamespace) || TextsEqual(uri, kKeywordsNamespace);
}

// A prefix that stands for the namespace at the scope; S_FALSE for none.
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

// Where a written name's local part begins: behind the first colon where there is one.
const WCHAR* LocalPart(const WCHAR* written) {
    const WCHAR* colon = written;
    while (*colon != 0 && *colon != TEXT(':')) {
        ++colon;
    }
    return *colon != 0 ? colon + 1 : written;
}

bool IsElement(IXMLDOMNode* node, HRESULT* error) {
    DOMNodeType type = NODE_INVALID;
    const HRESULT result = node->get_nodeType(&type);
    if (FAILED(result)) {
        *error = result;
    }
    return SUCCEEDED(result) && type == NODE_ELEMENT;
}

// True for a node in the namespace. A failed call is kept in *error.
bool IsIn(IXMLDOMNode* node, const WCHAR* uri, HRESULT* error) {
    OwnedBstr space;
    const HRESULT result = node->get_namespaceURI(space.Receive());
    if (FAILED(result)) {
        *error = result;
        return false;
    }
    return space.Is(uri);
}

// True for an element of this name. A failed call is kept in *error.
bool IsElementNamed(IXMLDOMNode* node, const WCHAR* uri, const WCHAR* localName, HRESULT* error) {
    if (!IsElement(node, error)) {
        return false;
    }
    OwnedBstr name;
    const HRESULT result = node->get_baseName(name.Receive());
    if (FAILED(result)) {
        *error = result;
        return false;
    }
    if (!name.Is(localName)) {
        return false;
    }
    return IsIn(node, uri, error);
}

// Gives the first child of the parent that `matches` takes: bool(IXMLDOMNode*, HRESULT* error). Without one S_FALSE or
// the last error.
template <class Matches>
HRESULT FindChild(IXMLDOMNode* parent, Matches matches, ElementReference* element) {
    HRESULT error = S_FALSE;
    ComReference<IXMLDOMNode> child;
    HRESULT result = parent->get_firstChild(child.Receive());
    while (SUCCEEDED(result) && child) {
        if (matches(child.Get(), &error)) {
            result = child.Query(kIidDomElement, element);
            if (SUCCEEDED(result)) {
                return S_OK;
            }
            error = result;
        }
        ComReference<IXMLDOMNode> next;
        result = child->get_nextSibling(next.Receive());
        child = static_cast<ComReference<IXMLDOMNode>&&>(next);
    }
    return FAILED(result) ? result : error;
}

void Sanitise(WCHAR* name) {
    for (; *name != 0; ++name) {
        if (*name == TEXT(' ')) {
            *name = TEXT('_');
        } else if (*name == TEXT('(') || *name == TEXT(')')) {
            *name = TEXT('-');
        }
    }
}

// An output that the caller may not want.
template <class Output>
class Wanted {
  public:
    explicit Wanted(Output* output) : output_(output ? output : &own_) {}
    Output* Get() { return output_; }
    Output* operator->() { return output_; }

  private:
    Output own_;
    Output* output_;
};

}  // namespace

SchemaDocument::SchemaDocument()
    : framework_(kFrameworkNamespace), nameAttribute_(attribute_name::kName), bannerEdge_(kBannerEdge) {
    void* manager = nullptr;
    if (SUCCEEDED(
            CoCreateInstance(kMxNamespaceManager60, nullptr, CLSCTX_INPROC_SERVER, kIidNamespaceManager, &manager))) {
        manager_.Reset(static_cast<IMXNamespaceManager*>(manager));
    }
}

// --- The document

HRESULT SchemaDocument::CreateDocument() {
    void* created = nullptr;
    HRESULT result = CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &created);
    if (FAILED(result)) {
        return result;
    }
    rootIndex_.Clear();
    root_.Reset();
    document_.Reset(static_cast<IXMLDOMDocument2*>(created));
    document_->put_async(VARIANT_FALSE);
    document_->put_validateOnParse(VARIANT_FALSE);
    document_->put_resolveExternals(VARIANT_FALSE);

    const OwnedBstr target(TEXT("xml"));
    const OwnedBstr data(TEXT("version=\"1.0\"  encoding=\"UTF-8\""));
    ComReference<IXMLDOMProcessingInstruction> declaration;
    result = target && data ? document_->createProcessingInstruction(target.Get(), data.Get(), declaration.Receive())
                            : E_OUTOFMEMORY;
    if (SUCCEEDED(result)) {
        result = document_->appendChild(declaration.Get(), nullptr);
    }
    if (SUCCEEDED(result)) {
        // A new document has none; the caller makes it.
        document_->get_documentElement(root_.Receive());
    }
    DeclareStandardNamespaces();
    return result;
}

HRESULT SchemaDocument::AttachDocument(IXMLDOMDocument2* document) {
    rootIndex_.Clear();
    document_ = ComReference<IXMLDOMDocument2>::Share(document);
    const HRESULT result = document ? document->get_documentElement(root_.Receive()) : E_INVALIDARG;
    if (FAILED(result)) {
        Release();
    }
    DeclareStandardNamespaces();
    return result;
}

void SchemaDocument::Release() {
    rootIndex_.Clear();
    root_.Reset();
    document_.Reset();
}

// --- Namespaces

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
    if (!manager_) {
        return E_FAIL;
    }
    const NodeScope scope(manager_.Get(), ScopeOf(node));
    if (FAILED(scope.Result())) {
        return scope.Result();
    }
    ManagerText found;
    const HRESULT result =
        found.Receive([&](WCHAR* buffer, int* length) { return manager_->getURI(prefix, nullptr, buffer, length); });
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
        WCHAR generated[kNumberCapacity];
        FormatWide(generated, kNumberCapacity, TEXT("ns%.4X"), prefixCounter_);
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

// --- Building

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

HRESULT SchemaDocument::SetAttribute(IXMLDOMElement* element, const WCHAR* name, const WCHAR* uri, const WCHAR* value) {
    return value ? PutAttribute(element, name, uri, OwnedBstr(value)) : E_INVALIDARG;
}

HRESULT SchemaDocument::PutAttribute(IXMLDOMElement* element, const WCHAR* name, const WCHAR* uri,
                                     const OwnedBstr& value) {
    if (!element || IsEmpty(name) || !uri || !document_) {
        return E_INVALIDARG;
    }
    ManagerText found;
    const WCHAR* prefix = TEXT("");
    if (*uri != 0 && !IsPrintSchema(uri)) {
        prefix = writesAsAtRoot_ ? PrefixAtRoot(uri) : nullptr;
        if (!prefix) {
            const HRESULT result = FindPrefix(manager_.Get(), ScopeOf(element), uri, &found);
            if (FAILED(result)) {
                return result;
            }
            prefix = found.Text();
        }
    }
    const size_t prefixLength = TextLength(prefix);
    const size_t nameLength = TextLength(name);
    if ((prefixLength > 0 ? prefixLength + 1 : 0) + nameLength >= kAttributeNameCapacity) {
        return E_INVALIDARG;
    }
    OwnedBstr made;
    OwnedBstr* const ownName = AttributeName(name, uri, &made);
    HRESULT result = S_OK;
    if (!*ownName && prefixLength > 0) {
        result = JoinName(prefix, prefixLength, name, nameLength, ownName);
    } else if (!*ownName && name != attribute_name::kName) {
        *ownName = OwnedBstr(name);
        result = MadeOf(*ownName);
    }
    const BSTR written = *ownName ? ownName->Get() : nameAttribute_.Get();
    OwnedBstr ownSpace;
    const BSTR space = NamespaceText(uri, &ownSpace);
    if (FAILED(result) || !written || (*uri != 0 && !space) || !value) {
        return E_OUTOFMEMORY;
    }
    VARIANT type;
    VariantInit(&type);
    type.vt = VT_I4;
    type.lVal = NODE_ATTRIBUTE;
    ComReference<IXMLDOMNode> node;
    result = document_->createNode(type, written, space, node.Receive());
    if (SUCCEEDED(result)) {
        VARIANT content;
        VariantInit(&content);
        content.vt = VT_BSTR;
        content.bstrVal = value.Get();
        result = node->put_nodeValue(content);
    }
    ComReference<IXMLDOMAttribute> attribute;
    if (SUCCEEDED(result)) {
        result = node.Query(kIidDomAttribute, &attribute);
    }
    return SUCCEEDED(result) ? element->setAttributeNode(attribute.Get(), nullptr) : result;
}

HRESULT SchemaDocument::SetVersionAttribute(IXMLDOMElement* element, LONG version) {
    if (version < 1) {
        return E_INVALIDARG;
    }
    WCHAR text[kNumberCapacity];
    FormatWide(text, kNumberCapacity, TEXT("%d"), version);
    return SetAttribute(element, attribute_name::kVersion, kFrameworkNamespace, text);
}

HRESULT SchemaDocument::AppendElement(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                      ElementReference* element) {
    Wanted<ElementReference> made(element);
    if (ParentOrRoot(parent) == root_.Get()) {
        // Whoever asked for it gives it its name.
        rootIndex_.Clear();
    }
    return MakeElement(parent, uri, localName, made.Get());
}

HRESULT SchemaDocument::MakeElement(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                    ElementReference* made) {
    made->Reset();
    parent = ParentOrRoot(parent);
    if (!parent || !document_) {
        return E_INVALIDARG;
    }
    OwnedBstr ownName;
    BSTR name = ElementNameAtRoot(uri, localName);
    if (!name) {
        const HRESULT found = MakeQName(parent, uri, localName, &ownName);
        if (FAILED(found)) {
            return found;
        }
        name = ownName.Get();
    }
    OwnedBstr ownSpace;
    const BSTR space = NamespaceText(uri, &ownSpace);
    if (!space) {
        return E_OUTOFMEMORY;
    }
    VARIANT type;
    VariantInit(&type);
    type.vt = VT_I4;
    type.lVal = NODE_ELEMENT;
    ComReference<IXMLDOMNode> node;
    HRESULT result = document_->createNode(type, name, space, node.Receive());
    if (SUCCEEDED(result)) {
        result = parent->appendChild(node.Get(), nullptr);
    }
    return SUCCEEDED(result) ? node.Query(kIidDomElement, made) : result;
}

HRESULT SchemaDocument::AppendComment(IXMLDOMNode* parent, const WCHAR* text) {
    if (!parent) {
        parent = document_.Get();
    }
    if (!parent || !document_ || IsEmpty(text)) {
        return E_INVALIDARG;
    }
    return AppendComment(parent, OwnedBstr(text));
}

HRESULT SchemaDocument::AppendComment(IXMLDOMNode* parent, const OwnedBstr& content) {
    if (!content) {
        return E_OUTOFMEMORY;
    }
    ComReference<IXMLDOMComment> comment;
    const HRESULT result = document_->createComment(content.Get(), comment.Receive());
    return SUCCEEDED(result) ? parent->appendChild(comment.Get(), nullptr) : result;
}

HRESULT SchemaDocument::AppendBanner(const WCHAR* text) {
    if (!root_ || !text) {
        return E_INVALIDARG;
    }
    WCHAR middle[kBannerCapacity];
    FormatWide(middle, kBannerCapacity, TEXT(" %70s "), text);
    HRESULT result = AppendComment(root_.Get(), bannerEdge_);
    if (SUCCEEDED(result)) {
        result = AppendComment(root_.Get(), middle);
    }
    return SUCCEEDED(result) ? AppendComment(root_.Get(), bannerEdge_) : result;
}

// Gives an element its "name", in the namespace that the attribute is in, as it is written at `scope`.
HRESULT SchemaDocument::SetName(IXMLDOMElement* element, const WCHAR* attributeUri, IXMLDOMNode* scope,
                                const WCHAR* uri, const WCHAR* localName) {
    OwnedBstr name;
    const HRESULT result = MakeQName(scope, uri, localName, &name);
    return SUCCEEDED(result) ? PutAttribute(element, attribute_name::kName, attributeUri, name) : result;
}

// Appends an element of the framework with a name that is written as at the element itself.
HRESULT SchemaDocument::AppendNamed(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* attributeUri, const WCHAR* uri,
                                    const WCHAR* localName, ElementReference* element) {
    HRESULT result = MakeElement(parent, kFrameworkNamespace, kind, element);
    if (SUCCEEDED(result)) {
        result = SetName(element->Get(), attributeUri, element->Get(), uri, localName);
    }
    if (FAILED(result)) {
        element->Reset();
    } else {
        Index(parent, kind, uri, localName, element->Get());
    }
    return result;
}

HRESULT SchemaDocument::AddFeature(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                   ElementReference* feature) {
    Wanted<ElementReference> made(feature);
    return AppendNamed(parent, element_name::kFeature, kFrameworkNamespace, uri, localName, made.Get());
}

HRESULT SchemaDocument::AppendOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                     const WCHAR* constraint, ElementReference* option) {
    Wanted<ElementReference> made(option);
    made->Reset();
    if (!parent) {
        return E_INVALIDARG;
    }
    HRESULT result = MakeElement(parent, kFrameworkNamespace, element_name::kOption, made.Get());
    if (SUCCEEDED(result) && !IsEmpty(uri) && !IsEmpty(localName)) {
        result = SetName(made->Get(), kFrameworkNamespace, made->Get(), uri, localName);
    }
    if (SUCCEEDED(result) && !IsEmpty(constraint)) {
        // With this prefix whatever stands for the keywords here: that is how the print system reads it.
        OwnedBstr value;
        result = JoinName(kKeywordsPrefix, TextLength(kKeywordsPrefix), constraint, TextLength(constraint), &value);
        if (SUCCEEDED(result)) {
            result = PutAttribute(made->Get(), attribute_name::kConstrained, TEXT(""), value);
        }
    }
    if (FAILED(result)) {
        made->Reset();
    }
    return result;
}

HRESULT SchemaDocument::AddOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                  const WCHAR* constraint, ElementReference* option) {
    return AppendOption(parent, uri, localName, constraint, option);
}

HRESULT SchemaDocument::AddSanitisedOption(IXMLDOMNode* parent, const WCHAR* uri, WCHAR* localName,
                                           const WCHAR* constraint, ElementReference* option) {
    if (!IsEmpty(uri) && localName) {
        Sanitise(localName);
    }
    return AppendOption(parent, uri, localName, constraint, option);
}

// The name is tried where the element couldn't be made, too, and fails then.
HRESULT SchemaDocument::AddPropertyOf(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* uri, const WCHAR* localName,
                                      ElementReference* property) {
    Wanted<ElementReference> made(property);
    MakeElement(parent, kFrameworkNamespace, kind, made.Get());
    const HRESULT result = SetName(made->Get(), TEXT(""), ParentOrRoot(parent), uri, localName);
    if (FAILED(result)) {
        made->Reset();
    } else {
        Index(parent, kind, uri, localName, made->Get());
    }
    return result;
}

HRESULT SchemaDocument::AddProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                    ElementReference* property) {
    return AddPropertyOf(parent, element_name::kProperty, uri, localName, property);
}

HRESULT SchemaDocument::AddScoredProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                          ElementReference* property) {
    if (!parent) {
        Wanted<ElementReference>(property)->Reset();
        return E_INVALIDARG;
    }
    return AddPropertyOf(parent, element_name::kScoredProperty, uri, localName, property);
}

HRESULT SchemaDocument::AddTypedValue(IXMLDOMNode* parent, const WCHAR* type, const OwnedBstr& text) {
    if (!parent) {
        return E_INVALIDARG;
    }
    ElementReference value;
    HRESULT result = MakeElement(parent, kFrameworkNamespace, element_name::kValue, &value);
    OwnedBstr made;
    OwnedBstr* const typeName = TypeName(type, &made);
    if (SUCCEEDED(result) && !*typeName) {
        result = MakeQName(parent, kSchemaNamespace, type, typeName);
    }
    if (SUCCEEDED(result)) {
        result = PutAttribute(value.Get(), attribute_name::kType, kInstanceNamespace, *typeName);
    }
    if (SUCCEEDED(result)) {
        result = text ? value->put_text(text.Get()) : E_OUTOFMEMORY;
    }
    return result;
}

HRESULT SchemaDocument::AddValueQName(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName) {
    OwnedBstr text;
    const HRESULT result = MakeQName(parent, uri, localName, &text);
    return SUCCEEDED(result) ? AddTypedValue(parent, schema_type::kQName, text) : result;
}

HRESULT SchemaDocument::AddValueString(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* text) {
    if (IsEmpty(uri)) {
        return text ? AddTypedValue(parent, schema_type::kString, OwnedBstr(text)) : E_INVALIDARG;
    }
    OwnedBstr name;
    const HRESULT result = MakeQName(parent, uri, text, &name);
    return SUCCEEDED(result) ? AddTypedValue(parent, schema_type::kString, name) : result;
}

HRESULT SchemaDocument::AddValueInteger(IXMLDOMNode* parent, LONG value) {
    WCHAR text[kNumberCapacity];
    FormatWide(text, kNumberCapacity, TEXT("%d"), value);
    return AddTypedValue(parent, schema_type::kInteger, OwnedBstr(text));
}

HRESULT SchemaDocument::AddValueUnsigned(IXMLDOMNode* parent, ULONG value) {
    WCHAR text[kNumberCapacity];
    FormatWide(text, kNumberCapacity, TEXT("%lu"), value);
    return AddTypedValue(parent, schema_type::kInteger, OwnedBstr(text));
}

HRESULT SchemaDocument::AddDisplayName(IXMLDOMNode* parent, const WCHAR* text) {
    ElementReference property;
    const HRESULT result = AddProperty(parent, kKeywordsNamespace, keyword_name::kDisplayName, &property);
    return SUCCEEDED(result) ? AddValueString(property.Get(), nullptr, text) : result;
}

HRESULT SchemaDocument::AddQNameProperty(IXMLDOMNode* parent, const WCHAR* property, const WCHAR* uri,
                                         const WCHAR* localName) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueQName(made.Get(), uri, localName) : result;
}

HRESULT SchemaDocument::AddStringProperty(IXMLDOMNode* parent, const WCHAR* property, const WCHAR* uri,
                                          const WCHAR* text) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueString(made.Get(), uri, text) : result;
}

HRESULT SchemaDocument::AddNumberProperty(IXMLDOMNode* parent, const WCHAR* property, LONG value) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueInteger(made.Get(), value) : result;
}

HRESULT SchemaDocument::AddNumberProperty(IXMLDOMNode* parent, const WCHAR* property, ULONG value) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueUnsigned(made.Get(), value) : result;
}

HRESULT SchemaDocument::AddSelectionTypePickOne(IXMLDOMNode* feature) {
    return feature
               ? AddQNameProperty(feature, property_name::kSelectionType, kKeywordsNamespace, keyword_name::kPickOne)
               : E_INVALIDARG;
}

HRESULT SchemaDocument::AddParameterRef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName) {
    ElementReference reference;
    return parent ? AppendNamed(parent, element_name::kParameterRef, TEXT(""), uri, localName, &reference)
                  : E_INVALIDARG;
}

HRESULT SchemaDocument::AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, LONG value) {
    ElementReference init;
    const HRESULT result =
        AppendNamed(parent, element_name::kParameterInit, kFrameworkNamespace, uri, localName, &init);
    return SUCCEEDED(result) ? AddValueInteger(init.Get(), value) : result;
}

HRESULT SchemaDocument::AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ULONG value) {
    ElementReference init;
    const HRESULT result =
        AppendNamed(parent, element_name::kParameterInit, kFrameworkNamespace, uri, localName, &init);
    return SUCCEEDED(result) ? AddValueUnsigned(init.Get(), value) : result;
}

HRESULT SchemaDocument::AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                         const WCHAR* valueUri, const WCHAR* value) {
    ElementReference init;
    const HRESULT result =
        AppendNamed(parent, element_name::kParameterInit, kFrameworkNamespace, uri, localName, &init);
    return SUCCEEDED(result) ? AddValueString(init.Get(), valueUri, value) : result;
}

// A definition with its display name, where it has one, and its data type.
HRESULT SchemaDocument::BeginParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                          const WCHAR* displayName, const WCHAR* type, ElementReference* definition) {
    HRESULT result = AppendNamed(parent, element_name::kParameterDef, kFrameworkNamespace, uri, localName, definition);
    if (SUCCEEDED(result) && !IsEmpty(displayName)) {
        result = AddDisplayName(definition->Get(), displayName);
    }
    return SUCCEEDED(result) ? AddQNameProperty(definition->Get(), property_name::kDataType, kSchemaNamespace, type)
                             : result;
}

template <class Number>
HRESULT SchemaDocument::AddNumberParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                              const ParameterRange<Number>& range, const ParameterTraits& traits) {
    ElementReference definition;
    HRESULT result = BeginParameterDef(parent, uri, localName, traits.displayName, schema_type::kInteger, &definition);
    const struct {
        const WCHAR* property;
        Number value;
    } numbers[] = {{property_name::kDefaultValue, range.defaultValue},
                   {property_name::kMinValue, range.min},
                   {property_name::kMaxValue, range.max},
                   {property_name::kMultiple, range.multiple}};
    for (const auto& number : numbers) {
        if (SUCCEEDED(result)) {
            result = AddNumberProperty(definition.Get(), number.property, number.value);
        }
    }
    if (SUCCEEDED(result) && traits.unit) {
        result = AddStringProperty(definition.Get(), property_name::kUnitType, traits.unitUri, traits.unit);
    }
    return SUCCEEDED(result)
               ? AddQNameProperty(definition.Get(), property_name::kMandatory, kKeywordsNamespace, traits.mandatory)
               : result;
}

HRESULT SchemaDocument::AddIntegerParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                               const ParameterRange<LONG>& range, const ParameterTraits& traits) {
    return AddNumberParameterDef(parent, uri, localName, range, traits);
}

HRESULT SchemaDocument::AddIntegerParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                               const ParameterRange<ULONG>& range, const ParameterTraits& traits) {
    return AddNumberParameterDef(parent, uri, localName, range, traits);
}

HRESULT SchemaDocument::AddStringParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                              const TextParameterTraits& traits) {
    ElementReference definition;
    HRESULT result = BeginParameterDef(parent, uri, localName, traits.displayName, schema_type::kString, &definition);
    if (SUCCEEDED(result)) {
        result =
            AddStringProperty(definition.Get(), property_name::kDefaultValue, traits.defaultUri, traits.defaultValue);
    }
    if (SUCCEEDED(result) && traits.minLength > 0) {
        result = AddNumberProperty(definition.Get(), property_name::kMinLength, traits.minLength);
    }
    if (SUCCEEDED(result) && traits.maxLength > 0) {
        result = AddNumberProperty(definition.Get(), property_name::kMaxLength, traits.maxLength);
    }
    if (SUCCEEDED(result)) {
        const WCHAR* const unit = traits.unitType ? traits.unitType : TEXT("characters");
        ElementReference property;
        result = *unit != 0 ? AddStringProperty(definition.Get(), property_name::kUnitType, nullptr, unit)
                            : AddProperty(definition.Get(), kFrameworkNamespace, property_name::kUnitType, &property);
    }
    return SUCCEEDED(result)
               ? AddQNameProperty(definition.Get(), property_name::kMandatory, kKeywordsNamespace, traits.mandatory)
               : result;
}

HRESULT SchemaDocument::AddStringParameterDef(const WCHAR* uri, const WCHAR* localName, const WCHAR* displayName,
                                              const WCHAR* defaultUri, const WCHAR* defaultValue,
                                              const WCHAR* mandatory) {
    return AddStringParameterDef(nullptr, uri, localName,
                                 {displayName, defaultUri, defaultValue, 1, -1, nullptr, mandatory});
}

HRESULT SchemaDocument::SetText(IXMLDOMNode* node, const WCHAR* text) {
    if (!node || !text) {
        return E_INVALIDARG;
    }
    const OwnedBstr content(text);
    return content ? node->put_text(content.Get()) : E_OUTOFMEMORY;
}

HRESULT SchemaDocument::RemoveChild(IXMLDOMNode* parent, IXMLDOMNode* child) {
    parent = ParentOrRoot(parent);
    if (parent == root_.Get()) {
        rootIndex_.Clear();
    }
    return parent && child ? parent->removeChild(child, nullptr) : E_INVALIDARG;
}

// --- Reading

HRESULT SchemaDocument::FindChildElement(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                         ElementReference* element) {
    Wanted<ElementReference> found(element);
    found->Reset();
    parent = ParentOrRoot(parent);
    if (!parent || !uri || !localName) {
        return E_INVALIDARG;
    }
    return FindChild(
        parent, [&](IXMLDOMNode* child, HRESULT* error) { return IsElementNamed(child, uri, localName, error); },
        found.Get());
}

HRESULT SchemaDocument::FindNamedChild(IXMLDOMNode* parent, const WCHAR* elementUri, const WCHAR* elementName,
                                       const WCHAR* nameUri, const WCHAR* nameLocalName, ElementReference* element) {
    Wanted<ElementReference> found(element);
    found->Reset();
    const bool isAtRoot = !parent;
    parent = ParentOrRoot(parent);
    if (!parent || !elementUri || !elementName || !nameUri || !nameLocalName) {
        return E_INVALIDARG;
    }
    const WCHAR* const kind =
        isAtRoot && (elementUri == kFrameworkNamespace || TextsEqual(elementUri, kFrameworkNamespace))
            ? IndexedKind(elementName)
            : nullptr;
    if (kind && PrepareIndex()) {
        *found.Get() = ElementReference::Share(rootIndex_.Find(kind, nameUri, nameLocalName));
        return *found.Get() ? S_OK : S_FALSE;
    }
    if (!nameAttribute_) {
        return S_FALSE;
    }
    const HRESULT result = FindChild(
        parent,
        [&](IXMLDOMNode* child, HRESULT* error) {
            if (!IsElementNamed(child, elementUri, elementName, error)) {
                return false;
            }
            const auto kind = ComReference<IXMLDOMNode>::Share(child);
            ElementReference candidate;
            OwnedVariant written;
            if (FAILED(kind.Query(kIidDomElement, &candidate)) ||
                FAILED(candidate->getAttribute(nameAttribute_.Get(), written.Receive())) || !written.Text()) {
                return false;
            }
            // Namespaces are resolved only where the rest is the same.
            QualifiedName name;
            return TextsEqual(LocalPart(written.Text()), nameLocalName) &&
                   SplitQName(candidate.Get(), written.Text(), &name) == S_OK && name.Is(nameUri, nameLocalName);
        },
        found.Get());
    return result == S_OK ? S_OK : S_FALSE;
}

// Sees to it that the root's named children are in the index; false where there is no memory for it.
bool SchemaDocument::PrepareIndex() {
    if (rootIndex_.IsComplete()) {
        return true;
    }
    rootIndex_.Clear();
    bool isComplete = true;
    ElementReference none;
    const HRESULT result = FindChild(
        root_.Get(),
        [&](IXMLDOMNode* child, HRESULT* error) {
            OwnedBstr kindName;
            if (!IsElement(child, error) || FAILED(child->get_baseName(kindName.Receive()))) {
                return false;
            }
            const WCHAR* const kind = IndexedKind(kindName.Text());
            const auto node = ComReference<IXMLDOMNode>::Share(child);
            ElementReference candidate;
            QualifiedName name;
            if (kind && IsIn(child, kFrameworkNamespace, error) && SUCCEEDED(node.Query(kIidDomElement, &candidate)) &&
                ReadNameAttribute(candidate.Get(), &name) == S_OK) {
                isComplete =
                    rootIndex_.Add(kind, &name.uri, &name.localName, static_cast<ElementReference&&>(candidate));
            }
            return !isComplete;
        },
        &none);
    if (!isComplete || FAILED(result)) {
        rootIndex_.Clear();
        return false;
    }
    rootIndex_.SetComplete();
    return true;
}

// Keeps the index complete when a named child of the root is made.
void SchemaDocument::Index(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* uri, const WCHAR* localName,
                           IXMLDOMElement* element) {
    if (ParentOrRoot(parent) != root_.Get() || !rootIndex_.IsComplete()) {
        return;
    }
    if (const WCHAR* const known = IndexedKind(kind)) {
        OwnedBstr ownUri(uri);
        OwnedBstr ownName(localName);
        rootIndex_.Add(known, &ownUri, &ownName, ElementReference::Share(element));
    }
}

HRESULT SchemaDocument::FindFeature(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                    ElementReference* feature) {
    return FindNamedChild(parent, kFrameworkNamespace, element_name::kFeature, uri, localName, feature);
}

HRESULT SchemaDocument::FindProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                     ElementReference* property) {
    return FindNamedChild(parent, kFrameworkNamespace, element_name::kProperty, uri, localName, property);
}

HRESULT SchemaDocument::FindFirstOption(IXMLDOMNode* feature, ElementReference* option) {
    if (!feature) {
        Wanted<ElementReference>(option)->Reset();
        return E_INVALIDARG;
    }
    return FindChildElement(feature, kFrameworkNamespace, element_name::kOption, option);
}

HRESULT SchemaDocument::ReadNameAttribute(IXMLDOMElement* element, QualifiedName* name) {
    name->Clear();
    if (!element) {
        return E_INVALIDARG;
    }
    if (!nameAttribute_) {
        return E_OUTOFMEMORY;
    }
    OwnedVariant value;
    const HRESULT result = element->getAttribute(nameAttribute_.Get(), value.Receive());
    if (FAILED(result)) {
        return result;
    }
    return value.Text() ? SplitQName(element, value.Text(), name) : S_FALSE;
}

// The text of the parent's Value.
HRESULT SchemaDocument::ReadValue(IXMLDOMNode* parent, OwnedBstr* text) {
    if (!parent) {
        return E_INVALIDARG;
    }
    ElementReference value;
    const HRESULT result = FindChildElement(parent, kFrameworkNamespace, element_name::kValue, &value);
    return result == S_OK ? value->get_text(text->Receive()) : result;
}

HRESULT SchemaDocument::ReadValue(IXMLDOMNode* parent, LONG* value) {
    OwnedBstr text;
    const HRESULT result = value ? ReadValue(parent, &text) : E_INVALIDARG;
    if (result == S_OK) {
        *value = ParseInteger(text.Text());
    }
    return result;
}

HRESULT SchemaDocument::ReadValue(IXMLDOMNode* parent, ULONG* value) {
    OwnedBstr text;
    const HRESULT result = value ? ReadValue(parent, &text) : E_INVALIDARG;
    if (result == S_OK) {
        *value = ParseUnsigned(text.Text());
    }
    return result;
}

HRESULT SchemaDocument::ReadValue(IXMLDOMNode* parent, QualifiedName* value) {
    OwnedBstr text;
    const HRESULT result = value ? ReadValue(parent, &text) : E_INVALIDARG;
    return result == S_OK ? SplitQName(parent, text.Text(), value) : result;
}

template <class Value>
HRESULT SchemaDocument::ReadScoredProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                           Value* value) {
    ElementReference property;
    const HRESULT result =
        FindNamedChild(parent, kFrameworkNamespace, element_name::kScoredProperty, uri, localName, &property);
    return result == S_OK ? ReadValue(property.Get(), value) : result;
}

template <class Value>
HRESULT SchemaDocument::ReadScoredParameter(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                            Value* value) {
    ElementReference init;
    return FindScoredParameter(parent, scoredUri, scoredName, &init) == S_OK && ReadValue(init.Get(), value) == S_OK
               ? S_OK
               : S_FALSE;
}

HRESULT SchemaDocument::ReadValueInteger(IXMLDOMNode* parent, LONG* value) {
    return ReadValue(parent, value);
}

HRESULT SchemaDocument::ReadValueUnsigned(IXMLDOMNode* parent, ULONG* value) {
    return ReadValue(parent, value);
}

HRESULT SchemaDocument::ReadValueQName(IXMLDOMNode* parent, QualifiedName* value) {
    return ReadValue(parent, value);
}

HRESULT SchemaDocument::ReadScoredPropertyInteger(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                                  LONG* value) {
    return ReadScoredProperty(parent, uri, localName, value);
}

HRESULT SchemaDocument::ReadScoredPropertyQName(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                                QualifiedName* value) {
    return ReadScoredProperty(parent, uri, localName, value);
}

HRESULT SchemaDocument::ReadScoredPropertyString(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                                 OwnedBstr* text) {
    return ReadScoredProperty(parent, uri, localName, text);
}

HRESULT SchemaDocument::FindParameterRef(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                         QualifiedName* name) {
    name->Clear();
    ElementReference property;
    HRESULT result =
        FindNamedChild(parent, kFrameworkNamespace, element_name::kScoredProperty, scoredUri, scoredName, &property);
    ElementReference reference;
    if (result == S_OK) {
        result = FindChildElement(property.Get(), kFrameworkNamespace, element_name::kParameterRef, &reference);
    }
    return result == S_OK ? ReadNameAttribute(reference.Get(), name) : result;
}

HRESULT SchemaDocument::FindParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                          ElementReference* init) {
    return FindNamedChild(parent, kFrameworkNamespace, element_name::kParameterInit, uri, localName, init);
}

HRESULT SchemaDocument::FindScoredParameter(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                            ElementReference* init) {
    QualifiedName name;
    const HRESULT result = FindParameterRef(parent, scoredUri, scoredName, &name);
    return result == S_OK ? FindParameterInit(nullptr, name.uri.Text(), name.localName.Text(), init) : result;
}

HRESULT SchemaDocument::ReadScoredParameterInteger(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                                   LONG* value) {
    return ReadScoredParameter(parent, scoredUri, scoredName, value);
}

HRESULT SchemaDocument::ReadScoredParameterUnsigned(IXMLDOMNode* parent, const WCHAR* scoredUri,
                                                    const WCHAR* scoredName, ULONG* value) {
    return ReadScoredParameter(parent, scoredUri, scoredName, value);
}

HRESULT SchemaDocument::ReadScoredParameterQName(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                                 QualifiedName* value) {
    return ReadScoredParameter(parent, scoredUri, scoredName, value);
}

HRESULT SchemaDocument::ReadScoredParameterString(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                                  OwnedBstr* text) {
    return ReadScoredParameter(parent, scoredUri, scoredName, text);
}

HRESULT SchemaDocument::ReadParameterInitInteger(const WCHAR* uri, const WCHAR* localName, LONG* value) {
    ElementReference init;
    const HRESULT result = FindParameterInit(nullptr, uri, localName, &init);
    return result == S_OK ? ReadValueInteger(init.Get(), value) : result;
}

HRESULT SchemaDocument::FindFeatureOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                          ElementReference* feature, ElementReference* option,
                                          QualifiedName* optionName) {
    Wanted<ElementReference> foundFeature(feature);
    Wanted<ElementReference> foundOption(option);
    foundOption->Reset();
    if (optionName) {
        optionName->Clear();
    }
    HRESULT result = FindFeature(parent, uri, localName, foundFeature.Get());
    if (result == S_OK) {
        result = FindFirstOption(foundFeature->Get(), foundOption.Get());
    }
    if (result == S_OK && optionName) {
        result = ReadNameAttribute(foundOption->Get(), optionName);
        if (result != S_OK) {
            result =
                ReadScoredPropertyQName(foundOption->Get(), kKeywordsNamespace, keyword_name::kOptionName, optionName);
        }
    }
    if (result != S_OK) {
        foundFeature->Reset();
        foundOption->Reset();
    }
    return result;
}

}  // namespace velmora
