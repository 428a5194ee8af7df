#include <objbase.h>

#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

using MemoryTest = KernelTest;

TEST_F(MemoryTest, HeapBlocksKeepTheirExactSizeAndContent) {
    const HANDLE heap = GetProcessHeap();
    const auto bytes = [&](const void* block) {
        return std::string(static_cast<const char*>(block), HeapSize(heap, 0, block));
    };
    for (const SIZE_T size : {SIZE_T{0}, SIZE_T{1}, SIZE_T{72}, SIZE_T{65536}}) {
        void* const block = HeapAlloc(heap, HEAP_ZERO_MEMORY, size);
        EXPECT_EQ(bytes(block), std::string(size, '\0'));
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0u);
        EXPECT_TRUE(HeapFree(heap, 0, block));
    }
    EXPECT_TRUE(HeapFree(heap, 0, nullptr));
    EXPECT_EQ(HeapSize(heap, 0, nullptr), static_cast<SIZE_T>(-1));
    EXPECT_EQ(HeapAlloc(heap, 0, static_cast<SIZE_T>(-1)), nullptr);
    EXPECT_EQ(HeapAlloc(nullptr, 0, 8), nullptr);
}

TEST_F(MemoryTest, ReportNamesWhatIsOpenInOrder) {
    ClearFaults();
    void* const first = HeapAlloc(GetProcessHeap(), 0, 72);
    void* const second = CoTaskMemAlloc(8);
    EXPECT_EQ(StillOpen(), (Lines{"heap block of 72 bytes (allocation 1)", "task memory of 8 bytes (allocation 2)"}));
    HeapFree(GetProcessHeap(), 0, first);
    EXPECT_EQ(StillOpen(), Lines{"task memory of 8 bytes (allocation 2)"});
    EXPECT_DEATH(HeapFree(GetProcessHeap(), 0, second), "no heap block in use");
    CoTaskMemFree(second);
}

TEST_F(MemoryTest, NthAllocationFailsOnce) {
    FailAllocation(2);
    void* const first = HeapAlloc(GetProcessHeap(), 0, 1);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(CoTaskMemAlloc(2), nullptr);
    void* const second = CoTaskMemAlloc(3);
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(AllocationsSoFar(), 3u);
    CoTaskMemFree(second);
    CoTaskMemFree(nullptr);
    HeapFree(GetProcessHeap(), 0, first);
}

}  // namespace
}  // namespace host
