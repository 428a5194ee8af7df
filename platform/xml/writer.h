// XML text of nodes.
#pragma once

#include <string>
#include <string_view>

#include "platform/xml/tree.h"

namespace host {

struct XmlFormat {
    std::u16string_view lineEnd = u"\r\n";  // of a line end in text, and behind what stands in the document itself
    // Elements and comments get lines of their own, two blanks deeper for each level, wherever there is no text beside
    // them and xml:space doesn't ask to keep white space.
    bool indent = false;
};

// Of a node that isn't the document what stands for it alone. Prefixes that nothing within the text declares are
// declared by the element that first needs them. An attribute without prefix is written so whatever its namespace. What
// XML text can't hold is written as what comes nearest: U+FFFD for a character, "- -" and "? >" for what would end a
// comment or a processing instruction.
std::u16string WriteXml(const Node* node, const XmlFormat& format);

}  // namespace host
