#include "platform/xml/xml_files.h"

#include "tests/platform/xml_fixture.h"

namespace host {
namespace {

using XmlFilesTest = XmlTest;

TEST_F(XmlFilesTest, AreReadInTheirEncoding) {
    using namespace std::string_literals;
    const struct {
        const char* what;
        std::string bytes;
        const char* fault;  // behind the file's name; empty: loaded
    } rows[] = {
        {"UTF-8", "<a>\xC3\xA4</a>", ""},
        {"with mark", "\xEF\xBB\xBF<a>\xC3\xA4</a>", ""},
        {"declared", "<?xml version='1.0' encoding='utf-8'?><a>\xC3\xA4</a>", ""},
        {"UTF-16", "\xFF\xFE<\0a\0>\0\xE4\0<\0/\0a\0>\0"s, ""},
        {"the other order", "\xFE\xFF\0<\0a\0>\0\xE4\0<\0/\0a\0>"s, ""},
        {"half a character", "\xFF\xFE<\0a"s, ": UTF-16 text with half a character at its end"},
        {"Latin 1", "<?xml version='1.0' encoding='iso-8859-1'?><a/>",
         ": encoding ISO-8859-1, where UTF-8 or UTF-16 with its mark is expected"},
        {"no UTF-8", "<a>\n\xE4</a>", ": 2: bytes that aren't UTF-8"},
        {"not well-formed", "<a>\n<b></a>", ":2:8: "},
    };
    const std::filesystem::path file = machine_->Drive() / "file.xml";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Put("file.xml", row.bytes);
        const auto document = NewDocument();
        const std::string fault = LoadXmlFile(file, document.Get());
        if (*row.fault == 0) {
            EXPECT_EQ(fault, "");
            Text text;
            document->get_text(text.Receive());
            EXPECT_EQ(text.Wide(), u"\xE4");
        } else {
            EXPECT_EQ(fault.substr(0, file.string().size() + std::string(row.fault).size()), file.string() + row.fault);
        }
    }
    EXPECT_EQ(LoadXmlFile(machine_->Drive() / "none.xml", NewDocument().Get()),
              (machine_->Drive() / "none.xml").string() + ": No such file or directory");
    EXPECT_EQ(LoadXmlFile(machine_->Drive(), NewDocument().Get()), machine_->Drive().string() + ": Is a directory");
}

TEST_F(XmlFilesTest, AreWrittenForPeople) {
    const auto document = Load(
        u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><!--c--><a><b><c>\xE4</c></b>"
        u"<d>x<e><f/></e></d><g xml:space=\"preserve\"><h/></g></a>");
    EXPECT_EQ(SaveXml(document.Get(), true),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--c-->\n<a>\n  <b>\n    <c>\xC3\xA4</c>\n  </b>\n"
              "  <d>x<e><f/></e></d>\n  <g xml:space=\"preserve\"><h/></g>\n</a>\n");
    EXPECT_EQ(SaveXml(document.Get(), false),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--c-->\n<a><b><c>\xC3\xA4</c></b>"
              "<d>x<e><f/></e></d><g xml:space=\"preserve\"><h/></g></a>\n");
    // The driver's own declaration stays as it is.
    const auto built = Load(u"<a/>");
    Ref<IXMLDOMProcessingInstruction> declaration;
    built->createProcessingInstruction(Text(u"xml").Get(), Text(u"version=\"1.0\"  encoding=\"UTF-8\"").Get(),
                                       declaration.Receive());
    VARIANT before{};
    const auto root = RootOf(built.Get());
    before.vt = VT_UNKNOWN;
    before.punkVal = root.Get();
    EXPECT_EQ(built->insertBefore(declaration.Get(), before, nullptr), S_OK);
    EXPECT_EQ(SaveXml(built.Get(), true), "<?xml version=\"1.0\"  encoding=\"UTF-8\"?>\n<a/>\n");
}

}  // namespace
}  // namespace host
