#include "bench/plain_document.h"

#include <libxml/c14n.h>
#include <libxml/parser.h>
#include <objbase.h>

#include "bench/bench.h"
#include "driver/base/com.h"
#include "platform/kernel/text.h"

namespace velmora {
namespace {

std::string OwnedText(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : "";
}

size_t WalkNodes(const xmlNode* first) {
    size_t bytes = 0;
    for (const xmlNode* node = first; node; node = node->next) {
        if (node->type != XML_ELEMENT_NODE) {
            bytes += static_cast<size_t>(xmlStrlen(node->content));
            continue;
        }
        bytes += static_cast<size_t>(xmlStrlen(node->name)) + (node->ns ? xmlStrlen(node->ns->href) : 0);
        for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
            const PlainText value(xmlNodeListGetString(node->doc, attribute->children, 1));
            bytes += static_cast<size_t>(xmlStrlen(attribute->name) + xmlStrlen(value.get()));
        }
        bytes += WalkNodes(node->children);
    }
    return bytes;
}

// As it is written at the node.
std::string Written(xmlNode* node, const std::string& uri, const std::string& text) {
    if (uri.empty()) {
        return text;
    }
    const xmlNs* space = xmlSearchNsByHref(node->doc, node, Plain(uri.c_str()));
    return std::string(reinterpret_cast<const char*>(space->prefix)) + ":" + text;
}

}  // namespace

ComUse::ComUse() {
    Require(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)), "COM can't be used");
}

ComUse::~ComUse() {
    CoUninitialize();
}

PlainDocument ParsePlain(const std::string& text) {
    PlainDocument document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8", XML_PARSE_NONET));
    Require(document != nullptr, "a document isn't well-formed");
    return document;
}

std::string TextOf(IXMLDOMNode* node) {
    OwnedBstr text;
    Require(node && node->get_xml(text.Receive()) == S_OK, "a document can't be written");
    return host::ToUtf8(text.Text());
}

std::string CanonicalText(xmlDoc* document) {
    xmlChar* text = nullptr;
    const int size = xmlC14NDocDumpMemory(document, nullptr, XML_C14N_1_0, nullptr, 1, &text);
    const PlainText owned(text);
    Require(size > 0, "a document has no canonical text");
    return {reinterpret_cast<const char*>(text), static_cast<size_t>(size)};
}

int CountElements(const xmlNode* first) {
    int count = 0;
    for (const xmlNode* node = first; node; node = node->next) {
        count += (node->type == XML_ELEMENT_NODE ? 1 : 0) + CountElements(node->children);
    }
    return count;
}

size_t WalkPlain(const xmlDoc* document) {
    return WalkNodes(document->children);
}

PlainRecording::PlainRecording(const xmlDoc* document) {
    int leaves = 0;
    for (const xmlNode* node = document->children; node; node = node->next) {
        if (node->type == XML_ELEMENT_NODE) {
            Add(node, &leaves);
        }
    }
}

PlainRecording::Value PlainRecording::ValueOf(const xmlNode* node, const xmlChar* written) {
    xmlChar* prefix = nullptr;
    const PlainText local(xmlSplitQName2(written, &prefix));
    const PlainText owned(prefix);
    const xmlNs* space = local ? xmlSearchNs(node->doc, const_cast<xmlNode*>(node), prefix) : nullptr;
    return space ? Value{OwnedText(space->href), OwnedText(local.get())} : Value{"", OwnedText(written)};
}

void PlainRecording::Add(const xmlNode* node, int* leaves) {
    Record record = {node->type, *leaves, {}, {}, {}, {}};
    *leaves = 0;
    if (node->type != XML_ELEMENT_NODE) {
        record.text =
            node->type == XML_TEXT_NODE ? ValueOf(node->parent, node->content) : Value{"", OwnedText(node->content)};
        records_.push_back(std::move(record));
        return;
    }
    record.name = {node->ns ? OwnedText(node->ns->href) : "", OwnedText(node->name)};
    for (const xmlNs* space = node->nsDef; space; space = space->next) {
        record.declarations.push_back({{"", OwnedText(space->prefix)}, {"", OwnedText(space->href)}});
    }
    for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
        const PlainText value(xmlNodeListGetString(node->doc, attribute->children, 1));
        record.attributes.push_back({{attribute->ns ? OwnedText(attribute->ns->href) : "", OwnedText(attribute->name)},
                                     ValueOf(node, value.get())});
    }
    records_.push_back(std::move(record));
    for (const xmlNode* child = node->children; child; child = child->next) {
        Add(child, leaves);
    }
    ++*leaves;
}

PlainDocument PlainRecording::Build() const {
    PlainDocument document(xmlNewDoc(Plain("1.0")));
    xmlNode* parent = nullptr;
    for (const Record& record : records_) {
        for (int i = 0; i < record.leaves; ++i) {
            parent = parent->parent;
        }
        if (record.type != XML_ELEMENT_NODE) {
            const std::string text = Written(parent, record.text.uri, record.text.text);
            xmlAddChild(parent, record.type == XML_COMMENT_NODE ? xmlNewDocComment(document.get(), Plain(text.c_str()))
                                                                : xmlNewDocText(document.get(), Plain(text.c_str())));
            continue;
        }
        xmlNode* made = xmlNewDocNode(document.get(), nullptr, Plain(record.name.text.c_str()), nullptr);
        if (parent) {
            xmlAddChild(parent, made);
        } else {
            xmlDocSetRootElement(document.get(), made);
        }
        for (const Attribute& declaration : record.declarations) {
            xmlNewNs(made, Plain(declaration.value.text.c_str()), Plain(declaration.name.text.c_str()));
        }
        xmlSetNs(made, xmlSearchNsByHref(document.get(), made, Plain(record.name.uri.c_str())));
        for (const Attribute& attribute : record.attributes) {
            const std::string value = Written(made, attribute.value.uri, attribute.value.text);
            xmlNs* space = attribute.name.uri.empty()
                               ? nullptr
                               : xmlSearchNsByHref(document.get(), made, Plain(attribute.name.uri.c_str()));
            xmlNewNsProp(made, space, Plain(attribute.name.text.c_str()), Plain(value.c_str()));
        }
        parent = made;
    }
    return document;
}

}  // namespace velmora
