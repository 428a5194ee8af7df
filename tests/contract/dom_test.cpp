// XML documents and namespaces by the published interfaces (msxml2.h), as the driver uses them.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/contract/canonical_document.h"
#include "tests/contract/contract_test.h"
#include "tests/contract/dom_document.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

constexpr WCHAR kXmlUri[] = TEXT("http://www.w3.org/XML/1998/namespace");

class Dom : public ContractTest {
  protected:
    ComOnThread com_;
};

ComReference<IXMLDOMElement> RootOf(IXMLDOMDocument2* document) {
    ComReference<IXMLDOMElement> root;
    EXPECT_EQ(document->get_documentElement(root.Receive()), S_OK);
    return root;
}

// What a getter gives: a text in quotation marks, "-" for nothing, with the matching result; anything else in numbers.
std::string Shown(HRESULT result, BSTR text) {
    if (result == S_OK && text != nullptr) {
        return '"' + Printable(WideText(text, SysStringLen(text))) + '"';
    }
    return result == S_FALSE && text == nullptr ? "-" : "result " + std::to_string(result);
}

template <class Getter>
std::string TextBy(IXMLDOMNode* node, Getter getter) {
    OwnedBstr text;
    const HRESULT result = (node->*getter)(text.Receive());
    return Shown(result, text.Get());
}

std::string ValueOf(IXMLDOMNode* node) {
    OwnedVariant value;
    const HRESULT result = node->get_nodeValue(value.Receive());
    if (result == S_OK && value.Text() != nullptr) {
        return '"' + Printable(value.Text()) + '"';
    }
    return result == S_FALSE && value.Text() == nullptr ? "-" : "result " + std::to_string(result);
}

std::string Facts(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    node->get_nodeType(&type);
    return std::to_string(type) + " name " + TextBy(node, &IXMLDOMNode::get_nodeName) + " base " +
           TextBy(node, &IXMLDOMNode::get_baseName) + " uri " + TextBy(node, &IXMLDOMNode::get_namespaceURI) +
           " prefix " + TextBy(node, &IXMLDOMNode::get_prefix) + " text " + TextBy(node, &IXMLDOMNode::get_text) +
           " value " + ValueOf(node);
}

// The facts of a node and of all below it, in document order.
void AddFacts(IXMLDOMNode* node, std::vector<std::string>* facts) {
    facts->push_back(Facts(node));
    ComReference<IXMLDOMNode> child;
    node->get_firstChild(child.Receive());
    while (child) {
        AddFacts(child.Get(), facts);
        ComReference<IXMLDOMNode> next;
        const HRESULT result = child->get_nextSibling(next.Receive());
        EXPECT_EQ(result, next ? S_OK : S_FALSE);
        child = std::move(next);
    }
}

