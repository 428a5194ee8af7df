// XML files of the host, for tools and tests.
#pragma once

#include <msxml2.h>

#include <filesystem>
#include <string>

namespace host {

// The file is in UTF-8 or UTF-16, as its mark or its declaration says. Empty: it is loaded. Otherwise what is wrong,
// after the file's name and, where the text isn't well-formed, line and column; the document is empty then.
std::string LoadXmlFile(const std::filesystem::path& file, IXMLDOMDocument2* document);

// The document in UTF-8 with a declaration that says so, lines ended by "\n". `indent`: in lines for people to read,
// with nothing added beside text.
std::string SaveXml(IXMLDOMDocument2* document, bool indent);

}  // namespace host
