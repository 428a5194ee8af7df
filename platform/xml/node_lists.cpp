// Children and attributes as lists that programs walk.
#include <utility>

#include "platform/xml/document.h"
#include "platform/xml/node.h"

namespace host {
namespace {

// Nodes that are linked as siblings, by index. Remembers where it was, so that walking them by index costs a step each;
// what is changed meanwhile is seen.
class Siblings {
  public:
    Siblings(Node* owner, Node* Node::*first) : owner_(owner), first_(first) { HoldNode(owner_); }
    ~Siblings() { LetNodeGo(owner_); }
    Siblings(const Siblings&) = delete;
    Siblings& operator=(const Siblings&) = delete;

    const Node* Owner() const { return owner_; }

    // Null: there are fewer.
    Node* At(LONG index) {
        if (index < 0) {
            return nullptr;
        }
        if (node_ == nullptr || index < index_ || changes_ != owner_->document->Changes()) {
            node_ = owner_->*first_;
            index_ = 0;
            changes_ = owner_->document->Changes();
        }
        Node* node = node_;
        for (LONG i = index_; node != nullptr && i < index; ++i) {
            node = node->next;
        }
        if (node != nullptr) {
            node_ = node;
            index_ = index;
        }
        return node;
    }

    LONG Count() const {
        LONG count = 0;
        for (const Node* node = owner_->*first_; node != nullptr; node = node->next) {
            ++count;
        }
        return count;
    }

    Node* Next() {
        Node* node = At(position_);
        position_ += node != nullptr ? 1 : 0;
        return node;
    }
    void Reset() { position_ = 0; }

  private:
    Node* owner_;
    Node* Node::*first_;
    Node* node_ = nullptr;  // at index_, as long as there are no more changes
    LONG index_ = 0;
    uint64_t changes_ = 0;
    LONG position_ = 0;  // of the walk
};

// What the two kinds of list have in common.
template <class Interface, const IID& interfaceId>
class SiblingList : public BlockObject<Interface> {
  public:
    SiblingList(Node* owner, Node* Node::*first) : siblings_(owner, first) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID asked, void** object) override {
        return GiveInterface(this, asked, {&IID_IUnknown, &kIidDispatch, &interfaceId}, object);
    }
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** out) override {
        return GiveNode(siblings_.At(index), out);
    }
    HRESULT STDMETHODCALLTYPE get_length(LONG* out) override { return GiveValue(siblings_.Count(), out); }
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** out) override {
        return out == nullptr ? E_INVALIDARG : GiveNode(siblings_.Next(), out);
    }
    HRESULT STDMETHODCALLTYPE reset() override {
        siblings_.Reset();
        return S_OK;
    }

  protected:
    Siblings siblings_;
};

using ChildList = SiblingList<IXMLDOMNodeList, kIidNodeList>;

class AttributeMap final : public SiblingList<IXMLDOMNamedNodeMap, kIidNamedNodeMap> {
  public:
    using SiblingList::SiblingList;

    HRESULT STDMETHODCALLTYPE getNamedItem(BSTR written, IXMLDOMNode** out) override {
        return written == nullptr ? E_INVALIDARG : GiveNode(FindAttribute(siblings_.Owner(), TextOf(written)), out);
    }
    HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR base, BSTR uri, IXMLDOMNode** out) override {
        if (base == nullptr) {
            return E_INVALIDARG;
        }
        Node* attribute = siblings_.Owner()->firstAttribute;
        while (attribute != nullptr &&
               (attribute->name->Base() != TextOf(base) || *attribute->name->uri != TextOf(uri))) {
            attribute = attribute->next;
        }
        return GiveNode(attribute, out);
    }
};

template <class List, class Interface>
HRESULT GiveList(Node* owner, Node* Node::*first, Interface** out) {
    *out = new (std::nothrow) List(owner, first);
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

HRESULT GiveChildren(Node* node, IXMLDOMNodeList** out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    if (node->type == NODE_ATTRIBUTE) {
        *out = nullptr;
        return E_NOTIMPL;
    }
    return GiveList<ChildList>(node, &Node::firstChild, out);
}

HRESULT GiveAttributes(Node* node, IXMLDOMNamedNodeMap** out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    if (node->type != NODE_ELEMENT) {
        *out = nullptr;
        return S_FALSE;
    }
    return GiveList<AttributeMap>(node, &Node::firstAttribute, out);
}

}  // namespace host
