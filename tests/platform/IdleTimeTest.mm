// What the idle time makes of the I/O registry's answers: this program answers in its place.
#include <IOKit/IOKitLib.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "platform/UtilsBridges.h"
#include "platform/Utils_Mac.h"

namespace {

constexpr io_iterator_t kServices = 71;
constexpr io_service_t kSystem = 72;

// The registry: what it says, and what of it somebody holds.
kern_return_t searchStatus = KERN_SUCCESS;
bool hasSystem = true;
kern_return_t propertiesStatus = KERN_SUCCESS;
NSDictionary* properties = nil;
std::string asked;
int held = 0;

}  // namespace

extern "C" {

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    asked = name;
    return (CFMutableDictionaryRef)[[NSMutableDictionary alloc] init];
}

kern_return_t IOServiceGetMatchingServices(mach_port_t port, CFDictionaryRef matching,
                                           io_iterator_t* services) {
    EXPECT_EQ(port, kIOMasterPortDefault);
    CFRelease(matching);  // as the real one does
    if (searchStatus == KERN_SUCCESS) {
        *services = kServices;
        ++held;
    }
    return searchStatus;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    EXPECT_EQ(iterator, kServices);
    held += hasSystem ? 1 : 0;
    return hasSystem ? kSystem : IO_OBJECT_NULL;
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* result,
                                                CFAllocatorRef /*allocator*/,
                                                IOOptionBits options) {
    EXPECT_EQ(entry, kSystem);
    EXPECT_EQ(options, 0U);
    if (propertiesStatus == KERN_SUCCESS) {
        *result = (CFMutableDictionaryRef)[properties mutableCopy];
    }
    return propertiesStatus;
}

kern_return_t IOObjectRelease(io_object_t object) {
    EXPECT_TRUE(object == kServices || object == kSystem);
    --held;
    return KERN_SUCCESS;
}

}  // extern "C"

namespace {

class IdleTime : public testing::Test {
  protected:
    IdleTime() {
        searchStatus = KERN_SUCCESS;
        hasSystem = true;
        propertiesStatus = KERN_SUCCESS;
        properties = nil;
    }
    ~IdleTime() override { EXPECT_EQ(held, 0); }

    // Every way to ask gives the same answer.
    static long Ask() {
        const long seconds = [Utils_Mac GetSystemIdleTime];
        EXPECT_EQ(GetSystemIdleTime(), seconds);
        EXPECT_EQ(GetSystemIdleTimeBridge(), seconds);
        return seconds;
    }

    static long AskWith(id idle) {
        properties = [NSDictionary dictionaryWithObject:idle forKey:@"HIDIdleTime"];
        return Ask();
    }

    static long AskWithNanoseconds(int64_t idle) {
        return AskWith([NSNumber numberWithLongLong:idle]);
    }
};

TEST_F(IdleTime, IsCutToWholeSeconds) {
    EXPECT_EQ(AskWithNanoseconds(1500000000), 1);
    EXPECT_EQ(asked, "IOHIDSystem");
    EXPECT_EQ(AskWithNanoseconds(0), 0);
    EXPECT_EQ(AskWithNanoseconds(999999999), 0);
    EXPECT_EQ(AskWithNanoseconds(59900000000), 59);
    EXPECT_EQ(AskWithNanoseconds(86400000000000), 86400);
    EXPECT_EQ(AskWithNanoseconds(-1500000000), -1);
}

TEST_F(IdleTime, StaysInTheRangeOfTheResult) {
    EXPECT_EQ(AskWithNanoseconds(std::numeric_limits<int64_t>::max()), 2147483647);
    EXPECT_EQ(AskWithNanoseconds(std::numeric_limits<int64_t>::min()), -2147483648L);
}

TEST_F(IdleTime, IsUnknownWithoutAnAnswerOfTheRegistry) {
    searchStatus = -1;
    EXPECT_EQ(Ask(), -1);
    searchStatus = KERN_SUCCESS;
    hasSystem = false;
    EXPECT_EQ(Ask(), -1);
    hasSystem = true;
    propertiesStatus = -1;
    EXPECT_EQ(Ask(), -1);
}

TEST_F(IdleTime, IsUnknownWithoutANumber) {
    properties = [NSDictionary dictionary];
    EXPECT_EQ(Ask(), -1);
    EXPECT_EQ(AskWith(@"1500000000"), -1);
    EXPECT_EQ(AskWith([NSData data]), -1);
    EXPECT_EQ(AskWith([NSNumber numberWithUnsignedLongLong:UINT64_MAX]), -1);
    EXPECT_EQ(AskWith([NSNumber numberWithDouble:1.5]), -1);
}

}  // namespace
