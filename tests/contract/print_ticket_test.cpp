// The print-ticket provider as the print system uses it: made by the driver's class factory, bound to a printer, asked
// and released, with tickets in the platform's own XML documents.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/contract/canonical_document.h"
#include "tests/contract/contract_test.h"
#include "tests/contract/print_ticket_provider.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

constexpr HRESULT kVersionNotSupported = static_cast<HRESULT>(0x80040001);
constexpr HRESULT kNoConflict = 0x00040001;

class PrintTickets : public ContractTest {
  protected:
    const ComOnThread com_;
};

TEST_F(PrintTickets, ProvidersComeFromTheClassFactory) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    const DriverExports& driver = printer.Driver();
    void* object = &object;
    EXPECT_EQ(driver.DllGetClassObject(IID_IClassFactory, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(driver.DllGetClassObject(kProviderClass, IID_IPrintTicketProvider, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(driver.DllCanUnloadNow(), S_OK);

    auto factory = FactoryOf(printer);
    ASSERT_TRUE(factory);
    EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IPrintTicketProvider, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(driver.DllCanUnloadNow(), S_FALSE);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    EXPECT_EQ(driver.DllCanUnloadNow(), S_OK);

    auto provider = ProviderOf(printer);
    ASSERT_TRUE(provider);
    EXPECT_EQ(driver.DllCanUnloadNow(), S_FALSE);
    EXPECT_EQ(provider->QueryInterface(IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(provider->QueryInterface(IID_IUnknown, &object), S_OK);
    EXPECT_EQ(provider->Release(), 1u);
    provider.Release();
    EXPECT_EQ(driver.DllCanUnloadNow(), S_OK);
}

TEST_F(PrintTickets, EveryModelIsBound) {
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        auto provider = ProviderOf(printer);
        INT* versions = nullptr;
        INT count = 77;
        EXPECT_EQ(provider->GetSupportedVersions(printer.Handle(), &versions, &count), S_OK);
        ASSERT_EQ(count, 1);
        EXPECT_EQ(versions[0], 1);
        CoTaskMemFree(versions);
        EXPECT_EQ(provider->GetSupportedVersions(printer.Handle(), nullptr, &count), E_INVALIDARG);
        EXPECT_EQ(count, 0);

        EXPECT_EQ(Bind(provider.Get(), printer.Handle(), 2).result, kVersionNotSupported);
        EXPECT_TRUE(Bind(provider.Get(), printer.Handle(), 2).namespaces.empty());
        EXPECT_EQ(Bind(provider.Get(), nullptr).result, E_INVALIDARG);
        const Binding binding = Bind(provider.Get(), printer.Handle());
        EXPECT_EQ(binding.result, S_OK);
        EXPECT_EQ(binding.options, SHIMOPTS_NOSNAPSHOT);
        EXPECT_EQ(binding.fields, 0x0380FF1Fu);
        EXPECT_EQ(binding.namespaces.size(), 6u);
        Record(model);
        for (const std::string& text : binding.namespaces) {
            Record("  " + text);
        }
        Bstr device;
        EXPECT_EQ(provider->QueryDeviceNamespace(device.Receive()), S_OK);
        Record("  device " + Printable(device.Text()));
    }
}

TEST_F(PrintTickets, ConversionsNeedTheirArguments) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = ProviderOf(printer);
    ASSERT_EQ(Bind(provider.Get(), printer.Handle()).result, S_OK);
    const auto ticket = LoadDocument(TicketText(""));
    DevModeBuffer input = DefaultDevMode(printer, printer.Name());
    ULONG size = 0;
    PDEVMODEW output = nullptr;
    EXPECT_EQ(provider->ConvertPrintTicketToDevMode(nullptr, 4088, input.Get(), &size, &output), E_INVALIDARG);
    EXPECT_EQ(provider->ConvertPrintTicketToDevMode(ticket.Get(), 0, input.Get(), &size, &output), E_INVALIDARG);
    EXPECT_EQ(provider->ConvertPrintTicketToDevMode(ticket.Get(), 4088, nullptr, &size, &output), E_INVALIDARG);
    EXPECT_EQ(provider->ConvertPrintTicketToDevMode(ticket.Get(), 4088, input.Get(), nullptr, &output), E_INVALIDARG);
    EXPECT_EQ(provider->ConvertPrintTicketToDevMode(ticket.Get(), 4088, input.Get(), &size, nullptr), E_INVALIDARG);
    EXPECT_EQ(provider->ConvertDevModeToPrintTicket(0, input.Get(), ticket.Get()), E_INVALIDARG);
    EXPECT_EQ(provider->ConvertDevModeToPrintTicket(4088, nullptr, ticket.Get()), E_INVALIDARG);
    EXPECT_EQ(provider->ConvertDevModeToPrintTicket(4088, input.Get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(provider->GetPrintCapabilities(ticket.Get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(provider->ValidatePrintTicket(nullptr), E_INVALIDARG);
}

TEST_F(PrintTickets, TicketsAreReadByWhatTheirNamesMean) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = ProviderOf(printer);
    ASSERT_EQ(Bind(provider.Get(), printer.Handle()).result, S_OK);
    const struct {
        const char* ticket;
        short copies;
    } rows[] = {
        {"<psf:PrintTicket xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'/>",
         1},
        {"<psf:PrintTicket xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
         " xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'><psf:ParameterInit"
         " name='psk:PageCopies'><psf:Value>2</psf:Value></psf:ParameterInit><psf:ParameterInit"
         " name='psk:JobCopiesAllDocuments'><psf:Value>3</psf:Value></psf:ParameterInit></psf:PrintTicket>",
         3},
        // The usual prefixes the other way round, and the framework as default namespace.
        {"<PrintTicket xmlns='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
         " xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'><ParameterInit"
         " name='psf:PageCopies'><Value>4</Value></ParameterInit></PrintTicket>",
         4},
        // The keywords as default namespace; a foreign one under their usual prefix, bound back inside.
        {"<f:PrintTicket xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
         " xmlns='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords' xmlns:psk='u:foreign'>"
         "<f:ParameterInit name='psk:PageCopies'><f:Value>5</f:Value></f:ParameterInit>"
         "<f:ParameterInit name='PageCopies'><f:Value>6</f:Value></f:ParameterInit></f:PrintTicket>",
         6},
        {"<f:PrintTicket xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
         " xmlns:psk='u:foreign'><f:ParameterInit"
         " xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'"
         " name='psk:PageCopies'><f:Value>7</f:Value></f:ParameterInit></f:PrintTicket>",
         7},
    };
    for (const auto& row : rows) {
        const std::string text = row.ticket;
        const auto ticket = LoadDocument(WideText(text.begin(), text.end()));
        DevModeBuffer input = DefaultDevMode(printer, printer.Name());
        ULONG size = 0;
        PDEVMODEW output = nullptr;
        ASSERT_EQ(provider->ConvertPrintTicketToDevMode(ticket.Get(), 4088, input.Get(), &size, &output), S_OK);
        ASSERT_EQ(size, 4088u);
        EXPECT_EQ(output->dmCopies, row.copies) << text;
        output->dmCopies = input.Get()->dmCopies;
        EXPECT_TRUE(Differences(*input.content, *reinterpret_cast<velmora::VelmoraDevMode*>(output)).empty());
        CoTaskMemFree(output);
        RecordDocument(ticket.Get());
    }
}

TEST_F(PrintTickets, DevModesThatAreNoneGiveThePrintersOwn) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = ProviderOf(printer);
    ASSERT_EQ(Bind(provider.Get(), printer.Handle()).result, S_OK);
    const auto ticket = LoadDocument(TicketText(""));
    const DevModeBuffer expected = DefaultDevMode(printer, printer.Name());
    DevModeBuffer foreign;
    for (const ULONG given : {ULONG{1}, ULONG{4087}, ULONG{4088}}) {
        ULONG size = 0;
        PDEVMODEW output = nullptr;
        ASSERT_EQ(provider->ConvertPrintTicketToDevMode(ticket.Get(), given, foreign.Get(), &size, &output), S_OK);
        EXPECT_TRUE(Differences(*expected.content, *reinterpret_cast<velmora::VelmoraDevMode*>(output)).empty());
        CoTaskMemFree(output);
    }
}

TEST_F(PrintTickets, DocumentsAreWritten) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = ProviderOf(printer);
    ASSERT_EQ(Bind(provider.Get(), printer.Handle()).result, S_OK);
    DevModeBuffer input = DefaultDevMode(printer, printer.Name());
    input.Get()->dmCopies = 3;
    input.Get()->dmFields |= DM_COPIES;

    const auto ticket = LoadDocument(TicketText(""));
    EXPECT_EQ(provider->ConvertDevModeToPrintTicket(4088, input.Get(), ticket.Get()), S_OK);
    RecordDocument(ticket.Get());
    EXPECT_NE(CanonicalText(ticket.Get()).find("name=\"psk:JobCopiesAllDocuments\""), std::string::npos);

    // What a ticket says stays.
    const auto given = LoadDocument(
        TicketText("<psf:ParameterInit name='psk:PageCopies'><psf:Value>9</psf:Value></psf:ParameterInit>"));
    EXPECT_EQ(provider->ValidatePrintTicket(given.Get()), kNoConflict);
    RecordDocument(given.Get());
    const std::string validated = CanonicalText(given.Get());
    EXPECT_NE(validated.find("\"9\""), std::string::npos);
    EXPECT_EQ(validated.find("JobCopies"), std::string::npos);

    ComReference<IXMLDOMDocument2> capabilities;
    EXPECT_EQ(provider->GetPrintCapabilities(ticket.Get(), capabilities.Receive()), S_OK);
    ASSERT_TRUE(capabilities);
    RecordDocument(capabilities.Get());
    // A feature of the model, as users see it.
    EXPECT_NE(CanonicalText(capabilities.Get()).find("\"Account code\""), std::string::npos);
    // A document that is given is written into.
    const auto own = NewDocument();
    IXMLDOMDocument2* same = own.Get();
    EXPECT_EQ(provider->GetPrintCapabilities(nullptr, &same), S_OK);
    EXPECT_EQ(same, own.Get());
    EXPECT_NE(CanonicalText(own.Get()).find("PrintCapabilities"), std::string::npos);
}

TEST_F(PrintTickets, ProvidersThatWereNeverBoundStillAnswer) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = ProviderOf(printer);
    const auto ticket = LoadDocument(TicketText(""));
    DevModeBuffer input = DefaultDevMode(printer, printer.Name());
    ULONG size = 0;
    PDEVMODEW output = nullptr;
    EXPECT_EQ(provider->ConvertPrintTicketToDevMode(ticket.Get(), 4088, input.Get(), &size, &output), S_OK);
    EXPECT_EQ(size, 4088u);
    CoTaskMemFree(output);
    EXPECT_EQ(provider->ValidatePrintTicket(ticket.Get()), kNoConflict);
}

}  // namespace
}  // namespace contract
