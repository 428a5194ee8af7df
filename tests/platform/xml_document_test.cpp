#include <functional>

#include "tests/platform/xml_fixture.h"

namespace host {
namespace {

using XmlDocumentTest = XmlTest;

TEST_F(XmlDocumentTest, WritesWhatItRead) {
    const struct {
        const char16_t* text;
        const char16_t* written;  // null: the same, with the line end of a document's node
    } rows[] = {
        {u"<a/>", nullptr},
        {u"<p:a xmlns:p=\"u\" xmlns=\"v\" b=\"1\" p:c=\"2\"><d/></p:a>", nullptr},
        {u"<a>1 &lt; 2 &amp; 3<![CDATA[<&]]></a>", nullptr},
        {u"<a b=\"&lt;&quot;&#9;&#10;\U0001F5A8\"/>", nullptr},
        {u"<a xml:space=\"preserve\"> <b> </b> </a>", nullptr},
        {u"<a>\r\n <b> x\ny </b>\r\n</a>", u"<a><b> x\r\ny </b></a>\r\n"},
        {u"<?xml version='1.0'   encoding='UTF-8'?><!-- c --><a></a><?p d?>",
         u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!-- c -->\r\n<a/>\r\n<?p d?>\r\n"},
    };
    for (const auto& row : rows) {
        const auto document = Load(row.text);
        ASSERT_TRUE(document) << Shown(row.text);
        const std::u16string same = std::u16string(row.text) + u"\r\n";
        EXPECT_EQ(Shown(XmlOf(document.Get())), Shown(row.written != nullptr ? row.written : same));
        EXPECT_EQ(XmlOf(document.Get()), row.written != nullptr ? row.written : same);
    }
}

TEST_F(XmlDocumentTest, DeclaresWhereItIsNeeded) {
    const auto document = NewDocument();
    const auto root = AppendElement(document.Get(), document.Get(), u"p:root", u"u:p");
    EXPECT_EQ(SetAttributeNode(document.Get(), root.Get(), u"xmlns:p", u"", u"u:p"), S_OK);
    EXPECT_EQ(SetAttribute(root.Get(), u"xmlns:q", u"u:1"), S_OK);
    EXPECT_EQ(SetAttribute(root.Get(), u"xmlns:q", u"u:q"), S_OK);
    EXPECT_EQ(SetAttributeNode(document.Get(), root.Get(), u"name", u"u:p", u"v"), S_OK);
    EXPECT_EQ(SetAttribute(root.Get(), u"q:set", u"w"), S_OK);
    AppendElement(document.Get(), root.Get(), u"p:in", u"u:p");
    const auto outside = AppendElement(document.Get(), root.Get(), u"r:out", u"u:r");
    EXPECT_EQ(SetAttributeNode(document.Get(), outside.Get(), u"s:a", u"u:s", u"1"), S_OK);
    const auto defaulted = AppendElement(document.Get(), outside.Get(), u"d", u"u:d");
    const auto none = AppendElement(document.Get(), defaulted.Get(), u"none", u"");
    EXPECT_EQ(none->put_text(Text(u" <&>\"\r\n").Get()), S_OK);
    EXPECT_EQ(Shown(XmlOf(document.Get())),
              "<p:root xmlns:p=\"u:p\" xmlns:q=\"u:q\" name=\"v\" q:set=\"w\"><p:in/>"
              "<r:out xmlns:r=\"u:r\" xmlns:s=\"u:s\" s:a=\"1\"><d xmlns=\"u:d\">"
              "<none xmlns=\"\"> &lt;&amp;&gt;\"&#13;\r\n</none></d></r:out></p:root>\r\n");
    Ref<IXMLDOMNamedNodeMap> map;
    Ref<IXMLDOMNode> attribute;
    root->get_attributes(map.Receive());
    EXPECT_EQ(map->getQualifiedItem(Text(u"name").Get(), Text(u"u:p").Get(), attribute.Receive()), S_OK);
    EXPECT_EQ(map->getQualifiedItem(Text(u"set").Get(), Text(u"u:q").Get(), attribute.Receive()), S_OK);
    EXPECT_EQ(
        map->getQualifiedItem(Text(u"q").Get(), Text(u"http://www.w3.org/2000/xmlns/").Get(), attribute.Receive()),
        S_OK);
    EXPECT_EQ(Shown(XmlOf(attribute.Get())), "xmlns:q=\"u:q\"");
}

// What can't be written as it is stays well-formed.
TEST_F(XmlDocumentTest, WritesWellFormedTextAlways) {
    const auto document = NewDocument();
    const auto root = AppendElement(document.Get(), document.Get(), u"a", u"");
    EXPECT_EQ(SetAttribute(root.Get(), u"b", u"\x01\xD800"), S_OK);
    const std::pair<DOMNodeType, const char16_t*> nodes[] = {
        {NODE_COMMENT, u"a--b---"},
        {NODE_CDATA_SECTION, u"x]]>y"},
        {NODE_PROCESSING_INSTRUCTION, u"x?>y"},
        {NODE_TEXT, u"]]>"},
    };
    for (const auto& [type, value] : nodes) {
        const auto node = NewNode(document.Get(), type, u"t", u"");
        EXPECT_EQ(node->put_text(Text(value).Get()), S_OK);
        EXPECT_EQ(root->appendChild(node.Get(), nullptr), S_OK);
    }
    EXPECT_EQ(XmlOf(document.Get()),
              u"<a b=\"\xFFFD\xFFFD\"><!--a- -b- - - --><![CDATA[x]]]]><![CDATA[>y]]>"
              u"<?t x? >y?>]]&gt;</a>\r\n");
    EXPECT_TRUE(Load(XmlOf(document.Get())));
}

TEST_F(XmlDocumentTest, RefusesWhatHasNoPlace) {
    const auto document = Load(u"<?xml version=\"1.0\"?><p:a xmlns:p=\"u\"><b/></p:a>");
    const auto root = RootOf(document.Get());
    Ref<IXMLDOMNode> child;
    root->get_firstChild(child.Receive());
    const auto text = NewNode(document.Get(), NODE_TEXT, u"", u"");
    const auto element = NewNode(document.Get(), NODE_ELEMENT, u"c", u"");
    const auto declaration = NewNode(document.Get(), NODE_PROCESSING_INSTRUCTION, u"xml", u"");
    EXPECT_EQ(document->appendChild(text.Get(), nullptr), E_FAIL);
    EXPECT_EQ(document->appendChild(element.Get(), nullptr), E_FAIL) << "a second root";
    EXPECT_EQ(document->appendChild(declaration.Get(), nullptr), E_FAIL) << "not at the beginning";
    EXPECT_EQ(root->appendChild(declaration.Get(), nullptr), E_FAIL);
    EXPECT_EQ(child->appendChild(root.Get(), nullptr), E_FAIL) << "below itself";
    EXPECT_EQ(root->appendChild(root.Get(), nullptr), E_FAIL);
    EXPECT_EQ(document->appendChild(root.Get(), nullptr), S_OK) << "it is the root already";
    const struct {
        DOMNodeType type;
        const char16_t* name;
        const char16_t* uri;
    } names[] = {
        {NODE_ELEMENT, u"a:b:c", u"u"},   {NODE_ELEMENT, u"a b", u""},
        {NODE_ELEMENT, u":a", u"u"},      {NODE_ELEMENT, u"a:", u"u"},
        {NODE_ELEMENT, u"1a", u""},       {NODE_ELEMENT, u"p:a", u""},
        {NODE_ELEMENT, u"xmlns:a", u""},  {NODE_ATTRIBUTE, u"xmlns:a", u"u"},
        {NODE_ATTRIBUTE, u"xml:a", u"u"}, {NODE_PROCESSING_INSTRUCTION, u"p:a", u""},
    };
    for (const auto& row : names) {
        EXPECT_FALSE(NewNode(document.Get(), row.type, row.name, row.uri)) << Shown(row.name);
    }
    EXPECT_EQ(SetAttribute(root.Get(), u"none:a", u"1"), E_FAIL) << "an unbound prefix";
    VARIANT value{};
    value.vt = VT_NULL;
    EXPECT_EQ(root->setAttribute(Text(u"a").Get(), value), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Shown(XmlOf(document.Get())), "<?xml version=\"1.0\"?>\r\n<p:a xmlns:p=\"u\"><b/></p:a>\r\n");
}

TEST_F(XmlDocumentTest, SaysWhereTextIsWrong) {
    const struct {
        const char16_t* text;
        HRESULT code;
        LONG line;
        LONG column;
        const char16_t* source;
    } rows[] = {
        {u"<a>\n \x3042<b></a>", E_XML_NOTWF, 2, 10, u" \x3042<b></a>"},
        {u"<a>\r\n<b c=1/>\r\n</a>", E_XML_NOTWF, 2, 6, u"<b c=1/>"},
        {u"<p:a/>", E_XML_NOTWF, 1, 5, u"<p:a/>"},
        {u"", E_XML_NOTWF, 1, 1, u""},
        {u"<a>\xD800</a>", E_XML_NOTWF, 1, 1, u""},
        {u"<!DOCTYPE a><a/>", E_XML_NODTD, 1, 12, u"<!DOCTYPE a><a/>"},
        {u"<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>", E_XML_NODTD, 1, 40,
         u"<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>"},
    };
    const auto document = NewDocument();
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text));
        VARIANT_BOOL loaded = VARIANT_TRUE;
        EXPECT_EQ(document->loadXML(Text(row.text).Get(), &loaded), S_FALSE);
        EXPECT_EQ(loaded, VARIANT_FALSE);
        Ref<IXMLDOMParseError> error;
        ASSERT_EQ(document->get_parseError(error.Receive()), S_OK);
        LONG code = 0;
        LONG line = 0;
        LONG column = 0;
        Text reason;
        Text source;
        EXPECT_EQ(error->get_errorCode(&code), S_OK);
        error->get_line(&line);
        error->get_linepos(&column);
        EXPECT_EQ(error->get_reason(reason.Receive()), S_OK);
        EXPECT_EQ(error->get_srcText(source.Receive()), S_OK);
        EXPECT_EQ(code, row.code);
        EXPECT_EQ(line, row.line);
        EXPECT_EQ(column, row.column);
        EXPECT_NE(reason.Wide(), u"");
        EXPECT_EQ(source.Wide(), row.source);
        EXPECT_EQ(XmlOf(document.Get()), u"");
    }
}

