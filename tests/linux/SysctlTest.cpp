#include <gtest/gtest.h>
#include <sys/sysctl.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/support/Command.h"

namespace {

constexpr char kFrequency[] = "hw.cpufrequency";

/// In hertz, read by the shell; 0 where the machine does not tell.
double FrequencyByShell() {
    const std::string hertz = OutputOf(
        "cd /sys/devices/system/cpu/cpu0/cpufreq 2>/dev/null && "
        "cat base_frequency cpuinfo_max_freq 2>/dev/null | awk 'NR==1 {printf \"%.0f\", $1*1e3}' "
        "|| "
        "awk -F: '/^cpu MHz/ {printf \"%.0f\", $2*1e6; exit}' /proc/cpuinfo");
    return hertz.empty() ? 0 : std::stod(hertz);
}

TEST(Sysctl, TellsTheProcessorsFrequencyInHertzOrThatThereIsNone) {
    const double expected = FrequencyByShell();
    int64_t hertz = 0;
    size_t size = sizeof hertz;
    const int result = sysctlbyname(kFrequency, &hertz, &size, nullptr, 0);
    if (expected == 0) {
        EXPECT_EQ(result, -1);
        EXPECT_EQ(errno, ENOENT);
        return;
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(size, 8U);
    // Without a driver the kernel tells the momentary rate, which two readers may see differently.
    EXPECT_NEAR(static_cast<double>(hertz), expected, expected);
    EXPECT_GT(hertz, 100'000'000);
}

TEST(Sysctl, DoesNotKnowOtherNames) {
    int64_t value = 7;
    size_t size = sizeof value;
    for (const char* name : {"hw.cpufrequency_max", "", "hw"}) {
        errno = 0;
        EXPECT_EQ(sysctlbyname(name, &value, &size, nullptr, 0), -1);
        EXPECT_EQ(errno, ENOENT);
    }
    EXPECT_EQ(value, 7);
}

TEST(Sysctl, NeedsRoom) {
    const bool known = FrequencyByShell() != 0;
    int64_t value = 7;
    size_t size = 4;
    EXPECT_EQ(sysctlbyname(kFrequency, &value, &size, nullptr, 0), -1);
    EXPECT_EQ(errno, known ? ENOMEM : ENOENT);
    EXPECT_EQ(value, 7);
    EXPECT_EQ(size, 4U);
}

}  // namespace
