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
    // A line for each finding.
    static std::string Findings(const std::string& text) {
        const auto document = LoadDocument(WideText(text.begin(), text.end()));
        std::ostringstream lines;
        for (const print_schema::Finding& finding : print_schema::CheckPrintSchema(document.Get())) {
            lines << finding << '\n';
        }
        return lines.str();
    }

    const ComOnThread com_;
};

constexpr std::string_view kNamespaces =
    " xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
    " xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'"
    " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xmlns:xsd='http://www.w3.org/2001/XMLSchema'"
    " xmlns:kxp='http://www.kestranix.com/ptpc/2006/1' xmlns:oem='http://www.kestranix.com/ptpc/oem/2006/1'";

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
    EXPECT_EQ(Findings("<PrintTicket xmlns='http://schemas.microsoft.com/windows/2003/08/printing/"
                       "printschemaframework' xmlns:k='http://schemas.microsoft.com/windows/2003/08/printing/"
                       "printschemakeywords' version='1'><Feature name='k:PageOrientation'>"
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
        {"printschemaframework'", "schema'",
         "PrintTicket: the root is neither PrintTicket nor PrintCapabilities of the "
         "framework"},
        {"<!-- PageMediaSize -->", "<psf:Extra/>", "PrintTicket/Extra[1]: the framework has no such element"},
        {"<!-- PageMediaSize -->", "<kxp:Feature/>", "PrintTicket/Feature[1]: isn't of the framework namespace"},
        {"<!-- PageMediaSize -->", "<psf:Option name='kxp:A'/>",
         "PrintTicket/Option kxp:A: doesn't belong in PrintTicket"},
        {"<!-- PageMediaSize -->", "text", "PrintTicket: has the text \"text\""},
        {"<!-- PageMediaSize -->", "<psf:ParameterDef name='kxp:A'/>",
         "PrintTicket/ParameterDef kxp:A: doesn't belong in PrintTicket"},
        {" name='psk:PageICMRenderingIntent'", "",
         "PrintTicket/Feature[5]: has no name\nPrintTicket/Feature[5]: has no option"},
        {"'kxp:DocumentCoverFront'", "'x:DocumentCoverFront'",
         "PrintTicket/Feature x:DocumentCoverFront: the name \"x:DocumentCoverFront\": nothing binds its prefix"},
        {"'kxp:DocumentCoverFront'", "'kxp:Cover (front)'",
         "PrintTicket/Feature kxp:Cover (front): the name \"kxp:Cover (front)\" is no qualified name"},
        {"'kxp:BlankCover'", "'kxp:BlankCover' kxp:mode='1'",
         "PrintTicket/Feature kxp:DocumentCoverFront/Option kxp:BlankCover: has the attribute \"kxp:mode\""},
        {"'kxp:BlankCover'", "'kxp:BlankCover' constrained='psk:None'",
         "PrintTicket/Feature kxp:DocumentCoverFront/Option kxp:BlankCover: is constrained, in a print ticket"},

        // Features and options.
        {"<psf:Option name='kxp:BlankCover'></psf:Option>",
         "<psf:Option name='kxp:BlankCover'/><psf:Option name='kxp:NoCover'/>",
         "PrintTicket/Feature kxp:DocumentCoverFront: has 2 options"},
        {"<psf:Option name='psk:Plain'></psf:Option></psf:Feature>", "</psf:Feature><psf:Feature name='kxp:Odd'/>",
         "PrintTicket/Feature kxp:DocumentCoverFront/Feature kxp:Odd: has no option"},
        {"'psk:PageICMRenderingIntent'", "'psk:PageMediaSize'",
         "PrintTicket/Feature psk:PageMediaSize: its name is taken by another Feature"},
        {"'psk:PageICMRenderingIntent'", "'psk:PageOrientatio'",
         "PrintTicket/Feature psk:PageOrientatio: has no option\n"
         "PrintTicket/Feature psk:PageOrientatio: isn't a known feature"},
        {"'kxp:MediaType'", "'psk:PageMediaType'",
         "PrintTicket/Feature kxp:DocumentCoverFront/Feature psk:PageMediaType: doesn't belong there"},
        {"'psk:RightBottom'", "'psk:Center'",
         "PrintTicket/Feature psk:DocumentNUp/Feature psk:PresentationDirection/Option psk:Center: isn't a known "
         "option"},
        {"'psk:Plain'", "'psk:Plane'",
         "PrintTicket/Feature kxp:DocumentCoverFront/Feature kxp:MediaType/Option psk:Plane: isn't a known option"},
        {"<psf:Option><psf:ScoredProperty name='psk:PagesPerSheet'>",
         "<psf:Option><psf:ScoredProperty name='kxp:PagesPerSheet'>",
         "PrintTicket/Feature psk:DocumentNUp/Option[1]: has no scored property PagesPerSheet"},
        {"name='kxp:BlankCover'></psf:Option>", "></psf:Option>",
         "PrintTicket/Feature kxp:DocumentCoverFront/Option[1]: has neither name nor scored properties"},

        // Values and parameters.
        {">psk:Automatic<", ">psk:Odd<",
         "PrintTicket/Feature psk:JobDuplexAllDocumentsContiguously/Option psk:TwoSidedLongEdge/ScoredProperty "
         "psk:DuplexMode: \"psk:Odd\" is none of its values"},
        {">psk:Automatic<", ">odd:Automatic<",
         "PrintTicket/Feature psk:JobDuplexAllDocumentsContiguously/Option psk:TwoSidedLongEdge/ScoredProperty "
         "psk:DuplexMode/Value[1]: the value \"odd:Automatic\": nothing binds its prefix"},
        {"'xsd:integer'>297000", "'xsd:string'>297000",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty psk:MediaSizeHeight: its "
         "value "
         "is xsd:string, expected is xsd:integer"},
        {">297000", ">0",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty psk:MediaSizeHeight: \"0\" "
         "is "
         "less than 1"},
        {">297000", ">3000000000",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty "
         "psk:MediaSizeHeight/Value[1]: "
         "\"3000000000\" is no xsd:integer"},
        {" xsi:type='xsd:integer'>297000", ">297000",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty "
         "psk:MediaSizeHeight/Value[1]: "
         "has no type"},
        {"'xsd:integer'>297000", "'xsd:float'>297000",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty "
         "psk:MediaSizeHeight/Value[1]: "
         "the type \"xsd:float\" isn't one of the Print Schema"},
        {"<psf:Value xsi:type='xsd:integer'>297000</psf:Value>", "",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty psk:MediaSizeHeight: is "
         "empty"},
        {"'psk:MediaSizeHeight'", "'psk:MediaSizeDepth'",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize: has no scored property MediaSizeHeight\n"
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty psk:MediaSizeDepth: isn't a "
         "known scored property of the option"},
        {"<psf:ParameterRef name='psk:PageMediaSizeMediaSizeWidth'>", "<psf:ParameterRef name='kxp:Width'>",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty "
         "psk:MediaSizeWidth/ParameterRef "
         "kxp:Width: the ticket sets no such parameter"},
        {"<psf:ParameterInit name='psk:PageMediaSizeMediaSizeWidth'>", "<psf:ParameterInit name='psk:Width'>",
         "PrintTicket/ParameterInit psk:Width: isn't a known parameter"},
        {"'xsd:integer'>210000", "'xsd:string'>210000",
         "PrintTicket/Feature psk:PageMediaSize/Option psk:CustomMediaSize/ScoredProperty psk:MediaSizeWidth: its "
         "parameter is xsd:string, expected is xsd:integer\n"
         "PrintTicket/ParameterInit psk:PageMediaSizeMediaSizeWidth: is xsd:string, expected is xsd:integer"},
        {"'kxp:DocumentStartPJL'", "'kxp:DocumentMiddlePJL'",
         "PrintTicket/Property kxp:DocumentMiddlePJL: has 2 values"},
        {"'kxp:DataType'", "'psk:DisplayName'",
         "PrintTicket/Property kxp:DocumentStartPJL/Property psk:DisplayName: doesn't belong in DocumentStartPJL"},
    };
    for (const FaultRow& row : rows) {
        EXPECT_EQ(Findings(Broken(GoodTicket(), row)), std::string(row.findings) + '\n') << row.bad;
    }
}

