#include "tests/contract/canonical_document.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"
#include "tests/print_schema/xml_tree.h"

namespace contract {
namespace {

using print_schema::XmlAttribute;
using print_schema::XmlBinding;
using print_schema::XmlNode;
using print_schema::XmlTree;

std::string NamedText(std::string_view name, const WideText& text) {
    return std::string(name) + "=\"" + Printable(text) + '"';
}

// What an element binds that isn't bound so in its parent, as attributes.
std::vector<XmlAttribute> NewBindings(const XmlTree& tree, const XmlNode& element) {
    std::vector<XmlAttribute> bindings;
    for (const XmlBinding& binding : element.bindings) {
        const bool isBound = tree.Resolve(element.parent, binding.prefix) == binding.uri;
        const auto sameName = [&](const XmlAttribute& told) { return told.name == binding.prefix; };
        if (!binding.prefix.empty() && !isBound && std::none_of(bindings.begin(), bindings.end(), sameName)) {
            bindings.push_back({binding.prefix, binding.uri});
        }
    }
    std::sort(bindings.begin(), bindings.end(),
              [](const XmlAttribute& left, const XmlAttribute& right) { return left.name < right.name; });
    return bindings;
}

}  // namespace

std::string CanonicalText(IXMLDOMDocument2* document) {
    const XmlTree tree(document);
    std::string lines;
    const auto writeLine = [&lines](size_t indent, const std::string& line) {
        lines += std::string(indent, ' ') + line + '\n';
    };
    for (const XmlNode& node : tree.Nodes()) {
        const size_t indent = 2 * node.depth;
        switch (node.type) {
            case NODE_PROCESSING_INSTRUCTION:
                writeLine(indent, '?' + Printable(node.name) + ' ' + Printable(node.value));
                break;
            case NODE_COMMENT:
                writeLine(indent, '#' + Printable(node.value));
                break;
            case NODE_TEXT:
                if (!node.value.empty()) {
                    writeLine(indent, '"' + Printable(node.value) + '"');
                }
                break;
            default:
                writeLine(indent, '{' + Printable(node.uri) + '}' + Printable(node.name));
                for (const XmlAttribute& binding : NewBindings(tree, node)) {
                    writeLine(indent + 2, NamedText("xmlns:" + Printable(binding.name), binding.value));
                }
                for (const XmlAttribute& attribute : node.attributes) {
                    writeLine(indent + 2, NamedText(Printable(attribute.name), attribute.value));
                }
        }
    }
    return lines;
}

void RecordDocument(IXMLDOMDocument2* document) {
    const std::string folder = '"' + Printable(Variable(TEXT("APPDATA")));
    std::istringstream lines(CanonicalText(document));
    for (std::string line; std::getline(lines, line);) {
        const size_t place = folder.size() > 1 ? line.find(folder) : std::string::npos;
        Record(place == std::string::npos ? line : line.replace(place + 1, folder.size() - 1, "APPDATA"));
    }
}

}  // namespace contract
