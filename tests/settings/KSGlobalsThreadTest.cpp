#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "settings/KSGlobals.h"

namespace {

// Threads that raced would draw a number twice or lose one.
TEST(KSGlobalsThreads, EightThreadsShareOutTheSequence) {
    constexpr uint32_t kSeed = 20200902;
    constexpr size_t kThreads = 8;
    constexpr size_t kDraws = 20000;

    KSGlobals globals(kSeed);
    std::vector<std::vector<uint16_t>> drawn(kThreads);
    std::vector<std::thread> threads;
    for (std::vector<uint16_t>& numbers : drawn) {
        threads.emplace_back([&globals, &numbers] {
            for (size_t i = 0; i < kDraws; ++i) {
                numbers.push_back(globals.GenerateUInt16RandomNumber());
            }
        });
    }
    std::vector<uint16_t> all;
    for (size_t i = 0; i < kThreads; ++i) {
        threads[i].join();
        all.insert(all.end(), drawn[i].begin(), drawn[i].end());
    }

    std::mt19937 reference(kSeed);
    std::vector<uint16_t> expected;
    for (size_t i = 0; i < kThreads * kDraws; ++i) {
        expected.push_back(KSGlobals::Mix16(static_cast<uint32_t>(reference())));
    }
    std::sort(all.begin(), all.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(all, expected);
}

}  // namespace
