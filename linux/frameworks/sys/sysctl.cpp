#include <sys/sysctl.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>

namespace {

/// In kilohertz. The first one tells the rate without boost, where the driver knows it.
constexpr const char* kFrequencyFiles[] = {
    "/sys/devices/system/cpu/cpu0/cpufreq/base_frequency",
    "/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq",
};

/// Virtual machines often have no frequency driver; on x86 this file has a line "cpu MHz : 2596.1".
constexpr char kProcessors[] = "/proc/cpuinfo";
constexpr char kMegahertzLine[] = "cpu MHz";

/// In hertz; 0 when the machine does not tell it.
int64_t ProcessorFrequency() {
    for (const char* path : kFrequencyFiles) {
        int64_t kilohertz = 0;
        if (std::ifstream(path) >> kilohertz && kilohertz > 0) {
            return kilohertz * 1000;
        }
    }
    std::ifstream processors(kProcessors);
    for (std::string line; std::getline(processors, line);) {
        const size_t colon = line.find(':');
        if (line.rfind(kMegahertzLine, 0) == 0 && colon != std::string::npos) {
            return std::llround(std::strtod(line.c_str() + colon + 1, nullptr) * 1e6);
        }
    }
    return 0;
}

int Fail(int error) {
    errno = error;
    return -1;
}

}  // namespace

int sysctlbyname(const char* name, void* oldp, size_t* oldlenp, void* /*newp*/, size_t /*newlen*/) {
    const int64_t hertz = std::strcmp(name, "hw.cpufrequency") == 0 ? ProcessorFrequency() : 0;
    if (hertz == 0) {
        return Fail(ENOENT);
    }
    if (*oldlenp < sizeof hertz) {
        return Fail(ENOMEM);
    }
    std::memcpy(oldp, &hertz, sizeof hertz);
    *oldlenp = sizeof hertz;
    return 0;
}
