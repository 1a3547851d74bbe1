#pragma once

#include <cstdint>

/// The processor's clock rate in hertz, or 0 where the system does not know it; the system's error
/// then goes to standard error, introduced by "sysctl". Apple silicon does not know it.
int64_t get_cpu_freq();
