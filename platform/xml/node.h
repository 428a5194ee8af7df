// The objects that programs see of a document's nodes. Everything of one document is used by one thread at a time.
#pragma once

#include <msxml2.h>

#include "platform/com/results.h"
#include "platform/xml/interface_ids.h"
#include "platform/xml/tree.h"

namespace host {

// The node of an object of the layer; null for anybody else's and for null.
Node* NodeOf(IUnknown* object);

// An owned reference; S_FALSE and null where there is no node. The node's type must have the interface.
template <class Interface>
HRESULT GiveNode(Node* node, Interface** out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    if (node == nullptr) {
        *out = nullptr;
        return S_FALSE;
    }
    *out = static_cast<Interface*>(node->Object());
    (*out)->AddRef();
    return S_OK;
}

// The name that every node has: "#text" and the like for those without one of their own.
std::u16string_view NodeName(const Node* node);

// What the methods of IXMLDOMNode do.
ULONG HoldNode(Node* node);
ULONG LetNodeGo(Node* node);
HRESULT QueryNode(Node* node, REFIID interfaceId, void** out);
HRESULT GiveNodeValue(const Node* node, VARIANT* out);
HRESULT SetNodeValue(Node* node, const VARIANT& value);
HRESULT InsertNode(Node* parent, IXMLDOMNode* newChild, IXMLDOMNode* before, IXMLDOMNode** out);
HRESULT InsertNode(Node* parent, IXMLDOMNode* newChild, const VARIANT& before, IXMLDOMNode** out);
HRESULT RemoveNode(Node* parent, IXMLDOMNode* child, IXMLDOMNode** out);
HRESULT CloneNode(const Node* node, bool deep, IXMLDOMNode** out);
HRESULT GiveNodeText(const Node* node, BSTR* out);
HRESULT SetNodeText(Node* node, std::u16string_view text);
HRESULT GiveNodeXml(const Node* node, BSTR* out);
HRESULT GiveOwner(const Node* node, IXMLDOMDocument** out);
HRESULT GiveChild(const Node* parent, Node* child, IXMLDOMNode** out);

// node_lists.cpp: the children, the attributes.
HRESULT GiveChildren(Node* node, IXMLDOMNodeList** out);
HRESULT GiveAttributes(Node* node, IXMLDOMNamedNodeMap** out);

template <class Interface>
class NodeObject : public Interface, public Node {
  public:
    using Node::Node;

    IXMLDOMNode* Object() override { return this; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        return QueryNode(this, interfaceId, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return HoldNode(this); }
    ULONG STDMETHODCALLTYPE Release() override { return LetNodeGo(this); }

    HRESULT STDMETHODCALLTYPE get_nodeName(BSTR* out) override { return GiveText(NodeName(this), out); }
    HRESULT STDMETHODCALLTYPE get_nodeValue(VARIANT* out) override { return GiveNodeValue(this, out); }
    HRESULT STDMETHODCALLTYPE put_nodeValue(VARIANT newValue) override { return SetNodeValue(this, newValue); }
    HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType* out) override { return GiveValue(type, out); }
    HRESULT STDMETHODCALLTYPE get_parentNode(IXMLDOMNode** out) override {
        return GiveNode(type == NODE_ATTRIBUTE ? nullptr : parent, out);
    }
    HRESULT STDMETHODCALLTYPE get_childNodes(IXMLDOMNodeList** out) override { return GiveChildren(this, out); }
    HRESULT STDMETHODCALLTYPE get_firstChild(IXMLDOMNode** out) override { return GiveChild(this, firstChild, out); }
    HRESULT STDMETHODCALLTYPE get_lastChild(IXMLDOMNode** out) override { return GiveChild(this, lastChild, out); }
    HRESULT STDMETHODCALLTYPE get_previousSibling(IXMLDOMNode** out) override {
        return GiveNode(type == NODE_ATTRIBUTE ? nullptr : previous, out);
    }
    HRESULT STDMETHODCALLTYPE get_nextSibling(IXMLDOMNode** out) override {
        return GiveNode(type == NODE_ATTRIBUTE ? nullptr : next, out);
    }
    HRESULT STDMETHODCALLTYPE get_attributes(IXMLDOMNamedNodeMap** out) override { return GiveAttributes(this, out); }
    HRESULT STDMETHODCALLTYPE insertBefore(IXMLDOMNode* child, VARIANT before, IXMLDOMNode** out) override {
        return InsertNode(this, child, before, out);
    }
    HRESULT STDMETHODCALLTYPE removeChild(IXMLDOMNode* child, IXMLDOMNode** out) override {
        return RemoveNode(this, child, out);
    }
    HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* child, IXMLDOMNode** out) override {
        return InsertNode(this, child, nullptr, out);
    }
    HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL* out) override {
        return GiveValue(firstChild != nullptr ? VARIANT_TRUE : VARIANT_FALSE, out);
    }
    HRESULT STDMETHODCALLTYPE get_ownerDocument(IXMLDOMDocument** out) override { return GiveOwner(this, out); }
    HRESULT STDMETHODCALLTYPE cloneNode(VARIANT_BOOL deep, IXMLDOMNode** out) override {
        return CloneNode(this, deep != VARIANT_FALSE, out);
    }
    HRESULT STDMETHODCALLTYPE get_text(BSTR* out) override { return GiveNodeText(this, out); }
    HRESULT STDMETHODCALLTYPE put_text(BSTR text) override { return SetNodeText(this, TextOf(text)); }
    HRESULT STDMETHODCALLTYPE get_xml(BSTR* out) override { return GiveNodeXml(this, out); }
    HRESULT STDMETHODCALLTYPE get_namespaceURI(BSTR* out) override {
        return GiveUnlessEmpty(name != nullptr ? std::u16string_view(*name->uri) : std::u16string_view(), out);
    }
    HRESULT STDMETHODCALLTYPE get_prefix(BSTR* out) override {
        return GiveUnlessEmpty(name != nullptr ? name->Prefix() : std::u16string_view(), out);
    }
    HRESULT STDMETHODCALLTYPE get_baseName(BSTR* out) override {
        return GiveUnlessEmpty(name != nullptr ? name->Base() : std::u16string_view(), out);
    }

  private:
    static HRESULT GiveUnlessEmpty(std::u16string_view text, BSTR* out) {
        return text.empty() ? GiveNoText(out) : GiveText(text, out);
    }
};