// Entities that would grow without end, and a DTD that would be fetched, are never read.
TEST_F(XmlDocumentTest, ReadsNoDtd) {
    EXPECT_FALSE(
        Load(u"<!DOCTYPE a [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'>"
             u"<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;'>]><a>&c;</a>"));
    const auto document = NewDocument();
    VARIANT prohibit{};
    prohibit.vt = VT_BOOL;
    prohibit.boolVal = VARIANT_TRUE;
    EXPECT_EQ(document->setProperty(Text(u"ProhibitDTD").Get(), prohibit), S_OK);
    prohibit.boolVal = VARIANT_FALSE;
    EXPECT_EQ(document->setProperty(Text(u"ProhibitDTD").Get(), prohibit), E_NOTIMPL);
}

TEST_F(XmlDocumentTest, DepthAndLengthHaveNoBound) {
    constexpr int kDepth = 20000;
    std::u16string deep;
    std::u16string ends;
    for (int i = 0; i < kDepth; ++i) {
        deep += u"<a>";
        ends += u"</a>";
    }
    deep += u"text" + ends;
    std::u16string wide = u"<a>";
    for (int i = 0; i < 100000; ++i) {
        wide += u"<b c=\"1\"/>";
    }
    wide += u"</a>";
    for (const std::u16string& text : {deep, wide}) {
        const auto document = Load(text);
        ASSERT_TRUE(document);
        EXPECT_EQ(XmlOf(document.Get()), text + u"\r\n");
        const auto root = RootOf(document.Get());
        Ref<IXMLDOMNode> copy;
        ASSERT_EQ(root->cloneNode(VARIANT_TRUE, copy.Receive()), S_OK);
        EXPECT_EQ(XmlOf(copy.Get()), text);
        Text content;
        EXPECT_EQ(copy->get_text(content.Receive()), S_OK);
        Ref<IXMLDOMNodeList> children;
        root->get_childNodes(children.Receive());
        LONG count = 0;
        Ref<IXMLDOMNode> child;
        while (children->get_item(count, child.Receive()) == S_OK) {
            ++count;
        }
        EXPECT_EQ(count, text == deep ? 1 : 100000);
        // Into another document, whose old root goes with all that is below it.
        const auto other = Load(u"<other/>");
        EXPECT_EQ(RootOf(other.Get())->appendChild(root.Get(), nullptr), S_OK);
        EXPECT_EQ(RootOf(other.Get())->put_text(nullptr), S_OK);
    }
}

