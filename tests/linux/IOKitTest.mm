#include <Foundation/Foundation.h>
#include <IOKit/IOKitLib.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

#include "tests/support/Command.h"
#include "tests/support/ErrorChecks.h"
#include "tests/support/PrivateDisplay.h"

namespace {

class IOKit : public testing::Test {
  protected:
    ~IOKit() override { [pool_ release]; }

    /// -1 without the service.
    static int64_t IdleTime() {
        const io_service_t system =
            IOServiceGetMatchingService(kIOMasterPortDefault, IOServiceMatching("IOHIDSystem"));
        if (system == IO_OBJECT_NULL) {
            return -1;
        }
        CFMutableDictionaryRef properties = nullptr;
        EXPECT_EQ(IORegistryEntryCreateCFProperties(system, &properties, nullptr, 0), KERN_SUCCESS);
        EXPECT_EQ(IOObjectRelease(system), KERN_SUCCESS);
        NSNumber* idle = [[(NSDictionary*)properties autorelease] objectForKey:@"HIDIdleTime"];
        return [idle longLongValue];
    }

    static io_iterator_t Services(const char* className) {
        io_iterator_t iterator = IO_OBJECT_NULL;
        EXPECT_EQ(IOServiceGetMatchingServices(kIOMasterPortDefault, IOServiceMatching(className),
                                               &iterator),
                  KERN_SUCCESS);
        return iterator;
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(IOKit, ThePlatformUuidIsTheMachinesIdentifierWithHyphens) {
    const io_service_t machine = IOServiceGetMatchingService(
        kIOMasterPortDefault, IOServiceMatching("IOPlatformExpertDevice"));
    ASSERT_NE(machine, IO_OBJECT_NULL);
    NSString* uuid = [(NSString*)IORegistryEntryCreateCFProperty(
        machine, (CFStringRef) @"IOPlatformUUID", nullptr, 0) autorelease];
    std::string expected = OutputOf(
        "sed -nE '1s/^(.{8})(.{4})(.{4})(.{4})(.{12})$/\\1-\\2-\\3-\\4-\\5/p' /etc/machine-id | "
        "tr a-f A-F | tr -d '\\n'");
    ASSERT_EQ(expected.size(), 36U) << "this machine has no identifier to compare with";
    EXPECT_EQ(Text(uuid), expected);
    EXPECT_EQ(IORegistryEntryCreateCFProperty(machine, (CFStringRef) @"Other", nullptr, 0),
              nullptr);
    EXPECT_EQ(IOObjectRelease(machine), KERN_SUCCESS);
}

TEST_F(IOKit, TheIdleTimeGrowsAndEndsWithAnEvent) {
    const PrivateDisplay display;
    display.MoveMouse();
    const auto start = std::chrono::steady_clock::now();
    const int64_t first = IdleTime();
    ASSERT_GE(first, 0);
    int64_t later = first;
    while (later < first + 100'000'000) {
        later = IdleTime();
    }
    const int64_t passed =
        std::chrono::nanoseconds(std::chrono::steady_clock::now() - start).count();
    EXPECT_LE(later - first, passed + 5'000'000);
    EXPECT_EQ(later % 1'000'000, 0) << "the display counts milliseconds";
    display.MoveMouse();
    EXPECT_LT(IdleTime(), later);
}

TEST_F(IOKit, ThereIsNoHidSystemWithoutADisplay) {
    unsetenv("DISPLAY");
    testing::internal::CaptureStderr();
    EXPECT_EQ(IdleTime(), -1);
    const io_iterator_t services = Services("IOHIDSystem");
    EXPECT_EQ(IOIteratorNext(services), IO_OBJECT_NULL);
    EXPECT_EQ(IOObjectRelease(services), KERN_SUCCESS);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(IOKit, ThereIsNoHidSystemOnADisplayThatCannotTell) {
    const PrivateDisplay display({"-extension", "MIT-SCREEN-SAVER"});
    EXPECT_EQ(IdleTime(), -1);
}

TEST_F(IOKit, AServiceMayGoAwayWhileItIsHeld) {
    io_service_t system = IO_OBJECT_NULL;
    {
        const PrivateDisplay display;
        system =
            IOServiceGetMatchingService(kIOMasterPortDefault, IOServiceMatching("IOHIDSystem"));
        ASSERT_NE(system, IO_OBJECT_NULL);
    }
    CFMutableDictionaryRef properties = nullptr;
    EXPECT_EQ(IORegistryEntryCreateCFProperties(system, &properties, nullptr, 0),
              kIOReturnBadArgument);
    EXPECT_EQ(properties, nullptr);
    EXPECT_EQ(IORegistryEntryCreateCFProperty(system, (CFStringRef) @"HIDIdleTime", nullptr, 0),
              nullptr);
    EXPECT_EQ(IOObjectRelease(system), KERN_SUCCESS);
}

TEST_F(IOKit, AnIteratorGivesEachServiceOnce) {
    const io_iterator_t services = Services("IOPlatformExpertDevice");
    const io_object_t machine = IOIteratorNext(services);
    EXPECT_NE(machine, IO_OBJECT_NULL);
    EXPECT_EQ(IOIteratorNext(services), IO_OBJECT_NULL);
    EXPECT_EQ(IOIteratorNext(machine), IO_OBJECT_NULL);
    EXPECT_EQ(IOObjectRelease(machine), KERN_SUCCESS);
    EXPECT_EQ(IOObjectRelease(services), KERN_SUCCESS);
}

TEST_F(IOKit, UnknownClassesAndHandlesAreAnsweredWithNothing) {
    EXPECT_EQ(IOServiceGetMatchingService(kIOMasterPortDefault, IOServiceMatching("IOSomething")),
              IO_OBJECT_NULL);
    EXPECT_EQ(IOObjectRelease(IO_OBJECT_NULL), kIOReturnBadArgument);
    EXPECT_EQ(IOObjectRelease(12345), kIOReturnBadArgument);
    EXPECT_EQ(IORegistryEntryCreateCFProperty(12345, nullptr, nullptr, 0), nullptr);
}

}  // namespace
