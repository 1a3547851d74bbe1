// A machine that tells its clock and one that does not: this program has a system call of its own.
#include "logging/ProcessorClock.h"

#include <gtest/gtest.h>
#include <sys/sysctl.h>

#include <cerrno>
#include <cstring>

static int64_t clockOfTheMachine = 0;

extern "C" int sysctlbyname(const char* name, void* value, size_t* size, void* newValue,
                            size_t newSize) {
    if (clockOfTheMachine == 0 || std::strcmp(name, "hw.cpufrequency") != 0) {
        std::memset(value, 1, *size);  // nobody promises that a failing call writes nothing
        errno = ENOENT;
        return -1;
    }
    EXPECT_EQ(newValue, nullptr);
    EXPECT_EQ(newSize, 0U);
    EXPECT_EQ(*size, sizeof clockOfTheMachine);
    std::memcpy(value, &clockOfTheMachine, sizeof clockOfTheMachine);
    return 0;
}

namespace {

class ProcessorClock : public testing::Test {
  protected:
    static int64_t Ask(int64_t clock, std::string& error) {
        clockOfTheMachine = clock;
        testing::internal::CaptureStderr();
        const int64_t hertz = get_cpu_freq();
        error = testing::internal::GetCapturedStderr();
        return hertz;
    }

    std::string error;
};

TEST_F(ProcessorClock, IsInHertz) {
    EXPECT_EQ(Ask(2'400'000'000, error), 2'400'000'000);
    EXPECT_EQ(error, "");
}

TEST_F(ProcessorClock, IsZeroAndAWordOnStandardErrorWhereTheMachineDoesNotTell) {
    EXPECT_EQ(Ask(0, error), 0);
    EXPECT_EQ(error, "sysctl: No such file or directory\n");
}

}  // namespace
