// XML documents as text that is the same on both hosts: what a document means, not how one host or the other writes it.
#pragma once

#include <string>

#include "tests/contract/dom_document.h"

namespace contract {

// A line for each node in document order, two blanks deeper than its parent's, each ended by "\n":
//
//     ?xml version="1.0"        a processing instruction
//     #comment                  a comment
//     {uri}local                an element
//       xmlns:p="uri"           a prefix that it binds, unless it is bound so in its parent already; sorted
//       name="value"            an attribute by its written name; sorted
//       "text"                  text and CDATA sections that follow each other, as one
//
// The prefix of an element counts as bound there. The default namespace isn't told: the elements' own names tell it.
// Throws std::runtime_error where the DOM doesn't tell something, or has a node of another kind.
std::string CanonicalText(IXMLDOMDocument2* document);

// Notes the lines in the transcript. The user's folder of application data, which differs between machines by right, is
// masked where a text begins with it.
void RecordDocument(IXMLDOMDocument2* document);

}  // namespace contract
