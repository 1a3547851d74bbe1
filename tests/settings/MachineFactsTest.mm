// What the environment and the random numbers make of the machine's answers: this program answers
// in its place.
#include <Foundation/Foundation.h>
#include <IOKit/IOKitLib.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/utsname.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <random>

#include "settings/KSEnvironement.h"
#include "settings/KSGlobals.h"
#include "tests/support/SettingsFiles.h"

namespace {

const char* machineName = "x86_64";  // null: uname fails
const tm* standingTime = nullptr;    // null: the time goes on

std::chrono::system_clock::duration standingClock{};  // zero: the clock goes on

constexpr io_service_t kMachine = 77;
bool machineIsRegistered = true;
CFTypeRef property = nullptr;
int propertiesHandedOut = 0;
int machinesHeld = 0;

template <typename Function>
Function Real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept {
    if (standingClock.count() != 0) {
        return time_point(standingClock);
    }
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    return time_point(seconds(time.tv_sec) + nanoseconds(time.tv_nsec));
}

extern "C" {

int uname(utsname* system) noexcept {
    if (machineName == nullptr) {
        return -1;
    }
    *system = {};
    strcpy(system->machine, machineName);
    return 0;
}

tm* localtime_r(const time_t* time, tm* result) noexcept {
    static const auto real = Real<tm* (*)(const time_t*, tm*)>("localtime_r");
    if (standingTime == nullptr) {
        return real(time, result);
    }
    *result = *standingTime;
    return result;
}

io_service_t IOServiceGetMatchingService(mach_port_t /*port*/, CFDictionaryRef matching) {
    if (matching != nullptr) {
        CFRelease(matching);  // as the real one does
    }
    machinesHeld += machineIsRegistered ? 1 : 0;
    return machineIsRegistered ? kMachine : IO_OBJECT_NULL;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef /*allocator*/, IOOptionBits options) {
    EXPECT_TRUE([(NSString*)key isEqual:@"IOPlatformUUID"]);
    EXPECT_EQ(entry, kMachine);
    EXPECT_EQ(options, 0U);
    if (property != nullptr) {
        ++propertiesHandedOut;
        [(id)property retain];
    }
    return property;
}

kern_return_t IOObjectRelease(io_object_t object) {
    EXPECT_EQ(object, kMachine);
    --machinesHeld;
    return KERN_SUCCESS;
}

}  // extern "C"

namespace {

class MachineFacts : public SettingsFiles {
  protected:
    MachineFacts() {
        machineName = "x86_64";
        machineIsRegistered = true;
        property = nullptr;
        propertiesHandedOut = 0;
    }
    ~MachineFacts() override {
        EXPECT_EQ(machinesHeld, 0);
        standingTime = nullptr;
        standingClock = {};
    }
};

TEST_F(MachineFacts, TheArchitecturesLabelsAreCrossed) {
    for (const auto& [name, label] : {std::pair("x86_64", "32 Bit"),
                                      {"arm64", "32 Bit"},
                                      {"", "32 Bit"},
                                      {"i386", "64 Bit"},
                                      {"i386x", "32 Bit"},
                                      {static_cast<const char*>(nullptr), "unknown"}}) {
        machineName = name;
        EXPECT_EQ(KSEnvironement::GetOSArhitecture(), label) << (name ? name : "(no name)");
    }
}

TEST_F(MachineFacts, TheRegistrysTextIsTheNewPIDAsItIs) {
    property = @"564D0000-abcd-EF01-2345-6789ABCDEF01";
    EXPECT_EQ(KSEnvironement().GeneratePID(), "564D0000-abcd-EF01-2345-6789ABCDEF01");
    EXPECT_EQ(propertiesHandedOut, 1);
}

TEST_F(MachineFacts, WithoutMachinePropertyOrTextThereIsNoNewPID) {
    machineIsRegistered = false;
    EXPECT_EQ(KSEnvironement().GeneratePID(), "");
    EXPECT_EQ(KSEnvironement::GetInstallDataPassword(), "");
    machineIsRegistered = true;
    EXPECT_EQ(KSEnvironement().GeneratePID(), "");
    property = kCFBooleanTrue;
    EXPECT_EQ(KSEnvironement().GeneratePID(), "");
}

/// 5 March 2026, 9:07:04.
tm SpringMorning() {
    tm time = {};
    time.tm_year = 126;
    time.tm_mon = 2;
    time.tm_mday = 5;
    time.tm_hour = 9;
    time.tm_min = 7;
    time.tm_sec = 4;
    return time;
}

TEST_F(MachineFacts, TheDatabaseVersionIsPIDAndTimeWithoutPadding) {
    tm time = SpringMorning();
    standingTime = &time;
    EXPECT_EQ(KSEnvironement().GenerateDBVersion(), "12625974");
    WriteXml(file, "{'PID': 'a pid '}");
    EXPECT_EQ(KSEnvironement().GenerateDBVersion(), "a pid 12625974");
    time.tm_mon = 11;
    time.tm_hour = 0;
    time.tm_sec = 59;
    EXPECT_EQ(KSEnvironement().GenerateDBVersion(), "a pid 1261150759");
}

TEST_F(MachineFacts, TheDatabaseVersionEndsAfter255Characters) {
    tm time = SpringMorning();
    standingTime = &time;
    for (const size_t length : {246U, 247U, 248U, 250U, 255U, 256U, 1000U}) {
        const std::string pid(length, 'x');
        WriteXml(file, "{'PID': '" + pid + "'}");
        EXPECT_EQ(KSEnvironement().GenerateDBVersion(), (pid + "12625974").substr(0, 255));
    }
}

TEST_F(MachineFacts, RandomNumbersAreSeededWithTheProcessTimesTheClocksMicroseconds) {
    constexpr uint64_t kMicroseconds = 1700000000123456;
    standingClock = std::chrono::microseconds(kMicroseconds) + std::chrono::nanoseconds(789);
    KSGlobals seeded;
    std::mt19937 reference(static_cast<uint32_t>(kMicroseconds * static_cast<uint64_t>(getpid())));
    for (int i = 0; i < 100; ++i) {
        const auto number = static_cast<uint32_t>(reference());
        EXPECT_EQ(seeded.GenerateUInt16RandomNumber(), KSGlobals::Mix16(number));
    }
}

}  // namespace
