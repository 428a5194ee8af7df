#include "tools/velmora/ticket_provider.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>

#include "driver/ptprovider/class_factory.h"
#include "platform/host.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

struct ResultText {
    HRESULT result;
    const char* text;
};

constexpr ResultText kResultTexts[] = {
    {E_INVALIDARG, "invalid argument"},
    {E_NOINTERFACE, "no such interface"},
    {E_OUTOFMEMORY, "no memory"},
    {E_VERSION_NOT_SUPPORTED, "version not supported"},
    {CLASS_E_CLASSNOTAVAILABLE, "no such class"},
    {RPC_E_CHANGED_MODE, "the thread has COM in another mode"},
};

struct TaskMemoryFree {
    void operator()(void* memory) const { CoTaskMemFree(memory); }
};
template <class T>
using OwnedTaskArray = std::unique_ptr<T[], TaskMemoryFree>;

std::vector<INT> AskVersions(const TicketProvider& provider, HANDLE printer) {
    INT* versions = nullptr;
    INT count = 0;
    Demand("GetSupportedVersions", provider->GetSupportedVersions(printer, &versions, &count));
    const OwnedTaskArray<INT> owner(versions);
    return {versions, versions + std::max(count, 0)};
}

void Bind(const TicketProvider& provider, HANDLE printer, ProviderBinding* binding) {
    SHIMOPTS options = {};
    INT count = 0;
    BSTR* texts = nullptr;
    Demand("BindPrinter",
           provider->BindPrinter(printer, kTicketInterfaceVersion, &options, &binding->devModeFields, &count, &texts));
    binding->options = options;
    const OwnedTaskArray<BSTR> owner(texts);
    for (BSTR const text : std::span(texts, static_cast<size_t>(std::max(count, 0)))) {
        OwnedBstr owned;
        owned.Reset(text);
        binding->namespaces.push_back(host::ToUtf8(owned.Text()));
    }
}

}  // namespace

void Demand(std::string_view call, HRESULT result) {
    if (SUCCEEDED(result)) {
        return;
    }
    const auto known = std::ranges::find(kResultTexts, result, &ResultText::result);
    throw CommandError(std::string(call) + " failed: result " + HexNumber(static_cast<uint32_t>(result), 8) +
                       (known != std::end(kResultTexts) ? std::string(", ") + known->text : std::string()));
}

ComThread::ComThread() {
    Demand("CoInitializeEx", CoInitializeEx(nullptr, COINIT_MULTITHREADED));
}

ComThread::~ComThread() {
    CoUninitialize();
}

TicketProvider::TicketProvider(HANDLE printer, const std::string& printerName)
    : driver_(LoadDriverOf(printer, printerName)) {
    const auto getClassObject = DriverExport<decltype(&DllGetClassObject)>(driver_, "DllGetClassObject");
    void* made = nullptr;
    Demand("DllGetClassObject", getClassObject(kProviderClass, IID_IClassFactory, &made));
    const ComReference<IClassFactory> factory(static_cast<IClassFactory*>(made));
    made = nullptr;
    Demand("CreateInstance", factory->CreateInstance(nullptr, IID_IPrintTicketProvider, &made));
    provider_.Reset(static_cast<IPrintTicketProvider*>(made));
}

bool TicketProvider::ReleaseAndAskToUnload() {
    provider_.Reset();
    return DriverExport<decltype(&DllCanUnloadNow)>(driver_, "DllCanUnloadNow")() == S_OK;
}

ProviderBinding BindProvider(const TicketProvider& provider, HANDLE printer, const std::string& printerName) {
    ProviderBinding binding = {};
    binding.versions = AskVersions(provider, printer);
    if (std::ranges::find(binding.versions, kTicketInterfaceVersion) == binding.versions.end()) {
        throw CommandError("the print-ticket provider of \"" + printerName + "\" doesn't support version " +
                           std::to_string(kTicketInterfaceVersion) + ", which this workbench knows");
    }
    Bind(provider, printer, &binding);
    return binding;
}

std::vector<std::string> AskProvider(HANDLE printer, const std::string& printerName,
                                     const std::function<void(TicketProvider& provider)>& ask) {
    const std::vector<std::string> openBefore = host::StillOpen();
    {
        TicketProvider provider(printer, printerName);
        ask(provider);
    }
    return OpenedSince(openBefore);
}

ProviderBinding BindByDriver(HANDLE printer, const std::string& printerName) {
    ProviderBinding binding = {};
    binding.leftOpen = AskProvider(printer, printerName, [&](TicketProvider& provider) {
        binding = BindProvider(provider, printer, printerName);
        OwnedBstr deviceNamespace;
        Demand("QueryDeviceNamespace", provider->QueryDeviceNamespace(deviceNamespace.Receive()));
        binding.deviceNamespace = host::ToUtf8(deviceNamespace.Text());
        deviceNamespace.Reset();
        binding.mayUnload = provider.ReleaseAndAskToUnload();
    });
    return binding;
}

}  // namespace velmora
