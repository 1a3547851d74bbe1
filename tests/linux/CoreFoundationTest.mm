#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <set>

#include "tests/linux/ErrorChecks.h"

namespace {

class CoreFoundation : public testing::Test {
  protected:
    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];

    ~CoreFoundation() override { [pool_ release]; }
};

/// What CFNumberGetValue stores, or nothing (-77) if it says that the value does not fit.
template <typename Value>
Value Stored(NSNumber* number, CFNumberType type, Boolean fits = true) {
    Value value = -77;
    EXPECT_EQ(CFNumberGetValue((CFNumberRef)number, type, &value), fits);
    return value;
}

NSData* Data(const std::string& bytes) {
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

TEST_F(CoreFoundation, KindsOfObjectsAreToldApart) {
    const struct {
        id object;
        CFTypeID type;
    } cases[] = {
        {@"text", CFStringGetTypeID()},
        {[NSMutableString string], CFStringGetTypeID()},
        {@{}, CFDictionaryGetTypeID()},
        {[NSMutableDictionary dictionary], CFDictionaryGetTypeID()},
        {@[], CFArrayGetTypeID()},
        {[NSData data], CFDataGetTypeID()},
        {[NSDate date], CFDateGetTypeID()},
        {@1, CFNumberGetTypeID()},
        {@0, CFNumberGetTypeID()},
        {@1.5, CFNumberGetTypeID()},
        {[NSNumber numberWithBool:YES], CFBooleanGetTypeID()},
        {[NSNumber numberWithBool:NO], CFBooleanGetTypeID()},
    };
    for (const auto& known : cases) {
        EXPECT_EQ(CFGetTypeID((CFTypeRef)known.object), known.type);
        EXPECT_NE(known.type, 0U);
    }
    EXPECT_EQ(CFGetTypeID((CFTypeRef)[NSNull null]), 0U);
    const std::set<CFTypeID> types = {
        CFArrayGetTypeID(),      CFBooleanGetTypeID(), CFDataGetTypeID(),  CFDateGetTypeID(),
        CFDictionaryGetTypeID(), CFNumberGetTypeID(),  CFStringGetTypeID()};
    EXPECT_EQ(types.size(), 7U);
}

TEST_F(CoreFoundation, ReferencesAreCounted) {
    NSMutableString* string = [[NSMutableString alloc] initWithString:@"text"];
    EXPECT_EQ(CFRetain((CFTypeRef)string), (CFTypeRef)string);
    EXPECT_EQ([string retainCount], 2U);
    CFRelease((CFTypeRef)string);
    EXPECT_EQ([string retainCount], 1U);
    [string release];
}

TEST_F(CoreFoundation, ConstantStringsAreStrings) {
    EXPECT_TRUE([(NSString*)CFSTR("key") isEqual:@"key"]);
    EXPECT_EQ(CFSTR("key"), CFSTR("key"));
    EXPECT_NE(CFSTR("key"), CFSTR("keys"));
    NSDictionary* dictionary = @{@"key" : @"value"};
    EXPECT_EQ(CFDictionaryGetValue((CFDictionaryRef)dictionary, CFSTR("key")),
              (const void*)[dictionary objectForKey:@"key"]);
    EXPECT_EQ(CFDictionaryGetValue((CFDictionaryRef)dictionary, CFSTR("other")), nullptr);
}

TEST_F(CoreFoundation, TheBooleansAreFoundations) {
    EXPECT_TRUE([(NSNumber*)kCFBooleanTrue boolValue]);
    EXPECT_FALSE([(NSNumber*)kCFBooleanFalse boolValue]);
    EXPECT_EQ(kCFBooleanTrue, (CFBooleanRef)[NSNumber numberWithBool:YES]);
}

TEST_F(CoreFoundation, NumbersAreGivenInEveryTypeThatHoldsThem) {
    EXPECT_EQ(Stored<SInt8>(@-5, kCFNumberSInt8Type), -5);
    EXPECT_EQ(Stored<SInt16>(@-5, kCFNumberShortType), -5);
    EXPECT_EQ(Stored<SInt32>(@70000, kCFNumberSInt32Type), 70000);
    EXPECT_EQ(Stored<int>(@70000, kCFNumberIntType), 70000);
    NSNumber* lowest = [NSNumber numberWithLongLong:INT64_MIN];
    EXPECT_EQ(Stored<SInt64>(lowest, kCFNumberSInt64Type), INT64_MIN);
    EXPECT_EQ(Stored<SInt64>(@59900000000, kCFNumberLongLongType), 59900000000);
    EXPECT_EQ(Stored<long>(@7, kCFNumberNSIntegerType), 7);
    EXPECT_EQ(Stored<SInt64>(@7.0, kCFNumberSInt64Type), 7);
    EXPECT_EQ(Stored<double>(@0.1, kCFNumberFloat64Type), 0.1);
    EXPECT_EQ(Stored<double>(@-3, kCFNumberDoubleType), -3.0);
    EXPECT_EQ(Stored<float>(@1.5, kCFNumberFloat32Type), 1.5F);
    EXPECT_TRUE(std::isnan(Stored<double>(@(NAN), kCFNumberDoubleType)));
    EXPECT_EQ(Stored<float>(@(INFINITY), kCFNumberFloatType), INFINITY);
}

TEST_F(CoreFoundation, NumbersThatDoNotFitAreGivenNearestAndReported) {
    EXPECT_EQ(Stored<SInt64>(@1.5, kCFNumberSInt64Type, false), 1);
    EXPECT_EQ(Stored<SInt64>(@-1.5, kCFNumberSInt64Type, false), -1);
    NSNumber* highest = [NSNumber numberWithUnsignedLongLong:UINT64_MAX];
    EXPECT_EQ(Stored<SInt64>(highest, kCFNumberSInt64Type, false), INT64_MAX);
    EXPECT_EQ(Stored<SInt32>(@3000000000, kCFNumberSInt32Type, false), INT32_MAX);
    EXPECT_EQ(Stored<SInt8>(@-300, kCFNumberSInt8Type, false), -128);
    EXPECT_EQ(Stored<SInt64>(@(NAN), kCFNumberSInt64Type, false), 0);
    EXPECT_EQ(Stored<SInt64>(@(-INFINITY), kCFNumberSInt64Type, false), INT64_MIN);
    EXPECT_EQ(Stored<float>(@0.1, kCFNumberFloatType, false), 0.1F);
    EXPECT_EQ(Stored<double>(@9007199254740993, kCFNumberDoubleType, false), 9007199254740992.0);
}

TEST_F(CoreFoundation, TextsAreCopiedWhenTheyFit) {
    NSString* text = @"ä\U0001F600";
    EXPECT_EQ(CFStringGetLength((CFStringRef)text), 3);
    char buffer[7];
    EXPECT_TRUE(
        CFStringGetCString((CFStringRef)text, buffer, sizeof buffer, kCFStringEncodingUTF8));
    EXPECT_STREQ(buffer, "ä\U0001F600");
    EXPECT_FALSE(CFStringGetCString((CFStringRef)text, buffer, 6, kCFStringEncodingUTF8));
    EXPECT_FALSE(
        CFStringGetCString((CFStringRef)text, buffer, sizeof buffer, kCFStringEncodingASCII));
    EXPECT_TRUE(CFStringGetCString(CFSTR("text"), buffer, 5, kCFStringEncodingASCII));
    EXPECT_STREQ(buffer, "text");
    EXPECT_FALSE(CFStringGetCString(CFSTR("text"), buffer, 0, kCFStringEncodingUTF8));
}

TEST_F(CoreFoundation, PropertyListsOfEveryFormatAreCreatedFromData) {
    NSDictionary* list = @{@"a" : @[ @"b" ]};
    NSData* binary =
        [NSPropertyListSerialization dataWithPropertyList:list
                                                   format:NSPropertyListBinaryFormat_v1_0
                                                  options:0
                                                    error:nullptr];
    NSData* xml = Data("<plist><dict><key>a</key><array><string>b</string></array></dict></plist>");
    for (NSData* data in @[ binary, xml, Data("{ a = (b); }") ]) {
        id created = (id)CFPropertyListCreateFromXMLData(kCFAllocatorDefault, (CFDataRef)data,
                                                         kCFPropertyListImmutable, nullptr);
        EXPECT_TRUE([created isEqual:list]);
        EXPECT_EQ(CFGetTypeID(created), CFDictionaryGetTypeID());
        EXPECT_EQ([created retainCount], 2U) << "the caller's and the pool's";
        [created release];
    }
}

TEST_F(CoreFoundation, MalformedDataCreatesNothingButADescription) {
    EXPECT_EQ(CFPropertyListCreateFromXMLData(nullptr, (CFDataRef)Data("<plist>"), 0, nullptr),
              nullptr);
    EXPECT_EQ(CFPropertyListCreateFromXMLData(nullptr, nullptr, 0, nullptr), nullptr);
    CFStringRef text = nullptr;
    EXPECT_EQ(CFPropertyListCreateFromXMLData(nullptr, (CFDataRef)Data("<plist>"), 0, &text),
              nullptr);
    ASSERT_NE(text, nullptr);
    EXPECT_GT(CFStringGetLength(text), 0);
    CFRelease(text);
}

TEST_F(CoreFoundation, DeepCopiesHaveTheMutabilityThatIsAskedFor) {
    NSMutableArray* inner =
        [NSMutableArray arrayWithObject:[NSMutableString stringWithString:@"b"]];
    NSDictionary* list = @{@"a" : inner, @"n" : @2.5, @"y" : [NSNumber numberWithBool:YES]};
    for (const CFOptionFlags options : {kCFPropertyListImmutable, kCFPropertyListMutableContainers,
                                        kCFPropertyListMutableContainersAndLeaves}) {
        NSDictionary* copy =
            (NSDictionary*)CFPropertyListCreateDeepCopy(nullptr, (CFPropertyListRef)list, options);
        EXPECT_TRUE([copy isEqual:list]);
        EXPECT_NE(copy, list);
        NSArray* innerCopy = [copy objectForKey:@"a"];
        EXPECT_NE(innerCopy, inner);
        EXPECT_EQ([innerCopy isKindOfClass:[NSMutableArray class]],
                  options != kCFPropertyListImmutable);
        EXPECT_EQ([[innerCopy objectAtIndex:0] isKindOfClass:[NSMutableString class]],
                  options == kCFPropertyListMutableContainersAndLeaves);
        CFRelease((CFTypeRef)copy);
    }
}

TEST_F(CoreFoundation, WhatIsNoPropertyListIsNotCopied) {
    EXPECT_EQ(CFPropertyListCreateDeepCopy(nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(CFPropertyListCreateDeepCopy(nullptr, (CFPropertyListRef)[NSNull null], 0), nullptr);
}

}  // namespace
