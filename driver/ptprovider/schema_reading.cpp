// Finding elements and reading what they say.
#include "driver/ptprovider/schema_document.h"

#include "driver/base/text.h"
#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/qualified_name.h"

namespace velmora {
namespace {

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

}  // namespace

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
