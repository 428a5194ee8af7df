#include "platform/kernel/heap.h"

#include <objbase.h>
#include <sys/single_threaded.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <mutex>
#include <thread>

#include "platform/host.h"
#include "platform/kernel/faults.h"

#if defined(HOST_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif
#ifndef ASAN_POISON_MEMORY_REGION
#define ASAN_POISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#endif

namespace host {
namespace {

constexpr uint32_t kMagic = 0x4B4C4256;
constexpr uint32_t kFreedMagic = 0xDDDDDDDD;

// Stands before every block. The guard is poisoned under the address sanitizer, so that a read before a block is seen;
// reads behind a block the sanitizer sees by itself, as the allocation ends with the block.
struct alignas(16) Header {
    Header* previous;
    Header* next;
    size_t size;
    uint64_t number;  // of the allocation, counted as FailAllocation counts
    uint32_t magic;
    Resource kind;
    unsigned char guard[8];
};
static_assert(sizeof(Header) == 48);

// Held for the links of a list, thousands of times in a call of the program. A process of one thread, which makes no
// other meanwhile, need not take it.
class LinkLock {
  public:
    void lock() {
        while (__libc_single_threaded == 0 && taken_.test_and_set(std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }
    void unlock() { taken_.clear(std::memory_order_release); }

  private:
    std::atomic_flag taken_;
};

struct BlockList {
    LinkLock mutex;
    Header* first = nullptr;
    Header* last = nullptr;
};

BlockList& Blocks() {
    static BlockList& blocks = *new BlockList;
    return blocks;
}

Header* HeaderOf(const void* block) {
    return static_cast<Header*>(const_cast<void*>(block)) - 1;
}

void Link(Header* header) {
    BlockList& blocks = Blocks();
    std::lock_guard lock(blocks.mutex);
    header->next = nullptr;
    header->previous = blocks.last;
    (blocks.last ? blocks.last->next : blocks.first) = header;
    blocks.last = header;
}

void Unlink(Header* header) {
    BlockList& blocks = Blocks();
    std::lock_guard lock(blocks.mutex);
    (header->previous ? header->previous->next : blocks.first) = header->next;
    (header->next ? header->next->previous : blocks.last) = header->previous;
}

void Release(Header* header) {
    ASAN_UNPOISON_MEMORY_REGION(header->guard, sizeof(header->guard));
    header->magic = kFreedMagic;
    free(header);
}

}  // namespace

void* AllocateBlock(Resource kind, size_t bytes, bool zeroed) {
    if (AllocationFails() || bytes > std::numeric_limits<size_t>::max() - sizeof(Header)) {
        return nullptr;
    }
    auto* header = static_cast<Header*>(zeroed ? calloc(1, sizeof(Header) + bytes) : malloc(sizeof(Header) + bytes));
    if (header == nullptr) {
        return nullptr;
    }
    header->size = bytes;
    header->number = AllocationsSoFar();
    header->magic = kMagic;
    header->kind = kind;
    Link(header);
    ASAN_POISON_MEMORY_REGION(header->guard, sizeof(header->guard));
    return header + 1;
}

void FreeBlock(Resource kind, void* block) {
    if (IsBlock(kind, block)) {
        Header* header = HeaderOf(block);
        Unlink(header);
        Release(header);
    }
}

size_t BlockSize(Resource kind, const void* block) {
    return IsBlock(kind, block) ? HeaderOf(block)->size : static_cast<size_t>(-1);
}

bool IsBlock(Resource kind, const void* block) {
    if (block == nullptr || reinterpret_cast<uintptr_t>(block) % alignof(Header) != 0) {
        return false;
    }
    const Header* header = HeaderOf(block);
    return header->magic == kMagic && header->kind == kind;
}

void DemandBlock(const char* call, Resource kind, const void* block) {
    if (!IsBlock(kind, block)) {
        fprintf(stderr, "%s: %p is no %s in use\n", call, block, ResourceName(kind));
        abort();
    }
}

std::vector<std::string> OpenBlocks() {
    std::vector<std::string> lines;
    BlockList& blocks = Blocks();
    std::lock_guard lock(blocks.mutex);
    for (const Header* header = blocks.first; header != nullptr; header = header->next) {
        lines.push_back(std::string(ResourceName(header->kind)) + " of " + std::to_string(header->size) +
                        " bytes (allocation " + std::to_string(header->number) + ")");
    }
    return lines;
}

void FreeAllBlocks() {
    BlockList& blocks = Blocks();
    std::lock_guard lock(blocks.mutex);
    while (blocks.first != nullptr) {
        Header* header = blocks.first;
        blocks.first = header->next;
        Release(header);
    }
    blocks.last = nullptr;
}

namespace {

// Its address is the heap's handle.
char processHeap;

bool IsHeap(HANDLE heap) {
    if (heap != &processHeap) {
        SetLastError(ERROR_INVALID_HANDLE);
        return false;
    }
    return true;
}

}  // namespace
}  // namespace host

using host::Resource;

extern "C" {

HANDLE WINAPI GetProcessHeap() {
    return &host::processHeap;
}

LPVOID WINAPI HeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes) {
    if (host::FaultAsked("HeapAlloc") || !host::IsHeap(heap)) {
        return nullptr;
    }
    return host::AllocateBlock(Resource::kHeapBlock, bytes, (flags & HEAP_ZERO_MEMORY) != 0);
}

BOOL WINAPI HeapFree(HANDLE heap, DWORD, LPVOID memory) {
    if (!host::IsHeap(heap)) {
        return FALSE;
    }
    if (memory != nullptr) {
        host::DemandBlock("HeapFree", Resource::kHeapBlock, memory);
        host::FreeBlock(Resource::kHeapBlock, memory);
    }
    return TRUE;
}

SIZE_T WINAPI HeapSize(HANDLE heap, DWORD, LPCVOID memory) {
    if (!host::IsHeap(heap)) {
        return static_cast<SIZE_T>(-1);
    }
    return host::BlockSize(Resource::kHeapBlock, memory);
}

LPVOID WINAPI CoTaskMemAlloc(SIZE_T bytes) {
    if (host::FaultAsked("CoTaskMemAlloc")) {
        return nullptr;
    }
    return host::AllocateBlock(Resource::kTaskMemory, bytes, false);
}

void WINAPI CoTaskMemFree(LPVOID memory) {
    if (memory != nullptr) {
        host::DemandBlock("CoTaskMemFree", Resource::kTaskMemory, memory);
        host::FreeBlock(Resource::kTaskMemory, memory);
    }
}

}  // extern "C"
