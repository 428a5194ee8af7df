// The print-ticket provider in the library of a printer's driver, as the print system loads and binds it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "driver/base/com.h"
#include "driver/base/handles.h"
#include "driver/ptprovider/print_ticket_provider.h"

namespace velmora {

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

// Makes the provider of the driver of an open printer, asks it for its versions, binds it to the printer by
// kTicketInterfaceVersion, asks it for the device namespace, and lets it and its library go. Throws a CommandError
// where a call fails or the provider doesn't support the version.
ProviderBinding BindByDriver(HANDLE printer, const std::string& printerName);

}  // namespace velmora
