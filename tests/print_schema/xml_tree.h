// XML documents as tests read them: what is written in them, by published calls of the DOM that every host answers
// alike.
#pragma once

#include <windows.h>

#include <msxml2.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace print_schema {

using WideText = std::basic_string<WCHAR>;

// Printable ASCII but the backslash as it is; every other code unit as \uXXXX.
std::string Printable(const WideText& text);

struct XmlAttribute {
    WideText name;  // as written, with its prefix
    WideText value;
};

struct XmlBinding {
    WideText prefix;  // empty: the default namespace
    WideText uri;     // empty: no namespace
};

struct XmlNode {
    static constexpr size_t kDocument = static_cast<size_t>(-1);

    DOMNodeType type;  // element, text, comment or processing instruction
    size_t parent;     // its place among the nodes; kDocument for what stands outside of the root
    size_t depth;      // parents above it
    WideText uri;      // of an element; empty for no namespace
    WideText prefix;   // of an element; empty for none
    WideText name;     // an element's local name, a processing instruction's target
    WideText value;    // of other nodes than elements
    // Of an element, in the order of their names. The default namespace's declaration is no attribute.
    std::vector<XmlAttribute> attributes;
    // The prefix of an element counts as bound there, whatever it declares; then come its declarations.
    std::vector<XmlBinding> bindings;
};

// A document's nodes in document order. Text nodes and CDATA sections that follow each other are one text.
class XmlTree {
  public:
    // Throws std::runtime_error where the DOM doesn't tell something, or has a node of another kind.
    explicit XmlTree(IXMLDOMDocument2* document);

    const std::vector<XmlNode>& Nodes() const { return nodes_; }

    // The namespace that a prefix stands for in an element (a place among the nodes, or kDocument); none where nothing
    // binds it. Without a declaration the empty prefix stands for no namespace.
    std::optional<WideText> Resolve(size_t element, const WideText& prefix) const;

  private:
    std::vector<XmlNode> nodes_;
};

}  // namespace print_schema
