#include "platform/xml/namespace_scope.h"

#include "platform/xml/document.h"

namespace host {

bool IsDeclaration(const Node* attribute) {
    return attribute->name->uri == attribute->document->Names().XmlnsUri();
}

std::u16string_view DeclaredPrefix(const Node* attribute) {
    return attribute->name->prefixChars == 0 ? std::u16string_view() : attribute->name->Base();
}

const Node* ScopeElement(const Node* node) {
    return node->type == NODE_ELEMENT ? node : node->type == NODE_DOCUMENT ? nullptr : node->parent;
}

Binding BindingOf(const Node* element, std::u16string_view prefix) {
    if (element->hasDeclarations) {
        for (const Node* attribute = element->firstAttribute; attribute != nullptr; attribute = attribute->next) {
            if (IsDeclaration(attribute) && SameText(DeclaredPrefix(attribute), prefix)) {
                return {attribute, &attribute->value};
            }
        }
    }
    return SameText(element->name->Prefix(), prefix) ? Binding{element, element->name->uri} : Binding{};
}

Binding FindBinding(const Node* element, bool deep, std::u16string_view prefix) {
    for (; element != nullptr && element->type == NODE_ELEMENT; element = element->parent) {
        if (const Binding binding = BindingOf(element, prefix); binding.place != nullptr || !deep) {
            return binding;
        }
    }
    return {};
}

}  // namespace host
