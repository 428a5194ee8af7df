// Faults that a test asks for: the nth allocation fails, a named call fails with a given error.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace host {

// Asked at the top of every published call that can fail, with the call's published name, a literal. True: the
// test wants this call to fail; the last error is then set already, and the call returns its published failure value
// and does nothing else.
bool FaultAsked(const char* call);

// Asked by every allocation made for the program (heap blocks, task memory, BSTRs and the like). True: this one fails.
bool AllocationFails();

// The published names of the calls that asked, since the machine was made, in the order of the alphabet.
std::vector<std::string> CallsMade();

// For a machine's start and end: no faults, no calls counted.
void ForgetCalls();

}  // namespace host
