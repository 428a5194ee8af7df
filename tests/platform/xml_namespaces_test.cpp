#include "tests/platform/xml_fixture.h"

namespace host {
namespace {

class NamespaceManagerTest : public XmlTest {
  protected:
    NamespaceManagerTest() {
        CoCreateInstance(kManagerClass, nullptr, CLSCTX_INPROC_SERVER, kManagerId, manager_.ReceiveAny());
    }
    void TearDown() override {
        manager_.Reset();
        XmlTest::TearDown();
    }

    // "-": none.
    std::string Uri(const WCHAR* prefix) const {
        WCHAR buffer[60];
        int chars = 60;
        return manager_->getURI(prefix, nullptr, buffer, &chars) == S_OK ? Shown(buffer) : "-";
    }
    std::string Prefix(const WCHAR* uri, LONG index) const {
        WCHAR buffer[60];
        int chars = 60;
        return manager_->getPrefix(uri, index, buffer, &chars) == S_OK ? Shown(buffer) : "-";
    }
    std::string Declared(LONG index) const {
        WCHAR buffer[60];
        int chars = 60;
        return manager_->getDeclaredPrefix(index, buffer, &chars) == S_OK ? Shown(buffer) : "-";
    }

    Ref<IMXNamespaceManager> manager_;
};

TEST_F(NamespaceManagerTest, ContextsNest) {
    EXPECT_EQ(Declared(0), "xml");
    EXPECT_EQ(manager_->declarePrefix(TEXT("p"), TEXT("u:1")), S_OK);
    EXPECT_EQ(Declared(1), "p");
    EXPECT_EQ(manager_->pushContext(), S_OK);
    EXPECT_EQ(Declared(0), "-");
    EXPECT_EQ(Uri(TEXT("p")), "u:1") << "of the context outside";
    EXPECT_EQ(manager_->declarePrefix(TEXT("p"), TEXT("u:2")), S_OK);
    EXPECT_EQ(manager_->declarePrefix(TEXT("q"), TEXT("u:1")), S_OK);
    EXPECT_EQ(Prefix(TEXT("u:1"), 0), "q");
    EXPECT_EQ(Prefix(TEXT("u:1"), 1), "-") << "hidden";
    EXPECT_EQ(Uri(TEXT("xmlns")), "http://www.w3.org/2000/xmlns/");
    EXPECT_EQ(manager_->popContext(), S_OK);
    EXPECT_EQ(Prefix(TEXT("u:1"), 0), "p");
    EXPECT_EQ(manager_->pushContext(), S_OK);
    EXPECT_EQ(manager_->reset(), S_OK);
    EXPECT_EQ(Uri(TEXT("p")), "-");
    EXPECT_EQ(manager_->popContext(), E_FAIL);
}

TEST_F(NamespaceManagerTest, AContextHoldsItsNode) {
    auto document = Load(u"<p:a xmlns:p=\"u:p\" xmlns:q=\"u:p\"><b q:c=\"1\">text</b></p:a>");
    Ref<IXMLDOMNode> node;
    RootOf(document.Get())->get_firstChild(node.Receive());
    ASSERT_EQ(manager_->pushNodeContext(document.Get(), VARIANT_TRUE), S_OK);
    EXPECT_EQ(Prefix(TEXT("u:p"), 0), "-") << "a document binds nothing itself";
    EXPECT_EQ(manager_->popContext(), S_OK);
    Ref<IXMLDOMNode> text;
    node->get_firstChild(text.Receive());
    ASSERT_EQ(manager_->pushNodeContext(text.Get(), VARIANT_TRUE), S_OK);
    document.Reset();
    node.Reset();
    text.Reset();
    EXPECT_EQ(Prefix(TEXT("u:p"), 0), "p");
    EXPECT_EQ(Prefix(TEXT("u:p"), 1), "q");
    EXPECT_EQ(Prefix(TEXT("u:p"), 2), "-");
    FailAllocation(1);
    EXPECT_EQ(manager_->pushContext(), E_OUTOFMEMORY);
    FailAllocation(1);
    EXPECT_EQ(manager_->declarePrefix(TEXT("r"), TEXT("u")), E_OUTOFMEMORY);
    EXPECT_EQ(Uri(TEXT("r")), "-");
    manager_.Reset();
    EXPECT_EQ(StillOpen(), Lines()) << "it let its node go";
}

}  // namespace
}  // namespace host
