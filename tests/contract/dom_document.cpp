#include "tests/contract/dom_document.h"

#include <stdexcept>
#include <string>

#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/print_schema.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

void Check(HRESULT result, const char* what) {
    if (result != S_OK) {
        throw std::runtime_error(std::string(what) + " gives " + std::to_string(result));
    }
}

template <class Interface>
ComReference<Interface> NewObject(const CLSID& classId, const IID& interfaceId, const char* what) {
    void* object = nullptr;
    Check(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, interfaceId, &object), what);
    return ComReference<Interface>(static_cast<Interface*>(object));
}

}  // namespace

ComReference<IXMLDOMDocument2> NewDocument() {
    auto document =
        NewObject<IXMLDOMDocument2>(velmora::kDomDocument60, velmora::kIidDomDocument2, "making a document");
    Check(document->put_async(VARIANT_FALSE), "put_async");
    Check(document->put_validateOnParse(VARIANT_FALSE), "put_validateOnParse");
    Check(document->put_resolveExternals(VARIANT_FALSE), "put_resolveExternals");
    return document;
}

ComReference<IXMLDOMDocument2> LoadDocument(const WideText& text) {
    auto document = NewDocument();
    VARIANT_BOOL loaded = VARIANT_FALSE;
    if (document->loadXML(OwnedBstr(text.c_str()).Get(), &loaded) != S_OK || loaded != VARIANT_TRUE) {
        throw std::runtime_error("not well-formed: " + Printable(text));
    }
    return document;
}

ComReference<IXMLDOMDocument2> LoadDocument(const std::string& text) {
    WideText whole(text.begin(), text.end());
    for (const velmora::StandardNamespace& standard : velmora::kStandardNamespaces) {
        const WideText shortForm = TEXT("{") + WideText(standard.prefix) + TEXT("}");
        for (size_t place = 0; (place = whole.find(shortForm, place)) != WideText::npos;) {
            whole.replace(place, shortForm.size(), standard.uri);
        }
    }
    return LoadDocument(whole);
}

ComReference<IMXNamespaceManager> NewNamespaceManager() {
    return NewObject<IMXNamespaceManager>(velmora::kMxNamespaceManager60, velmora::kIidNamespaceManager,
                                          "making a namespace manager");
}

ComReference<IXMLDOMNode> NewNode(IXMLDOMDocument2* document, DOMNodeType type, const WideText& name,
                                  const WideText& uri) {
    VARIANT number{};
    number.vt = VT_I4;
    number.lVal = type;
    ComReference<IXMLDOMNode> node;
    Check(document->createNode(number, OwnedBstr(name.c_str()).Get(), OwnedBstr(uri.c_str()).Get(), node.Receive()),
          "createNode");
    return node;
}

void SetAttributeNode(IXMLDOMDocument2* document, IXMLDOMNode* element, const WideText& name, const WideText& uri,
                      const WideText& value) {
    const auto node = NewNode(document, NODE_ATTRIBUTE, name, uri);
    const OwnedBstr text(value.c_str());
    VARIANT passed{};
    passed.vt = VT_BSTR;
    passed.bstrVal = text.Get();
    Check(node->put_nodeValue(passed), "put_nodeValue");
    ComReference<IXMLDOMAttribute> attribute;
    Check(node.Query(velmora::kIidDomAttribute, &attribute), "QueryInterface of an attribute");
    ComReference<IXMLDOMElement> owner;
    Check(ComReference<IXMLDOMNode>::Share(element).Query(velmora::kIidDomElement, &owner),
          "QueryInterface of an element");
    ComReference<IXMLDOMAttribute> former;
    Check(owner->setAttributeNode(attribute.Get(), former.Receive()), "setAttributeNode");
}

}  // namespace contract
