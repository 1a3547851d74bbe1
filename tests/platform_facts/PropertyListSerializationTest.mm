// Property lists written and read again.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/PropertyListFixture.h"

@interface OwnObject : NSObject
@end

@implementation OwnObject
@end

namespace {

using PropertyListSerialization = PropertyListFixture;

TEST_F(PropertyListSerialization, ListsComeBackEqualInBothFormats) {
    for (const NSPropertyListFormat format : kFormats) {
        EXPECT_TRUE([Read(Write(Sample(), format)) isEqual:Sample()]);
        EXPECT_EQ(format_, format);
        EXPECT_EQ(error_, nil);
    }
}

TEST_F(PropertyListSerialization, EveryKindOfValueMayBeTheRoot) {
    for (id root in @[
             @"text", @"", @1, @2.5, [NSNumber numberWithBool:NO], [NSData data], @[], @{},
             [NSDate distantFuture]
         ]) {
        for (const NSPropertyListFormat format : kFormats) {
            EXPECT_TRUE([Read(Write(root, format)) isEqual:root]) << Text([root description]);
        }
    }
}

TEST_F(PropertyListSerialization, NumbersKeepTheirKind) {
    for (const NSPropertyListFormat format : kFormats) {
        NSArray* numbers = Read(Write(
            @[
                [NSNumber numberWithBool:YES], @1, @1.0,
                [NSNumber numberWithUnsignedLongLong:UINT64_MAX],
                [NSNumber numberWithLongLong:INT64_MIN]
            ],
            format));
        ASSERT_EQ([numbers count], 5U);
        EXPECT_EQ([numbers objectAtIndex:0], [NSNumber numberWithBool:YES]);
        EXPECT_NE([numbers objectAtIndex:1], [NSNumber numberWithBool:YES]);
        EXPECT_NE(std::string("isqISQ").find([[numbers objectAtIndex:1] objCType]),
                  std::string::npos);
        EXPECT_STREQ([[numbers objectAtIndex:2] objCType], @encode(double));
        EXPECT_EQ([[numbers objectAtIndex:3] unsignedLongLongValue], UINT64_MAX);
        EXPECT_EQ([[numbers objectAtIndex:4] longLongValue], INT64_MIN);
    }
}

TEST_F(PropertyListSerialization, ObjectsOfOtherClassesAreRefusedAtEveryLevel) {
    ExpectUnsuitableAnywhere([NSNull null]);
    ExpectUnsuitableAnywhere([[[OwnObject alloc] init] autorelease]);
    ExpectUnsuitableAnywhere([NSURL URLWithString:@"http://a.example/"]);
}

TEST_F(PropertyListSerialization, KeysThatAreNoStringsAreRefused) {
    ExpectUnsuitable(@{@1 : @"value"});
    ExpectUnsuitable(@{@"key" : @[ @{[NSDate distantPast] : @"value"} ]});
}

TEST_F(PropertyListSerialization, OldTextIsNotWritten) {
    EXPECT_EQ(Write(@{}, NSPropertyListOpenStepFormat), nil);
    EXPECT_EQ([error_ code], NSPropertyListWriteStreamError);
}

TEST_F(PropertyListSerialization, MalformedDataIsAnError) {
    for (const char* text :
         {"", "<plist>", "bplist00\1", "no list", "{ a = ", "(1, 2", "{ a b c }"}) {
        error_ = nil;
        EXPECT_EQ(Read(Bytes(text)), nil) << text;
        EXPECT_EQ(Text([error_ domain]), "NSCocoaErrorDomain");
        EXPECT_EQ([error_ code], NSPropertyListReadCorruptError);
        EXPECT_GT([[error_ localizedDescription] length], 0U);
    }
}

TEST_F(PropertyListSerialization, NobodyHasToAskForErrorOrFormat) {
    EXPECT_EQ([NSPropertyListSerialization propertyListWithData:Bytes("<plist>")
                                                        options:0
                                                         format:nullptr
                                                          error:nullptr],
              nil);
    EXPECT_EQ([NSPropertyListSerialization dataWithPropertyList:[NSNull null]
                                                         format:kXML
                                                        options:0
                                                          error:nullptr],
              nil);
}

using Mutability = MutabilityFixture;

TEST_P(Mutability, ContainersAreMutableAtEveryLevel) {
    NSMutableDictionary* root = (NSMutableDictionary*)ReadWith(NSPropertyListMutableContainers);
    [root setObject:@1 forKey:@"new"];
    [[root objectForKey:@"values"] addObject:@1];
    NSMutableArray* values = (NSMutableArray*)DeepValues(root);
    [[values objectAtIndex:2] addObject:@1];
    [[values objectAtIndex:3] setObject:@1 forKey:@"new"];
    [values removeObjectAtIndex:0];
    EXPECT_EQ([root count], 3U);
    EXPECT_EQ([values count], 3U);
}

TEST_P(Mutability, LeavesAreMutableAtEveryLevel) {
    NSDictionary* root = ReadWith(NSPropertyListMutableContainersAndLeaves);
    for (NSArray* values in @[ [root objectForKey:@"values"], DeepValues(root) ]) {
        [[values objectAtIndex:0] appendString:@" and more"];
        [[values objectAtIndex:1] appendBytes:"!" length:1];
        [[values objectAtIndex:2] addObject:@1];
        EXPECT_EQ(Text((NSString*)[values objectAtIndex:0]), "text and more");
        EXPECT_EQ([[values objectAtIndex:1] length], 5U);
    }
}

TEST_P(Mutability, WhatIsMutableIsNeverShared) {
    for (const auto options :
         {NSPropertyListMutableContainers, NSPropertyListMutableContainersAndLeaves}) {
        NSArray* list = Read(Write(@[ @[ @"a" ], @[ @"a" ] ], GetParam()), options);
        [[list objectAtIndex:0] addObject:@"b"];
        EXPECT_EQ([[list objectAtIndex:1] count], 1U);
    }
    NSArray* list =
        Read(Write(@[ @"a", @"a" ], GetParam()), NSPropertyListMutableContainersAndLeaves);
    [[list objectAtIndex:0] appendString:@"b"];
    EXPECT_EQ(Text((NSString*)[list objectAtIndex:1]), "a");
}

TEST_P(Mutability, ListsOfEveryMutabilityAreEqual) {
    NSDictionary* immutable = ReadWith(NSPropertyListImmutable);
    EXPECT_TRUE([ReadWith(NSPropertyListMutableContainers) isEqual:immutable]);
    EXPECT_TRUE([immutable isEqual:ReadWith(NSPropertyListMutableContainersAndLeaves)]);
}

INSTANTIATE_TEST_SUITE_P(Formats, Mutability, testing::Values(kXML, kBinary),
                         [](const auto& info) { return info.param == kXML ? "XML" : "Binary"; });

}  // namespace
