#include "platform/xml/document.h"

#include <mutex>
#include <unordered_set>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"
#include "platform/xml/classes.h"
#include "platform/xml/parser.h"

namespace host {
namespace {

// --- All documents, for the ledger

struct Documents {
    std::mutex mutex;
    std::unordered_set<Document*> all;
};

std::vector<std::string> HeldNodes();
void FreeAllDocuments();

Documents& TheDocuments() {
    static Documents& documents = *[] {
        AddOpenList({HeldNodes, FreeAllDocuments});
        return new Documents;
    }();
    return documents;
}

std::vector<std::string> HeldNodes() {
    std::vector<std::string> lines;
    Documents& documents = TheDocuments();
    std::lock_guard lock(documents.mutex);
    for (const Document* document : documents.all) {
        document->AddHeld(&lines);
    }
    return lines;
}

void FreeAllDocuments() {
    std::unordered_set<Document*> left;
    {
        Documents& documents = TheDocuments();
        std::lock_guard lock(documents.mutex);
        left = documents.all;
    }
    for (Document* document : left) {
        document->Free();
    }
}

// --- Making nodes

class ParseErrorObject final : public BlockObject<IXMLDOMParseError> {
  public:
    explicit ParseErrorObject(const ParseFault& fault) : fault_(fault) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        return GiveInterface(this, interfaceId, {&IID_IUnknown, &kIidDispatch, &kIidParseError}, object);
    }
    HRESULT STDMETHODCALLTYPE get_errorCode(LONG* out) override {
        const HRESULT result = GiveValue<LONG>(fault_.code, out);
        return result == S_OK && fault_.code == S_OK ? S_FALSE : result;
    }
    HRESULT STDMETHODCALLTYPE get_reason(BSTR* out) override { return Give(fault_.reason, out); }
    HRESULT STDMETHODCALLTYPE get_srcText(BSTR* out) override { return Give(fault_.source, out); }
    HRESULT STDMETHODCALLTYPE get_line(LONG* out) override { return GiveValue(fault_.line, out); }
    HRESULT STDMETHODCALLTYPE get_linepos(LONG* out) override { return GiveValue(fault_.column, out); }

  private:
    HRESULT Give(const std::u16string& text, BSTR* out) const {
        return fault_.code == S_OK ? GiveNoText(out) : GiveText(text, out);
    }

    const ParseFault fault_;
};

// Null: the type isn't one that is made by itself.
Node* NewNode(Document* document, DOMNodeType type, const Name* name) {
    switch (type) {
        case NODE_ELEMENT:
            return new ElementNode(document, name);
        case NODE_ATTRIBUTE:
            return new AttributeNode(document, name);
        case NODE_PROCESSING_INSTRUCTION:
            return new ProcessingInstructionNode(document, name);
        case NODE_TEXT:
        case NODE_CDATA_SECTION:
            return new TextNode(document, type);
        case NODE_COMMENT:
            return new CommentNode(document, type);
        default:
            return nullptr;
    }
}

bool IsNamed(DOMNodeType type) {
    return type == NODE_ELEMENT || type == NODE_ATTRIBUTE || type == NODE_PROCESSING_INSTRUCTION;
}

template <class Interface>
HRESULT MakeNode(Document* document, DOMNodeType type, std::u16string_view written, std::u16string_view uri,
                 std::u16string_view value, Interface** out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    *out = nullptr;
    const Name* name = nullptr;
    if (IsNamed(type) && (name = document->NameOf(type, written, uri)) == nullptr) {
        return E_FAIL;
    }
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    Node* node = NewNode(document, type, name);
    if (node == nullptr) {
        return E_INVALIDARG;
    }
    node->value = value;
    return GiveNode(node, out);
}

}  // namespace

HRESULT MakeXmlDocument(REFIID interfaceId, void** object) {
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    auto* document = new Document;
    document->AddRef();
    const HRESULT result = document->QueryInterface(interfaceId, object);
    document->Release();
    return result;
}

Document::Document() : NodeObject(this, NODE_DOCUMENT, nullptr) {
    Documents& documents = TheDocuments();
    std::lock_guard lock(documents.mutex);
    documents.all.insert(this);
}

Document::~Document() {
    Documents& documents = TheDocuments();
    std::lock_guard lock(documents.mutex);
    documents.all.erase(this);
}

void Document::AddMade(Node* node) {
    node->nextMade = firstMade_;
    if (firstMade_ != nullptr) {
        firstMade_->previousMade = node;
    }
    firstMade_ = node;
}

void Document::RemoveMade(Node* node) {
    (node->previousMade != nullptr ? node->previousMade->nextMade : firstMade_) = node->nextMade;
    if (node->nextMade != nullptr) {
        node->nextMade->previousMade = node->previousMade;
    }
    node->previousMade = nullptr;
}

void Document::MoveMade(Node* node, Document* other) {
    RemoveMade(node);
    node->document = other;
    other->AddMade(node);
    if (node->references != 0) {
        --nodesHeld_;
        other->NodeIsHeld();
    }
    if (node->name != nullptr) {
        node->name = other->names_.Intern(node->name->written, *node->name->uri);
    }
}

void Document::FreeUnlessInUse() {
    if (nodesHeld_ == 0) {
        Free();
    }
}

