// Core Foundation's functions, given what ends a program on a Mac; and how objects are counted
// here.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"

namespace {

class CoreFoundation : public testing::Test {
  protected:
    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];

    ~CoreFoundation() override { [pool_ release]; }
};

TEST_F(CoreFoundation, ReferencesAreCounted) {
    NSMutableString* string = [[NSMutableString alloc] initWithString:@"text"];
    [string retain];
    CFRelease((CFTypeRef)string);
    EXPECT_EQ([string retainCount], 1U);
    [string release];
}

TEST_F(CoreFoundation, WhatIsNoPropertyListIsNotCopied) {
    EXPECT_EQ(CFPropertyListCreateDeepCopy(nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(CFPropertyListCreateDeepCopy(nullptr, (CFPropertyListRef)[NSNull null], 0), nullptr);
}

TEST_F(CoreFoundation, NoDataCreatesNothing) {
    EXPECT_EQ(CFPropertyListCreateFromXMLData(nullptr, nullptr, 0, nullptr), nullptr);
}

TEST_F(CoreFoundation, WhatIsCreatedBelongsToTheCallerAndThePool) {
    const char old[] = "(a)";
    NSData* data = [NSData dataWithBytes:old length:sizeof old - 1];
    id created = (id)CFPropertyListCreateFromXMLData(nullptr, (CFDataRef)data, 0, nullptr);
    EXPECT_EQ([created retainCount], 2U);
    [created release];
}

}  // namespace
