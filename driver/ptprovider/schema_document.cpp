// The document and its nodes.
#include "driver/ptprovider/schema_document.h"

#include <objbase.h>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/namespace_manager.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/qualified_name.h"

namespace velmora {
namespace {

constexpr size_t kAttributeNameCapacity = 64;  // of an attribute's written name
constexpr size_t kNumberCapacity = 16;
// 72 blanks: what a banner's text is framed by.
constexpr const WCHAR* kBannerEdge = TEXT("                                                                        ");
constexpr size_t kBannerCapacity = 128;

// True for the Print Schema's own namespaces, whose attributes are written without prefix.
bool IsPrintSchema(const WCHAR* uri) {
    return uri == kFrameworkNamespace || TextsEqual(uri, kFrameworkNamespace) || TextsEqual(uri, kKeywordsNamespace);
}

// A node by its written name; `space` null: in no namespace.
HRESULT CreateNode(IXMLDOMDocument2* document, DOMNodeType type, BSTR name, BSTR space,
                   ComReference<IXMLDOMNode>* node) {
    VARIANT kind;
    VariantInit(&kind);
    kind.vt = VT_I4;
    kind.lVal = type;
    return document->createNode(kind, name, space, node->Receive());
}

}  // namespace

SchemaDocument::SchemaDocument()
    : framework_(kFrameworkNamespace), nameAttribute_(attribute_name::kName), bannerEdge_(kBannerEdge) {
    void* manager = nullptr;
    if (SUCCEEDED(
            CoCreateInstance(kMxNamespaceManager60, nullptr, CLSCTX_INPROC_SERVER, kIidNamespaceManager, &manager))) {
        manager_.Reset(static_cast<IMXNamespaceManager*>(manager));
    }
}

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
    ComReference<IXMLDOMNode> node;
    result = CreateNode(document_.Get(), NODE_ATTRIBUTE, written, space, &node);
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
    ComReference<IXMLDOMNode> node;
    HRESULT result = CreateNode(document_.Get(), NODE_ELEMENT, name, space, &node);
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

}  // namespace velmora
