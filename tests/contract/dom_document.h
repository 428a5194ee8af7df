// COM on the test's thread, and the XML documents that tests make (msxml2.h).
#pragma once

#include <windows.h>

#include <msxml2.h>
#include <objbase.h>
#include <oleauto.h>

#include <string>

#include "driver/base/com.h"
#include "tests/contract/environment.h"

namespace contract {

using velmora::ComReference;
using velmora::OwnedBstr;
using velmora::OwnedVariant;

// COM on the current thread for as long as this lives.
class ComOnThread {
  public:
    ComOnThread() : initialized_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
    ~ComOnThread() {
        if (initialized_) {
            CoUninitialize();
        }
    }
    ComOnThread(const ComOnThread&) = delete;
    ComOnThread& operator=(const ComOnThread&) = delete;

  private:
    const bool initialized_;  // else the thread has it already, in another mode
};

// An empty document that waits for its loading, checks nothing and fetches nothing. Throws std::runtime_error where
// there is none; COM must be there on the thread.
ComReference<IXMLDOMDocument2> NewDocument();

// A document of a text. Throws std::runtime_error, with the text, where it isn't well-formed.
ComReference<IXMLDOMDocument2> LoadDocument(const WideText& text);
// The same of an ASCII text, where the usual prefix of a standard namespace in braces, "{psf}", stands for its URI.
ComReference<IXMLDOMDocument2> LoadDocument(const std::string& text);

// A new namespace manager. Throws std::runtime_error where there is none.
ComReference<IMXNamespaceManager> NewNamespaceManager();

// A node of `type` that is in no tree yet; `name` as it is written, an empty `uri` for no namespace. Throws
// std::runtime_error where the document refuses.
ComReference<IXMLDOMNode> NewNode(IXMLDOMDocument2* document, DOMNodeType type, const WideText& name,
                                  const WideText& uri);

// Sets an attribute as a node of its own, made as above. Throws std::runtime_error where the DOM refuses.
void SetAttributeNode(IXMLDOMDocument2* document, IXMLDOMNode* element, const WideText& name, const WideText& uri,
                      const WideText& value);

}  // namespace contract