TEST_F(Dom, TellsItsNodes) {
    const auto document = LoadDocument(TEXT("<?xml version=\"1.0\"?><!--c--><?t da ta?>") TEXT(
        "<a:r xmlns:a=\"u:a\" xmlns=\"u:d\" a:x=\"1\" y=\"2 &amp; 3\"><b z=\"q\">t<![CDATA[c<d]]>u</b>")
                                           TEXT("<c xmlns=\"\">&#65;&lt;&#x3042;</c><d/> tail</a:r>"));
    const std::vector<std::string> expected = {
        R"(9 name "#document" base - uri - prefix - text "tc<duA<\u3042 tail" value -)",
        R"(7 name "xml" base "xml" uri - prefix - text "version="1.0"" value "version="1.0"")",
        R"(8 name "#comment" base - uri - prefix - text "c" value "c")",
        R"(7 name "t" base "t" uri - prefix - text "da ta" value "da ta")",
        R"(1 name "a:r" base "r" uri "u:a" prefix "a" text "tc<duA<\u3042 tail" value -)",
        R"(1 name "b" base "b" uri "u:d" prefix - text "tc<du" value -)",
        R"(3 name "#text" base - uri - prefix - text "t" value "t")",
        R"(4 name "#cdata-section" base - uri - prefix - text "c<d" value "c<d")",
        R"(3 name "#text" base - uri - prefix - text "u" value "u")",
        R"(1 name "c" base "c" uri - prefix - text "A<\u3042" value -)",
        R"(3 name "#text" base - uri - prefix - text "A<\u3042" value "A<\u3042")",
        R"(1 name "d" base "d" uri "u:d" prefix - text "" value -)",
        R"(3 name "#text" base - uri - prefix - text "tail" value " tail")",
        R"(2 name "a:x" base "x" uri "u:a" prefix "a" text "1" value "1")",
        R"(2 name "y" base "y" uri - prefix - text "2 & 3" value "2 & 3")",
        R"(2 name "xmlns:a" base "a" uri "http://www.w3.org/2000/xmlns/" prefix "xmlns" text "u:a" value "u:a")",
    };
    std::vector<std::string> facts;
    AddFacts(document.Get(), &facts);
    ComReference<IXMLDOMNamedNodeMap> attributes;
    ASSERT_EQ(RootOf(document.Get())->get_attributes(attributes.Receive()), S_OK);
    for (const char* name : {"\"a:x\"", "\"y\"", "\"xmlns:a\""}) {
        ComReference<IXMLDOMNode> attribute;
        for (LONG i = 0; attributes->get_item(i, attribute.Receive()) == S_OK; ++i) {
            if (TextBy(attribute.Get(), &IXMLDOMNode::get_nodeName) == name) {
                facts.push_back(Facts(attribute.Get()));
            }
        }
    }
    EXPECT_EQ(facts, expected);
    std::for_each(facts.begin(), facts.end(), [](const std::string& line) { Record(line); });
    RecordDocument(document.Get());

    ComReference<IXMLDOMNode> attribute;
    EXPECT_EQ(
        attributes->getQualifiedItem(OwnedBstr(TEXT("x")).Get(), OwnedBstr(TEXT("u:a")).Get(), attribute.Receive()),
        S_OK);
    EXPECT_EQ(attributes->getNamedItem(OwnedBstr(TEXT("x")).Get(), attribute.Receive()), S_FALSE)
        << "without its prefix";
}

TEST_F(Dom, LoadsWhatIsWellFormed) {
    const WCHAR* const good[] = {
        TEXT("<a/>"),
        TEXT("\xFEFF<a/>"),
        TEXT("<?xml version='1.0' encoding='UTF-16'?><a/>"),
        TEXT("<?xml version='1.0' encoding='utf-8'?><a>\x00E4\x3042</a>"),
        TEXT("<?xml version='1.0' standalone='yes'?><a/>"),
        TEXT("<a>x\r\ny\rz</a>"),
        TEXT("<a b='x\r\n\ty&#10;&#9;' c=\"'\" d='\"'/>"),
        TEXT("<a> <b/>\n\t</a>"),
        TEXT("<a> x <b/> </a>"),
        TEXT("<a xml:space='preserve'> <b/> </a>"),
        TEXT("<a>1&lt;2&gt;&amp;&quot;&apos;&#x41;<![CDATA[<&]]>3</a>"),
        TEXT("<p:a xmlns:p='u'><p:a xmlns:p='v'><p:a/><p:a xmlns:p='u'/></p:a><p:a xmlns:p='u'/></p:a>"),
        TEXT("<a><b xmlns='u'><c xmlns=''/><d e='f'/></b></a><!--after--><?too?>"),
        TEXT("<\x3042 \x00E4='1'/>"),
    };
    for (const WCHAR* const text : good) {
        SCOPED_TRACE(Printable(text));
        Record(Printable(text));
        RecordDocument(LoadDocument(text).Get());
    }

    const WCHAR* const bad[] = {TEXT(""),
                                TEXT("  "),
                                TEXT("x"),
                                TEXT("<a>"),
                                TEXT("<a"),
                                TEXT("<a><b></a></b>"),
                                TEXT("<a/><b/>"),
                                TEXT("<a/>text"),
                                TEXT("<a x='1' x='2'/>"),
                                TEXT("<a x='<'/>"),
                                TEXT("<a>&none;</a>"),
                                TEXT("<a>\x01</a>"),
                                TEXT("<a>&#1;</a>"),
                                TEXT(" <?xml version='1.0'?><a/>")};
    const auto document = LoadDocument(TEXT("<former/>"));
    for (const WCHAR* const text : bad) {
        SCOPED_TRACE(Printable(text));
        VARIANT_BOOL loaded = VARIANT_TRUE;
        EXPECT_EQ(document->loadXML(OwnedBstr(text).Get(), &loaded), S_FALSE);
        EXPECT_EQ(loaded, VARIANT_FALSE);
        EXPECT_EQ(CanonicalText(document.Get()), "") << "something is left of it or of the former";
    }
    VARIANT_BOOL loaded = VARIANT_FALSE;
    EXPECT_EQ(document->loadXML(OwnedBstr(TEXT("<again/>")).Get(), &loaded), S_OK);
    EXPECT_EQ(CanonicalText(document.Get()), "{}again\n");
}

