#include <objbase.h>

#include <thread>
#include <vector>

#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

using MemoryTest = KernelTest;

TEST_F(MemoryTest, HeapBlocksKeepTheirExactSizeAndContent) {
    const HANDLE heap = GetProcessHeap();
    for (const SIZE_T size : {SIZE_T{0}, SIZE_T{1}, SIZE_T{72}, SIZE_T{65536}}) {
        auto* block = static_cast<unsigned char*>(HeapAlloc(heap, HEAP_ZERO_MEMORY, size));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(HeapSize(heap, 0, block), size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0u);
        for (SIZE_T i = 0; i < size; ++i) {
            ASSERT_EQ(block[i], 0);
            block[i] = 0xA5;
        }
        // Grown: the old content stays, the new part is zero. Shrunk: the beginning stays.
        block = static_cast<unsigned char*>(HeapReAlloc(heap, HEAP_ZERO_MEMORY, block, size + 100));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(HeapSize(heap, 0, block), size + 100);
        for (SIZE_T i = 0; i < size + 100; ++i) {
            ASSERT_EQ(block[i], i < size ? 0xA5 : 0);
        }
        EXPECT_EQ(HeapReAlloc(heap, HEAP_REALLOC_IN_PLACE_ONLY, block, size + 101), nullptr);
        block = static_cast<unsigned char*>(HeapReAlloc(heap, 0, block, size / 2));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(HeapSize(heap, 0, block), size / 2);
        EXPECT_TRUE(HeapFree(heap, 0, block));
    }
    EXPECT_TRUE(HeapFree(heap, 0, nullptr));
    EXPECT_EQ(HeapSize(heap, 0, nullptr), static_cast<SIZE_T>(-1));
    EXPECT_EQ(HeapAlloc(heap, 0, static_cast<SIZE_T>(-1)), nullptr);
    EXPECT_EQ(HeapAlloc(nullptr, 0, 8), nullptr);
}

TEST_F(MemoryTest, ReportNamesWhatIsOpenInOrder) {
    ClearFaults();
    void* first = HeapAlloc(GetProcessHeap(), 0, 72);
    void* second = CoTaskMemAlloc(8);
    void* third = HeapAlloc(GetProcessHeap(), 0, 5);
    EXPECT_EQ(StillOpen(), (std::vector<std::string>{"heap block of 72 bytes (allocation 1)",
                                                     "task memory of 8 bytes (allocation 2)",
                                                     "heap block of 5 bytes (allocation 3)"}));
    CoTaskMemFree(second);
    HeapFree(GetProcessHeap(), 0, first);
    EXPECT_EQ(StillOpen(), std::vector<std::string>{"heap block of 5 bytes (allocation 3)"});
    HeapFree(GetProcessHeap(), 0, third);
}

TEST_F(MemoryTest, NthAllocationFailsOnce) {
    FailAllocation(2);
    void* first = HeapAlloc(GetProcessHeap(), 0, 1);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(HeapReAlloc(GetProcessHeap(), 0, first, 2), nullptr);
    EXPECT_EQ(HeapSize(GetProcessHeap(), 0, first), 1u);  // a failed change leaves the block
    void* third = CoTaskMemAlloc(1);
    EXPECT_NE(third, nullptr);
    EXPECT_EQ(AllocationsSoFar(), 3u);
    CoTaskMemFree(third);
    CoTaskMemFree(nullptr);
    HeapFree(GetProcessHeap(), 0, first);
}

TEST_F(MemoryTest, TaskMemoryCanBeResized) {
    auto* memory = static_cast<char*>(CoTaskMemRealloc(nullptr, 3));
    ASSERT_NE(memory, nullptr);
    memcpy(memory, "abc", 3);
    memory = static_cast<char*>(CoTaskMemRealloc(memory, 1000));
    EXPECT_EQ(std::string_view(memory, 3), "abc");
    EXPECT_EQ(CoTaskMemRealloc(memory, 0), nullptr);
}

using MemoryDeathTest = MemoryTest;

TEST_F(MemoryDeathTest, BlockOfAnotherAllocatorIsNoticed) {
    void* memory = CoTaskMemAlloc(16);
    EXPECT_DEATH(HeapFree(GetProcessHeap(), 0, memory), "no heap block in use");
    CoTaskMemFree(memory);
}

TEST_F(MemoryTest, ThreadsAllocateSideBySide) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            std::vector<void*> blocks;
            for (SIZE_T i = 0; i < 1000; ++i) {
                blocks.push_back(HeapAlloc(GetProcessHeap(), 0, i));
                if (i % 3 == 0) {
                    HeapFree(GetProcessHeap(), 0, blocks[i / 2]);
                    blocks[i / 2] = nullptr;
                }
            }
            for (void* block : blocks) {
                HeapFree(GetProcessHeap(), 0, block);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
}  // namespace host
