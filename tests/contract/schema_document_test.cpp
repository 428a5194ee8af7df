// Documents of the Print Schema as the driver builds and reads them, over each host's own XML object model.
#include "driver/ptprovider/schema_document.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "driver/ptprovider/print_schema.h"
#include "tests/contract/canonical_document.h"
#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

using velmora::ElementReference;
using velmora::kFrameworkNamespace;
using velmora::kKeywordsNamespace;
using velmora::kPrivateNamespace;
using velmora::QualifiedName;
using velmora::SchemaDocument;

// A document with its long namespaces told by the prefixes that they usually have.
std::string Shortened(IXMLDOMDocument2* document) {
    std::string text = CanonicalText(document);
    std::vector<std::pair<std::string, std::string>> names;
    for (const velmora::StandardNamespace& standard : velmora::kStandardNamespaces) {
        names.emplace_back(Printable(standard.uri), Printable(standard.prefix));
    }
    // The instance namespace begins as the schema's does.
    std::swap(names[0], names[1]);
    for (const auto& [uri, name] : names) {
        for (size_t place = 0; (place = text.find(uri, place)) != std::string::npos;) {
            text.replace(place, uri.size(), name);
        }
    }
    return text;
}

// The lines of the root's declarations.
std::vector<std::string> Declarations(IXMLDOMDocument2* document) {
    std::vector<std::string> lines;
    const std::string text = Shortened(document);
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = text.find('\n', begin);
        if (text.compare(begin, 8, "  xmlns:") == 0) {
            lines.push_back(text.substr(begin + 8, end - begin - 8));
        }
        begin = end + 1;
    }
    return lines;
}

class SchemaDocuments : public ContractTest {
  protected:
    // A document that was loaded, and its root's one child or itself.
    void Attach(const std::string& text) {
        loaded_ = LoadDocument(text);
        ASSERT_EQ(schema_.AttachDocument(loaded_.Get()), S_OK) << text;
    }
    // "uri|name" as it was read.
    static std::string Told(const QualifiedName& name) {
        return name.localName ? Printable(name.uri.Text()) + "|" + Printable(name.localName.Text()) : "nothing";
    }
    // A new document with an element of the private namespace as its root.
    void Create() {
        ASSERT_EQ(schema_.CreateDocument(), S_OK);
        ElementReference root;
        ASSERT_EQ(schema_.AppendElement(schema_.Document(), kFrameworkNamespace, TEXT("PrintCapabilities"), &root),
                  S_OK);
        ASSERT_EQ(schema_.SetVersionAttribute(root.Get(), 1), S_OK);
        schema_.SetRoot(std::move(root));
    }

    const ComOnThread com_;
    ComReference<IXMLDOMDocument2> loaded_;
    SchemaDocument schema_;
};

