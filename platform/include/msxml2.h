// The XML document object model and its namespace manager, version 6 (msxml2.h, msxml6.h).
//
// Every method gives S_OK, or S_FALSE where there is nothing to give: the result is null then (VT_NULL in a VARIANT).
// Objects and texts that a method gives are the caller's to release and free; `out…` results that may be null say so.
// Texts and values that are passed stay the caller's. E_INVALIDARG: a needed argument is null.
#pragma once

#include <oleauto.h>
#include <unknwn.h>

enum DOMNodeType {
    NODE_INVALID,
    NODE_ELEMENT,
    NODE_ATTRIBUTE,
    NODE_TEXT,
    NODE_CDATA_SECTION,
    NODE_ENTITY_REFERENCE,
    NODE_ENTITY,
    NODE_PROCESSING_INSTRUCTION,
    NODE_COMMENT,
    NODE_DOCUMENT,
    NODE_DOCUMENT_TYPE,
    NODE_DOCUMENT_FRAGMENT,
    NODE_NOTATION,
};

#define E_XML_NOTWF (static_cast<HRESULT>(0xC00CE223))
#define E_XML_NODTD (static_cast<HRESULT>(0xC00CE224))
#define E_XML_BUFFERTOOSMALL (static_cast<HRESULT>(0xC00CE226))

struct IXMLDOMDocument;
struct IXMLDOMNamedNodeMap;
struct IXMLDOMNodeList;

