#include "platform/xml/tree.h"

#include <utility>

#include "platform/kernel/heap.h"
#include "platform/xml/document.h"

namespace host {
namespace {

void LinkBefore(Node** first, Node** last, Node* node, Node* before) {
    node->next = before;
    node->previous = before != nullptr ? before->previous : *last;
    (node->previous != nullptr ? node->previous->next : *first) = node;
    (before != nullptr ? before->previous : *last) = node;
}

void Unlink(Node** first, Node** last, Node* node) {
    (node->previous != nullptr ? node->previous->next : *first) = node->next;
    (node->next != nullptr ? node->next->previous : *last) = node->previous;
    node->previous = nullptr;
    node->next = nullptr;
    node->parent = nullptr;
}

// Memory of freed nodes.
class FreedNodes {
  public:
    static constexpr size_t kNodeSize = sizeof(ElementNode);

    FreedNodes() = default;
    FreedNodes(const FreedNodes&) = delete;
    FreedNodes& operator=(const FreedNodes&) = delete;
    ~FreedNodes() {
        most_ = 0;  // what the thread frees from here on isn't kept
        while (void* node = Take()) {
            ::operator delete(node);
        }
    }

    void* Take() {
        Freed* const node = first_;
        if (node != nullptr) {
            first_ = node->next;
            --count_;
        }
        return node;
    }

    bool Keep(void* node) {
        if (count_ >= most_) {
            return false;
        }
        first_ = new (node) Freed{first_};
        ++count_;
        return true;
    }

  private:
    struct Freed {
        Freed* next;
    };

    Freed* first_ = nullptr;
    size_t count_ = 0;
    size_t most_ = kMayKeepFreedMemory ? 4096 : 0;
};

thread_local FreedNodes freedNodes;

bool IsAnyHeld(const Node* root) {
    for (auto* node = const_cast<Node*>(root); node != nullptr; node = NextInTree(root, node)) {
        if (node->references != 0) {
            return true;
        }
        for (const Node* attribute = node->firstAttribute; attribute != nullptr; attribute = attribute->next) {
            if (attribute->references != 0) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

Node::Node(Document* document, DOMNodeType type, const Name* name) : document(document), name(name), type(type) {
    if (type != NODE_DOCUMENT) {
        document->AddMade(this);
    }
}

Node::~Node() {
    if (type != NODE_DOCUMENT) {
        document->RemoveMade(this);
    }
}

void* Node::operator new(size_t size) {
    void* const kept = size == FreedNodes::kNodeSize ? freedNodes.Take() : nullptr;
    return kept != nullptr ? kept : ::operator new(size);
}

void Node::operator delete(void* node, size_t size) {
    if (size != FreedNodes::kNodeSize || !freedNodes.Keep(node)) {
        ::operator delete(node);
    }
}

void InsertChild(Node* parent, Node* child, Node* before) {
    child->parent = parent;
    LinkBefore(&parent->firstChild, &parent->lastChild, child, before);
    parent->document->NoteChange();
}

void InsertAttribute(Node* element, Node* attribute, Node* former) {
    Node* before = nullptr;
    if (former != nullptr) {
        before = former->next;
        Detach(former);
    }
    attribute->parent = element;
    LinkBefore(&element->firstAttribute, &element->lastAttribute, attribute, before);
    element->hasDeclarations |= attribute->name->uri == element->document->Names().XmlnsUri();
    element->document->NoteChange();
}

void Detach(Node* node) {
    Node* parent = node->parent;
    if (node->type == NODE_ATTRIBUTE) {
        Unlink(&parent->firstAttribute, &parent->lastAttribute, node);
    } else {
        Unlink(&parent->firstChild, &parent->lastChild, node);
    }
    parent->document->NoteChange();
}

void Adopt(Node* root, Document* document) {
    Document* former = root->document;
    for (Node* node = root; node != nullptr; node = NextInTree(root, node)) {
        former->MoveMade(node, document);
        for (Node* attribute = node->firstAttribute; attribute != nullptr; attribute = attribute->next) {
            former->MoveMade(attribute, document);
        }
    }
    former->FreeUnlessInUse();
}

void FreeUnlessHeld(Node* root) {
    if (IsAnyHeld(root)) {
        return;
    }
    // From the leaves up.
    for (Node* node = root; node != nullptr;) {
        if (node->firstChild != nullptr) {
            node = node->firstChild;
            continue;
        }
        Node* parent = node == root ? nullptr : node->parent;
        if (parent != nullptr) {
            parent->firstChild = node->next;
        }
        while (Node* attribute = node->firstAttribute) {
            node->firstAttribute = attribute->next;
            delete attribute;
        }
        delete node;
        node = parent;
    }
}

Node* NextInTree(const Node* root, Node* node) {
    if (node->firstChild != nullptr) {
        return node->firstChild;
    }
    while (node != root && node->next == nullptr) {
        node = node->parent;
    }
    return node == root ? nullptr : node->next;
}

Node* FindAttribute(const Node* element, std::u16string_view written) {
    Node* attribute = element->firstAttribute;
    while (attribute != nullptr && !SameText(attribute->name->written, written)) {
        attribute = attribute->next;
    }
    return attribute;
}

bool IsWhiteSpace(std::u16string_view text) {
    return text.find_first_not_of(kWhiteSpace) == std::u16string_view::npos;
}

bool KeepsWhiteSpace(const Node* node) {
    for (; node != nullptr; node = node->parent) {
        if (const Node* space = FindAttribute(node, u"xml:space")) {
            return space->value == u"preserve";
        }
    }
    return false;
}

std::u16string TextBelow(const Node* root) {
    std::u16string text;
    for (auto* node = const_cast<Node*>(root); node != nullptr; node = NextInTree(root, node)) {
        if (node->type == NODE_TEXT || node->type == NODE_CDATA_SECTION) {
            text += node->value;
        }
    }
    return text;
}

}  // namespace host
