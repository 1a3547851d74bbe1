#include <sys/sysctl.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>

namespace {

constexpr char kProcessorFrequency[] = "hw.cpufrequency";
constexpr int64_t kHertzPerKilohertz = 1000;
constexpr double kHertzPerMegahertz = 1e6;

/// In kilohertz. The first one tells the rate without boost, where the driver knows it.
constexpr const char* kFrequencyFiles[] = {
    "/sys/devices/system/cpu/cpu0/cpufreq/base_frequency",
    "/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq",
};

/// Virtual machines often have no frequency driver; on x86 this file has a line "cpu MHz :
/// 2596.122".
constexpr char kProcessors[] = "/proc/cpuinfo";
constexpr char kMegahertzLine[] = "cpu MHz";

/// @return 0 when the machine does not tell it
int64_t ProcessorFrequency() {
    for (const char* path : kFrequencyFiles) {
        int64_t kilohertz = 0;
        if (std::ifstream(path) >> kilohertz && kilohertz > 0) {
            return kilohertz * kHertzPerKilohertz;
        }
    }
    std::ifstream processors(kProcessors);
    for (std::string line; std::getline(processors, line);) {
        const size_t colon = line.find(':');
        if (line.rfind(kMegahertzLine, 0) == 0 && colon != std::string::npos) {
            return std::llround(std::strtod(line.c_str() + colon + 1, nullptr) *
                                kHertzPerMegahertz);
        }
    }
    return 0;
}

int Fail(int error) {
    errno = error;
    return -1;
}

}  // namespace

int sysctlbyname(const char* name, void* oldp, size_t* oldlenp, void* newp, size_t /*newlen*/) {
    if (name == nullptr || std::strcmp(name, kProcessorFrequency) != 0) {
        return Fail(ENOENT);
    }
    if (newp != nullptr) {
        return Fail(EPERM);
    }
    const int64_t hertz = ProcessorFrequency();
    if (hertz == 0) {
        return Fail(ENOENT);
    }
    const size_t room = oldlenp == nullptr ? 0 : *oldlenp;
    if (oldp != nullptr && room < sizeof hertz) {
        return Fail(ENOMEM);
    }
    if (oldp != nullptr) {
        std::memcpy(oldp, &hertz, sizeof hertz);
    }
    if (oldlenp != nullptr) {
        *oldlenp = sizeof hertz;
    }
    return 0;
}
