// Memory from the process heap and its owner.
#pragma once

#include <windows.h>

#include <cstddef>
#include <utility>

namespace velmora {

// `size` bytes from the process heap, all 0; null where there are none. Freed by HeapFree, which HeapOwner does.
inline void* AllocateBytes(size_t size) {
    return HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size);
}

// Owns a block of the process heap.
template <class T>
class HeapOwner {
  public:
    HeapOwner() = default;
    explicit HeapOwner(T* block) : block_(block) {}
    HeapOwner(HeapOwner&& other) noexcept : block_(other.Release()) {}
    HeapOwner& operator=(HeapOwner&& other) noexcept {
        if (this != &other) {
            Reset(other.Release());
        }
        return *this;
    }
    HeapOwner(const HeapOwner&) = delete;
    HeapOwner& operator=(const HeapOwner&) = delete;
    ~HeapOwner() { Reset(nullptr); }

    // One zeroed T, or `count` of them; empty where there is no memory or the size isn't representable.
    static HeapOwner Allocate(size_t count = 1) {
        return AllocateSize(count <= SIZE_MAX / sizeof(T) ? count * sizeof(T) : SIZE_MAX);
    }

    // A zeroed block of `size` bytes that begins with a T.
    static HeapOwner AllocateSize(size_t size) {
        return HeapOwner(size <= SIZE_MAX / 2 ? static_cast<T*>(AllocateBytes(size)) : nullptr);
    }

    T* Get() const { return block_; }
    T* operator->() const { return block_; }
    T& operator*() const { return *block_; }
    explicit operator bool() const { return block_ != nullptr; }

    // Gives the block to the caller.
    T* Release() { return std::exchange(block_, nullptr); }

    void Reset(T* block) {
        if (block_ && block_ != block) {
            HeapFree(GetProcessHeap(), 0, const_cast<void*>(static_cast<const void*>(block_)));
        }
        block_ = block;
    }

  private:
    T* block_ = nullptr;
};

}  // namespace velmora
