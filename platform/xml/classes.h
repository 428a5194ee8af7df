// The classes that CoCreateInstance makes here.
#pragma once

#include <unknwn.h>

namespace host {

// *object: an owned reference of a new object. E_NOINTERFACE where it doesn't have the interface.
HRESULT MakeXmlDocument(REFIID interfaceId, void** object);
HRESULT MakeNamespaceManager(REFIID interfaceId, void** object);

}  // namespace host
