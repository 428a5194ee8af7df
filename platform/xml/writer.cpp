#include "platform/xml/writer.h"

#include <vector>

#include "platform/xml/namespace_scope.h"

namespace host {
namespace {

bool IsHighSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xDC00;
}

// Puts `blank` between the two characters wherever they follow each other, so that nothing ends before its end.
std::u16string Apart(std::u16string_view text, char16_t first, char16_t second) {
    std::u16string apart;
    for (const char16_t c : text) {
        if (c == second && !apart.empty() && apart.back() == first) {
            apart += u' ';
        }
        apart += c;
    }
    return apart;
}

class Writer {
  public:
    explicit Writer(const XmlFormat& format) : format_(format) {}

    std::u16string Write(const Node* root) {
        auto* node = const_cast<Node*>(root);
        while (node != nullptr) {
            Begin(node);
            if (node->firstChild != nullptr) {
                node = node->firstChild;
                continue;
            }
            // Up to the next node, ending what ends here.
            while (node != root && node->next == nullptr) {
                End(node);
                node = node->parent;
            }
            End(node);
            node = node == root ? nullptr : node->next;
        }
        return std::move(text_);
    }

  private:
    struct Declared {
        std::u16string_view prefix;
        std::u16string_view uri;
    };
    struct OpenElement {
        size_t declared;  // before it
        bool indents;     // its children
    };

    void Begin(const Node* node) {
        BreakLine(node);
        switch (node->type) {
            case NODE_ELEMENT:
                BeginElement(node);
                break;
            case NODE_ATTRIBUTE:
                WriteAttribute(node->name->written, node->value);
                break;
            case NODE_TEXT:
                WriteEscaped(node->value, false);
                break;
            case NODE_CDATA_SECTION:
                WriteSection(node->value);
                break;
            case NODE_COMMENT:
                text_ += u"<!--";
                WritePlain(Apart(node->value, u'-', u'-'));
                text_ += node->value.ends_with(u'-') ? u" -->" : u"-->";
                break;
            case NODE_PROCESSING_INSTRUCTION:
                text_ += u"<?" + node->name->written;
                if (!node->value.empty()) {
                    text_ += u' ';
                    WritePlain(Apart(node->value, u'?', u'>'));
                }
                text_ += u"?>";
                break;
            default:
                break;
        }
    }

    void End(const Node* node) {
        if (node->type == NODE_ELEMENT) {
            const OpenElement element = open_.back();
            open_.pop_back();
            declared_.resize(element.declared);
            if (node->firstChild != nullptr) {
                if (element.indents) {
                    NewLine();
                }
                text_ += u"</" + node->name->written + u'>';
            }
        }
        if (node->parent != nullptr && node->parent->type == NODE_DOCUMENT && inDocument_) {
            text_ += format_.lineEnd;
        }
        inDocument_ &= node->type != NODE_DOCUMENT;
    }

    void BreakLine(const Node* node) {
        inDocument_ |= node->type == NODE_DOCUMENT;
        if (!open_.empty() && open_.back().indents) {
            NewLine();
        }
    }

    void NewLine() {
        text_ += format_.lineEnd;
        text_.append(2 * open_.size(), u' ');
    }

    bool Indents(const Node* element) const {
        if (!format_.indent || (open_.empty() ? KeepsWhiteSpace(element) : !open_.back().indents)) {
            return false;
        }
        if (const Node* space = FindAttribute(element, u"xml:space"); space && space->value == u"preserve") {
            return false;
        }
        for (const Node* child = element->firstChild; child != nullptr; child = child->next) {
            if (child->type == NODE_TEXT || child->type == NODE_CDATA_SECTION) {
                return false;
            }
        }
        return true;
    }

    // Within the text; "": not declared.
    std::u16string_view UriOf(std::u16string_view prefix) const {
        for (auto declared = declared_.rbegin(); declared != declared_.rend(); ++declared) {
            if (declared->prefix == prefix) {
                return declared->uri;
            }
        }
        return {};
    }