TEST_F(SchemaDocuments, AreBuiltOfNamedElements) {
    Create();
    for (const velmora::StandardNamespace& standard : velmora::kStandardNamespaces) {
        EXPECT_EQ(schema_.AddNamespaceAttribute(standard.uri, standard.prefix), S_OK);
    }
    EXPECT_EQ(schema_.AppendBanner(TEXT("Odd")), S_OK);
    ElementReference feature;
    ASSERT_EQ(schema_.AddFeature(kKeywordsNamespace, TEXT("Odd"), &feature), S_OK);
    EXPECT_EQ(schema_.AddDisplayName(feature.Get(), TEXT("A & B <c>")), S_OK);
    WCHAR name[] = TEXT("Letter (Rotated) Plain");
    EXPECT_EQ(schema_.AddSanitisedOption(feature.Get(), kPrivateNamespace, name, nullptr), S_OK);
    ElementReference option;
    ASSERT_EQ(schema_.AddOption(feature.Get(), kPrivateNamespace, TEXT(""), TEXT(""), &option), S_OK);
    ElementReference scored;
    ASSERT_EQ(schema_.AddScoredProperty(option.Get(), kKeywordsNamespace, TEXT("Width"), &scored), S_OK);
    EXPECT_EQ(schema_.AddValueInteger(scored.Get(), -3), S_OK);
    EXPECT_EQ(schema_.AddValueString(scored.Get(), kKeywordsNamespace, TEXT("A5")), S_OK);
    EXPECT_EQ(schema_.AddParameterInit(kKeywordsNamespace, TEXT("Q"), ULONG{0x80000000}), S_OK);
    EXPECT_EQ(schema_.AddParameterInit(nullptr, kKeywordsNamespace, TEXT("R"), nullptr, TEXT("text")), S_OK);

    const std::string text = Shortened(schema_.Document());
    const std::string blanks = "  #" + std::string(72, ' ') + '\n';
    const std::string banner = blanks + "  #" + std::string(68, ' ') + "Odd \n" + blanks;
    const size_t begin = text.find(banner);
    ASSERT_NE(begin, std::string::npos);
    std::string content;
    std::istringstream lines(text.substr(begin + banner.size()));
    for (std::string line; std::getline(lines, line);) {
        content += ' ' + line.substr(line.find_first_not_of(' '));
    }
    EXPECT_EQ(content,
              R"( {psf}Feature name="psk:Odd" {psf}Property name="psk:DisplayName" {psf}Value xsi:type="xsd:string")"
              R"( "A & B <c>" {psf}Option name="kxp:Letter_-Rotated-_Plain" {psf}Option {psf}ScoredProperty)"
              R"( name="psk:Width" {psf}Value xsi:type="xsd:integer" "-3" {psf}Value xsi:type="xsd:string" "psk:A5")"
              R"( {psf}ParameterInit name="psk:Q" {psf}Value xsi:type="xsd:integer" "2147483648")"
              R"( {psf}ParameterInit name="psk:R" {psf}Value xsi:type="xsd:string" "text")");
    RecordDocument(schema_.Document());
}

// A length where the definition says one, and the unit's value unless that is empty.
TEST_F(SchemaDocuments, DefineTextParameters) {
    Create();
    EXPECT_EQ(schema_.AddStringParameterDef(kPrivateNamespace, TEXT("S"), TEXT("Shown"), nullptr, TEXT("x"),
                                            TEXT("Conditional")),
              S_OK);
    const std::string shortForm = Shortened(schema_.Document());
    EXPECT_EQ(schema_.AddStringParameterDef(
                  nullptr, kPrivateNamespace, TEXT("T"),
                  {nullptr, kKeywordsNamespace, TEXT("Word"), 0, 20, TEXT(""), TEXT("Conditional")}),
              S_OK);
    const std::string longForm = Shortened(schema_.Document()).substr(shortForm.size());
    const auto parts = [](const std::string& text) {
        std::string found;
        for (const char* part : {"psf:MinLength", "psf:MaxLength", "\"characters\"", "\"psk:Word\""}) {
            found += text.find(part) == std::string::npos ? "" : part;
        }
        return found;
    };
    EXPECT_EQ(parts(shortForm), "psf:MinLength\"characters\"");
    EXPECT_EQ(parts(longForm), "psf:MaxLength\"psk:Word\"");
    RecordDocument(schema_.Document());
}

TEST_F(SchemaDocuments, BindPrefixesThatAreFree) {
    // A ticket that binds a usual prefix keeps its binding, whatever it stands for.
    Attach("<psf:PrintTicket xmlns:psf='u:other' xmlns:xsd='u:more'/>");
    EXPECT_EQ(Declarations(loaded_.Get()),
              (std::vector<std::string>{"kxp=\"kxp\"", "ns0000=\"xsd\"", "ns0001=\"psf\"", "oem=\"oem\"",
                                        "psf=\"u:other\"", "psk=\"psk\"", "xsd=\"u:more\"", "xsi=\"xsi\""}));
    // Prefixes that were generated are never generated again, nor is one that is bound.
    OwnedBstr prefix;
    const auto declare = [&](const WCHAR* uri, const WCHAR* wanted) {
        EXPECT_EQ(schema_.DeclareNamespace(schema_.Root(), uri, wanted, &prefix), S_OK);
        return Printable(prefix.Text());
    };
    EXPECT_EQ(declare(TEXT("u:new"), TEXT("psk")), "ns0002");
    EXPECT_EQ(schema_.AddNamespaceAttribute(TEXT("u:own"), TEXT("ns0003")), S_OK);
    EXPECT_EQ(declare(TEXT("u:next"), nullptr), "ns0004");
    EXPECT_EQ(declare(TEXT("u:free"), TEXT("free")), "free");
    EXPECT_EQ(schema_.LookupPrefix(schema_.Root(), TEXT("u:free"), &prefix), S_OK);
    EXPECT_EQ(Printable(prefix.Text()), "free");
    EXPECT_EQ(schema_.LookupPrefix(schema_.Root(), TEXT("u:nowhere"), &prefix), S_FALSE);
    RecordDocument(loaded_.Get());
}

