// Which namespace a prefix is bound to at a node. What is asked costs by the node's ancestors and their declarations.
#pragma once

#include <string>
#include <string_view>

#include "platform/xml/tree.h"

namespace host {

struct Binding {
    const void* place = nullptr;          // what binds it, to tell bindings apart; null: nothing does
    const std::u16string* uri = nullptr;  // empty: it is bound to no namespace (xmlns="")
};

// The prefix that an attribute declares ("xmlns" declares the empty one); only of attributes that IsDeclaration.
std::u16string_view DeclaredPrefix(const Node* attribute);
bool IsDeclaration(const Node* attribute);

// Where a node's bindings are looked up: itself or, as it isn't an element, its parent. Null: nowhere.
const Node* ScopeElement(const Node* node);

// A binding by the element itself: by an attribute that declares it, or as the prefix of its own name.
Binding BindingOf(const Node* element, std::u16string_view prefix);
// The nearest binding at the element: its own or, `deep`, an ancestor's. A null element binds nothing.
Binding FindBinding(const Node* element, bool deep, std::u16string_view prefix);

}  // namespace host
