#include "platform/xml/node.h"

#include "platform/kernel/faults.h"
#include "platform/xml/document.h"
#include "platform/xml/namespace_scope.h"
#include "platform/xml/writer.h"

namespace host {
namespace {

// What a node of a type is by: its interfaces beside those that every node has, and its name where it has none itself.
struct NodeKind {
    DOMNodeType type;
    const WCHAR* name;
    const IID* interfaces[2];
};

constexpr NodeKind kNodeKinds[] = {
    {NODE_ELEMENT, nullptr, {&kIidElement, nullptr}},
    {NODE_ATTRIBUTE, nullptr, {&kIidAttribute, nullptr}},
    {NODE_TEXT, TEXT("#text"), {&kIidText, &kIidCharacterData}},
    {NODE_CDATA_SECTION, TEXT("#cdata-section"), {&kIidText, &kIidCharacterData}},
    {NODE_PROCESSING_INSTRUCTION, nullptr, {&kIidProcessingInstruction, nullptr}},
    {NODE_COMMENT, TEXT("#comment"), {&kIidComment, &kIidCharacterData}},
    {NODE_DOCUMENT, TEXT("#document"), {&kIidDocument, &kIidDocument2}},
};

const NodeKind& KindOf(const Node* node) {
    const NodeKind* kind = kNodeKinds;
    while (kind->type != node->type) {
        ++kind;
    }
    return *kind;
}

bool HasValue(const Node* node) {
    return node->type != NODE_ELEMENT && node->type != NODE_DOCUMENT;
}

bool IsXmlDeclaration(const Node* node) {
    return node->type == NODE_PROCESSING_INSTRUCTION && node->name->written == u"xml";
}

bool IsAtOrAbove(const Node* node, const Node* other) {
    while (other != nullptr && other != node) {
        other = other->parent;
    }
    return other != nullptr;
}

// A document has one element, and its XML declaration stands before all else.
bool MayHoldInDocument(const Node* document, const Node* child, const Node* before) {
    if (IsXmlDeclaration(child)) {
        return document->firstChild == before || document->firstChild == child;
    }
    if (child->type == NODE_ELEMENT) {
        for (const Node* other = document->firstChild; other != nullptr; other = other->next) {
            if (other->type == NODE_ELEMENT && other != child) {
                return false;
            }
        }
    } else if (child->type != NODE_COMMENT && child->type != NODE_PROCESSING_INSTRUCTION) {
        return false;
    }
    return before == nullptr || !IsXmlDeclaration(before);
}

bool MayHold(const Node* parent, const Node* child, const Node* before) {
    switch (parent->type) {
        case NODE_DOCUMENT:
            return MayHoldInDocument(parent, child, before);
        case NODE_ELEMENT:
            return child->type != NODE_ATTRIBUTE && child->type != NODE_DOCUMENT && !IsXmlDeclaration(child) &&
                   (child->firstChild == nullptr || !IsAtOrAbove(child, parent)) && child != parent;
        default:
            return false;
    }
}

HRESULT PlaceChild(Node* parent, Node* child, Node* before, IXMLDOMNode** out) {
    if (!MayHold(parent, child, before)) {
        return E_FAIL;
    }
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    if (child != before) {
        if (child->parent != nullptr) {
            Detach(child);
        }
        if (child->document != parent->document) {
            Adopt(child, parent->document);
        }
        InsertChild(parent, child, before);
    }
    return out != nullptr ? GiveNode(child, out) : S_OK;
}

}  // namespace

Node* NodeOf(IUnknown* object) {
    void* node = nullptr;
    return object != nullptr && object->QueryInterface(kIidLayerNode, &node) == S_OK ? static_cast<Node*>(node)
                                                                                     : nullptr;
}

std::u16string_view NodeName(const Node* node) {
    return node->name != nullptr ? std::u16string_view(node->name->written) : KindOf(node).name;
}

ULONG HoldNode(Node* node) {
    if (node->references == 0) {
        node->document->NodeIsHeld();
    }
    return ++node->references;
}

ULONG LetNodeGo(Node* node) {
    if (--node->references != 0) {
        return node->references;
    }
    Document* document = node->document;
    if (node->parent == nullptr && node != document) {
        FreeUnlessHeld(node);
    }
    document->NodeIsLetGo();
    return 0;
}

HRESULT QueryNode(Node* node, REFIID interfaceId, void** out) {
    if (out == nullptr) {
        return E_POINTER;
    }
    if (interfaceId == kIidLayerNode) {
        *out = node;
        return S_OK;
    }
    const auto& own = KindOf(node).interfaces;
    return GiveInterface(node->Object(), interfaceId,
                         {&IID_IUnknown, &kIidDispatch, &kIidNode, own[0], own[1] != nullptr ? own[1] : own[0]}, out);
}

HRESULT GiveNodeValue(const Node* node, VARIANT* out) {
    return HasValue(node) ? GiveText(node->value, out) : GiveNoText(out);
}

HRESULT SetNodeValue(Node* node, const VARIANT& value) {
    if (!HasValue(node)) {
        return E_FAIL;
    }
    if (value.vt == VT_BSTR) {
        return SetNodeText(node, TextOf(value.bstrVal));  // not as a text of its own
    }
    const auto text = TextOf(value);
    return text ? SetNodeText(node, *text) : DISP_E_TYPEMISMATCH;
}

HRESULT InsertNode(Node* parent, IXMLDOMNode* newChild, IXMLDOMNode* before, IXMLDOMNode** out) {
    if (out != nullptr) {
        *out = nullptr;
    }
    Node* child = NodeOf(newChild);
    Node* beforeNode = NodeOf(before);
    if (child == nullptr || (before != nullptr && (beforeNode == nullptr || beforeNode->parent != parent ||
                                                   beforeNode->type == NODE_ATTRIBUTE))) {
        return E_INVALIDARG;
    }
    return PlaceChild(parent, child, beforeNode, out);
}

HRESULT InsertNode(Node* parent, IXMLDOMNode* newChild, const VARIANT& before, IXMLDOMNode** out) {
    if (before.vt == VT_EMPTY || before.vt == VT_NULL) {
        return InsertNode(parent, newChild, nullptr, out);
    }
    Node* node = before.vt == VT_UNKNOWN || before.vt == VT_DISPATCH ? NodeOf(before.punkVal) : nullptr;
    const bool isNone = node == nullptr && before.punkVal != nullptr;
    return isNone ? E_INVALIDARG : InsertNode(parent, newChild, node != nullptr ? node->Object() : nullptr, out);
}

HRESULT RemoveNode(Node* parent, IXMLDOMNode* oldChild, IXMLDOMNode** out) {
    if (out != nullptr) {
        *out = nullptr;
    }
    Node* child = NodeOf(oldChild);
    if (child == nullptr || child->parent != parent || child->type == NODE_ATTRIBUTE) {
        return E_INVALIDARG;
    }
    Detach(child);
    if (out != nullptr) {
        return GiveNode(child, out);
    }
    FreeUnlessHeld(child);
    return S_OK;
}

HRESULT CloneNode(const Node* node, bool deep, IXMLDOMNode** out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    *out = nullptr;
    if (node->type == NODE_DOCUMENT) {
        return E_NOTIMPL;
    }
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    Document* document = node->document;
    Node* root = document->Copy(node);
    Node* copy = root;
    // The copy goes the same way as what it is a copy of.
    for (auto* from = deep ? const_cast<Node*>(node) : nullptr; from != nullptr;) {
        Node* next = NextInTree(node, from);
        if (next == nullptr) {
            break;
        }
        Node* made = document->Copy(next);
        for (const Node* above = from; above != next->parent; above = above->parent) {
            copy = copy->parent;
        }
        InsertChild(copy, made, nullptr);
        copy = made;
        from = next;
    }
    return GiveNode(root, out);
}

HRESULT GiveNodeText(const Node* node, BSTR* out) {
    if (HasValue(node) && node->type != NODE_TEXT) {
        return GiveText(node->value, out);
    }
    // Most elements have one text or none.
    std::u16string joined;
    std::u16string_view text = node->value;
    if (const Node* only = node->firstChild; only != nullptr && only == node->lastChild && only->type == NODE_TEXT) {
        text = only->value;
    } else if (only != nullptr) {
        joined = TextBelow(node);
        text = joined;
    }
    if (!text.empty() && (IsWhiteSpace(text.substr(0, 1)) || IsWhiteSpace(text.substr(text.size() - 1))) &&
        !node->document->PreservesWhiteSpace() && !KeepsWhiteSpace(node)) {
        const size_t first = text.find_first_not_of(kWhiteSpace);
        text = first == std::u16string_view::npos ? std::u16string_view()
                                                  : text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
    }
    return GiveText(text, out);
}

HRESULT SetNodeText(Node* node, std::u16string_view text) {
    if (node->type == NODE_DOCUMENT) {
        return E_FAIL;
    }
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    if (HasValue(node)) {
        node->value = text;
        return S_OK;
    }
    Node* made = nullptr;
    if (!text.empty()) {
        made = new TextNode(node->document, NODE_TEXT);
        made->value = text;
    }
    while (Node* child = node->firstChild) {
        Detach(child);
        FreeUnlessHeld(child);
    }
    if (made != nullptr) {
        InsertChild(node, made, nullptr);
    }
    return S_OK;
}

HRESULT GiveNodeXml(const Node* node, BSTR* out) {
    return out == nullptr ? E_INVALIDARG : GiveText(WriteXml(node, {}), out);
}

HRESULT GiveOwner(const Node* node, IXMLDOMDocument** out) {
    return GiveNode(node == node->document ? nullptr : node->document, out);
}

HRESULT GiveChild(const Node* parent, Node* child, IXMLDOMNode** out) {
    if (parent->type != NODE_ATTRIBUTE) {
        return GiveNode(child, out);
    }
    // The text of an attribute is no node here.
    return GiveNode<IXMLDOMNode>(nullptr, out) == S_FALSE ? E_NOTIMPL : E_INVALIDARG;
}

// --- Elements

HRESULT ElementNode::get_tagName(BSTR* out) {
    return GiveText(name->written, out);
}

HRESULT ElementNode::getAttribute(BSTR written, VARIANT* out) {
    if (written == nullptr) {
        return E_INVALIDARG;
    }
    const Node* attribute = FindAttribute(this, TextOf(written));
    return attribute != nullptr ? GiveText(attribute->value, out) : GiveNoText(out);
}

HRESULT ElementNode::setAttribute(BSTR written, VARIANT newValue) {
    if (written == nullptr) {
        return E_INVALIDARG;
    }
    const auto text = TextOf(newValue);
    if (!text) {
        return DISP_E_TYPEMISMATCH;
    }
    if (Node* known = FindAttribute(this, TextOf(written))) {
        return SetNodeText(known, *text);
    }
    const std::u16string_view prefix = PrefixOf(TextOf(written));
    const Binding binding = prefix.empty() ? Binding{} : FindBinding(this, true, prefix);
    const Name* attributeName = document->NameOf(NODE_ATTRIBUTE, TextOf(written),
                                                 binding.place != nullptr ? std::u16string_view(*binding.uri) : u"");
    if (attributeName == nullptr) {
        return E_FAIL;
    }
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    auto* made = new AttributeNode(document, attributeName);
    made->value = *text;
    InsertAttribute(this, made, nullptr);
    return S_OK;
}

HRESULT ElementNode::removeAttribute(BSTR written) {
    if (written == nullptr) {
        return E_INVALIDARG;
    }
    Node* attribute = FindAttribute(this, TextOf(written));
    if (attribute == nullptr) {
        return S_FALSE;
    }
    Detach(attribute);
    FreeUnlessHeld(attribute);
    return S_OK;
}

HRESULT ElementNode::getAttributeNode(BSTR written, IXMLDOMAttribute** out) {
    return written == nullptr ? E_INVALIDARG : GiveNode(FindAttribute(this, TextOf(written)), out);
}

HRESULT ElementNode::setAttributeNode(IXMLDOMAttribute* newAttribute, IXMLDOMAttribute** out) {
    if (out != nullptr) {
        *out = nullptr;
    }
    Node* attribute = NodeOf(newAttribute);
    if (attribute == nullptr) {
        return E_INVALIDARG;
    }
    if (attribute->type != NODE_ATTRIBUTE || attribute->parent != nullptr) {
        return E_FAIL;
    }
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    if (attribute->document != document) {
        Adopt(attribute, document);
    }
    Node* former = FindAttribute(this, attribute->name->written);
    InsertAttribute(this, attribute, former);
    if (former != nullptr && out != nullptr) {
        return GiveNode(former, out);
    }
    if (former != nullptr) {
        FreeUnlessHeld(former);
    }
    return S_OK;
}

}  // namespace host
