// The tree of a document's nodes. Nothing here goes deeper into the stack where the tree is deep.
#pragma once

#include <msxml2.h>

#include <string>
#include <string_view>

#include "platform/xml/names.h"

namespace host {

class Document;

// What every node is. The object that programs see is made of it (node.h): a node is one object as long as it lives.
// All nodes of a document go with the last reference to any of them; one that is out of the tree goes with the last
// reference to it, if none is held to what is below it.
struct Node {
    Node(Document* document, DOMNodeType type, const Name* name);
    virtual ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    // Documents come and go with hundreds of nodes: a thread keeps the memory of freed ones.
    static void* operator new(size_t size);
    static void operator delete(void* node, size_t size);

    virtual IXMLDOMNode* Object() = 0;  // not a reference

    Document* document;      // that has made it, or has taken it over
    Node* parent = nullptr;  // of an attribute, its element; null out of the tree and for the document
    Node* previous = nullptr;
    Node* next = nullptr;
    Node* firstChild = nullptr;
    Node* lastChild = nullptr;
    Node* firstAttribute = nullptr;
    Node* lastAttribute = nullptr;
    Node* previousMade = nullptr;  // all nodes of the document
    Node* nextMade = nullptr;
    const Name* name;      // of elements, attributes and processing instructions; else null
    std::u16string value;  // of all but elements and the document
    ULONG references = 0;
    DOMNodeType type;
    bool hasDeclarations = false;  // an element that has, or has had, attributes which declare prefixes
};

// Puts the child, which is in no tree, before `before`, or at the end where that is null.
void InsertChild(Node* parent, Node* child, Node* before);
// At the end, or in the place of `former`, which leaves the element.
void InsertAttribute(Node* element, Node* attribute, Node* former);
// Takes a child or an attribute out of its parent.
void Detach(Node* node);
// The node and all below it move to another document.
void Adopt(Node* root, Document* document);
// Frees a node that is in no tree, with all below it, unless a reference is held to any of them.
void FreeUnlessHeld(Node* root);

// The next node in document order among those below the root, attributes left out; null at the end.
Node* NextInTree(const Node* root, Node* node);

// The attribute of this written name, or null.
Node* FindAttribute(const Node* element, std::u16string_view written);

inline constexpr std::u16string_view kWhiteSpace = u" \t\r\n";
bool IsWhiteSpace(std::u16string_view text);
// Whether xml:space asks for white space to be kept there; the nearest one counts.
bool KeepsWhiteSpace(const Node* node);
// The texts of all nodes below the node in document order.
std::u16string TextBelow(const Node* node);

}  // namespace host
