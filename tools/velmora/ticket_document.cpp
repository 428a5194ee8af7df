#include "tools/velmora/ticket_document.h"

#include <objbase.h>

#include <string>

#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/print_schema.h"
#include "platform/kernel/text.h"
#include "platform/xml/xml_files.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/ticket_provider.h"

namespace velmora {
namespace {

constexpr const WCHAR* kTicketElement = TEXT("PrintTicket");

XmlDocument NewDocument() {
    void* made = nullptr;
    Demand("CoCreateInstance of an XML document",
           CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &made));
    return XmlDocument(static_cast<IXMLDOMDocument2*>(made));
}

[[noreturn]] void RefuseTicket(const std::string& fault) {
    throw UsageError(fault + "; expected a print ticket: an XML document whose root is PrintTicket of " +
                     Quoted(kFrameworkNamespace));
}

}  // namespace

XmlDocument NewTicket() {
    XmlDocument ticket = NewDocument();
    const std::u16string text =
        std::u16string(u"<psf:") + kTicketElement + u" version=\"1\" xmlns:psf=\"" + kFrameworkNamespace + u"\"/>";
    const OwnedBstr xml(text.c_str());
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    Demand("loadXML", ticket->loadXML(xml.Get(), &isLoaded));
    return ticket;
}

XmlDocument ReadTicketFile(const std::filesystem::path& file) {
    XmlDocument ticket = NewDocument();
    if (const std::string fault = host::LoadXmlFile(file, ticket.Get()); !fault.empty()) {
        RefuseTicket(fault);
    }
    ComReference<IXMLDOMElement> root;
    OwnedBstr uri;
    OwnedBstr name;
    Demand("get_documentElement", ticket->get_documentElement(root.Receive()));
    Demand("get_namespaceURI", root->get_namespaceURI(uri.Receive()));
    Demand("get_baseName", root->get_baseName(name.Receive()));
    if (!uri.Is(kFrameworkNamespace) || !name.Is(kTicketElement)) {
        RefuseTicket(file.string() + ": the root is " + host::ToUtf8(name.Text()) + " of " +
                     (uri.Length() == 0 ? "no namespace" : Quoted(uri.Text())));
    }
    return ticket;
}

}  // namespace velmora
