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
    provider.Reset();
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
        OwnedBstr device;
        EXPECT_EQ(provider->QueryDeviceNamespace(device.Receive()), S_OK);
        Record("  device " + Printable(device.Text()));
    }
}

TEST_F(PrintTickets, ConversionsNeedTheirArguments) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = BoundProviderOf(printer);
    const auto ticket = NewTicket();
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
    auto provider = BoundProviderOf(printer);
    const struct {
        const char* ticket;
        int copies;
    } rows[] = {
        {"<psf:PrintTicket xmlns:psf='{psf}'/>", 1},
        {"<psf:PrintTicket xmlns:psf='{psf}' xmlns:psk='{psk}'><psf:ParameterInit name='psk:PageCopies'>"
         "<psf:Value>2</psf:Value></psf:ParameterInit><psf:ParameterInit name='psk:JobCopiesAllDocuments'>"
         "<psf:Value>3</psf:Value></psf:ParameterInit></psf:PrintTicket>",
         3},
        // The usual prefixes the other way round, and the framework as default namespace.
        {"<PrintTicket xmlns='{psf}' xmlns:psf='{psk}'><ParameterInit name='psf:PageCopies'><Value>4</Value>"
         "</ParameterInit></PrintTicket>",
         4},
        // The keywords as default namespace; a foreign one under their usual prefix, bound back inside.
        {"<f:PrintTicket xmlns:f='{psf}' xmlns='{psk}' xmlns:psk='u:foreign'>"
         "<f:ParameterInit name='psk:PageCopies'><f:Value>5</f:Value></f:ParameterInit>"
         "<f:ParameterInit name='PageCopies'><f:Value>6</f:Value></f:ParameterInit></f:PrintTicket>",
         6},
        {"<f:PrintTicket xmlns:f='{psf}' xmlns:psk='u:foreign'><f:ParameterInit xmlns:psk='{psk}'"
         " name='psk:PageCopies'><f:Value>7</f:Value></f:ParameterInit></f:PrintTicket>",
         7},
    };
    // As a conversion begins with it: features without options lose their numbers.
    const velmora::VelmoraDevMode input =
        DevModeOf(provider.Get(), NewTicket().Get(), *DefaultDevMode(printer, printer.Name()).content);
    for (const auto& row : rows) {
        const auto ticket = LoadDocument(row.ticket);
        velmora::VelmoraDevMode output = DevModeOf(provider.Get(), ticket.Get(), input);
        EXPECT_EQ(output.publicPart.dmCopies, row.copies) << row.ticket;
        output.publicPart.dmCopies = input.publicPart.dmCopies;
        EXPECT_TRUE(Differences(input, output).empty());
        RecordDocument(ticket.Get());
    }
}

TEST_F(PrintTickets, DevModesThatAreNoneGiveThePrintersOwn) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = BoundProviderOf(printer);
    const auto ticket = NewTicket();
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

TEST_F(PrintTickets, CapabilitiesAreWrittenIntoAGivenDocument) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = BoundProviderOf(printer);
    const auto own = NewDocument();
    IXMLDOMDocument2* same = own.Get();
    EXPECT_EQ(provider->GetPrintCapabilities(nullptr, &same), S_OK);
    EXPECT_EQ(same, own.Get());
    EXPECT_NE(CanonicalText(own.Get()).find("\"Account code\""), std::string::npos) << "as users see a feature";
}

TEST_F(PrintTickets, ProvidersThatWereNeverBoundStillAnswer) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    auto provider = ProviderOf(printer);
    const auto ticket = NewTicket();
    EXPECT_NO_THROW(DevModeOf(provider.Get(), ticket.Get(), *DefaultDevMode(printer, printer.Name()).content));
    EXPECT_EQ(provider->ValidatePrintTicket(ticket.Get()), kNoConflict);
}

}  // namespace
}  // namespace contract
