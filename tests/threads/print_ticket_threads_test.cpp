// Print tickets for eight threads at once, each with documents of its own: what each gets is what it would get alone.
#include <gtest/gtest.h>
#include <objbase.h>

#include <functional>
#include <string>
#include <vector>

#include "driver/base/com.h"
#include "driver/devmode/default_devmode.h"
#include "driver/ptprovider/class_factory.h"
#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/print_ticket_provider.h"
#include "platform/host.h"
#include "platform/kernel/text.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/package.h"
#include "tests/threads/on_threads.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using DocumentReference = ComReference<IXMLDOMDocument2>;

class ComOnThread {
  public:
    ComOnThread() : result_(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ~ComOnThread() { CoUninitialize(); }
    ComOnThread(const ComOnThread&) = delete;
    ComOnThread& operator=(const ComOnThread&) = delete;
    HRESULT Result() const { return result_; }

  private:
    HRESULT result_;
};

DocumentReference TicketOf(const std::u16string& content) {
    const std::u16string text =
        u"<psf:PrintTicket version=\"1\""
        u" xmlns:psf=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework\""
        u" xmlns:psk=\"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords\""
        u" xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">" +
        content + u"</psf:PrintTicket>";
    void* made = nullptr;
    EXPECT_EQ(CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &made), S_OK);
    DocumentReference document(static_cast<IXMLDOMDocument2*>(made));
    VARIANT_BOOL isRead = VARIANT_FALSE;
    EXPECT_EQ(document->loadXML(OwnedBstr(text.c_str()).Get(), &isRead), S_OK);
    return document;
}

DocumentReference TicketOfCopies(int copies) {
    return TicketOf(u"<psf:ParameterInit name=\"psk:JobCopiesAllDocuments\"><psf:Value xsi:type=\"xsd:integer\">" +
                    host::ToWide(std::to_string(copies)) + u"</psf:Value></psf:ParameterInit>");
}

std::string XmlOf(const DocumentReference& document) {
    OwnedBstr text;
    EXPECT_TRUE(document && SUCCEEDED(document->get_xml(text.Receive())));
    return host::ToUtf8(text.Text());
}

// What the provider makes of a number of copies.
struct Answers {
    std::string capabilities;
    std::string ticket;
    std::string validated;
    std::string devMode;  // its bytes
    auto operator<=>(const Answers&) const = default;
};

ComReference<IPrintTicketProvider> MakeProvider() {
    void* made = nullptr;
    EXPECT_EQ(DllGetClassObject(kProviderClass, IID_IClassFactory, &made), S_OK);
    const ComReference<IClassFactory> factory(static_cast<IClassFactory*>(made));
    void* provider = nullptr;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPrintTicketProvider, &provider), S_OK);
    return ComReference<IPrintTicketProvider>(static_cast<IPrintTicketProvider*>(provider));
}

void Bind(IPrintTicketProvider& provider, HANDLE printer) {
    SHIMOPTS options = {};
    DWORD flags = 0;
    INT count = 0;
    BSTR* namespaces = nullptr;
    EXPECT_EQ(provider.BindPrinter(printer, 1, &options, &flags, &count, &namespaces), S_OK);
    for (INT i = 0; i < count; ++i) {
        SysFreeString(namespaces[i]);
    }
    CoTaskMemFree(namespaces);
}

// All that is asked of a bound provider but its binding.
Answers Ask(IPrintTicketProvider& provider, HANDLE printer, int copies) {
    Answers answers;
    DocumentReference capabilities;
    EXPECT_EQ(provider.GetPrintCapabilities(TicketOfCopies(copies).Get(), capabilities.Receive()), S_OK);
    answers.capabilities = XmlOf(capabilities);

    VelmoraDevMode devMode;
    BuildDefaultDevMode(printer, kPrinterName, &devMode);
    devMode.publicPart.dmCopies = static_cast<short>(copies);
    const DocumentReference ticket = TicketOf(u"");
    EXPECT_EQ(provider.ConvertDevModeToPrintTicket(sizeof(devMode), &devMode.publicPart, ticket.Get()), S_OK);
    answers.ticket = XmlOf(ticket);

    devMode.publicPart.dmCopies = 1;
    ULONG size = 0;
    DEVMODEW* converted = nullptr;
    EXPECT_EQ(
        provider.ConvertPrintTicketToDevMode(ticket.Get(), sizeof(devMode), &devMode.publicPart, &size, &converted),
        S_OK);
    if (converted) {
        EXPECT_EQ(converted->dmCopies, copies);
        answers.devMode.assign(reinterpret_cast<const char*>(converted), size);
        CoTaskMemFree(converted);
    }

    const DocumentReference validated = TicketOfCopies(copies);
    EXPECT_EQ(provider.ValidatePrintTicket(validated.Get()), S_PT_NO_CONFLICT);
    answers.validated = XmlOf(validated);
    return answers;
}

Answers AskOwnProvider(int copies) {
    const OwnedPrinter printer = OpenWithAllAccess(kPrinterName);
    const ComReference<IPrintTicketProvider> provider = MakeProvider();
    Bind(*provider.Get(), printer.Get());
    return Ask(*provider.Get(), printer.Get(), copies);
}

// For each kind of printer.
class PrintTicketThreads : public testing::TestWithParam<uint16_t> {
  protected:
    PrintTicketThreads() { InstallPrinter(PackageOf(SmallModel(GetParam(), kColor).Build())); }

    void TearDown() override {
        EXPECT_EQ(DllCanUnloadNow(), S_OK);
        EXPECT_EQ(host::StillOpen(), std::vector<std::string>());
    }

    // Lets every thread call `ask` for its number of copies, and compares with what a provider answers alone.
    static void AskOnThreads(const std::function<Answers(int copies)>& ask) {
        CompareOnThreads(
            [](int copies) {
                const ComOnThread com;
                return AskOwnProvider(copies);
            },
            [&](int copies) {
                const ComOnThread com;
                EXPECT_EQ(com.Result(), S_OK);
                return ask(copies);
            });
    }

    host::Machine machine_;
};

TEST_P(PrintTicketThreads, OwnProviders) {
    AskOnThreads(AskOwnProvider);
}

TEST_P(PrintTicketThreads, OneProvider) {
    const OwnedPrinter printer = OpenWithAllAccess(kPrinterName);
    const ComReference<IPrintTicketProvider> provider = MakeProvider();
    Bind(*provider.Get(), printer.Get());
    AskOnThreads([&](int copies) { return Ask(*provider.Get(), printer.Get(), copies); });
}

INSTANTIATE_TEST_SUITE_P(Pdl, PrintTicketThreads, testing::Values(kPdlPcl6, kPdlPostScript, kPdlImage));

}  // namespace
}  // namespace velmora
