// The named children of a document's root by their names. A conversion asks for some hundred names: the document is
// walked for them once.
#pragma once

#include <msxml2.h>
#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/com.h"

namespace velmora {

// What an element of the framework is called where the index knows its kind, as the constant of element_name; null for
// other kinds.
const WCHAR* IndexedKind(const WCHAR* localName);

class RootIndex {
  public:
    RootIndex() = default;
    RootIndex(const RootIndex&) = delete;
    RootIndex& operator=(const RootIndex&) = delete;
    ~RootIndex() { Clear(); }

    // Whether all of the root's named children are in it.
    bool IsComplete() const { return isComplete_; }
    void SetComplete() { isComplete_ = true; }
    void Clear();

    // Adds a child behind those that are in; reference and texts are taken over. False, and the index cleared, without
    // memory, where there is no text too.
    bool Add(const WCHAR* kind, OwnedBstr* uri, OwnedBstr* localName, ComReference<IXMLDOMElement> element);

    // The first child of the kind, a constant that IndexedKind gives, with the name; null for none.
    IXMLDOMElement* Find(const WCHAR* kind, const WCHAR* uri, const WCHAR* localName) const;

  private:
    struct Entry {
        const WCHAR* kind;
        uint32_t hash;  // of the local name
        BSTR uri;
        BSTR localName;
        IXMLDOMElement* element;
    };

    Entry* entries_ = nullptr;  // a block of the process heap
    size_t count_ = 0;
    size_t capacity_ = 0;
    bool isComplete_ = false;
};

}  // namespace velmora