TEST_F(SchemaDocuments, MakeNamesThatMeanTheSameWhereTheyStand) {
    // Below "b" the outer prefix stands for something else.
    Attach("<a xmlns:k='u:k' xmlns='u:default'><b xmlns:k='u:hidden'/></a>");
    ElementReference inner;
    ASSERT_EQ(schema_.FindChildElement(nullptr, TEXT("u:default"), TEXT("b"), &inner), S_OK);
    OwnedBstr text;
    const auto make = [&](IXMLDOMElement* element, const WCHAR* uri) {
        EXPECT_EQ(schema_.MakeQName(element, uri, TEXT("n"), &text), S_OK);
        return Printable(text.Text());
    };
    EXPECT_EQ(make(schema_.Root(), TEXT("u:k")), "k:n");
    EXPECT_EQ(make(schema_.Root(), TEXT("u:default")), "n");
    EXPECT_EQ(make(inner.Get(), TEXT("u:k")), "ns0000:n");
    EXPECT_EQ(make(inner.Get(), TEXT("u:hidden")), "k:n");
    QualifiedName name;
    EXPECT_EQ(schema_.SplitQName(inner.Get(), TEXT("ns0000:n"), &name), S_OK);
    EXPECT_EQ(Told(name), "u:k|n");

    EXPECT_EQ(schema_.MakeQName(schema_.Root(), TEXT(""), TEXT("n"), &text), E_INVALIDARG);
    EXPECT_EQ(schema_.MakeQName(schema_.Root(), TEXT("u:k"), TEXT(""), &text), E_INVALIDARG);
    EXPECT_EQ(schema_.MakeQName(schema_.Root(), TEXT("u:k"), WideText(10000, 'x').c_str(), &text), E_INVALIDARG);
    EXPECT_FALSE(text);
    EXPECT_EQ(schema_.MakeQName(schema_.Root(), TEXT("u:k"), WideText(9999, 'x').c_str(), &text), S_OK);
}

TEST_F(SchemaDocuments, ResolveNamesWhereTheyStand) {
    Attach("<a xmlns:p='u:one' xmlns='u:default'><b xmlns:p='u:two'/></a>");
    ElementReference inner;
    ASSERT_EQ(schema_.FindChildElement(nullptr, TEXT("u:default"), TEXT("b"), &inner), S_OK);
    const struct {
        const WCHAR* text;
        const char* outer;
        const char* inner;
    } rows[] = {
        {TEXT("p:x"), "u:one|x", "u:two|x"},       {TEXT("x"), "u:default|x", "u:default|x"},
        {TEXT("p:x:y"), "u:one|x:y", "u:two|x:y"}, {TEXT("q:x"), "nothing", "nothing"},
        {TEXT("p:"), "u:one|", "u:two|"},          {TEXT(""), "u:default|", "u:default|"},
    };
    for (const auto& row : rows) {
        for (const bool isInner : {false, true}) {
            QualifiedName name;
            schema_.SplitQName(isInner ? inner.Get() : schema_.Root(), row.text, &name);
            EXPECT_EQ(Told(name), isInner ? row.inner : row.outer) << Printable(row.text);
        }
    }
    QualifiedName name;
    Attach("<a/>");
    EXPECT_EQ(schema_.SplitQName(schema_.Root(), TEXT("x"), &name), S_OK);
    EXPECT_EQ(Told(name), "|x");
}

