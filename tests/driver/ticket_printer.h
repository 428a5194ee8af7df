// A printer for tests of the conversions between print tickets and device modes, and tickets by their texts.
#pragma once

#include <windows.h>

#include <msxml2.h>

#include <string>

#include "driver/base/com.h"
#include "driver/ptprovider/conversion_context.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/working_devmode.h"
#include "tests/driver/package.h"

namespace driver_test {

using TicketDocument = velmora::ComReference<IXMLDOMDocument2>;

// A document of this text; empty where it is no XML.
TicketDocument LoadTicket(const std::string& text);

// The text of a ticket with this content. The prefixes psf, psk, kxp, oem and xsd are declared.
std::string TicketText(const std::string& content);

// An installed printer, bound as the provider binds it. COM is there as long as this.
class TicketPrinter {
  public:
    // Everything that the model can have is installed but `missing` (DeviceInfoOption bits) and the trays of which a
    // bit is in `missingTrays`. The user has the overlays ONE.ovl and TWO.ovl.
    explicit TicketPrinter(DriverPackage package, uint32_t missing = 0, uint32_t missingTrays = 0);
    TicketPrinter(const TicketPrinter&) = delete;
    TicketPrinter& operator=(const TicketPrinter&) = delete;
    ~TicketPrinter();

    HANDLE Handle() const { return printer_.Get(); }
    const velmora::PrinterSnapshot& Snapshot() const { return *snapshot_.Get(); }
    // The printer's default device mode, in which every published field is in use.
    const velmora::VelmoraDevMode& Default() const { return default_; }
    // Makes a working device mode of one. A test failure where the driver takes another or repairs it.
    void Prepare(const velmora::VelmoraDevMode& devMode, velmora::WorkingDevMode* working) const;

    void Read(const TicketDocument& ticket, velmora::WorkingDevMode* working) const;
    velmora::VelmoraDevMode Read(const TicketDocument& ticket, const velmora::VelmoraDevMode& into) const;
    void Write(const velmora::WorkingDevMode& working, const TicketDocument& ticket,
               velmora::ConversionMode mode = velmora::ConversionMode::kTicket) const;
    // A new ticket of a device mode.
    TicketDocument Write(const velmora::VelmoraDevMode& devMode,
                         velmora::ConversionMode mode = velmora::ConversionMode::kTicket) const;
    TicketDocument Capabilities(const velmora::VelmoraDevMode& devMode) const;

  private:
    velmora::OwnedPrinter printer_;
    velmora::OwnedSnapshot snapshot_;
    velmora::VelmoraDevMode default_ = {};
};

// The values that are others in `after`: "dmCopies=7 pagesPerSheet=2", and with those before, "dmCopies=1->7". Texts
// are in quotation marks; what lies behind them doesn't count.
std::string ChangedValues(const velmora::VelmoraDevMode& before, const velmora::VelmoraDevMode& after);
std::string ValueDifferences(const velmora::VelmoraDevMode& before, const velmora::VelmoraDevMode& after);

}  // namespace driver_test
