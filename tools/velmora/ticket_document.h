// Print tickets as documents of the platform's XML object model. COM is on the thread for as long as they live.
#pragma once

#include <msxml2.h>

#include <filesystem>

#include "driver/base/com.h"

namespace velmora {

using XmlDocument = ComReference<IXMLDOMDocument2>;

// A print ticket of version 1 that says nothing yet. Throws a CommandError where the system makes no document.
XmlDocument NewTicket();

// Throws a UsageError that says where and what was expected for a file that can't be read, that isn't well-formed, and
// whose root isn't a PrintTicket of the Print Schema. Nothing of what the ticket says is judged.
XmlDocument ReadTicketFile(const std::filesystem::path& file);

}  // namespace velmora
