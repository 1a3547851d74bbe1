// Property lists and the objects in them, where GNUstep's own get in the way, or where a Mac has
// objects of another kind, hangs or ends the program.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/support/PropertyListFixture.h"

namespace {

using PropertyListObjects = PropertyListFixture;

TEST_F(PropertyListObjects, OfOtherClassesAreRefusedAtEveryLevel) {
    ExpectUnsuitableAnywhere([NSSet setWithObject:@"a"]);
    ExpectUnsuitableAnywhere([NSString class]);
    ExpectUnsuitableAnywhere([NSValue valueWithPointer:nullptr]);
}

TEST_F(PropertyListObjects, SmallIntegersAreInts) {
    for (const NSPropertyListFormat format : kFormats) {
        EXPECT_STREQ([Read(Write(@1, format)) objCType], @encode(int));
    }
}

TEST_F(PropertyListObjects, TheFirstDateComesBack) {
    for (const NSPropertyListFormat format : kFormats) {
        EXPECT_TRUE([Read(Write([NSDate distantPast], format)) isEqual:[NSDate distantPast]]);
    }
}

TEST_F(PropertyListObjects, NoUnknownFormatIsWritten) {
    EXPECT_EQ(Write(@{}, static_cast<NSPropertyListFormat>(77U)), nil);
    EXPECT_EQ([error_ code], NSPropertyListWriteStreamError);
}

TEST_F(PropertyListObjects, FailuresLeaveTheFormatAlone) {
    format_ = static_cast<NSPropertyListFormat>(42);
    EXPECT_EQ(Read(Bytes("<plist>")), nil);
    EXPECT_EQ(format_, 42U);
    EXPECT_EQ(Read(nil), nil);
    EXPECT_EQ([error_ code], NSPropertyListReadCorruptError);
}

TEST_F(PropertyListObjects, ListsThatContainThemselvesAreRefused) {
    NSMutableArray* array = [NSMutableArray array];
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithObject:array forKey:@"a"];
    [array addObject:@"first"];
    [array addObject:dictionary];
    [array addObject:dictionary];
    ExpectUnsuitable(array);
    ExpectUnsuitable(dictionary);
    [array removeAllObjects];
}

TEST_F(PropertyListObjects, NoListAtAllIsRefused) {
    ExpectUnsuitable(nil);
}

TEST_F(PropertyListObjects, WhatUnicodeAndTheCalendarLackIsKeptAndRaisesNothing) {
    NSArray* list = Read(Bytes("(\"\\Ud83d\", \"a\\Ude00b\", \"\\Ud83d\")"),
                         NSPropertyListMutableContainersAndLeaves);
    NSMutableString* half = [list objectAtIndex:0];
    EXPECT_TRUE([half isEqual:[list objectAtIndex:2]]);
    EXPECT_EQ([half hash], [[list objectAtIndex:2] hash]);
    EXPECT_EQ([[[half copy] autorelease] length], 1U);
    [half appendString:@"\U0001F600"];
    EXPECT_EQ([half characterAtIndex:0], 0xD83D);
    EXPECT_EQ(Write(list, kXML), nil);
    EXPECT_TRUE([Read(Write(list, kBinary)) isEqual:list]);

    const char bytes[] = "bplist00\x33\x7F\xF8\0\0\0\0\0\0\x08\0\0\0\0\0\0\1\1"
                         "\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x11";
    NSDate* date = Read([NSData dataWithBytes:bytes length:sizeof bytes - 1]);
    EXPECT_TRUE(std::isnan([date timeIntervalSinceReferenceDate]));
    EXPECT_TRUE([date isEqual:[[date copy] autorelease]]);
    EXPECT_FALSE([date isEqual:[NSDate date]] || [[NSDate date] isEqual:date]);
    EXPECT_GT([[date description] length], 0U);
    EXPECT_GT([[(@[ date ]) description] length], 0U);
    [date hash];
    [date compare:[NSDate date]];
    [[NSDate date] compare:date];
}

TEST_F(PropertyListObjects, KeyedArchivesWork) {
    NSData* archive = [NSKeyedArchiver archivedDataWithRootObject:Sample()];
    EXPECT_TRUE([[NSKeyedUnarchiver unarchiveObjectWithData:archive] isEqual:Sample()]);
    for (const NSPropertyListFormat format : kFormats) {
        NSData* converted = Write(Read(archive), format);
        EXPECT_TRUE([[NSKeyedUnarchiver unarchiveObjectWithData:converted] isEqual:Sample()]);
    }
}

TEST_F(PropertyListObjects, TheReferencesOfAKeyedArchiveAreDictionariesToLookAt) {
    NSDictionary* uid =
        Read(Bytes("<plist><dict><key>CF$UID</key><integer>7</integer></dict></plist>"));
    EXPECT_EQ([uid count], 1U);
    EXPECT_TRUE([[uid objectForKey:@"CF$UID"] isEqual:@7]);
    EXPECT_TRUE([uid isEqual:(@{@"CF$UID" : @7})]);
    EXPECT_EQ([Write(uid, kBinary) length], strlen("bplist00") + 2 + 1 + 32);
}

using Mutability = MutabilityFixture;

TEST_P(Mutability, NothingIsMutableUnlessAskedFor) {
    NSDictionary* root = ReadWith(NSPropertyListImmutable);
    EXPECT_FALSE([root isKindOfClass:[NSMutableDictionary class]]);
    EXPECT_FALSE([DeepValues(root) isKindOfClass:[NSMutableArray class]]);
    EXPECT_FALSE([[DeepValues(root) objectAtIndex:0] isKindOfClass:[NSMutableString class]]);
    EXPECT_FALSE([[DeepValues(root) objectAtIndex:1] isKindOfClass:[NSMutableData class]]);
    EXPECT_FALSE([[DeepValues(root) objectAtIndex:2] isKindOfClass:[NSMutableArray class]]);
    EXPECT_FALSE([[DeepValues(root) objectAtIndex:3] isKindOfClass:[NSMutableDictionary class]]);
}

INSTANTIATE_TEST_SUITE_P(Formats, Mutability, testing::Values(kXML, kBinary),
                         [](const auto& info) { return info.param == kXML ? "XML" : "Binary"; });

}  // namespace
