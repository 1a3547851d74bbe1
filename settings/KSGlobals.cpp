#include "settings/KSGlobals.h"

#include <unistd.h>

#include <chrono>

namespace {

// Microseconds since the Unix epoch.
uint32_t ClockCount() {
    using namespace std::chrono;
    return static_cast<uint32_t>(
        duration_cast<microseconds>(system_clock::now().time_since_epoch()).count());
}

}  // namespace

KSGlobals::KSGlobals() : KSGlobals(Seed(static_cast<uint32_t>(getpid()), ClockCount())) {}

KSGlobals::KSGlobals(uint32_t seed) : engine(seed) {}

KSGlobals& KSGlobals::Instance() {
    return instance;
}

uint16_t KSGlobals::GenerateUInt16RandomNumber() {
    return Mix16(Draw());
}

uint8_t KSGlobals::GenerateUInt8RandomNumber() {
    return Mix8(Draw());
}

uint32_t KSGlobals::Draw() {
    const std::lock_guard<std::mutex> lock(mutex);
    return static_cast<uint32_t>(engine());
}