TEST_F(Dom, Builds) {
    const auto document = NewDocument();
    const auto append = [&](IXMLDOMNode* parent, const WCHAR* name, const WCHAR* uri) {
        auto node = NewNode(document.Get(), NODE_ELEMENT, name, uri);
        ComReference<IXMLDOMNode> appended;
        EXPECT_EQ(parent->appendChild(node.Get(), appended.Receive()), S_OK);
        EXPECT_EQ(appended.Get(), node.Get());
        return node;
    };
    ComReference<IXMLDOMProcessingInstruction> declaration;
    const WideText data = TEXT("version=\"1.0\"  encoding=\"UTF-8\"");
    ASSERT_EQ(document->createProcessingInstruction(OwnedBstr(TEXT("xml")).Get(), OwnedBstr(data.c_str()).Get(),
                                                    declaration.Receive()),
              S_OK);
    EXPECT_EQ(document->appendChild(declaration.Get(), nullptr), S_OK);
    OwnedBstr kept;
    EXPECT_EQ(declaration->get_data(kept.Receive()), S_OK);
    EXPECT_EQ(kept.Text(), data);

    const auto root = append(document.Get(), TEXT("p:root"), TEXT("u:p"));
    SetAttributeNode(document.Get(), root.Get(), TEXT("xmlns:p"), TEXT(""), TEXT("u:p"));
    SetAttributeNode(document.Get(), root.Get(), TEXT("xmlns:q"), TEXT(""), TEXT("u:q & \"\x3042\""));
    SetAttributeNode(document.Get(), root.Get(), TEXT("version"), TEXT("u:p"), TEXT("1"));
    SetAttributeNode(document.Get(), root.Get(), TEXT("version"), TEXT("u:p"), TEXT("<&\"'> 2"));
    auto first = append(root.Get(), TEXT("p:first"), TEXT("u:p"));
    auto second = append(root.Get(), TEXT("second"), TEXT("u:d"));
    const auto third = append(second.Get(), TEXT("third"), TEXT(""));
    SetAttributeNode(document.Get(), third.Get(), TEXT("p:type"), TEXT("u:p"), TEXT("q:name"));
    EXPECT_EQ(third->put_text(OwnedBstr(TEXT(" <&> \"'\x3042 ")).Get()), S_OK);
    ComReference<IXMLDOMComment> comment;
    ASSERT_EQ(document->createComment(OwnedBstr(TEXT("     ")).Get(), comment.Receive()), S_OK);
    EXPECT_EQ(second->appendChild(comment.Get(), nullptr), S_OK);
    EXPECT_EQ(root->appendChild(first.Get(), nullptr), S_OK) << "moves it to the end";
    EXPECT_EQ(CanonicalText(document.Get()), R"(?xml version="1.0"  encoding="UTF-8"
{u:p}root
  xmlns:p="u:p"
  xmlns:q="u:q & "\u3042""
  version="<&"'> 2"
  {u:d}second
    {}third
      p:type="q:name"
      " <&> "'\u3042 "
    #     
  {u:p}first
)");
    RecordDocument(document.Get());

    // What is taken out lives on and can come back.
    ComReference<IXMLDOMNode> removed;
    ComReference<IXMLDOMNode> parent;
    EXPECT_EQ(root->removeChild(second.Get(), removed.Receive()), S_OK);
    EXPECT_EQ(removed.Get(), second.Get());
    EXPECT_EQ(second->get_parentNode(parent.Receive()), S_FALSE);
    EXPECT_EQ(first->put_text(OwnedBstr(TEXT("gone")).Get()), S_OK);
    EXPECT_EQ(first->put_text(OwnedBstr(TEXT("")).Get()), S_OK);
    EXPECT_EQ(first->appendChild(second.Get(), nullptr), S_OK);
    EXPECT_EQ(second->removeChild(third.Get(), nullptr), S_OK);
    RecordDocument(document.Get());
    // Nothing of what goes is held any longer: not every DOM bears that.
    removed.Reset();
    comment.Reset();
    second.Reset();
    first.Reset();
    EXPECT_EQ(root->put_text(OwnedBstr(TEXT("all replaced")).Get()), S_OK);
    RecordDocument(document.Get());
}