class ElementNode final : public NodeObject<IXMLDOMElement> {
  public:
    ElementNode(Document* document, const Name* name) : NodeObject(document, NODE_ELEMENT, name) {}

    HRESULT STDMETHODCALLTYPE get_tagName(BSTR* out) override;
    HRESULT STDMETHODCALLTYPE getAttribute(BSTR written, VARIANT* out) override;
    HRESULT STDMETHODCALLTYPE setAttribute(BSTR written, VARIANT newValue) override;
    HRESULT STDMETHODCALLTYPE removeAttribute(BSTR written) override;
    HRESULT STDMETHODCALLTYPE getAttributeNode(BSTR written, IXMLDOMAttribute** out) override;
    HRESULT STDMETHODCALLTYPE setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** out) override;
};

class AttributeNode final : public NodeObject<IXMLDOMAttribute> {
  public:
    AttributeNode(Document* document, const Name* name) : NodeObject(document, NODE_ATTRIBUTE, name) {}

    HRESULT STDMETHODCALLTYPE get_name(BSTR* out) override { return GiveText(name->written, out); }
    HRESULT STDMETHODCALLTYPE get_value(VARIANT* out) override { return GiveText(value, out); }
    HRESULT STDMETHODCALLTYPE put_value(VARIANT newValue) override { return SetNodeValue(this, newValue); }
};

// Texts, CDATA sections and comments.
template <class Interface>
class CharacterNode final : public NodeObject<Interface> {
  public:
    CharacterNode(Document* document, DOMNodeType type) : NodeObject<Interface>(document, type, nullptr) {}

    HRESULT STDMETHODCALLTYPE get_data(BSTR* out) override { return GiveText(this->value, out); }
    HRESULT STDMETHODCALLTYPE put_data(BSTR data) override { return SetNodeText(this, TextOf(data)); }
    HRESULT STDMETHODCALLTYPE get_length(LONG* out) override {
        return GiveValue(static_cast<LONG>(this->value.size()), out);
    }
};
using TextNode = CharacterNode<IXMLDOMText>;
using CommentNode = CharacterNode<IXMLDOMComment>;

class ProcessingInstructionNode final : public NodeObject<IXMLDOMProcessingInstruction> {
  public:
    ProcessingInstructionNode(Document* document, const Name* name)
        : NodeObject(document, NODE_PROCESSING_INSTRUCTION, name) {}

    HRESULT STDMETHODCALLTYPE get_target(BSTR* out) override { return GiveText(name->written, out); }
    HRESULT STDMETHODCALLTYPE get_data(BSTR* out) override { return GiveText(value, out); }
    HRESULT STDMETHODCALLTYPE put_data(BSTR data) override { return SetNodeText(this, TextOf(data)); }
};

}  // namespace host
