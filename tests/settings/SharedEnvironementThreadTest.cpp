#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

#include "settings/KSEnvironement.h"

namespace {

// The first calls of the process: every one may be the one that builds the instance.
TEST(SharedEnvironementThreads, EightThreadsAtOnceGetOneInstance) {
    constexpr size_t kThreads = 8;
    std::atomic<size_t> ready{0};
    std::vector<std::shared_ptr<KSEnvironement>> instances(kThreads);
    std::vector<std::thread> threads;
    for (std::shared_ptr<KSEnvironement>& instance : instances) {
        threads.emplace_back([&ready, &instance] {
            ++ready;
            while (ready < kThreads) {
            }
            instance = KSEnvironement::SharedEnvironement();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::set<std::shared_ptr<KSEnvironement>> different(instances.begin(), instances.end());
    EXPECT_EQ(different.size(), 1U);
    ASSERT_NE(instances.front(), nullptr);
    EXPECT_EQ(instances.front()->DataFolder(), "//Users//Shared//Keystrel//");
}

}  // namespace
