// The checker itself: good documents have no findings, and one fault is found as what it is. Documents are over each
// host's own DOM.
#include "tests/print_schema/print_schema_checker.h"

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/dom_document.h"

namespace contract {
namespace {

class PrintSchemaChecker : public ContractTest {
  protected:
    // A line for each finding: the element with its fault.
    static std::string Findings(const std::string& text) {
        const auto document = LoadDocument(text);
        std::ostringstream lines;
        for (const print_schema::Finding& finding : print_schema::CheckPrintSchema(document.Get())) {
            lines << finding.place.substr(finding.place.rfind('/') + 1) << ": " << finding.fault << '\n';
        }
        return lines.str();
    }

    const ComOnThread com_;
};

constexpr std::string_view kNamespaces =
    " xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:xsi='{xsi}' xmlns:xsd='{xsd}' xmlns:kxp='{kxp}' xmlns:oem='{oem}'";

// Elements, told shortly.
std::string Value(const std::string& type, const std::string& text) {
    return "<psf:Value xsi:type='xsd:" + type + "'>" + text + "</psf:Value>";
}
std::string Named(const std::string& element, const std::string& name, const std::string& content) {
    return "<psf:" + element + " name='" + name + "'>" + content + "</psf:" + element + ">";
}
std::string Property(const std::string& name, const std::string& type, const std::string& text) {
    return Named("Property", name, Value(type, text));
}
std::string Scored(const std::string& name, const std::string& type, const std::string& text) {
    return Named("ScoredProperty", name, Value(type, text));
}
std::string Reference(const std::string& name, const std::string& parameter) {
    return Named("ScoredProperty", name, Named("ParameterRef", parameter, ""));
}
std::string Root(const std::string& element, const std::string& content) {
    return "<psf:" + element + " version='1'" + std::string(kNamespaces) + ">" + content + "</psf:" + element + ">";
}

std::string GoodTicket() {
    return Root("PrintTicket",
                "<!-- PageMediaSize -->" +
                    Named("Feature", "psk:PageMediaSize",
                          Named("Option", "psk:CustomMediaSize",
                                Reference("psk:MediaSizeWidth", "psk:PageMediaSizeMediaSizeWidth") +
                                    Scored("psk:MediaSizeHeight", "integer", "297000"))) +
                    Named("ParameterInit", "psk:PageMediaSizeMediaSizeWidth", Value("integer", "210000")) +
                    Named("Feature", "psk:DocumentNUp",
                          "<psf:Option>" + Scored("psk:PagesPerSheet", "integer", "2") + "</psf:Option>" +
                              Named("Feature", "psk:PresentationDirection", Named("Option", "psk:RightBottom", ""))) +
                    Named("Feature", "psk:JobDuplexAllDocumentsContiguously",
                          Named("Option", "psk:TwoSidedLongEdge", Scored("psk:DuplexMode", "QName", "psk:Automatic"))) +
                    Named("Feature", "kxp:DocumentCoverFront",
                          Named("Option", "kxp:BlankCover", "") +
                              Named("Feature", "kxp:MediaType", Named("Option", "psk:Plain", ""))) +
                    Named("Feature", "psk:PageICMRenderingIntent", "") +
                    Named("Property", "kxp:DocumentStartPJL",
                          Property("kxp:DataType", "string", "String") + Value("string", "a") + Value("string", "b")));
}

std::string Definition(const std::string& name, const std::string& type, const std::string& preset,
                       const std::string& limits) {
    return Named("ParameterDef", name,
                 Property("psk:DisplayName", "string", "Name") + Property("psf:DataType", "QName", "xsd:" + type) +
                     Property("psf:DefaultValue", type, preset) + limits + Property("psf:UnitType", "string", "unit") +
                     Property("psf:Mandatory", "QName", "psk:Conditional"));
}

std::string GoodCapabilities() {
    const std::string pickOne = Property("psf:SelectionType", "QName", "psk:PickOne");
    const auto option = [](const std::string& name, const std::string& content) {
        return "<psf:Option name='" + name + "' constrained='psk:None'>" +
               Property("psk:DisplayName", "string", "Name") + content + "</psf:Option>";
    };
    const auto count = [](const char* number) {
        return "<psf:Option constrained='psk:None'>" + Scored("psk:SheetsPerPage", "integer", number) + "</psf:Option>";
    };
    return Root(
        "PrintCapabilities",
        Named("Property", "psk:DevicePrintRate", Value("integer", "30") + Property("psk:UnitType", "string", "ppm")) +
            Named("Feature", "psk:PageScaling",
                  Property("psk:DisplayName", "string", "Scaling") + pickOne + option("psk:None", "") +
                      option("psk:CustomSquare", Reference("psk:Scale", "psk:PageScalingScale"))) +
            Definition("psk:PageScalingScale", "integer", "100",
                       Property("psf:MinValue", "integer", "25") + Property("psf:MaxValue", "integer", "400") +
                           Property("psf:Multiple", "integer", "5")) +
            Named("Feature", "psk:PagePoster", pickOne + count("1") + count("4")) +
            Named("Feature", "oem:Text",
                  "<psf:Option constrained='psk:None'>" + Reference("oem:UserInput", "oem:TextUserInput") +
                      "</psf:Option>") +
            Definition("oem:TextUserInput", "string", "", Property("psf:MaxLength", "integer", "11")) +
            Named("Feature", "kxp:DocumentMediaException1",
                  Named("Feature", "kxp:MediaType", pickOne + option("psk:Plain", ""))) +
            Definition("kxp:DocumentExceptionPages1", "string", "", Property("psf:MinLength", "integer", "1")));
}

TEST_F(PrintSchemaChecker, FindsNothingInGoodDocuments) {
    EXPECT_EQ(Findings(GoodTicket()), "");
    EXPECT_EQ(Findings(GoodCapabilities()), "");
    // Other prefixes, and the framework as the default namespace.
    EXPECT_EQ(Findings("<PrintTicket xmlns='{psf}' xmlns:k='{psk}' version='1'><Feature name='k:PageOrientation'>"
                       "<Option name='k:Portrait'/></Feature></PrintTicket>"),
              "");
}

// The good document with one text in place of another, which it has.
struct FaultRow {
    const char* good;
    const char* bad;
    const char* findings;
};

std::string Broken(const std::string& document, const FaultRow& row) {
    std::string broken = document;
    const size_t place = broken.find(row.good);
    if (place == std::string::npos) {
        ADD_FAILURE() << "the good document hasn't " << row.good;
        return broken;
    }
    return broken.replace(place, std::string_view(row.good).size(), row.bad);
}

TEST_F(PrintSchemaChecker, FindsFaultsOfTickets) {
    const FaultRow rows[] = {
        // Frame, names and attributes.
        {" version='1'", " version='2'", "PrintTicket: the version isn't \"1\""},
        {"{psf}", "u:other", "PrintTicket: the root is neither PrintTicket nor PrintCapabilities of the framework"},
        {"<!-- PageMediaSize -->", "<psf:Extra/>", "Extra[1]: the framework has no such element"},
        {"<!-- PageMediaSize -->", "<kxp:Feature/>", "Feature[1]: isn't of the framework namespace"},
        {"<!-- PageMediaSize -->", "<psf:Option name='kxp:A'/>", "Option kxp:A: doesn't belong in PrintTicket"},
        {"<!-- PageMediaSize -->", "text", "PrintTicket: has the text \"text\""},
        {"<!-- PageMediaSize -->", "<psf:ParameterDef name='kxp:A'/>",
         "ParameterDef kxp:A: doesn't belong in PrintTicket"},
        {" name='psk:PageICMRenderingIntent'", "", "Feature[5]: has no name\nFeature[5]: has no option"},
        {"'kxp:DocumentCoverFront'", "'x:DocumentCoverFront'",
         "Feature x:DocumentCoverFront: the name \"x:DocumentCoverFront\": nothing binds its prefix"},
        {"'kxp:DocumentCoverFront'", "'kxp:Cover (front)'",
         "Feature kxp:Cover (front): the name \"kxp:Cover (front)\" is no qualified name"},
        {"'kxp:BlankCover'", "'kxp:BlankCover' kxp:mode='1'", "Option kxp:BlankCover: has the attribute \"kxp:mode\""},
        {"'kxp:BlankCover'", "'kxp:BlankCover' constrained='psk:None'",
         "Option kxp:BlankCover: is constrained, in a print ticket"},

        // Features and options.
        {"<psf:Option name='kxp:BlankCover'></psf:Option>",
         "<psf:Option name='kxp:BlankCover'/><psf:Option name='kxp:NoCover'/>",
         "Feature kxp:DocumentCoverFront: has 2 options"},
        {"<psf:Option name='psk:Plain'></psf:Option></psf:Feature>", "</psf:Feature><psf:Feature name='kxp:Odd'/>",
         "Feature kxp:Odd: has no option"},
        {"'psk:PageICMRenderingIntent'", "'psk:PageMediaSize'",
         "Feature psk:PageMediaSize: its name is taken by another Feature"},
        {"'psk:PageICMRenderingIntent'", "'psk:PageOrientatio'",
         "Feature psk:PageOrientatio: has no option\nFeature psk:PageOrientatio: isn't a known feature"},
        {"'kxp:MediaType'", "'psk:PageMediaType'", "Feature psk:PageMediaType: doesn't belong there"},
        {"'psk:RightBottom'", "'psk:Center'", "Option psk:Center: isn't a known option"},
        {"'psk:Plain'", "'psk:Plane'", "Option psk:Plane: isn't a known option"},
        {"<psf:Option><psf:ScoredProperty name='psk:PagesPerSheet'>",
         "<psf:Option><psf:ScoredProperty name='kxp:PagesPerSheet'>",
         "Option[1]: has no scored property PagesPerSheet"},
        {"name='kxp:BlankCover'></psf:Option>", "></psf:Option>", "Option[1]: has neither name nor scored properties"},

        // Values and parameters.
        {">psk:Automatic<", ">psk:Odd<", "ScoredProperty psk:DuplexMode: \"psk:Odd\" is none of its values"},
        {">psk:Automatic<", ">odd:Automatic<", "Value[1]: the value \"odd:Automatic\": nothing binds its prefix"},
        {"'xsd:integer'>297000", "'xsd:string'>297000",
         "ScoredProperty psk:MediaSizeHeight: its value is xsd:string, expected is xsd:integer"},
        {">297000", ">0", "ScoredProperty psk:MediaSizeHeight: \"0\" is less than 1"},
        {">297000", ">3000000000", "Value[1]: \"3000000000\" is no xsd:integer"},
        {" xsi:type='xsd:integer'>297000", ">297000", "Value[1]: has no type"},
        {"'xsd:integer'>297000", "'xsd:float'>297000",
         "Value[1]: the type \"xsd:float\" isn't one of the Print Schema"},
        {"<psf:Value xsi:type='xsd:integer'>297000</psf:Value>", "", "ScoredProperty psk:MediaSizeHeight: is empty"},
        {"'psk:MediaSizeHeight'", "'psk:MediaSizeDepth'",
         "Option psk:CustomMediaSize: has no scored property MediaSizeHeight\nScoredProperty psk:MediaSizeDepth: isn't "
         "a known scored property of the option"},
        {"<psf:ParameterRef name='psk:PageMediaSizeMediaSizeWidth'>", "<psf:ParameterRef name='kxp:Width'>",
         "ParameterRef kxp:Width: the ticket sets no such parameter"},
        {"<psf:ParameterInit name='psk:PageMediaSizeMediaSizeWidth'>", "<psf:ParameterInit name='psk:Width'>",
         "ParameterInit psk:Width: isn't a known parameter"},
        {"'xsd:integer'>210000", "'xsd:string'>210000",
         "ScoredProperty psk:MediaSizeWidth: its parameter is xsd:string, expected is xsd:integer\nParameterInit "
         "psk:PageMediaSizeMediaSizeWidth: is xsd:string, expected is xsd:integer"},
        {"'kxp:DocumentStartPJL'", "'kxp:DocumentMiddlePJL'", "Property kxp:DocumentMiddlePJL: has 2 values"},
        {"'kxp:DataType'", "'psk:DisplayName'", "Property psk:DisplayName: doesn't belong in DocumentStartPJL"},
    };
    for (const FaultRow& row : rows) {
        EXPECT_EQ(Findings(Broken(GoodTicket(), row)), std::string(row.findings) + '\n') << row.bad;
    }
}

TEST_F(PrintSchemaChecker, FindsFaultsOfCapabilities) {
    const FaultRow rows[] = {
        {"<psf:Feature name='psk:PagePoster'><psf:Property name='psf:SelectionType'>",
         "<psf:Feature name='psk:PagePoster'><psf:Property name='kxp:SelectionType'>",
         "Feature psk:PagePoster: has no property SelectionType"},
        {">psk:PickOne<", ">psk:PickMany<", "Property psf:SelectionType: \"psk:PickMany\" is none of its values"},
        {">Scaling<", "><", "Property psk:DisplayName: is an empty text"},
        {"'psk:None' constrained='psk:None'", "'psk:None'", "Option psk:None: doesn't say how it is constrained"},
        {"'psk:None' constrained='psk:None'", "'psk:None' constrained='kxp:None'",
         "Option psk:None: the constraint \"kxp:None\" isn't a known one"},
        {"'psk:CustomSquare'", "'psk:None'",
         "Option psk:None: its name is taken by another Option\nScoredProperty psk:Scale: isn't a known scored "
         "property of the option"},
        {">4<", ">1<", "Option[2]: has no name, and is like another option"},
        {"'psk:UnitType'", "'psf:UnitType'",
         "Property psk:DevicePrintRate: has no property UnitType\nProperty psf:UnitType: doesn't belong in "
         "DevicePrintRate"},
        {"<psf:ParameterDef name='psk:PageScalingScale'>", "<psf:ParameterDef name='oem:TextUserInput'>",
         "ParameterDef oem:TextUserInput: its name is taken by another ParameterDef\nParameterRef "
         "psk:PageScalingScale: no such parameter is defined"},
        {">xsd:integer<", ">xsd:decimal<", "Property psf:DataType: \"xsd:decimal\" is none of its values"},
        {">psk:Conditional<", ">psk:Optional<", "Property psf:Mandatory: \"psk:Optional\" is none of its values"},
        {"'xsd:integer'>100<", "'xsd:string'>100<",
         "Property psf:DefaultValue: its value is xsd:string, expected is xsd:integer"},
        {">100<", ">103<", "ParameterDef psk:PageScalingScale: the default \"103\" is no multiple of 5"},
        {">100<", ">405<", "ParameterDef psk:PageScalingScale: the default \"405\" isn't from 25 to 400"},
        {">400<", ">20<", "ParameterDef psk:PageScalingScale: the least is 25, the most 20"},
        {">25<", ">0<", "ParameterDef psk:PageScalingScale: \"0\" is less than 1"},
        {"'psf:Multiple'", "'psf:MinLength'",
         "ParameterDef psk:PageScalingScale: has no property Multiple\nProperty psf:MinLength: doesn't belong in a "
         "parameter of this data type"},
        {"<psf:Property name='psf:DefaultValue'><psf:Value xsi:type='xsd:string'></psf:Value>",
         "<psf:Property name='psf:DefaultValue'><psf:Value xsi:type='xsd:string'>twelve chars</psf:Value>",
         "ParameterDef oem:TextUserInput: the default \"twelve chars\" isn't from 0 to 11"},
        {"'kxp:DocumentExceptionPages1'", "'kxp:Pages'",
         "ParameterDef kxp:Pages: the default \"\" isn't from 1 to 9223372036854775807"},
        {"'oem:UserInput'", "'kxp:UserInput'", "Feature oem:Text: has no property SelectionType"},
    };
    for (const FaultRow& row : rows) {
        EXPECT_EQ(Findings(Broken(GoodCapabilities(), row)), std::string(row.findings) + '\n') << row.bad;
    }
}

// What only a document that was built can have.
TEST_F(PrintSchemaChecker, FindsWhatWasBuiltIntoDocuments) {
    const auto document = LoadDocument("<psf:PrintTicket version='1' xmlns:psf='{psf}'/>");
    ComReference<IXMLDOMElement> root;
    ASSERT_EQ(document->get_documentElement(root.Receive()), S_OK);
    const auto finding = [&document] {
        std::string lines;
        for (const print_schema::Finding& found : print_schema::CheckPrintSchema(document.Get())) {
            lines += found.fault + '\n';
        }
        return lines;
    };
    EXPECT_EQ(finding(), "");
    SetAttributeNode(document.Get(), root.Get(), TEXT("xmlns:psf"), TEXT(""), TEXT("u:other"));
    EXPECT_EQ(finding(), "binds the prefix \"psf\" to two namespaces\n");
}

}  // namespace
}  // namespace contract
