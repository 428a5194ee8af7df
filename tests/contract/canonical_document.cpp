#include "tests/contract/canonical_document.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/contract/transcript.h"

namespace contract {
namespace {

// What a getter of texts gives; empty where there is nothing.
template <class Getter>
WideText TextOf(IXMLDOMNode* node, Getter getter) {
    Bstr text;
    if (FAILED((node->*getter)(text.Receive()))) {
        throw std::runtime_error("the DOM doesn't tell a text");
    }
    return text.Text();
}

WideText ValueOf(IXMLDOMNode* node) {
    Variant value;
    if (node->get_nodeValue(value.Receive()) != S_OK || value.Get().vt != VT_BSTR) {
        throw std::runtime_error("a node has no value");
    }
    return WideText(value.Get().bstrVal, SysStringLen(value.Get().bstrVal));
}

DOMNodeType TypeOf(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    node->get_nodeType(&type);
    return type;
}

using NamedTexts = std::map<WideText, WideText>;

constexpr std::basic_string_view<WCHAR> kDeclaration = TEXT("xmlns:");

// The attributes by their written names, declarations of prefixes among them. The default namespace's isn't: not every
// DOM gives it as an item.
NamedTexts AttributesOf(IXMLDOMNode* element) {
    NamedTexts attributes;
    ComReference<IXMLDOMNamedNodeMap> map;
    LONG count = 0;
    if (element->get_attributes(map.Receive()) != S_OK || map->get_length(&count) != S_OK) {
        throw std::runtime_error("an element doesn't tell its attributes");
    }
    for (LONG i = 0; i < count; ++i) {
        ComReference<IXMLDOMNode> attribute;
        if (map->get_item(i, attribute.Receive()) == S_OK) {
            attributes.emplace(TextOf(attribute.Get(), &IXMLDOMNode::get_nodeName), ValueOf(attribute.Get()));
        }
    }
    attributes.erase(TEXT("xmlns"));
    return attributes;
}

// Bindings of prefixes to namespaces, inner ones behind outer ones.
using Scope = std::vector<std::pair<WideText, WideText>>;

class Writer {
  public:
    explicit Writer(IXMLDOMDocument2* document) {
        ComReference<IXMLDOMNode> node;
        document->get_firstChild(node.Receive());
        while (node) {
            const size_t outerScope = scope_.size();
            WriteNode(node.Get());
            ComReference<IXMLDOMNode> next;
            node->get_firstChild(next.Receive());
            parents_.push_back({std::move(node), outerScope});
            // Without a child, on to what follows the node or one of its parents.
            while (!next && !parents_.empty()) {
                if (TypeOf(parents_.back().node.Get()) == NODE_ELEMENT) {
                    EndText();
                }
                scope_.resize(parents_.back().outerScope);
                parents_.back().node->get_nextSibling(next.Receive());
                parents_.pop_back();
            }
            node = std::move(next);
        }
    }

    const std::string& Lines() const { return lines_; }

  private:
    struct Parent {
        ComReference<IXMLDOMNode> node;
        size_t outerScope;  // bindings outside of it
    };

    void WriteLine(const std::string& line) { lines_ += std::string(2 * parents_.size(), ' ') + line + '\n'; }

    void EndText() {
        if (!text_.empty()) {
            WriteLine('"' + Printable(text_) + '"');
            text_.clear();
        }
    }

    void WriteNode(IXMLDOMNode* node) {
        const DOMNodeType type = TypeOf(node);
        if (type == NODE_TEXT || type == NODE_CDATA_SECTION) {
            text_ += ValueOf(node);
            return;
        }
        EndText();
        switch (type) {
            case NODE_PROCESSING_INSTRUCTION:
                WriteLine('?' + Printable(TextOf(node, &IXMLDOMNode::get_nodeName)) + ' ' + Printable(ValueOf(node)));
                break;
            case NODE_COMMENT:
                WriteLine('#' + Printable(ValueOf(node)));
                break;
            case NODE_ELEMENT:
                WriteElement(node);
                break;
            default:
                throw std::runtime_error("a document has a node of type " + std::to_string(type));
        }
    }

    void WriteElement(IXMLDOMNode* element) {
        const WideText uri = TextOf(element, &IXMLDOMNode::get_namespaceURI);
        const WideText prefix = TextOf(element, &IXMLDOMNode::get_prefix);
        WriteLine('{' + Printable(uri) + '}' + Printable(TextOf(element, &IXMLDOMNode::get_baseName)));
        NamedTexts bindings;
        if (!prefix.empty()) {
            bindings.emplace(prefix, uri);
        }
        NamedTexts attributes = AttributesOf(element);
        std::erase_if(attributes, [&bindings](const auto& attribute) {
            const bool declaration = attribute.first.starts_with(kDeclaration);
            if (declaration) {
                bindings.emplace(attribute.first.substr(kDeclaration.size()), attribute.second);
            }
            return declaration;
        });
        for (const auto& binding : bindings) {
            const auto former = std::find_if(scope_.rbegin(), scope_.rend(),
                                             [&](const auto& outer) { return outer.first == binding.first; });
            if (former == scope_.rend() || former->second != binding.second) {
                scope_.push_back(binding);
                WriteNamedText("xmlns:" + Printable(binding.first), binding.second);
            }
        }
        for (const auto& [name, value] : attributes) {
            WriteNamedText(Printable(name), value);
        }
    }

    void WriteNamedText(const std::string& name, const WideText& text) {
        WriteLine("  " + name + "=\"" + Printable(text) + '"');
    }

    std::string lines_;
    WideText text_;  // of the text nodes before the next other node
    Scope scope_;
    std::vector<Parent> parents_;
};

}  // namespace

std::string CanonicalText(IXMLDOMDocument2* document) {
    return Writer(document).Lines();
}

void RecordDocument(IXMLDOMDocument2* document) {
    std::istringstream lines(CanonicalText(document));
    for (std::string line; std::getline(lines, line);) {
        Record(line);
    }
}

}  // namespace contract
