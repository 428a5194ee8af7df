// A document: it makes its nodes and owns them all.
#pragma once

#include <string>
#include <string_view>

#include "platform/xml/names.h"
#include "platform/xml/node.h"

namespace host {

// What is wrong with a text that isn't well-formed.
struct ParseFault {
    HRESULT code = S_OK;  // S_OK: nothing
    std::u16string reason;
    LONG line = 0;          // from 1
    LONG column = 0;        // from 1, in characters
    std::u16string source;  // the line's text
};

class Document final : public NodeObject<IXMLDOMDocument2> {
  public:
    Document();
    ~Document() override;

    // --- For the tree

    NameTable& Names() { return names_; }
    void AddMade(Node* node);
    void RemoveMade(Node* node);
    void MoveMade(Node* node, Document* other);
    // Counts the changes of the tree's links.
    void NoteChange() { ++changes_; }
    uint64_t Changes() const { return changes_; }

    // Every node that is held counts once, and so does the document itself. The last one takes the document along.
    void NodeIsHeld() { ++nodesHeld_; }
    void NodeIsLetGo() {
        --nodesHeld_;
        FreeUnlessInUse();
    }
    void FreeUnlessInUse();
    // Whatever is held.
    void Free();

    // One line each that a reference is held to.
    void AddHeld(std::vector<std::string>* lines) const;

    // --- For its nodes and its parser

    // Null where a node of this type can't be named so: no name, an unbound prefix, a wrong use of "xml" or "xmlns".
    const Name* NameOf(DOMNodeType type, std::u16string_view written, std::u16string_view uri);
    // Without the nodes below it.
    Node* Copy(const Node* node);
    bool PreservesWhiteSpace() const { return preserveWhiteSpace_ != VARIANT_FALSE; }

    // --- IXMLDOMDocument2

    HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** out) override;
    HRESULT STDMETHODCALLTYPE createElement(BSTR written, IXMLDOMElement** out) override;
    HRESULT STDMETHODCALLTYPE createTextNode(BSTR data, IXMLDOMText** out) override;
    HRESULT STDMETHODCALLTYPE createComment(BSTR data, IXMLDOMComment** out) override;
    HRESULT STDMETHODCALLTYPE createProcessingInstruction(BSTR target, BSTR data,
                                                          IXMLDOMProcessingInstruction** out) override;
    HRESULT STDMETHODCALLTYPE createAttribute(BSTR written, IXMLDOMAttribute** out) override;
    HRESULT STDMETHODCALLTYPE createNode(VARIANT nodeType, BSTR written, BSTR uri, IXMLDOMNode** out) override;
    HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** out) override;
    HRESULT STDMETHODCALLTYPE loadXML(BSTR xml, VARIANT_BOOL* isSuccessful) override;
    HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL* out) override { return GiveValue(async_, out); }
    HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL is) override { return Set(&async_, is); }
    HRESULT STDMETHODCALLTYPE get_validateOnParse(VARIANT_BOOL* out) override {
        return GiveValue(validateOnParse_, out);
    }
    HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL is) override { return Set(&validateOnParse_, is); }
    HRESULT STDMETHODCALLTYPE get_resolveExternals(VARIANT_BOOL* out) override {
        return GiveValue(resolveExternals_, out);
    }
    HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL is) override { return Set(&resolveExternals_, is); }
    HRESULT STDMETHODCALLTYPE get_preserveWhiteSpace(VARIANT_BOOL* out) override {
        return GiveValue(preserveWhiteSpace_, out);
    }
    HRESULT STDMETHODCALLTYPE put_preserveWhiteSpace(VARIANT_BOOL is) override { return Set(&preserveWhiteSpace_, is); }
    HRESULT STDMETHODCALLTYPE setProperty(BSTR property, VARIANT newValue) override;

  private:
    static HRESULT Set(VARIANT_BOOL* setting, VARIANT_BOOL is) {
        *setting = is != VARIANT_FALSE ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }

    NameTable names_;
    Node* firstMade_ = nullptr;  // all nodes but the document itself
    uint64_t nodesHeld_ = 0;
    uint64_t changes_ = 0;
    ParseFault fault_;
    // What loading does is the same whatever these three say: it ends before the call does, and there is neither a DTD
    // to validate by nor an external entity to resolve.
    VARIANT_BOOL async_ = VARIANT_TRUE;
    VARIANT_BOOL validateOnParse_ = VARIANT_TRUE;
    VARIANT_BOOL resolveExternals_ = VARIANT_FALSE;
    VARIANT_BOOL preserveWhiteSpace_ = VARIANT_FALSE;
};

}  // namespace host