TEST_F(XmlDocumentTest, LedgerTellsWhatIsHeld) {
    auto document = Load(u"<p:a xmlns:p=\"u\" b=\"1\">text</p:a>");
    auto root = RootOf(document.Get());
    const auto line = [](const std::string& what) { return "COM reference to " + what; };
    EXPECT_EQ(StillOpen(), (Lines{line("document #document"), line("element p:a")}));
    document.Reset();
    Ref<IXMLDOMAttribute> attribute;
    root->getAttributeNode(Text(u"b").Get(), attribute.Receive());
    EXPECT_EQ(root->removeAttribute(Text(u"b").Get()), S_OK);
    root.Reset();
    EXPECT_EQ(StillOpen(), Lines{line("attribute b")});
    Ref<IXMLDOMDocument> owner;
    EXPECT_EQ(attribute->get_ownerDocument(owner.Receive()), S_OK);
    attribute.Reset();
    EXPECT_EQ(StillOpen(), Lines{line("document #document")}) << "the attribute went with its reference";
    owner.Reset();
    EXPECT_EQ(StillOpen(), Lines());
}

// Every step fails in turn: with no memory, and nothing is left behind or half done.
TEST_F(XmlDocumentTest, StepsFailWithoutMemory) {
    const auto document = Load(u"<a b=\"1\"/>");
    const auto root = RootOf(document.Get());
    const auto child = NewNode(document.Get(), NODE_ELEMENT, u"c", u"");
    const auto attribute = NewNode(document.Get(), NODE_ATTRIBUTE, u"d", u"");
    const Text name(u"name");
    Text text;
    Ref<IXMLDOMNode> node;
    Ref<IXMLDOMComment> comment;
    Ref<IXMLDOMNodeList> list;
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = NODE_ELEMENT;
    const std::pair<const char*, std::function<HRESULT()>> steps[] = {
        {"createNode", [&] { return document->createNode(value, name.Get(), nullptr, node.Receive()); }},
        {"createComment", [&] { return document->createComment(name.Get(), comment.Receive()); }},
        {"appendChild", [&] { return root->appendChild(child.Get(), nullptr); }},
        {"setAttribute", [&] { return root->setAttribute(name.Get(), value); }},
        {"setAttributeNode",
         [&] { return root->setAttributeNode(static_cast<IXMLDOMAttribute*>(attribute.Get()), nullptr); }},
        {"put_text", [&] { return root->put_text(name.Get()); }},
        {"get_text", [&] { return root->get_text(text.Receive()); }},
        {"get_nodeName", [&] { return root->get_nodeName(text.Receive()); }},
        {"get_xml", [&] { return root->get_xml(text.Receive()); }},
        {"get_childNodes", [&] { return root->get_childNodes(list.Receive()); }},
        {"cloneNode", [&] { return root->cloneNode(VARIANT_TRUE, node.Receive()); }},
    };
    for (const auto& [what, step] : steps) {
        FailAllocation(1);
        EXPECT_EQ(step(), E_OUTOFMEMORY) << what;
    }
    FailAllocation(0);
    EXPECT_EQ(XmlOf(root.Get()), u"<a b=\"1\"/>");
}

}  // namespace
}  // namespace host
