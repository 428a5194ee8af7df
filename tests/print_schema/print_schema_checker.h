// A checker of Print Schema documents, version 1: print tickets and print capabilities.
#pragma once

#include <windows.h>

#include <msxml2.h>

#include <ostream>
#include <string>
#include <vector>

namespace print_schema {

// What is wrong with an element.
struct Finding {
    std::string place;  // "PrintTicket/Feature psk:PageMediaSize/Option[2]": from the root, by names or else numbers
    std::string fault;
};
std::ostream& operator<<(std::ostream& stream, const Finding& finding);

// What a document has that the Print Schema forbids, in document order by kind of fault; nothing where it is good.
// What the driver's documents have on purpose is excepted. Keywords are checked by name in the public namespace only.
// Throws std::runtime_error where the DOM doesn't tell something.
std::vector<Finding> CheckPrintSchema(IXMLDOMDocument2* document);

}  // namespace print_schema
