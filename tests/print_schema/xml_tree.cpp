#include "tests/print_schema/xml_tree.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "driver/base/com.h"

namespace print_schema {
namespace {

using velmora::ComReference;
using velmora::OwnedBstr;
using velmora::OwnedVariant;

constexpr std::basic_string_view<WCHAR> kDefaultDeclaration = TEXT("xmlns");
constexpr std::basic_string_view<WCHAR> kDeclaration = TEXT("xmlns:");

// What a getter of texts gives; empty where there is nothing.
template <class Getter>
WideText TextOf(IXMLDOMNode* node, Getter getter) {
    OwnedBstr text;
    if (FAILED((node->*getter)(text.Receive()))) {
        throw std::runtime_error("the DOM doesn't tell a text");
    }
    return {text.Text(), text.Length()};
}

WideText ValueOf(IXMLDOMNode* node) {
    OwnedVariant value;
    if (node->get_nodeValue(value.Receive()) != S_OK || value.Text() == nullptr) {
        throw std::runtime_error("a node has no value");
    }
    return value.Text();
}

DOMNodeType TypeOf(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    node->get_nodeType(&type);
    return type;
}

void ReadElement(IXMLDOMNode* element, XmlNode* node) {
    node->uri = TextOf(element, &IXMLDOMNode::get_namespaceURI);
    node->prefix = TextOf(element, &IXMLDOMNode::get_prefix);
    node->name = TextOf(element, &IXMLDOMNode::get_baseName);
    node->bindings.push_back({node->prefix, node->uri});
    ComReference<IXMLDOMNamedNodeMap> map;
    LONG count = 0;
    if (element->get_attributes(map.Receive()) != S_OK || map->get_length(&count) != S_OK) {
        throw std::runtime_error("an element doesn't tell its attributes");
    }
    for (LONG i = 0; i < count; ++i) {
        ComReference<IXMLDOMNode> attribute;
        if (map->get_item(i, attribute.Receive()) != S_OK) {
            continue;
        }
        // By its written name: not every DOM knows the namespace of an attribute that was made and set as a node, nor
        // gives the default namespace's declaration as an item.
        WideText name = TextOf(attribute.Get(), &IXMLDOMNode::get_nodeName);
        WideText value = ValueOf(attribute.Get());
        if (name.starts_with(kDeclaration)) {
            node->bindings.push_back({name.substr(kDeclaration.size()), std::move(value)});
        } else if (name == kDefaultDeclaration) {
            node->bindings.push_back({{}, std::move(value)});
        } else {
            node->attributes.push_back({std::move(name), std::move(value)});
        }
    }
    std::stable_sort(node->attributes.begin(), node->attributes.end(),
                     [](const XmlAttribute& left, const XmlAttribute& right) { return left.name < right.name; });
}

XmlNode ReadNode(IXMLDOMNode* node, size_t parent, size_t depth) {
    XmlNode read = {TypeOf(node), parent, depth, {}, {}, {}, {}, {}, {}};
    switch (read.type) {
        case NODE_ELEMENT:
            ReadElement(node, &read);
            break;
        case NODE_PROCESSING_INSTRUCTION:
            read.name = TextOf(node, &IXMLDOMNode::get_nodeName);
            [[fallthrough]];
        case NODE_COMMENT:
        case NODE_TEXT:
            read.value = ValueOf(node);
            break;
        case NODE_CDATA_SECTION:
            read.type = NODE_TEXT;
            read.value = ValueOf(node);
            break;
        default:
            throw std::runtime_error("a document has a node of type " + std::to_string(read.type));
    }
    return read;
}

}  // namespace

std::string Printable(const WideText& text) {
    std::string printable;
    for (const WCHAR character : text) {
        if (character >= 0x20 && character < 0x7F && character != '\\') {
            printable += static_cast<char>(character);
        } else {
            std::array<char, 8> escaped;
            snprintf(escaped.data(), escaped.size(), "\\u%04X", static_cast<unsigned>(character));
            printable += escaped.data();
        }
    }
    return printable;
}

XmlTree::XmlTree(IXMLDOMDocument2* document) {
    struct Parent {
        ComReference<IXMLDOMNode> node;
        size_t place;
    };
    std::vector<Parent> parents;
    ComReference<IXMLDOMNode> node;
    document->get_firstChild(node.Receive());
    while (node) {
        const size_t parent = parents.empty() ? XmlNode::kDocument : parents.back().place;
        XmlNode read = ReadNode(node.Get(), parent, parents.size());
        if (read.type == NODE_TEXT && !nodes_.empty() && nodes_.back().type == NODE_TEXT &&
            nodes_.back().parent == parent) {
            nodes_.back().value += read.value;
        } else {
            nodes_.push_back(std::move(read));
        }
        ComReference<IXMLDOMNode> next;
        node->get_firstChild(next.Receive());
        parents.push_back({std::move(node), nodes_.size() - 1});
        // Without a child, on to what follows the node or one of its parents.
        while (!next && !parents.empty()) {
            parents.back().node->get_nextSibling(next.Receive());
            parents.pop_back();
        }
        node = std::move(next);
    }
}

std::optional<WideText> XmlTree::Resolve(size_t element, const WideText& prefix) const {
    for (size_t place = element; place != XmlNode::kDocument; place = nodes_[place].parent) {
        for (const XmlBinding& binding : nodes_[place].bindings) {
            if (binding.prefix == prefix) {
                return binding.uri;
            }
        }
    }
    return prefix.empty() ? std::optional<WideText>(WideText()) : std::nullopt;
}

}  // namespace print_schema