void Document::Free() {
    while (firstMade_ != nullptr) {
        delete firstMade_;
    }
    delete this;
}

void Document::AddHeld(std::vector<std::string>* lines) const {
    const auto add = [lines](const Node* node, const char* kind) {
        if (node->references != 0) {
            lines->push_back(std::string(ResourceName(Resource::kComReference)) + " to " + kind + ' ' +
                             ToUtf8(NodeName(node)));
        }
    };
    add(this, "document");
    for (const Node* node = firstMade_; node != nullptr; node = node->nextMade) {
        add(node, node->type == NODE_ELEMENT ? "element" : node->type == NODE_ATTRIBUTE ? "attribute" : "node");
    }
}

const Name* Document::NameOf(DOMNodeType type, std::u16string_view written, std::u16string_view uri) {
    if (type == NODE_PROCESSING_INSTRUCTION) {
        return IsQualifiedName(written) && PrefixOf(written).empty() ? names_.Intern(written, u"") : nullptr;
    }
    const std::u16string_view prefix = PrefixOf(written);
    if (IsDeclarationName(written)) {
        if (type != NODE_ATTRIBUTE || !(uri.empty() || uri == kXmlnsUri)) {
            return nullptr;
        }
        uri = kXmlnsUri;
    } else if (prefix == u"xml") {
        if (!(uri.empty() || uri == kXmlUri)) {
            return nullptr;
        }
        uri = kXmlUri;
    } else if (uri == kXmlnsUri || (!prefix.empty() && uri.empty())) {
        return nullptr;
    }
    const Name* known = names_.Find(written, uri);
    return known != nullptr ? known : IsQualifiedName(written) ? names_.Intern(written, uri) : nullptr;
}

Node* Document::Copy(const Node* node) {
    Node* copy = NewNode(this, node->type, node->name);
    copy->value = node->value;
    for (const Node* attribute = node->firstAttribute; attribute != nullptr; attribute = attribute->next) {
        InsertAttribute(copy, Copy(attribute), nullptr);
    }
    return copy;
}

// --- IXMLDOMDocument2

HRESULT Document::get_documentElement(IXMLDOMElement** out) {
    Node* child = firstChild;
    while (child != nullptr && child->type != NODE_ELEMENT) {
        child = child->next;
    }
    return GiveNode(child, out);
}

HRESULT Document::createElement(BSTR written, IXMLDOMElement** out) {
    return written == nullptr ? E_INVALIDARG : MakeNode(this, NODE_ELEMENT, TextOf(written), {}, {}, out);
}

HRESULT Document::createTextNode(BSTR data, IXMLDOMText** out) {
    return MakeNode(this, NODE_TEXT, {}, {}, TextOf(data), out);
}

HRESULT Document::createComment(BSTR data, IXMLDOMComment** out) {
    return MakeNode(this, NODE_COMMENT, {}, {}, TextOf(data), out);
}

HRESULT Document::createProcessingInstruction(BSTR target, BSTR data, IXMLDOMProcessingInstruction** out) {
    return MakeNode(this, NODE_PROCESSING_INSTRUCTION, TextOf(target), {}, TextOf(data), out);
}

HRESULT Document::createAttribute(BSTR written, IXMLDOMAttribute** out) {
    return written == nullptr ? E_INVALIDARG : MakeNode(this, NODE_ATTRIBUTE, TextOf(written), {}, {}, out);
}

HRESULT Document::createNode(VARIANT nodeType, BSTR written, BSTR uri, IXMLDOMNode** out) {
    if (nodeType.vt != VT_I4 && nodeType.vt != VT_I2) {
        return E_INVALIDARG;
    }
    const LONG number = nodeType.vt == VT_I4 ? nodeType.lVal : nodeType.iVal;
    return number <= NODE_INVALID || number > NODE_NOTATION
               ? E_INVALIDARG
               : MakeNode(this, static_cast<DOMNodeType>(number), TextOf(written), TextOf(uri), {}, out);
}

HRESULT Document::get_parseError(IXMLDOMParseError** out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    *out = new (std::nothrow) ParseErrorObject(fault_);
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT Document::loadXML(BSTR xml, VARIANT_BOOL* isSuccessful) {
    if (isSuccessful == nullptr) {
        return E_INVALIDARG;
    }
    *isSuccessful = VARIANT_FALSE;
    if (AllocationFails()) {
        return E_OUTOFMEMORY;
    }
    const auto clear = [this] {
        while (Node* child = firstChild) {
            Detach(child);
            FreeUnlessHeld(child);
        }
    };
    clear();
    fault_ = ParseXml(TextOf(xml), this);
    if (fault_.code != S_OK) {
        clear();
        return S_FALSE;
    }
    *isSuccessful = VARIANT_TRUE;
    return S_OK;
}

HRESULT Document::setProperty(BSTR property, VARIANT newValue) {
    // DTDs are prohibited, and that can't be changed; other properties aren't there.
    const bool isDefault =
        TextOf(property) == u"ProhibitDTD" && newValue.vt == VT_BOOL && newValue.boolVal != VARIANT_FALSE;
    return isDefault ? S_OK : E_NOTIMPL;
}

}  // namespace host
