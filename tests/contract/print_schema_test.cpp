// What the print-ticket provider writes is good for every reader of the Print Schema, whatever the model.
#include "tests/print_schema/print_schema_checker.h"

#include <sstream>
#include <string>

#include "tests/contract/contract_test.h"
#include "tests/contract/print_ticket_provider.h"

namespace contract {
namespace {

class PrintSchema : public ContractTest {
  protected:
    // A line for each finding in a document.
    static std::string Findings(IXMLDOMDocument2* document) {
        std::ostringstream lines;
        for (const print_schema::Finding& finding : print_schema::CheckPrintSchema(document)) {
            lines << finding << '\n';
        }
        return lines.str();
    }

    const ComOnThread com_;
};

TEST_F(PrintSchema, HoldsForEveryModelsDocuments) {
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        auto provider = ProviderOf(printer);
        SHIMOPTS options = {};
        DWORD fields = 0;
        INT count = 0;
        BSTR* namespaces = nullptr;
        ASSERT_EQ(provider->BindPrinter(printer.Handle(), 1, &options, &fields, &count, &namespaces), S_OK);
        for (INT i = 0; i < count; ++i) {
            SysFreeString(namespaces[i]);
        }
        CoTaskMemFree(namespaces);

        DevModeBuffer devMode = DefaultDevMode(printer, printer.Name());
        const auto converted = LoadDocument(TicketText(""));
        EXPECT_EQ(provider->ConvertDevModeToPrintTicket(sizeof(*devMode.content), devMode.Get(), converted.Get()),
                  S_OK);
        EXPECT_EQ(Findings(converted.Get()), "");

        const auto validated = LoadDocument(TicketText(""));
        EXPECT_EQ(provider->ValidatePrintTicket(validated.Get()), S_PT_NO_CONFLICT);
        EXPECT_EQ(Findings(validated.Get()), "");

        ComReference<IXMLDOMDocument2> capabilities;
        EXPECT_EQ(provider->GetPrintCapabilities(nullptr, capabilities.Receive()), S_OK);
        ASSERT_TRUE(capabilities);
        EXPECT_EQ(Findings(capabilities.Get()), "");
    }
}

}  // namespace
}  // namespace contract
