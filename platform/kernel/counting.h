// Counting that many threads may do at once, and that costs a process of one thread no more than adding.
#pragma once

#include <sys/single_threaded.h>

#include <atomic>
#include <cstdint>

namespace host {

// The number after it.
inline uint64_t CountUp(std::atomic<uint64_t>& count) {
    if (__libc_single_threaded == 0) {
        return ++count;
    }
    const uint64_t number = count.load(std::memory_order_relaxed) + 1;
    count.store(number, std::memory_order_relaxed);
    return number;
}

}  // namespace host
