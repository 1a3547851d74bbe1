#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/ErrorChecks.h"

inline constexpr NSPropertyListFormat kXML = NSPropertyListXMLFormat_v1_0;
inline constexpr NSPropertyListFormat kBinary = NSPropertyListBinaryFormat_v1_0;
inline constexpr NSPropertyListFormat kFormats[] = {kXML, kBinary};

/// Writes and reads property lists, and expects what is no list to be refused.
class PropertyListFixture : public testing::Test {
  protected:
    NSData* Write(id list, NSPropertyListFormat format) {
        return [NSPropertyListSerialization dataWithPropertyList:list
                                                          format:format
                                                         options:0
                                                           error:&error_];
    }
    id Read(NSData* data, NSPropertyListReadOptions options = NSPropertyListImmutable) {
        return [NSPropertyListSerialization propertyListWithData:data
                                                         options:options
                                                          format:&format_
                                                           error:&error_];
    }

    void ExpectUnsuitable(id list) {
        for (const NSPropertyListFormat format : kFormats) {
            error_ = nil;
            EXPECT_EQ(Write(list, format), nil);
            EXPECT_EQ(Text([error_ domain]), "NSCocoaErrorDomain");
            EXPECT_EQ([error_ code], NSPropertyListWriteStreamError);
            EXPECT_GT([[error_ localizedDescription] length], 0U);
        }
    }

    void ExpectUnsuitableAnywhere(id object) {
        ExpectUnsuitable(object);
        ExpectUnsuitable(@[ @1, object ]);
        ExpectUnsuitable(@{@"key" : @[ @{@"inner" : object} ]});
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    NSError* error_ = nil;
    NSPropertyListFormat format_ = kXML;

    ~PropertyListFixture() override { [pool_ release]; }
};

inline NSData* Bytes(const char* text) {
    return [NSData dataWithBytes:text length:strlen(text)];
}

/// A list with every kind of object.
inline NSDictionary* Sample() {
    return @{
        @"array" : @[ @"string", @1, [NSNumber numberWithBool:YES], @2.5, @[], @{} ],
        @"data" : Bytes("data"),
        @"date" : [NSDate distantFuture],
        @"dictionary" : @{@"inner" : @"text"},
    };
}

/// Lists read with one of the options of mutability.
class MutabilityFixture : public PropertyListFixture,
                          public testing::WithParamInterface<NSPropertyListFormat> {
  protected:
    /// A list in which every kind of object stands at the root's level and below it.
    NSDictionary* ReadWith(NSPropertyListReadOptions options) {
        NSArray* values = @[ @"text", Bytes("data"), @[], @{} ];
        return Read(Write(
                        @{@"values" : values,
                          @"deep" : @[ @{@"values" : values} ]},
                        GetParam()),
                    options);
    }

    static NSArray* DeepValues(NSDictionary* root) {
        return [[[root objectForKey:@"deep"] objectAtIndex:0] objectForKey:@"values"];
    }
};
