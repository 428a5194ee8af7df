#include "platform/xml/xml_files.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "platform/com/results.h"
#include "platform/kernel/text.h"
#include "platform/xml/node.h"
#include "platform/xml/writer.h"

namespace host {
namespace {

struct DecodedText {
    std::u16string text;
    std::string fault;  // empty: none
};

std::u16string FromUtf16(std::string_view bytes, bool bigEndian) {
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<uint8_t>(bytes[i]);
        const auto second = static_cast<uint8_t>(bytes[i + 1]);
        text += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

// The value of `encoding` in the XML declaration, in capitals; empty where there is none.
std::string DeclaredEncoding(std::string_view text) {
    const std::string_view declaration = text.starts_with("<?xml") ? text.substr(0, text.find("?>")) : "";
    const size_t name = declaration.find("encoding");
    const size_t open = declaration.find_first_of("\"'", std::min(name, declaration.size()));
    if (open == std::string_view::npos) {
        return {};
    }
    const std::string_view value = declaration.substr(open + 1);
    return ToUtf8(FoldCase(ToWide(value.substr(0, value.find(declaration[open])))));
}

DecodedText Decode(std::string_view bytes) {
    using namespace std::string_view_literals;
    const bool isBig = bytes.starts_with("\xFE\xFF"sv) || bytes.starts_with("\0<"sv);
    if (isBig || bytes.starts_with("\xFF\xFE"sv) || bytes.starts_with("<\0"sv)) {
        return bytes.size() % 2 == 0 ? DecodedText{FromUtf16(bytes, isBig), ""}
                                     : DecodedText{u"", "UTF-16 text with half a character at its end"};
    }
    const std::string encoding = DeclaredEncoding(bytes);
    if (!encoding.empty() && encoding != "UTF-8" && encoding != "US-ASCII") {
        return {u"", "encoding " + encoding + ", where UTF-8 or UTF-16 with its mark is expected"};
    }
    bool clean = true;
    std::u16string text = ToWide(bytes, &clean);
    if (!clean) {
        const size_t before = text.find(u'\xFFFD');
        const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(before), u'\n');
        return {u"", std::to_string(line) + ": bytes that aren't UTF-8"};
    }
    return {std::move(text), ""};
}

// A text that the layer's objects gave.
class OwnedText {
  public:
    ~OwnedText() { SysFreeString(text_); }
    BSTR* Receive() { return &text_; }
    std::string Utf8() const { return ToUtf8(TextOf(text_)); }

  private:
    BSTR text_ = nullptr;
};

std::string FaultOf(IXMLDOMDocument2* document) {
    IXMLDOMParseError* error = nullptr;
    if (document->get_parseError(&error) != S_OK) {
        return "there is no memory";
    }
    OwnedText reason;
    LONG line = 0;
    LONG column = 0;
    error->get_reason(reason.Receive());
    error->get_line(&line);
    error->get_linepos(&column);
    error->Release();
    return std::to_string(line) + ':' + std::to_string(column) + ": " + reason.Utf8();
}

}  // namespace

std::string LoadXmlFile(const std::filesystem::path& file, IXMLDOMDocument2* document) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) {
        return file.string() + ": " + std::generic_category().message(EISDIR);
    }
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        return file.string() + ": " + std::generic_category().message(errno);
    }
    const DecodedText decoded = Decode(bytes);
    if (!decoded.fault.empty()) {
        return file.string() + ": " + decoded.fault;
    }
    BSTR text = SysAllocStringLen(decoded.text.data(), static_cast<UINT>(decoded.text.size()));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const HRESULT result = text != nullptr ? document->loadXML(text, &loaded) : E_OUTOFMEMORY;
    SysFreeString(text);
    if (FAILED(result)) {
        return file.string() + ": there is no memory";
    }
    return loaded != VARIANT_FALSE ? "" : file.string() + ':' + FaultOf(document);
}

std::string SaveXml(IXMLDOMDocument2* document, bool indent) {
    const Node* node = NodeOf(document);
    if (node == nullptr) {
        throw std::invalid_argument("the document isn't one of the layer's");
    }
    std::string text = ToUtf8(WriteXml(node, {u"\n", indent}));
    if (DeclaredEncoding(text) == "UTF-8") {
        return text;
    }
    if (text.starts_with("<?xml ")) {
        text.erase(0, text.find('\n') + 1);
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + text;
}

}  // namespace host
