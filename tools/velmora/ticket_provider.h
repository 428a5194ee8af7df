// The print-ticket provider in the library of a printer's driver, as the print system loads and binds it.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "driver/base/com.h"
#include "driver/base/handles.h"
#include "driver/ptprovider/print_ticket_provider.h"

namespace velmora {

// Throws a CommandError where a call of COM failed.
void Demand(std::string_view call, HRESULT result);

// COM on this thread for as long as it lives.
class ComThread {
  public:
    // Throws a CommandError where the thread can't have COM.
    ComThread();
    ComThread(const ComThread&) = delete;
    ComThread& operator=(const ComThread&) = delete;
    ~ComThread();
};

// A provider that is bound to no printer yet, and what it needs to run.
class TicketProvider {
  public:
    // Loads the library of the driver of an open printer and makes the provider by its class factory. Throws a
    // CommandError where the library can't be loaded or makes none.
    TicketProvider(HANDLE printer, const std::string& printerName);

    IPrintTicketProvider* operator->() const { return provider_.Get(); }

    // Releases the provider; whether the library then says by DllCanUnloadNow that it may be unloaded.
    bool ReleaseAndAskToUnload();

  private:
    ComThread com_;
    OwnedModule driver_;
    ComReference<IPrintTicketProvider> provider_;
};

// The version of the interface that this workbench knows.
inline constexpr INT kTicketInterfaceVersion = 1;

struct ProviderBinding {
    std::vector<INT> versions;            // that the provider supports
    DWORD options;                        // SHIMOPTS
    DWORD devModeFields;                  // DM_ bits (wingdi.h) that tickets and device modes share
    std::vector<std::string> namespaces;  // that the printer's documents use, in the provider's order
    std::string deviceNamespace;          // what QueryDeviceNamespace gives
    bool mayUnload;                       // the library, after the provider's last reference
    std::vector<std::string> leftOpen;    // after the library, a line each
};

// Asks a provider for its versions and binds it to an open printer of its driver by kTicketInterfaceVersion. Gives what
// the two calls say, the rest is empty. Throws a CommandError where a call fails or the provider doesn't support the
// version.
ProviderBinding BindProvider(const TicketProvider& provider, HANDLE printer, const std::string& printerName);

// Makes the provider of the driver of an open printer, has it asked, and lets it and its library go; what it then left
// open, a line each. `ask` runs with COM on the thread and keeps no object of COM.
std::vector<std::string> AskProvider(HANDLE printer, const std::string& printerName,
                                     const std::function<void(TicketProvider& provider)>& ask);

// Binds the provider of the driver of an open printer and asks it for the device namespace. Throws a CommandError where
// a call fails or the provider doesn't support the version.
ProviderBinding BindByDriver(HANDLE printer, const std::string& printerName);

}  // namespace velmora
