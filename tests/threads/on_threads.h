// The same asked on eight threads at once: each gets what it would get alone.
#pragma once

#include <gtest/gtest.h>

#include <barrier>
#include <thread>
#include <vector>

inline constexpr int kThreads = 8;
inline constexpr int kRounds = 6;

// Calls `ask` with 1 to kThreads, each on a thread of its own and together with the others, and compares with what
// `askAlone` gave for the number on the calling thread. Whatever a thread needs, `ask` makes.
template <class AskAlone, class Ask>
void CompareOnThreads(const AskAlone& askAlone, const Ask& ask) {
    std::vector<decltype(askAlone(1))> alone;
    for (int number = 1; number <= kThreads; ++number) {
        alone.push_back(askAlone(number));
    }
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int number = 1; number <= kThreads; ++number) {
        threads.emplace_back([&, number] {
            for (int round = 0; round < kRounds; ++round) {
                start.arrive_and_wait();
                EXPECT_TRUE(ask(number) == alone[static_cast<size_t>(number - 1)])
                    << "number " << number << ", round " << round;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
