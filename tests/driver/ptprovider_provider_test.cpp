// The print-ticket provider where memory runs out.
#include "driver/ptprovider/provider.h"

#include <objbase.h>

#include <functional>

#include "driver/base/com.h"
#include "driver/devmode/default_devmode.h"
#include "driver/ptprovider/class_factory.h"
#include "driver/ptprovider/dom_classes.h"
#include "tests/driver/job_model.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// COM on the thread.
class Provider : public MachineTest {
  protected:
    Provider() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    ~Provider() override { CoUninitialize(); }

    static ComReference<IXMLDOMDocument2> Ticket() {
        void* made = nullptr;
        CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &made);
        ComReference<IXMLDOMDocument2> document(static_cast<IXMLDOMDocument2*>(made));
        VARIANT_BOOL loaded = VARIANT_FALSE;
        const OwnedBstr text(
            TEXT("<p:PrintTicket xmlns:p='http://schemas.microsoft.com/windows/2003/08/printing/"
                 "printschemaframework'/>"));
        document->loadXML(text.Get(), &loaded);
        return document;
    }
};

TEST_F(Provider, SurvivesFailedAllocations) {
    Install(JobModel(kPdlPcl6).Build());
    VelmoraDevMode devMode = {};
    BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
    devMode.publicPart.dmFields |= DM_COPIES;
    const HANDLE printer = Printer();

    // Binding and reading fail at every allocation. What writes begins like reading and then makes thousands and tens
    // of thousands for elements that are all made alike: those calls fail at every 61st and 997th, primes, so that the
    // failures are at all places of what repeats.
    struct Call {
        uint64_t step;
        std::function<void(IPTProvider& provider, IXMLDOMDocument2* ticket)> make;
    };
    const Call calls[] = {
        {1,
         [&](IPTProvider& provider, IXMLDOMDocument2*) {
             SHIMOPTS options = {};
             DWORD fields = 0;
             INT count = 77;
             BSTR* namespaces = nullptr;
             const HRESULT result = provider.BindPrinter(printer, 1, &options, &fields, &count, &namespaces);
             EXPECT_EQ(count, result == S_OK ? 6 : 0);
             EXPECT_EQ(namespaces != nullptr, result == S_OK);
             for (INT i = 0; i < count; ++i) {
                 SysFreeString(namespaces[i]);
             }
             CoTaskMemFree(namespaces);
         }},
        {1,
         [&](IPTProvider& provider, IXMLDOMDocument2* ticket) {
             VelmoraDevMode input = devMode;
             ULONG size = 0;
             PDEVMODEW output = nullptr;
             const HRESULT result =
                 provider.ConvertPrintTicketToDevMode(ticket, sizeof(input), &input.publicPart, &size, &output);
             EXPECT_EQ(result, output ? S_OK : E_OUTOFMEMORY);
             EXPECT_EQ(size, output ? sizeof(input) : 0);
             CoTaskMemFree(output);
         }},
        {29,
         [&](IPTProvider& provider, IXMLDOMDocument2* ticket) {
             VelmoraDevMode input = devMode;
             EXPECT_EQ(provider.ConvertDevModeToPrintTicket(sizeof(input), &input.publicPart, ticket), S_OK);
         }},
        {409,
         [&](IPTProvider& provider, IXMLDOMDocument2* ticket) {
             ComReference<IXMLDOMDocument2> capabilities;
             const HRESULT result = provider.GetPrintCapabilities(ticket, capabilities.Receive());
             EXPECT_EQ(result, capabilities ? S_OK : E_OUTOFMEMORY);
         }},
        {61, [&](IPTProvider& provider,
                 IXMLDOMDocument2* ticket) { EXPECT_EQ(provider.ValidatePrintTicket(ticket), S_PT_NO_CONFLICT); }},
    };
    const ComReference<IPTProvider> provider(new IPTProvider);
    calls[0].make(*provider.Get(), nullptr);
    for (const Call& call : calls) {
        for (uint64_t n = 1;; n += call.step) {
            const auto ticket = Ticket();
            const size_t openBefore = host::StillOpen().size();
            host::FailAllocation(n);
            call.make(*provider.Get(), ticket.Get());
            const bool hasFailed = host::AllocationsSoFar() >= n;
            host::ClearFaults();
            // Nodes that the ticket has gained aren't references of the program.
            ASSERT_EQ(host::StillOpen().size(), openBefore) << "call " << &call - calls << ", allocation " << n;
            if (!hasFailed) {
                break;
            }
        }
    }
    host::FailAllocation(1);
    void* object = &object;
    EXPECT_EQ(GetClassObject(kProviderClass, IID_IClassFactory, &object), E_OUTOFMEMORY);
    EXPECT_EQ(object, nullptr);
    host::ClearFaults();
    EXPECT_FALSE(CanUnloadNow());
}

}  // namespace
}  // namespace velmora