TEST_F(Dom, SaysWhatItDoesNotFind) {
    const auto empty = NewDocument();
    const auto document = LoadDocument(TEXT("<a x='1'/>"));
    const auto root = RootOf(document.Get());
    ComReference<IXMLDOMElement> element;
    EXPECT_EQ(empty->get_documentElement(element.Receive()), S_FALSE);
    EXPECT_FALSE(element);
    ComReference<IXMLDOMNode> node;
    EXPECT_EQ(root->get_firstChild(node.Receive()), S_FALSE);
    EXPECT_EQ(root->get_nextSibling(node.Receive()), S_FALSE);
    ComReference<IXMLDOMNamedNodeMap> map;
    ASSERT_EQ(root->get_attributes(map.Receive()), S_OK);
    const OwnedBstr none(TEXT("none"));
    EXPECT_EQ(map->get_item(1, node.Receive()), S_FALSE);
    EXPECT_EQ(map->getQualifiedItem(OwnedBstr(TEXT("x")).Get(), none.Get(), node.Receive()), S_FALSE);
    EXPECT_FALSE(node);
    ComReference<IXMLDOMAttribute> attribute;
    EXPECT_EQ(root->getAttributeNode(none.Get(), attribute.Receive()), S_FALSE);
    EXPECT_FALSE(attribute);
    OwnedVariant value;
    EXPECT_EQ(root->getAttribute(none.Get(), value.Receive()), S_FALSE);
    EXPECT_EQ(value.Text(), nullptr);
}

// --- Namespaces

class Namespaces : public Dom {
  protected:
    // "uri" or "-" for what isn't bound; the result where it is another.
    std::string Uri(const WCHAR* prefix, IXMLDOMNode* node = nullptr) const {
        WCHAR buffer[100] = TEXT("#");
        int length = std::size(buffer);
        const HRESULT result = manager_->getURI(prefix, node, buffer, &length);
        if (result == S_FALSE) {
            EXPECT_EQ(length, 0);
            return "-";
        }
        EXPECT_EQ(WideText(buffer).size(), static_cast<size_t>(length));
        return result == S_OK ? Printable(buffer) : "result " + std::to_string(result);
    }