TEST_F(PrintSchemaChecker, FindsFaultsOfCapabilities) {
    const FaultRow rows[] = {
        {"<psf:Feature name='psk:PagePoster'><psf:Property name='psf:SelectionType'>",
         "<psf:Feature name='psk:PagePoster'><psf:Property name='kxp:SelectionType'>",
         "PrintCapabilities/Feature psk:PagePoster: has no property SelectionType"},
        {">psk:PickOne<", ">psk:PickMany<",
         "PrintCapabilities/Feature psk:PageScaling/Property psf:SelectionType: \"psk:PickMany\" is none of its "
         "values"},
        {">Scaling<", "><", "PrintCapabilities/Feature psk:PageScaling/Property psk:DisplayName: is an empty text"},
        {"'psk:None' constrained='psk:None'", "'psk:None'",
         "PrintCapabilities/Feature psk:PageScaling/Option psk:None: doesn't say how it is constrained"},
        {"'psk:None' constrained='psk:None'", "'psk:None' constrained='kxp:None'",
         "PrintCapabilities/Feature psk:PageScaling/Option psk:None: the constraint \"kxp:None\" isn't a known one"},
        {"'psk:CustomSquare'", "'psk:None'",
         "PrintCapabilities/Feature psk:PageScaling/Option psk:None: its name is taken by another Option\n"
         "PrintCapabilities/Feature psk:PageScaling/Option psk:None/ScoredProperty psk:Scale: isn't a known scored "
         "property of the option"},
        {">4<", ">1<", "PrintCapabilities/Feature psk:PagePoster/Option[2]: has no name, and is like another option"},
        {"'psk:UnitType'", "'psf:UnitType'",
         "PrintCapabilities/Property psk:DevicePrintRate: has no property UnitType\n"
         "PrintCapabilities/Property psk:DevicePrintRate/Property psf:UnitType: doesn't belong in DevicePrintRate"},
        {"<psf:ParameterDef name='psk:PageScalingScale'>", "<psf:ParameterDef name='oem:TextUserInput'>",
         "PrintCapabilities/ParameterDef oem:TextUserInput: its name is taken by another ParameterDef\n"
         "PrintCapabilities/Feature psk:PageScaling/Option psk:CustomSquare/ScoredProperty psk:Scale/ParameterRef "
         "psk:PageScalingScale: no such parameter is defined"},
        {">xsd:integer<", ">xsd:decimal<",
         "PrintCapabilities/ParameterDef psk:PageScalingScale/Property psf:DataType: \"xsd:decimal\" is none of its "
         "values"},
        {">psk:Conditional<", ">psk:Optional<",
         "PrintCapabilities/ParameterDef psk:PageScalingScale/Property psf:Mandatory: \"psk:Optional\" is none of its "
         "values"},
        {"'xsd:integer'>100<", "'xsd:string'>100<",
         "PrintCapabilities/ParameterDef psk:PageScalingScale/Property psf:DefaultValue: its value is xsd:string, "
         "expected is xsd:integer"},
        {">100<", ">103<",
         "PrintCapabilities/ParameterDef psk:PageScalingScale: the default \"103\" is no multiple of 5"},
        {">100<", ">405<",
         "PrintCapabilities/ParameterDef psk:PageScalingScale: the default \"405\" isn't from 25 to 400"},
        {">400<", ">20<", "PrintCapabilities/ParameterDef psk:PageScalingScale: the least is 25, the most 20"},
        {">25<", ">0<", "PrintCapabilities/ParameterDef psk:PageScalingScale: \"0\" is less than 1"},
        {"'psf:Multiple'", "'psf:MinLength'",
         "PrintCapabilities/ParameterDef psk:PageScalingScale: has no property Multiple\n"
         "PrintCapabilities/ParameterDef psk:PageScalingScale/Property psf:MinLength: doesn't belong in a parameter of "
         "this data type"},
        {"<psf:Property name='psf:DefaultValue'><psf:Value xsi:type='xsd:string'></psf:Value>",
         "<psf:Property name='psf:DefaultValue'><psf:Value xsi:type='xsd:string'>twelve chars</psf:Value>",
         "PrintCapabilities/ParameterDef oem:TextUserInput: the default \"twelve chars\" isn't from 0 to 11"},
        {"'kxp:DocumentExceptionPages1'", "'kxp:Pages'",
         "PrintCapabilities/ParameterDef kxp:Pages: the default \"\" isn't from 1 to 9223372036854775807"},
        {"'oem:UserInput'", "'kxp:UserInput'", "PrintCapabilities/Feature oem:Text: has no property SelectionType"},
    };
    for (const FaultRow& row : rows) {
        EXPECT_EQ(Findings(Broken(GoodCapabilities(), row)), std::string(row.findings) + '\n') << row.bad;
    }
}

// What only a document that was built can have.
TEST_F(PrintSchemaChecker, FindsWhatWasBuiltIntoDocuments) {
    const auto document =
        LoadDocument(WideText(TEXT("<psf:PrintTicket version='1' xmlns:psf='http://schemas.microsoft.")
                                  TEXT("com/windows/2003/08/printing/printschemaframework'/>")));
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
