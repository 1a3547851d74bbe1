// A machine that does not tell its clock: this program has a system call of its own.
#include "logging/ProcessorClock.h"

#include <gtest/gtest.h>
#include <sys/sysctl.h>

#include <cerrno>
#include <cstring>

extern "C" int sysctlbyname(const char* name, void*, size_t*, void*, size_t) {
    errno = std::strcmp(name, "hw.cpufrequency") == 0 ? ENOENT : EINVAL;
    return -1;
}

namespace {

TEST(ProcessorClock, IsZeroAndAWordOnStandardErrorWhereTheMachineDoesNotTell) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(get_cpu_freq(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "sysctl: No such file or directory\n");
}

}  // namespace