    void BeginElement(const Node* element) {
        const size_t outer = declared_.size();
        const bool indents = Indents(element);
        text_ += u'<' + element->name->written;
        for (const Node* attribute = element->firstAttribute; attribute != nullptr; attribute = attribute->next) {
            if (IsDeclaration(attribute)) {
                declared_.push_back({DeclaredPrefix(attribute), attribute->value});
            }
        }
        Declare(*element->name, outer);
        for (const Node* attribute = element->firstAttribute; attribute != nullptr; attribute = attribute->next) {
            if (attribute->name->prefixChars != 0 && !IsDeclaration(attribute)) {
                Declare(*attribute->name, outer);
            }
        }
        for (const Node* attribute = element->firstAttribute; attribute != nullptr; attribute = attribute->next) {
            text_ += u' ';
            WriteAttribute(attribute->name->written, attribute->value);
        }
        text_ += element->firstChild != nullptr ? u">" : u"/>";
        open_.push_back({outer, indents});
    }

    // Writes a declaration where the name needs one. What the element itself declares already, from `outer` on, stays:
    // a prefix is bound once by an element.
    void Declare(const Name& name, size_t outer) {
        const std::u16string_view prefix = name.Prefix();
        if (prefix == u"xml" || UriOf(prefix) == *name.uri) {
            return;
        }
        for (size_t i = outer; i < declared_.size(); ++i) {
            if (declared_[i].prefix == prefix) {
                return;
            }
        }
        declared_.push_back({prefix, *name.uri});
        text_ += u" ";
        WriteAttribute(prefix.empty() ? u"xmlns" : u"xmlns:" + std::u16string(prefix), *name.uri);
    }

    void WriteAttribute(std::u16string_view written, std::u16string_view value) {
        text_ += written;
        text_ += u"=\"";
        WriteEscaped(value, true);
        text_ += u'"';
    }

    // Nothing within it can be written as a reference: a section is ended and begun again where it would end.
    void WriteSection(std::u16string_view value) {
        text_ += u"<![CDATA[";
        for (size_t end; (end = value.find(u"]]>")) != std::u16string_view::npos; value.remove_prefix(end + 2)) {
            WritePlain(value.substr(0, end + 2));
            text_ += u"]]><![CDATA[";
        }
        WritePlain(value);
        text_ += u"]]>";
    }

    void WritePlain(std::u16string_view value) {
        for (size_t i = 0; i < value.size(); ++i) {
            if (value[i] == u'\n') {
                text_ += format_.lineEnd;
            } else {
                WriteCharacter(value, &i);
            }
        }
    }

    void WriteEscaped(std::u16string_view value, bool inAttribute) {
        for (size_t i = 0; i < value.size(); ++i) {
            switch (value[i]) {
                case u'&':
                    text_ += u"&amp;";
                    break;
                case u'<':
                    text_ += u"&lt;";
                    break;
                case u'>':
                    text_ += u"&gt;";
                    break;
                case u'"':
                    text_ += inAttribute ? u"&quot;" : u"\"";
                    break;
                case u'\r':
                    text_ += u"&#13;";
                    break;
                case u'\t':
                    text_ += inAttribute ? u"&#9;" : u"\t";
                    break;
                case u'\n':
                    text_ += inAttribute ? u"&#10;" : format_.lineEnd;
                    break;
                default:
                    WriteCharacter(value, &i);
            }
        }
    }

    // One character, of two units where it needs them; *i is left at its last.
    void WriteCharacter(std::u16string_view value, size_t* i) {
        const char16_t c = value[*i];
        if (IsHighSurrogate(c) && *i + 1 < value.size() && IsLowSurrogate(value[*i + 1])) {
            text_ += c;
            text_ += value[++*i];
            return;
        }
        const bool isWritable = c >= 0x20 ? !IsHighSurrogate(c) && !IsLowSurrogate(c) && c < 0xFFFE
                                          : c == u'\t' || c == u'\n' || c == u'\r';
        text_ += isWritable ? c : u'\xFFFD';
    }

    const XmlFormat format_;
    std::u16string text_;
    std::vector<Declared> declared_;
    std::vector<OpenElement> open_;
    bool inDocument_ = false;
};

}  // namespace

std::u16string WriteXml(const Node* node, const XmlFormat& format) {
    return Writer(format).Write(node);
}

}  // namespace host
