#include "platform/PropertyLists.h"

#include <gtest/gtest.h>

#include "tests/support/FileFixture.h"

// What a framework makes of people's files may raise at any place: these do so in the middle of it.
@interface RaisingData : NSData
@end

@implementation RaisingData

// That of NSData wants to be told the bytes.
- (id)init {
    return self;
}

- (NSUInteger)length {
    return 8;
}

- (const void*)bytes {
    [NSException raise:@"Refused" format:@"no bytes of it"];
    return NULL;
}

@end

@interface RaisingArray : NSArray
@end

@implementation RaisingArray

- (NSUInteger)count {
    return 1;
}

- (id)objectAtIndex:(NSUInteger)index {
    [NSException raise:@"Refused" format:@"no element %lu", (unsigned long)index];
    return nil;
}

@end

namespace {

using PropertyLists = FileFixture;

constexpr NSPropertyListFormat kXml = NSPropertyListXMLFormat_v1_0;
constexpr NSPropertyListFormat kBinary = NSPropertyListBinaryFormat_v1_0;

void ExpectRefused(NSError* error, const std::string& reason) {
    ASSERT_NE(error, nil);
    EXPECT_EQ(Text([error domain]), "Refused");
    EXPECT_EQ([error code], 0);
    EXPECT_NE(Text([error localizedDescription]).find(reason), std::string::npos)
        << Text([error localizedDescription]);
}

TEST_F(PropertyLists, AnExceptionInParsingIsAnError) {
    NSData* data = [[[RaisingData alloc] init] autorelease];
    EXPECT_EQ(ParsePropertyList(data, NSPropertyListImmutable, &error_), nil);
    ExpectRefused(error_, "no bytes of it");
    EXPECT_EQ(ParsePropertyList(data, NSPropertyListImmutable, NULL), nil);
}

TEST_F(PropertyLists, AnExceptionInEncodingIsAnErrorAndTheFileStays) {
    NSArray* array = [[[RaisingArray alloc] init] autorelease];
    for (const NSPropertyListFormat format : {kXml, kBinary}) {
        error_ = nil;
        EXPECT_EQ(EncodePropertyList(array, format, &error_), nil);
        ExpectRefused(error_, "no element 0");
        EXPECT_EQ(EncodePropertyList(array, format, NULL), nil);
    }
    folder_.Write("file", "as it was");
    error_ = nil;
    EXPECT_FALSE(WritePropertyList(array, kXml, Text(folder_ / "file"), &error_));
    ExpectRefused(error_, "no element 0");
    EXPECT_EQ(Text(ReadText("file")), "as it was");
}

TEST_F(PropertyLists, NoDataIsNoListAndNoError) {
    EXPECT_EQ(ParsePropertyList(nil, NSPropertyListImmutable, &error_), nil);
    EXPECT_EQ(error_, nil);
}

TEST_F(PropertyLists, WhatIsNoListIsAnErrorEitherWay) {
    EXPECT_EQ(ParsePropertyList([NSData dataWithBytes:"<plist" length:6], NSPropertyListImmutable,
                                &error_),
              nil);
    EXPECT_NE(error_, nil);
    error_ = nil;
    EXPECT_EQ(EncodePropertyList([NSNull null], kXml, &error_), nil);
    EXPECT_NE(error_, nil);
}

TEST_F(PropertyLists, AFileIsReadWithTheMutabilityThatIsAskedFor) {
    NSDictionary* list = @{@"Names" : @[ @"Zoë" ]};
    ASSERT_TRUE(WritePropertyList(list, kXml, Text(folder_ / "list"), &error_));
    NSMutableDictionary* read =
        ReadPropertyList(Text(folder_ / "list"), NSPropertyListMutableContainers, &error_);
    [read setObject:@"new" forKey:@"Name"];
    [[read objectForKey:@"Names"] addObject:@"Ann"];
    EXPECT_EQ([[read objectForKey:@"Names"] count], 2U);
    EXPECT_EQ(error_, nil);
}

TEST_F(PropertyLists, AFileThatIsNotThereIsThePlatformsError) {
    EXPECT_EQ(ReadPropertyList(Text(folder_ / "none"), NSPropertyListImmutable, &error_), nil);
    ExpectCocoaError(error_, NSFileReadNoSuchFileError, ENOENT, folder_ / "none");
}

}  // namespace
