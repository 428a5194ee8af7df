// COM on the test's thread, documents, and owners of what the object model gives.
#pragma once

#include <msxml2.h>
#include <objbase.h>

#include <utility>

#include "tests/platform/kernel_fixture.h"

namespace host {

inline constexpr CLSID kDocumentClass = {0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
inline constexpr CLSID kManagerClass = {0x88D96A11, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
inline constexpr IID kDocument2Id = {0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID kElementId = {0x2933BF86, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
inline constexpr IID kManagerId = {0xC90352F6, 0x643C, 0x4FBC, {0xBB, 0x23, 0xE9, 0x96, 0xEB, 0x2D, 0x51, 0xFD}};

// An owned reference.
template <class Interface>
class Ref {
  public:
    Ref() = default;
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref& operator=(Ref&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() { Reset(); }

    Interface* Get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    void Reset() {
        if (object_ != nullptr) {
            std::exchange(object_, nullptr)->Release();
        }
    }
    Interface** Receive() {
        Reset();
        return &object_;
    }
    void** ReceiveAny() { return reinterpret_cast<void**>(Receive()); }

  private:
    Interface* object_ = nullptr;
};

// A BSTR for an argument or of a result.
class Text {
  public:
    Text() = default;
    explicit Text(std::u16string_view text) : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }

    BSTR Get() const { return text_; }
    BSTR* Receive() {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    std::u16string Wide() const { return text_ == nullptr ? u"" : std::u16string(text_, SysStringLen(text_)); }

  private:
    BSTR text_ = nullptr;
};

class XmlTest : public KernelTest {
  protected:
    XmlTest() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    ~XmlTest() override { CoUninitialize(); }

    static Ref<IXMLDOMDocument2> NewDocument() {
        Ref<IXMLDOMDocument2> document;
        CoCreateInstance(kDocumentClass, nullptr, CLSCTX_INPROC_SERVER, kDocument2Id, document.ReceiveAny());
        return document;
    }
    // Null where the text isn't well-formed.
    static Ref<IXMLDOMDocument2> Load(std::u16string_view text) {
        auto document = NewDocument();
        VARIANT_BOOL loaded = VARIANT_FALSE;
        document->loadXML(Text(text).Get(), &loaded);
        return loaded == VARIANT_TRUE ? std::move(document) : Ref<IXMLDOMDocument2>();
    }
    static Ref<IXMLDOMElement> RootOf(IXMLDOMDocument2* document) {
        Ref<IXMLDOMElement> root;
        document->get_documentElement(root.Receive());
        return root;
    }
    // Null where it can't be made.
    static Ref<IXMLDOMNode> NewNode(IXMLDOMDocument2* document, DOMNodeType type, std::u16string_view name,
                                    std::u16string_view uri) {
        VARIANT number{};
        number.vt = VT_I4;
        number.lVal = type;
        Ref<IXMLDOMNode> node;
        document->createNode(number, Text(name).Get(), Text(uri).Get(), node.Receive());
        return node;
    }
    static Ref<IXMLDOMElement> AppendElement(IXMLDOMDocument2* document, IXMLDOMNode* parent, std::u16string_view name,
                                             std::u16string_view uri) {
        const auto node = NewNode(document, NODE_ELEMENT, name, uri);
        EXPECT_EQ(parent->appendChild(node.Get(), nullptr), S_OK);
        Ref<IXMLDOMElement> element;
        node->QueryInterface(kElementId, element.ReceiveAny());
        return element;
    }
    static HRESULT SetAttribute(IXMLDOMElement* element, std::u16string_view name, std::u16string_view value) {
        const Text text(value);
        VARIANT variant{};
        variant.vt = VT_BSTR;
        variant.bstrVal = text.Get();
        return element->setAttribute(Text(name).Get(), variant);
    }
    static HRESULT SetAttributeNode(IXMLDOMDocument2* document, IXMLDOMElement* element, std::u16string_view name,
                                    std::u16string_view uri, std::u16string_view value) {
        const auto node = NewNode(document, NODE_ATTRIBUTE, name, uri);
        node->put_text(Text(value).Get());
        return element->setAttributeNode(static_cast<IXMLDOMAttribute*>(node.Get()), nullptr);
    }
    static std::u16string XmlOf(IXMLDOMNode* node) {
        Text xml;
        node->get_xml(xml.Receive());
        return xml.Wide();
    }
};

}  // namespace host
