// Documents of libxml2, which what the driver does with its own is measured against.
#pragma once

#include <libxml/tree.h>
#include <msxml2.h>

#include <memory>
#include <string>
#include <vector>

namespace velmora {

// COM on the thread that the works run on, while it lives.
struct ComUse {
    ComUse();
    ~ComUse();
    ComUse(const ComUse&) = delete;
    ComUse& operator=(const ComUse&) = delete;
};

struct PlainDocumentDeleter {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using PlainDocument = std::unique_ptr<xmlDoc, PlainDocumentDeleter>;

struct PlainTextDeleter {
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using PlainText = std::unique_ptr<xmlChar, PlainTextDeleter>;

// A text as libxml2 takes it.
inline const xmlChar* Plain(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

// Ends the program where the text isn't well-formed.
PlainDocument ParsePlain(const std::string& text);

// The text of a node and all below it, UTF-8.
std::string TextOf(IXMLDOMNode* node);

// Canonical XML 1.0.
std::string CanonicalText(xmlDoc* document);

// Of the nodes from this one on, and of all below them.
int CountElements(const xmlNode* first);

// Reads every name, attribute and text of a document once; gives the bytes of the texts.
size_t WalkPlain(const xmlDoc* document);

// A document as a flat list of what it is made of, to be built again: names are a namespace and a local name, and a
// prefix is looked up for each, in the values of attributes and elements too.
class PlainRecording {
  public:
    explicit PlainRecording(const xmlDoc* document);
    PlainDocument Build() const;

  private:
    // A name where `uri` isn't empty, else a text.
    struct Value {
        std::string uri;
        std::string text;
    };
    struct Attribute {
        Value name;
        Value value;
    };
    struct Record {
        xmlElementType type;
        int leaves;  // elements that end before
        Value name;  // of elements, and what they declare and hold
        std::vector<Attribute> declarations;
        std::vector<Attribute> attributes;
        Value text;  // of texts and comments
    };

    void Add(const xmlNode* node, int* leaves);
    static Value ValueOf(const xmlNode* node, const xmlChar* written);

    std::vector<Record> records_;
};

}  // namespace velmora
