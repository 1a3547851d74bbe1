// The calls of Core Foundation that the program makes.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "tests/support/ErrorChecks.h"

namespace {

class CoreFoundation : public testing::Test {
  protected:
    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];

    ~CoreFoundation() override { [pool_ release]; }
};

/// What CFNumberGetValue stores.
SInt64 Stored(NSNumber* number, Boolean fits = true) {
    SInt64 value = -77;
    EXPECT_EQ(CFNumberGetValue((CFNumberRef)number, kCFNumberSInt64Type, &value), fits);
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
        {@"text", CFStringGetTypeID()}, {[NSMutableString string], CFStringGetTypeID()},
        {@{}, CFDictionaryGetTypeID()}, {[NSMutableDictionary dictionary], CFDictionaryGetTypeID()},
        {@1, CFNumberGetTypeID()},      {@0, CFNumberGetTypeID()},
        {@1.5, CFNumberGetTypeID()},
    };
    for (const auto& known : cases) {
        EXPECT_EQ(CFGetTypeID((CFTypeRef)known.object), known.type);
    }
    const std::set<CFTypeID> types = {CFDictionaryGetTypeID(), CFNumberGetTypeID(),
                                      CFStringGetTypeID()};
    EXPECT_EQ(types.size(), 3U);
    for (id other in
         @[ [NSNumber numberWithBool:YES], [NSNumber numberWithBool:NO], @[], [NSNull null] ]) {
        EXPECT_EQ(types.count(CFGetTypeID((CFTypeRef)other)), 0U);
    }
}

TEST_F(CoreFoundation, NumbersAreGivenAsIntegers) {
    NSNumber* lowest = [NSNumber numberWithLongLong:INT64_MIN];
    EXPECT_EQ(Stored(lowest), INT64_MIN);
    EXPECT_EQ(Stored(@59900000000), 59900000000);
    EXPECT_EQ(Stored(@7.0), 7);
}

TEST_F(CoreFoundation, NumbersThatDoNotFitAreGivenNearestAndReported) {
    EXPECT_EQ(Stored(@1.5, false), 1);
    EXPECT_EQ(Stored(@-1.5, false), -1);
    EXPECT_EQ(Stored([NSNumber numberWithUnsignedLongLong:UINT64_MAX], false), INT64_MAX);
    EXPECT_EQ(Stored(@(NAN), false), 0);
    EXPECT_EQ(Stored(@(-INFINITY), false), INT64_MIN);
}

TEST_F(CoreFoundation, DeepCopiesAreEqualAndOthers) {
    NSArray* inner = [NSMutableArray arrayWithObject:[NSMutableString stringWithString:@"b"]];
    NSDictionary* list = @{@"a" : inner, @"n" : @2.5, @"y" : [NSNumber numberWithBool:YES]};
    NSDictionary* copy = (NSDictionary*)CFPropertyListCreateDeepCopy(
        nullptr, (CFPropertyListRef)list, kCFPropertyListImmutable);
    EXPECT_TRUE([copy isEqual:list]);
    EXPECT_NE(copy, list);
    EXPECT_NE([copy objectForKey:@"a"], inner);
    CFRelease((CFTypeRef)copy);
}

TEST_F(CoreFoundation, ValuesAreFoundByTheirKeys) {
    const auto dictionary = (CFDictionaryRef) @{@"key" : @"value"};
    EXPECT_EQ(CFDictionaryGetValue(dictionary, @"key"),
              (const void*)[(NSDictionary*)dictionary objectForKey:@"key"]);
    EXPECT_EQ(CFDictionaryGetValue(dictionary, @"other"), nullptr);
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
        [created release];
    }
}

TEST_F(CoreFoundation, MalformedDataCreatesNothing) {
    EXPECT_EQ(CFPropertyListCreateFromXMLData(nullptr, (CFDataRef)Data("<plist>"), 0, nullptr),
              nullptr);
}

TEST_F(CoreFoundation, TheBooleansAreFoundations) {
    EXPECT_TRUE([(NSNumber*)kCFBooleanTrue boolValue]);
    EXPECT_EQ(kCFBooleanTrue, (CFBooleanRef)[NSNumber numberWithBool:YES]);
}

}  // namespace