TEST_F(SchemaDocuments, WriteAttributesWithThePrefixOfTheirNamespace) {
    Create();
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), TEXT("a"), kFrameworkNamespace, TEXT("1")), S_OK);
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), TEXT("b"), kKeywordsNamespace, TEXT("2")), S_OK);
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), TEXT("c"), velmora::kInstanceNamespace, TEXT("3")), S_OK);
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), TEXT("d"), TEXT("u:unbound"), TEXT("4")), S_OK);
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), TEXT("a"), TEXT(""), TEXT("5")), S_OK);
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), WideText(63, 'x').c_str(), TEXT(""), TEXT("6")), S_OK);
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), WideText(64, 'x').c_str(), TEXT(""), TEXT("7")), E_INVALIDARG);
    EXPECT_EQ(schema_.SetAttribute(schema_.Root(), TEXT("e"), nullptr, TEXT("8")), E_INVALIDARG);
    EXPECT_EQ(schema_.SetAttribute(nullptr, TEXT("e"), TEXT(""), TEXT("8")), E_INVALIDARG);
    EXPECT_EQ(schema_.SetVersionAttribute(schema_.Root(), 0), E_INVALIDARG);
    EXPECT_EQ(schema_.AppendComment(nullptr, TEXT("")), E_INVALIDARG);
    const std::string text = Shortened(schema_.Document());
    for (const char* part : {"  a=\"5\"\n", "  b=\"2\"\n", "  xsi:c=\"3\"\n", "  d=\"4\"\n", "  version=\"1\"\n"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << text;
    }
    EXPECT_EQ(text.find("a=\"1\""), std::string::npos);
}

// A ticket whose prefixes and default namespaces are as odd as XML allows.
constexpr char kOddTicket[] =
    "<PrintTicket xmlns='{psf}' xmlns:psf='{psk}' xmlns:psk='u:foreign'>"
    "<!-- not a feature --><Feature name='psk:F'/>"
    "<Feature name='psf:F'><Other/><k:Option xmlns:psk='{psk}' xmlns:k='{psf}' name='psk:One'>"
    "<ScoredProperty name='psf:W'><Value> 42 </Value></ScoredProperty>"
    "<ScoredProperty name='psf:R'><ParameterRef name='psf:P'/></ScoredProperty></k:Option>"
    "<Option name='psf:Two'/></Feature>"
    "<Feature name='psf:G'><Option><ScoredProperty name='psf:OptionName'><Value>psf:Named</Value></ScoredProperty>"
    "</Option></Feature><Feature name='psf:H'><Option/></Feature><Feature name='psf:I'/>"
    "<ParameterInit name='psf:P'><Value>-7</Value></ParameterInit>"
    "<ParameterInit name='psf:Q'><Value>psf:Word</Value></ParameterInit><ParameterInit name='psf:E'/>"
    "</PrintTicket>";

