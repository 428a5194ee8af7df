#include "tests/driver/ticket_printer.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <cstring>

#include "driver/devmode/default_devmode.h"
#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/ticket_conversion.h"
#include "driver/settings/device_info.h"
#include "tests/driver/resource_file.h"
#include "tools/velmora/devmode_differences.h"

namespace driver_test {

using namespace velmora;  // NOLINT(google-build-using-namespace): what is tested

namespace {

// Every field that tickets share with device modes.
constexpr DWORD kSharedFields = 0x0380FF1F;

std::string Differences(const VelmoraDevMode& before, const VelmoraDevMode& after, bool withBefore) {
    std::string text;
    if (memcmp(&before, &after, sizeof(before)) == 0) {
        return text;
    }
    for (const DevModeDifference& difference : CompareDevModes(before, after)) {
        if (difference.isValue) {
            text += (text.empty() ? "" : " ") + difference.Name() + "=" +
                    (withBefore ? ReadSide(difference, before).value.dump() + "->" : "") +
                    ReadSide(difference, after).value.dump();
        }
    }
    return text;
}

}  // namespace

TicketDocument LoadTicket(const std::string& text) {
    void* made = nullptr;
    CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &made);
    TicketDocument document(static_cast<IXMLDOMDocument2*>(made));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const WideText wide(text.begin(), text.end());
    const OwnedBstr content(wide.c_str());
    document->loadXML(content.Get(), &loaded);
    return loaded == VARIANT_TRUE ? std::move(document) : TicketDocument();
}

std::string TicketText(const std::string& content) {
    return "<psf:PrintTicket version='1'"
           " xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
           " xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'"
           " xmlns:kxp='http://www.kestranix.com/ptpc/2006/1' xmlns:oem='http://www.kestranix.com/ptpc/oem/2006/1'"
           " xmlns:xsd='http://www.w3.org/2001/XMLSchema'>" +
           content + "</psf:PrintTicket>";
}

TicketPrinter::TicketPrinter(DriverPackage package, uint32_t missing, uint32_t missingTrays) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    package.dependent[0].bytes = StringModule({{2117, TEXT("Custom size")}, {2420, TEXT("ini")}, {2654, TEXT("ovl")}});
    InstallPrinter(package);
    printer_ = OpenWithAllAccess(kPrinterName);
    const OwnedSnapshot before = LoadPrinterSnapshot(Handle());
    const DeviceModel& model = *before.Get()->model;
    const bool canHaveDuplexUnit = ((model.jobNameFlags | model.duplexFlagsA | model.duplexFlagsB) & 1) != 0;
    const uint32_t options = ~missing & ~(canHaveDuplexUnit ? 0 : uint32_t{kDuplexInstalled});
    const DeviceInfo installed = {~missingTrays, 1, options, before.Get()->installed.memoryKey};
    SetDeviceInfo(Handle(), installed);
    for (const WCHAR* const name : {TEXT("\\ONE.ovl"), TEXT("\\TWO.ovl")}) {
        WriteDriveFile(WideText(before.Get()->overlayFolder) + name, "overlay");
    }
    snapshot_ = LoadPrinterSnapshot(Handle());

    VelmoraDevMode built = {};
    BuildDefaultDevMode(Handle(), kPrinterName, &built);
    built.publicPart.dmFields |= kSharedFields;
    WorkingDevMode working;
    working.Bind(Handle(), snapshot_.Get());
    EXPECT_EQ(working.Prepare(&built.publicPart, sizeof(built)), DevModeSource::kGiven);
    default_ = *working.DevMode();
}

TicketPrinter::~TicketPrinter() {
    snapshot_.Close();
    printer_.Close();
    CoUninitialize();
}

void TicketPrinter::Prepare(const VelmoraDevMode& devMode, WorkingDevMode* working) const {
    VelmoraDevMode given = devMode;
    working->Bind(Handle(), snapshot_.Get());
    EXPECT_EQ(working->Prepare(&given.publicPart, sizeof(given)), DevModeSource::kGiven);
    EXPECT_EQ(ValueDifferences(devMode, *working->DevMode()), "") << "the driver repairs this";
}

void TicketPrinter::Read(const TicketDocument& ticket, WorkingDevMode* working) const {
    ConversionContext context(ConversionMode::kTicket);
    context.Bind(Handle(), snapshot_.Get());
    context.document.AttachDocument(ticket.Get());
    ReadTicket(context, *working);
}

VelmoraDevMode TicketPrinter::Read(const TicketDocument& ticket, const VelmoraDevMode& into) const {
    WorkingDevMode working;
    Prepare(into, &working);
    Read(ticket, &working);
    return *working.DevMode();
}

void TicketPrinter::Write(const WorkingDevMode& working, const TicketDocument& ticket, ConversionMode mode) const {
    ConversionContext context(mode);
    context.Bind(Handle(), snapshot_.Get());
    context.document.AttachDocument(ticket.Get());
    WriteTicket(context, working);
}

TicketDocument TicketPrinter::Write(const VelmoraDevMode& devMode, ConversionMode mode) const {
    TicketDocument ticket = LoadTicket(TicketText(""));
    WorkingDevMode working;
    Prepare(devMode, &working);
    Write(working, ticket, mode);
    return ticket;
}

TicketDocument TicketPrinter::Capabilities(const VelmoraDevMode& devMode) const {
    WorkingDevMode working;
    Prepare(devMode, &working);
    ConversionContext context(ConversionMode::kCapabilities);
    context.Bind(Handle(), snapshot_.Get());
    BuildPrintCapabilities(context, working);
    return TicketDocument(context.document.DetachDocument());
}

std::string ChangedValues(const VelmoraDevMode& before, const VelmoraDevMode& after) {
    return Differences(before, after, false);
}

std::string ValueDifferences(const VelmoraDevMode& before, const VelmoraDevMode& after) {
    return Differences(before, after, true);
}

}  // namespace driver_test
