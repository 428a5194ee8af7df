// Blocks of memory that programs hold: the process heap's and the task allocator's. Each carries its own ledger entry.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/kernel/objects.h"

#if defined(__SANITIZE_ADDRESS__)
#define HOST_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_ADDRESS_SANITIZER 1
#endif
#endif

namespace host {

// The address sanitizer sees the use of freed memory, unless that is kept for something else.
#if defined(HOST_ADDRESS_SANITIZER)
inline constexpr bool kMayKeepFreedMemory = false;
#else
inline constexpr bool kMayKeepFreedMemory = true;
#endif

// Null where the memory ran out or the test wants this allocation to fail.
void* AllocateBlock(Resource kind, size_t bytes, bool zeroed);
void FreeBlock(Resource kind, void* block);
size_t BlockSize(Resource kind, const void* block);
// A block of this kind that is in use. A freed block or a foreign address can't be told in every case; what can't is an
// error that the address sanitizer reports.
bool IsBlock(Resource kind, const void* block);
// Ends the process with a message where it is none: going on after a bad block would hide the fault, and the published
// calls promise nothing for it. `call` is the published name of the call that was given the block.
void DemandBlock(const char* call, Resource kind, const void* block);

// One line a block that is in use.
std::vector<std::string> OpenBlocks();
// For the machine's end: gives back all that is in use.
void FreeAllBlocks();

}  // namespace host
