#include "platform/xml/parser.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/kernel/text.h"

namespace host {
namespace {

const char* Bytes(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

std::u16string Wide(const xmlChar* text) {
    return text == nullptr ? std::u16string() : ToWide(Bytes(text));
}

std::u16string Joined(const xmlChar* prefix, std::u16string_view name) {
    std::u16string joined = Wide(prefix);
    if (!joined.empty()) {
        joined += u':';
    }
    return joined.append(name);
}

// What stands in the text's XML declaration, each value in quotation marks, one blank apart; empty without one.
std::u16string DeclarationData(std::u16string_view text) {
    if (!text.starts_with(u"<?xml") || text.size() < 6 || !IsWhiteSpace(text.substr(5, 1))) {
        return {};
    }
    text = text.substr(6, text.find(u"?>") - 6);
    std::u16string data;
    char16_t quote = 0;
    for (const char16_t c : text) {
        if (quote != 0) {
            data += c == quote ? u'"' : c;
            quote = c == quote ? 0 : quote;
        } else if (c == u'"' || c == u'\'') {
            data += u'"';
            quote = c;
        } else if (kWhiteSpace.find(c) == std::u16string_view::npos) {
            if (data.ends_with(u'"')) {
                data += u' ';
            }
            data += c;
        }
    }
    return data;
}

// A name as the parser has it; prefix and namespace are null where there are none.
struct NameParts {
    const xmlChar* name;
    const xmlChar* prefix;
    const xmlChar* uri;
    bool operator==(const NameParts&) const = default;
};

struct NamePartsHash {
    size_t operator()(const NameParts& parts) const {
        const std::hash<const void*> hash;
        return (hash(parts.name) * 31 + hash(parts.prefix)) * 31 + hash(parts.uri);
    }
};

// Makes the nodes that the parser reports.
class Builder {
  public:
    Builder(Document* document, std::u16string_view text) : document_(document), text_(text), parent_(document) {
        keepsWhiteSpace_.push_back(document->PreservesWhiteSpace());
        if (const std::u16string data = DeclarationData(text); !data.empty()) {
            AppendInstruction(u"xml", data);
        }
    }

    const ParseFault& Fault() const { return fault_; }

    static xmlSAXHandler Handler() {
        xmlSAXHandler handler = {};
        handler.initialized = XML_SAX2_MAGIC;
        handler.startElementNs = [](void* self, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                                    int declarationCount, const xmlChar** declarations, int attributeCount, int,
                                    const xmlChar** attributes) {
            static_cast<Builder*>(self)->Begin({name, prefix, uri}, declarationCount, declarations, attributeCount,
                                               attributes);
        };
        handler.endElementNs = [](void* self, const xmlChar*, const xmlChar*, const xmlChar*) {
            static_cast<Builder*>(self)->End();
        };
        handler.characters = [](void* self, const xmlChar* text, int bytes) {
            static_cast<Builder*>(self)->pending_.append(Bytes(text), static_cast<size_t>(bytes));
        };
        handler.ignorableWhitespace = handler.characters;
        handler.cdataBlock = [](void* self, const xmlChar* text, int bytes) {
            auto* builder = static_cast<Builder*>(self);
            builder->EndText();
            builder->Append(new TextNode(builder->document_, NODE_CDATA_SECTION))->value =
                ToWide({Bytes(text), static_cast<size_t>(bytes)});
        };
        handler.comment = [](void* self, const xmlChar* text) {
            auto* builder = static_cast<Builder*>(self);
            builder->EndText();
            builder->Append(new CommentNode(builder->document_, NODE_COMMENT))->value = Wide(text);
        };
        handler.processingInstruction = [](void* self, const xmlChar* target, const xmlChar* data) {
            static_cast<Builder*>(self)->EndText();
            static_cast<Builder*>(self)->AppendInstruction(Wide(target), Wide(data));
        };
        handler.internalSubset = [](void* self, const xmlChar*, const xmlChar*, const xmlChar*) {
            static_cast<Builder*>(self)->RefuseDtd();
        };
        handler.serror = [](void* self, xmlErrorPtr error) { static_cast<Builder*>(self)->Report(*error); };
        return handler;
    }

    xmlParserCtxt* context = nullptr;  // that reports to this

  private:
    Node* Append(Node* node) {
        InsertChild(parent_, node, nullptr);
        return node;
    }

    void AppendInstruction(std::u16string_view target, std::u16string_view data) {
        Append(new ProcessingInstructionNode(document_, document_->Names().Intern(target, u"")))->value = data;
    }

    void EndText() {
        if (pending_.empty()) {
            return;
        }
        std::u16string text = ToWide(pending_);
        pending_.clear();
        if (keepsWhiteSpace_.back() || !IsWhiteSpace(text)) {
            Append(new TextNode(document_, NODE_TEXT))->value = std::move(text);
        }
    }

    // The parser keeps each text of names once for as long as it goes on: names are known by the addresses.
    const Name* NameOf(const NameParts& parts) {
        const auto found = names_.find(parts);
        if (found != names_.end()) {
            return found->second;
        }
        const Name* name = document_->Names().Intern(Joined(parts.prefix, Wide(parts.name)), Wide(parts.uri));
        const auto isKept = [this](const xmlChar* text) {
            return text == nullptr || xmlDictOwns(context->dict, text) == 1;
        };
        if (isKept(parts.name) && isKept(parts.prefix) && isKept(parts.uri)) {
            names_.emplace(parts, name);
        }
        return name;
    }

    void AddAttribute(Node* element, const Name* name, std::u16string value) {
        auto* attribute = new AttributeNode(document_, name);
        attribute->value = std::move(value);
        InsertAttribute(element, attribute, nullptr);
    }

    void Begin(const NameParts& name, int declarationCount, const xmlChar** declarations, int attributeCount,
               const xmlChar** attributes) {
        EndText();
        Node* element = Append(new ElementNode(document_, NameOf(name)));
        // Pairs of prefix and URI.
        for (int i = 0; i < 2 * declarationCount; i += 2) {
            const std::u16string prefix = Wide(declarations[i]);
            const std::u16string written = prefix.empty() ? u"xmlns" : u"xmlns:" + prefix;
            AddAttribute(element, document_->Names().Intern(written, kXmlnsUri), Wide(declarations[i + 1]));
        }
        // Local name, prefix, URI, begin and end of the value.
        for (int i = 0; i < 5 * attributeCount; i += 5) {
            const std::string_view value(Bytes(attributes[i + 3]),
                                         static_cast<size_t>(attributes[i + 4] - attributes[i + 3]));
            AddAttribute(element, NameOf({attributes[i], attributes[i + 1], attributes[i + 2]}), ToWide(value));
        }
        const Node* space = FindAttribute(element, u"xml:space");
        keepsWhiteSpace_.push_back(space != nullptr && !document_->PreservesWhiteSpace() ? space->value == u"preserve"
                                                                                         : keepsWhiteSpace_.back());
        parent_ = element;
    }

    void End() {
        EndText();
        keepsWhiteSpace_.pop_back();
        parent_ = parent_->parent;
    }

    void RefuseDtd() {
        SetFault(E_XML_NODTD, u"DTD is prohibited.", context->input->line, context->input->col);
        xmlStopParser(context);
    }

    void Report(const xmlError& error) {
        // A namespace's name may be any text.
        if (error.level < XML_ERR_ERROR || error.code == XML_ERR_USER_STOP || error.code == XML_WAR_NS_URI) {
            return;
        }
        std::string reason = error.message != nullptr ? error.message : "";
        while (reason.ends_with('\n')) {
            reason.pop_back();
        }
        SetFault(E_XML_NOTWF, ToWide(reason), error.line, error.int2);
    }

    // The first one counts.
    void SetFault(HRESULT code, std::u16string reason, int line, int column) {
        if (fault_.code != S_OK) {
            return;
        }
        fault_.code = code;
        fault_.reason = std::move(reason);
        fault_.line = std::max(line, 1);
        size_t begin = 0;
        for (LONG i = 1; i < fault_.line && begin < text_.size(); ++i) {
            const size_t end = text_.find(u'\n', begin);
            begin = end == std::u16string_view::npos ? text_.size() : end + 1;
        }
        std::u16string_view source = text_.substr(begin);
        source = source.substr(0, source.find_first_of(u"\r\n"));
        fault_.source = source;
        fault_.column = std::max(column, 1);
    }

    Document* document_;
    const std::u16string_view text_;
    Node* parent_;
    std::unordered_map<NameParts, const Name*, NamePartsHash> names_;
    std::string pending_;                // text that goes on, in UTF-8
    std::vector<bool> keepsWhiteSpace_;  // of the document and the open elements
    ParseFault fault_;
};

struct FreeContext {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

ParseFault WholeTextFault(std::u16string_view reason) {
    ParseFault fault;
    fault.code = E_XML_NOTWF;
    fault.reason = reason;
    fault.line = 1;
    fault.column = 1;
    return fault;
}

}  // namespace

ParseFault ParseXml(std::u16string_view text, Document* document) {
    static std::once_flag once;
    std::call_once(once, xmlInitParser);
    if (text.starts_with(u'\xFEFF')) {
        text.remove_prefix(1);
    }
    bool clean = true;
    const std::string utf8 = ToUtf8(text, &clean);
    if (!clean) {
        return WholeTextFault(u"The text has half of a surrogate pair.");
    }
    if (utf8.empty()) {
        return WholeTextFault(u"The text is empty.");
    }
    if (utf8.size() > static_cast<size_t>(std::numeric_limits<int>::max())) {
        return WholeTextFault(u"The text is too long.");
    }
    const std::unique_ptr<xmlParserCtxt, FreeContext> context(
        xmlCreateMemoryParserCtxt(utf8.data(), static_cast<int>(utf8.size())));
    if (!context) {
        return WholeTextFault(u"There is no memory to read the text.");
    }
    Builder builder(document, text);
    builder.context = context.get();
    *context->sax = Builder::Handler();
    context->userData = &builder;
    // NOENT: XML's own entities in attributes are put in, as there are no others. HUGE: no bounds on depth and lengths,
    // which are there against entities.
    xmlCtxtUseOptions(context.get(), XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC);
    xmlParseDocument(context.get());
    ParseFault fault = builder.Fault();
    return fault.code == S_OK && context->wellFormed == 0 ? WholeTextFault(u"The text isn't well-formed.") : fault;
}

}  // namespace host
