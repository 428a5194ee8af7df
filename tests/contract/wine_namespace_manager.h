// A namespace manager (IMXNamespaceManager, msxml2.h) for hosts whose own doesn't push contexts of nodes.
#pragma once

#include <windows.h>

#include <msxml2.h>

namespace contract {

// An owned reference to a new one. It answers as MSXML's does, whose edges Wine's has as well; what is in scope at a
// node comes before what was declared earlier.
IMXNamespaceManager* MakeNamespaceManager();

}  // namespace contract
