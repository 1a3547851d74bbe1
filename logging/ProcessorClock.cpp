#include "logging/ProcessorClock.h"

#include <sys/sysctl.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdio>

int64_t get_cpu_freq() {
    int64_t hertz = 0;
    size_t size = sizeof hertz;
    if (sysctlbyname("hw.cpufrequency", &hertz, &size, nullptr, 0) < 0) {
        perror("sysctl");
        return 0;
    }
    return hertz;
}