    // The prefixes of a URI, the nearest first, each followed by a blank; "''" for the empty one.
    std::string Prefixes(const WCHAR* uri) const {
        std::string prefixes;
        for (LONG i = 0;; ++i) {
            WCHAR buffer[100] = TEXT("#");
            int length = std::size(buffer);
            const HRESULT result = manager_->getPrefix(uri, i, buffer, &length);
            if (result != S_OK) {
                EXPECT_EQ(result, E_FAIL);
                return prefixes;
            }
            EXPECT_EQ(WideText(buffer).size(), static_cast<size_t>(length));
            prefixes += (length == 0 ? "''" : Printable(buffer)) + ' ';
        }
    }

    const ComReference<IMXNamespaceManager> manager_ = NewNamespaceManager();
};

TEST_F(Namespaces, AreDeclared) {
    const auto declare = [this](const WCHAR* prefix, const WCHAR* uri) { return manager_->declarePrefix(prefix, uri); };
    EXPECT_EQ(Uri(TEXT("xml")), Printable(kXmlUri));
    EXPECT_EQ(Prefixes(kXmlUri), "xml ");
    EXPECT_EQ(Uri(TEXT("")), "-");
    EXPECT_EQ(Uri(TEXT("p")), "-");
    EXPECT_EQ(declare(TEXT("p"), TEXT("u:1")), S_OK);
    EXPECT_EQ(declare(TEXT("p"), TEXT("u:2")), S_FALSE) << "bound before";
    EXPECT_EQ(Uri(TEXT("p")), "u:2");
    EXPECT_EQ(Uri(TEXT("P")), "-");
    EXPECT_EQ(Prefixes(TEXT("u:1")), "");
    EXPECT_EQ(Prefixes(TEXT("u:2")), "p ");
    EXPECT_EQ(declare(TEXT(""), TEXT("u:d")), S_OK);
    EXPECT_EQ(Uri(TEXT("")), "u:d");
    EXPECT_EQ(Prefixes(TEXT("u:d")), "'' ");
    EXPECT_EQ(declare(nullptr, TEXT("u:e")), S_FALSE) << "the default namespace again";
    EXPECT_EQ(Uri(TEXT("")), "u:e");
    EXPECT_EQ(declare(TEXT("xml"), TEXT("u")), E_INVALIDARG);
    EXPECT_EQ(declare(TEXT("xmlns"), TEXT("u")), E_INVALIDARG);
    EXPECT_EQ(declare(TEXT("q"), nullptr), E_INVALIDARG);
    EXPECT_EQ(manager_->putAllowOverride(VARIANT_FALSE), S_OK);
    EXPECT_EQ(declare(TEXT("p"), TEXT("u:3")), E_FAIL);
    EXPECT_EQ(Uri(TEXT("p")), "u:2");
    EXPECT_EQ(manager_->popContext(), E_FAIL) << "none was pushed";
}

TEST_F(Namespaces, FitTheirBuffers) {
    ASSERT_EQ(manager_->declarePrefix(TEXT("prefix"), TEXT("u:name")), S_OK);
    WCHAR buffer[8];
    for (const bool isUri : {false, true}) {
        const auto ask = [&](WCHAR* text, int* size) {
            return isUri ? manager_->getURI(TEXT("prefix"), nullptr, text, size)
                         : manager_->getPrefix(TEXT("u:name"), 0, text, size);
        };
        for (const int size : {0, 1, 5, 7}) {
            std::fill(std::begin(buffer), std::end(buffer), WCHAR{'#'});
            int length = size;
            EXPECT_EQ(ask(buffer, &length), size < 7 ? E_XML_BUFFERTOOSMALL : S_OK) << size;
            EXPECT_EQ(buffer[size], '#') << size;
        }
        int length = 0;
        EXPECT_EQ(ask(nullptr, &length), S_OK) << "asks for the length";
        EXPECT_EQ(length, 6);
    }
    int length = std::size(buffer);
    EXPECT_EQ(manager_->getURI(nullptr, nullptr, buffer, &length), E_INVALIDARG);
    EXPECT_EQ(manager_->getPrefix(TEXT(""), 0, buffer, &length), E_INVALIDARG);
}

