// What the machine tells of itself.
#include <IOKit/IOKitLib.h>
#include <gtest/gtest.h>
#include <sys/sysctl.h>

#include <cerrno>
#include <cstdint>

#include "tests/support/ErrorChecks.h"

namespace {

class Machine : public testing::Test {
  protected:
    ~Machine() override { [pool_ release]; }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(Machine, TheVersionIsTheOneOfItsPropertyList) {
    NSDictionary* system = [NSDictionary
        dictionaryWithContentsOfFile:@"/System/Library/CoreServices/SystemVersion.plist"];
    const std::string version = Text((NSString*)[system objectForKey:@"ProductVersion"]);
    const std::string build = Text((NSString*)[system objectForKey:@"ProductBuildVersion"]);
    EXPECT_EQ(Text([[NSProcessInfo processInfo] operatingSystemVersionString]),
              "Version " + version + " (Build " + build + ")");
}

TEST_F(Machine, ThePlatformUuidHasFiveGroupsOfUpperCaseDigits) {
    const io_service_t machine = IOServiceGetMatchingService(
        kIOMasterPortDefault, IOServiceMatching("IOPlatformExpertDevice"));
    ASSERT_NE(machine, IO_OBJECT_NULL);
    const std::string uuid = Text([(NSString*)IORegistryEntryCreateCFProperty(
        machine, (CFStringRef) @"IOPlatformUUID", nullptr, 0) autorelease]);
    ASSERT_EQ(uuid.size(), 36U);
    for (size_t i = 0; i < uuid.size(); ++i) {
        const bool isJoint = i == 8 || i == 13 || i == 18 || i == 23;
        EXPECT_NE(std::string(isJoint ? "-" : "0123456789ABCDEF").find(uuid[i]), std::string::npos)
            << uuid;
    }
    EXPECT_EQ(
        IORegistryEntryCreateCFProperty(machine, (CFStringRef) @"No such property", nullptr, 0),
        nullptr);
    EXPECT_EQ(IOObjectRelease(machine), KERN_SUCCESS);
}

TEST_F(Machine, AnIteratorGivesEachServiceOnce) {
    io_iterator_t services = IO_OBJECT_NULL;
    ASSERT_EQ(IOServiceGetMatchingServices(kIOMasterPortDefault,
                                           IOServiceMatching("IOPlatformExpertDevice"), &services),
              KERN_SUCCESS);
    const io_object_t machine = IOIteratorNext(services);
    EXPECT_NE(machine, IO_OBJECT_NULL);
    EXPECT_EQ(IOIteratorNext(services), IO_OBJECT_NULL);
    EXPECT_EQ(IOObjectRelease(machine), KERN_SUCCESS);
    EXPECT_EQ(IOObjectRelease(services), KERN_SUCCESS);
}

TEST_F(Machine, AnUnknownClassHasNoService) {
    EXPECT_EQ(IOServiceGetMatchingService(kIOMasterPortDefault, IOServiceMatching("IONoSuchClass")),
              IO_OBJECT_NULL);
}

// Apple silicon has no such name, and neither have all virtual machines.
TEST_F(Machine, TheProcessorsFrequencyIsInHertzWhereItIsTold) {
    int64_t hertz = 0;
    size_t size = sizeof hertz;
    if (sysctlbyname("hw.cpufrequency", &hertz, &size, nullptr, 0) == 0) {
        EXPECT_EQ(size, 8U);
        EXPECT_GT(hertz, 100'000'000);
    } else {
        EXPECT_EQ(errno, ENOENT);
        EXPECT_EQ(hertz, 0);
    }
    EXPECT_EQ(sysctlbyname("hw.nosuchname", &hertz, &size, nullptr, 0), -1);
    EXPECT_EQ(errno, ENOENT);
}

}  // namespace
