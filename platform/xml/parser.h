// XML text to a document's nodes.
#pragma once

#include <string_view>

#include "platform/xml/document.h"

namespace host {

// Appends what the text holds to the document, which is empty. The encoding that the text's declaration names doesn't
// count. White space alone between elements is left out, unless the document or xml:space asks to keep it. A text with
// a DTD is refused before the DTD is read, so there are no entities but XML's own, and nothing is read from outside. On
// a fault some of the nodes may be in the document.
ParseFault ParseXml(std::u16string_view text, Document* document);

}  // namespace host