struct IXMLDOMNode : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_nodeName(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nodeValue(VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_nodeValue(VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType* type) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_parentNode(IXMLDOMNode** parent) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_childNodes(IXMLDOMNodeList** childList) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_firstChild(IXMLDOMNode** firstChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_lastChild(IXMLDOMNode** lastChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_previousSibling(IXMLDOMNode** previousSibling) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_nextSibling(IXMLDOMNode** nextSibling) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_attributes(IXMLDOMNamedNodeMap** attributeMap) = 0;
    // The new child leaves the place where it was. refChild: VT_UNKNOWN or VT_DISPATCH, the child to stand before;
    // VT_EMPTY or VT_NULL, at the end. The result may be null.
    virtual HRESULT STDMETHODCALLTYPE insertBefore(IXMLDOMNode* newChild, VARIANT refChild,
                                                   IXMLDOMNode** outNewChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeChild(IXMLDOMNode* childNode, IXMLDOMNode** oldChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* newChild, IXMLDOMNode** outNewChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL* hasChild) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ownerDocument(IXMLDOMDocument** document) = 0;
    virtual HRESULT STDMETHODCALLTYPE cloneNode(VARIANT_BOOL deep, IXMLDOMNode** cloneRoot) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_text(BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_text(BSTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_xml(BSTR* xmlString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_namespaceURI(BSTR* namespaceURI) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_prefix(BSTR* prefixString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_baseName(BSTR* nameString) = 0;
};

// Live: what is appended or removed while it is walked is seen.
struct IXMLDOMNodeList : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** listItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_length(LONG* listLength) = 0;
    virtual HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** nextItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE reset() = 0;
};

// Names are as written, with prefix, but for the qualified item.
struct IXMLDOMNamedNodeMap : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE getNamedItem(BSTR name, IXMLDOMNode** namedItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** listItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_length(LONG* listLength) = 0;
    virtual HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR baseName, BSTR namespaceURI,
                                                       IXMLDOMNode** qualifiedItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** nextItem) = 0;
    virtual HRESULT STDMETHODCALLTYPE reset() = 0;
};

struct IXMLDOMAttribute : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_name(BSTR* attributeName) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_value(VARIANT* attributeValue) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_value(VARIANT attributeValue) = 0;
};

struct IXMLDOMElement : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_tagName(BSTR* tagName) = 0;
    virtual HRESULT STDMETHODCALLTYPE getAttribute(BSTR name, VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE setAttribute(BSTR name, VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE removeAttribute(BSTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE getAttributeNode(BSTR name, IXMLDOMAttribute** attributeNode) = 0;
    // Takes the place of an attribute of the same written name, which is the result; that may be null.
    virtual HRESULT STDMETHODCALLTYPE setAttributeNode(IXMLDOMAttribute* attribute,
                                                       IXMLDOMAttribute** attributeNode) = 0;
};

struct IXMLDOMCharacterData : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_data(BSTR* data) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_data(BSTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_length(LONG* dataLength) = 0;
};
struct IXMLDOMText : IXMLDOMCharacterData {};
struct IXMLDOMComment : IXMLDOMCharacterData {};

struct IXMLDOMProcessingInstruction : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_target(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_data(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_data(BSTR value) = 0;
};

// Of the last loadXML.
struct IXMLDOMParseError : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_errorCode(LONG* errorCode) = 0;  // 0: none
    virtual HRESULT STDMETHODCALLTYPE get_reason(BSTR* reasonString) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_srcText(BSTR* sourceString) = 0;  // the line
    virtual HRESULT STDMETHODCALLTYPE get_line(LONG* lineNumber) = 0;       // from 1
    virtual HRESULT STDMETHODCALLTYPE get_linepos(LONG* linePosition) = 0;  // from 1, in characters
};

struct IXMLDOMDocument : IXMLDOMNode {
    virtual HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** element) = 0;
    virtual HRESULT STDMETHODCALLTYPE createElement(BSTR tagName, IXMLDOMElement** element) = 0;
    virtual HRESULT STDMETHODCALLTYPE createTextNode(BSTR data, IXMLDOMText** text) = 0;
    virtual HRESULT STDMETHODCALLTYPE createComment(BSTR data, IXMLDOMComment** comment) = 0;
    virtual HRESULT STDMETHODCALLTYPE createProcessingInstruction(BSTR target, BSTR data,
                                                                  IXMLDOMProcessingInstruction** pi) = 0;
    virtual HRESULT STDMETHODCALLTYPE createAttribute(BSTR name, IXMLDOMAttribute** attribute) = 0;
    // type: VT_I4 or VT_I2, a DOMNodeType. name: with prefix where there is one. Null or empty namespaceURI: none.
    virtual HRESULT STDMETHODCALLTYPE createNode(VARIANT type, BSTR name, BSTR namespaceURI, IXMLDOMNode** node) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** errorObj) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL* isAsync) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL isAsync) = 0;
    // S_FALSE where the text isn't well-formed: *isSuccessful is VARIANT_FALSE and the document is empty then.
    virtual HRESULT STDMETHODCALLTYPE loadXML(BSTR xml, VARIANT_BOOL* isSuccessful) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_validateOnParse(VARIANT_BOOL* isValidating) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL isValidating) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_resolveExternals(VARIANT_BOOL* isResolving) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL isResolving) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_preserveWhiteSpace(VARIANT_BOOL* isPreserving) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_preserveWhiteSpace(VARIANT_BOOL isPreserving) = 0;
};

struct IXMLDOMDocument2 : IXMLDOMDocument {
    virtual HRESULT STDMETHODCALLTYPE setProperty(BSTR name, VARIANT value) = 0;
};

// Bindings of prefixes to namespaces: those declared in its contexts, and, in a context made of a node, the node's own.
// Texts are NUL-terminated. A buffer's size goes in and the text's length comes out by the same argument, both in
// characters, the NUL counted in the size only; a null buffer asks for the length. E_XML_BUFFERTOOSMALL: it doesn't
// fit.
struct IMXNamespaceManager : IUnknown {
    // Whether declarePrefix may bind a prefix again that its context has already; it may, unless told otherwise.
    virtual HRESULT STDMETHODCALLTYPE putAllowOverride(VARIANT_BOOL allow) = 0;
    virtual HRESULT STDMETHODCALLTYPE getAllowOverride(VARIANT_BOOL* allow) = 0;
    virtual HRESULT STDMETHODCALLTYPE reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE pushContext() = 0;
    // `deep`: the ancestors' bindings too.
    virtual HRESULT STDMETHODCALLTYPE pushNodeContext(IXMLDOMNode* contextNode, VARIANT_BOOL deep) = 0;
    virtual HRESULT STDMETHODCALLTYPE popContext() = 0;
    virtual HRESULT STDMETHODCALLTYPE declarePrefix(const WCHAR* prefix, const WCHAR* namespaceURI) = 0;
    // The nth prefix that the current context declares, from 0; E_FAIL where there are fewer.
    virtual HRESULT STDMETHODCALLTYPE getDeclaredPrefix(LONG index, WCHAR* prefix, int* prefixChars) = 0;
    // The nth prefix that is bound to the namespace, nearest first; E_FAIL where there are fewer.
    virtual HRESULT STDMETHODCALLTYPE getPrefix(const WCHAR* namespaceURI, LONG index, WCHAR* prefix,
                                                int* prefixChars) = 0;
    // The namespace that the prefix is bound to: at the node where there is one, else in the manager; S_FALSE: to none.
    virtual HRESULT STDMETHODCALLTYPE getURI(const WCHAR* prefix, IXMLDOMNode* contextNode, WCHAR* uri,
                                             int* uriChars) = 0;
};