TEST_F(Namespaces, AreThoseInScopeAtANode) {
    const auto document =
        LoadDocument(TEXT("<a:a xmlns:a='u:a' xmlns:x='u:1' xmlns='u:d'>")
                         TEXT("<b xmlns:x='u:2' xmlns:y='u:1' xmlns:n-1.\x00E4='u:&amp;&lt;\"'>")
                             TEXT("<c xmlns=''><d:d xmlns:d='u:a' xmlns:e='u:a' xmlns='u:f'/></c></b></a:a>"));
    std::vector<ComReference<IXMLDOMNode>> nodes;
    auto node = ComReference<IXMLDOMNode>::Share(RootOf(document.Get()).Get());
    while (node) {
        ComReference<IXMLDOMNode> child;
        node->get_firstChild(child.Receive());
        nodes.push_back(std::move(node));
        node = std::move(child);
    }
    ASSERT_EQ(nodes.size(), 4u);
    ASSERT_EQ(manager_->declarePrefix(TEXT("x"), TEXT("u:manager")), S_OK);
    ASSERT_EQ(manager_->declarePrefix(TEXT("z"), TEXT("u:manager")), S_OK);
    ASSERT_EQ(manager_->declarePrefix(TEXT("own"), TEXT("u:1")), S_OK);

    // What is asked in a node's context, told behind each other.
    const auto told = [&](size_t node, VARIANT_BOOL deep, bool areUris, const std::vector<WideText>& asked) {
        EXPECT_EQ(manager_->pushNodeContext(nodes[node].Get(), deep), S_OK);
        std::string answers;
        for (const WideText& text : asked) {
            answers += areUris ? Uri(text.c_str()) + ' ' : Prefixes(text.c_str()) + "| ";
        }
        EXPECT_EQ(manager_->popContext(), S_OK);
        return answers;
    };
    EXPECT_EQ(told(0, VARIANT_TRUE, true, {TEXT("a"), TEXT("x"), TEXT(""), TEXT("z"), TEXT("y")}),
              "u:a u:1 u:d u:manager - ");
    EXPECT_EQ(told(1, VARIANT_TRUE, true, {TEXT("a"), TEXT("x"), TEXT("n-1.\x00E4")}), "u:a u:2 u:&<\" ");
    EXPECT_EQ(told(1, VARIANT_FALSE, true, {TEXT("x"), TEXT("a"), TEXT("own")}), "u:2 - u:1 ");
    EXPECT_EQ(told(2, VARIANT_TRUE, true, {TEXT("x")}), "u:2 ");
    EXPECT_EQ(told(3, VARIANT_TRUE, true, {TEXT("d"), TEXT(""), TEXT("xml")}), "u:a u:f " + Printable(kXmlUri) + ' ');
    EXPECT_EQ(told(0, VARIANT_TRUE, false, {TEXT("u:1"), TEXT("u:manager"), TEXT("u:d")}), "x own | z | '' | ");
    EXPECT_EQ(told(1, VARIANT_TRUE, false, {TEXT("u:1"), TEXT("u:2"), TEXT("u:manager")}), "y own | x | z | ");
    EXPECT_EQ(told(2, VARIANT_TRUE, false, {TEXT("u:d"), TEXT("u:a")}), "| a | ");
    EXPECT_EQ(told(3, VARIANT_TRUE, false, {TEXT("u:f"), TEXT("u:none")}), "'' | | ");
    EXPECT_EQ(Uri(TEXT("x")), "u:manager");
    EXPECT_EQ(Prefixes(TEXT("u:manager")), "x z ");

    // Of a node that is given with the question, only what is in scope there counts.
    EXPECT_EQ(Uri(TEXT("x"), nodes[3].Get()), "u:2");
    EXPECT_EQ(Uri(TEXT("z"), nodes[3].Get()), "-");

    // The default namespace, undone: not even the manager's own.
    ASSERT_EQ(manager_->declarePrefix(TEXT(""), TEXT("u:outer")), S_OK);
    ASSERT_EQ(manager_->pushNodeContext(nodes[2].Get(), VARIANT_TRUE), S_OK);
    WCHAR buffer[10] = TEXT("#");
    int length = std::size(buffer);
    EXPECT_FALSE(FAILED(manager_->getURI(TEXT(""), nullptr, buffer, &length)));
    EXPECT_EQ(length, 0);

    // Contexts nest; what is declared in one goes with it.
    ASSERT_EQ(manager_->pushNodeContext(nodes[3].Get(), VARIANT_TRUE), S_OK);
    EXPECT_EQ(Uri(TEXT("")), "u:f");
    EXPECT_EQ(manager_->declarePrefix(TEXT("inner"), TEXT("u:inner")), S_OK);
    EXPECT_EQ(Uri(TEXT("inner")), "u:inner");
    EXPECT_EQ(manager_->popContext(), S_OK);
    EXPECT_EQ(Uri(TEXT("inner")), "-");
    EXPECT_EQ(manager_->popContext(), S_OK);
    EXPECT_EQ(Uri(TEXT("")), "u:outer");
}