TEST_F(SchemaDocuments, AreReadByNamespaceAndName) {
    Attach(kOddTicket);
    const struct {
        const WCHAR* uri;
        const WCHAR* feature;
        const WCHAR* option;  // of the keywords namespace; null: none
    } rows[] = {{kKeywordsNamespace, TEXT("F"), TEXT("One")}, {kKeywordsNamespace, TEXT("G"), TEXT("Named")},
                {kKeywordsNamespace, TEXT("H"), nullptr},     {kKeywordsNamespace, TEXT("I"), nullptr},
                {TEXT("u:foreign"), TEXT("F"), nullptr},      {kKeywordsNamespace, TEXT("J"), nullptr}};
    for (const auto& row : rows) {
        ElementReference feature;
        ElementReference option;
        QualifiedName name;
        const HRESULT result = schema_.FindFeatureOption(nullptr, row.uri, row.feature, &feature, &option, &name);
        EXPECT_EQ(name.localName && name.Is(kKeywordsNamespace, row.option ? row.option : TEXT("")),
                  row.option != nullptr)
            << Printable(row.feature);
        EXPECT_EQ(result == S_OK, row.option && feature && option) << Printable(row.feature);
    }
    ElementReference option;
    ASSERT_EQ(schema_.FindFeatureOption(nullptr, kKeywordsNamespace, TEXT("F"), nullptr, &option, nullptr), S_OK);
    LONG number = 99;
    EXPECT_EQ(schema_.ReadScoredPropertyInteger(option.Get(), kKeywordsNamespace, TEXT("W"), &number), S_OK);
    EXPECT_EQ(number, 42);
    EXPECT_EQ(schema_.ReadScoredParameterInteger(option.Get(), kKeywordsNamespace, TEXT("R"), &number), S_OK);
    EXPECT_EQ(number, -7);
    ULONG count = 0;
    EXPECT_EQ(schema_.ReadScoredParameterUnsigned(option.Get(), kKeywordsNamespace, TEXT("R"), &count), S_OK);
    EXPECT_EQ(count, 0xFFFFFFF9u);
    EXPECT_EQ(schema_.ReadScoredParameterInteger(option.Get(), kKeywordsNamespace, TEXT("W"), &number), S_FALSE);
    EXPECT_EQ(schema_.ReadParameterInitInteger(kKeywordsNamespace, TEXT("E"), &number), S_FALSE);
    EXPECT_EQ(number, -7);
    QualifiedName word;
    ElementReference init;
    ASSERT_EQ(schema_.FindParameterInit(nullptr, kKeywordsNamespace, TEXT("Q"), &init), S_OK);
    EXPECT_EQ(schema_.ReadValueQName(init.Get(), &word), S_OK);
    EXPECT_TRUE(word.Is(kKeywordsNamespace, TEXT("Word")));
    EXPECT_EQ(schema_.RemoveChild(nullptr, init.Get()), S_OK);
    EXPECT_EQ(schema_.FindParameterInit(nullptr, kKeywordsNamespace, TEXT("Q"), &init), S_FALSE);
    EXPECT_EQ(schema_.FindFirstOption(nullptr, &option), E_INVALIDARG);
}

TEST_F(SchemaDocuments, ReadNumbersAsFarAsTheyAreNumbers) {
    const struct {
        const char* text;
        LONG number;
        ULONG unsignedNumber;
    } rows[] = {
        {"12", 12, 12},
        {"  +12abc", 12, 12},
        {"-1", -1, 0xFFFFFFFF},
        {"x", 0, 0},
        {"-", 0, 0},
        {"2147483648", 2147483647, 2147483648u},
        {"-99999999999999999999", -2147483647 - 1, 0xFFFFFFFF},
        {"4294967296", 2147483647, 0xFFFFFFFF},
    };
    for (const auto& row : rows) {
        Attach("<a xmlns:f='{psf}'><f:Value>" + std::string(row.text) + "</f:Value></a>");
        LONG number = 0;
        ULONG unsignedNumber = 0;
        EXPECT_EQ(schema_.ReadValueInteger(schema_.Root(), &number), S_OK);
        EXPECT_EQ(schema_.ReadValueUnsigned(schema_.Root(), &unsignedNumber), S_OK);
        EXPECT_EQ(number, row.number) << row.text;
        EXPECT_EQ(unsignedNumber, row.unsignedNumber) << row.text;
    }
}

TEST_F(SchemaDocuments, WithoutADocumentRefuseEverything) {
    ElementReference element;
    OwnedBstr text;
    EXPECT_EQ(schema_.AppendElement(nullptr, kFrameworkNamespace, TEXT("x"), &element), E_INVALIDARG);
    EXPECT_EQ(schema_.AppendComment(nullptr, TEXT("x")), E_INVALIDARG);
    EXPECT_EQ(schema_.AppendBanner(TEXT("x")), E_INVALIDARG);
    EXPECT_EQ(schema_.AddNamespaceAttribute(TEXT("u:x"), TEXT("x")), E_INVALIDARG);
    EXPECT_EQ(schema_.FindFeature(nullptr, kKeywordsNamespace, TEXT("x"), &element), E_INVALIDARG);
    EXPECT_EQ(schema_.AttachDocument(nullptr), E_INVALIDARG);
    // The manager alone knows the standard namespaces then.
    EXPECT_EQ(schema_.LookupPrefix(nullptr, kKeywordsNamespace, &text), S_OK);
    EXPECT_EQ(Printable(text.Text()), "psk");
}

}  // namespace
}  // namespace contract