TEST_F(Namespaces, AreThoseOfTreesThatAreBuilt) {
    const auto document = NewDocument();
    const auto root = NewNode(document.Get(), NODE_ELEMENT, TEXT("p:root"), TEXT("u:p"));
    ASSERT_EQ(document->appendChild(root.Get(), nullptr), S_OK);
    const auto child = NewNode(document.Get(), NODE_ELEMENT, TEXT("child"), TEXT("u:d"));
    const auto prefixes = [&](IXMLDOMNode* node, const WCHAR* uri) {
        EXPECT_EQ(manager_->pushNodeContext(node, VARIANT_TRUE), S_OK);
        const std::string found = Prefixes(uri);
        EXPECT_EQ(manager_->popContext(), S_OK);
        return found;
    };
    EXPECT_EQ(prefixes(root.Get(), TEXT("u:p")), "p ") << "of its own name alone";
    SetAttributeNode(document.Get(), root.Get(), TEXT("xmlns:p"), TEXT(""), TEXT("u:p"));
    SetAttributeNode(document.Get(), root.Get(), TEXT("xmlns:q"), TEXT(""), TEXT("u:1"));
    SetAttributeNode(document.Get(), root.Get(), TEXT("xmlns:q"), TEXT(""), TEXT("u:q"));
    EXPECT_EQ(prefixes(root.Get(), TEXT("u:p")), "p ");
    EXPECT_EQ(prefixes(root.Get(), TEXT("u:q")), "q ");
    EXPECT_EQ(prefixes(root.Get(), TEXT("u:1")), "") << "replaced";
    EXPECT_EQ(prefixes(child.Get(), TEXT("u:q")), "") << "not in the tree yet";
    ASSERT_EQ(root->appendChild(child.Get(), nullptr), S_OK);
    EXPECT_EQ(prefixes(child.Get(), TEXT("u:q")), "q ");
    EXPECT_EQ(prefixes(child.Get(), TEXT("u:p")), "p ");
    EXPECT_EQ(prefixes(child.Get(), TEXT("u:d")), "'' ");
    ASSERT_EQ(root->removeChild(child.Get(), nullptr), S_OK);
    EXPECT_EQ(prefixes(child.Get(), TEXT("u:q")), "");
    EXPECT_EQ(manager_->pushNodeContext(nullptr, VARIANT_TRUE), E_INVALIDARG);
}

}  // namespace
}  // namespace contract
