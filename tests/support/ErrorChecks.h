#pragma once

#include <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <string>

/// The platform string of a C++ one.
inline NSString* Text(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

inline std::string Text(NSString* text) {
    return text == nil ? "(nil)" : [text UTF8String];
}

/// Expects an error of Cocoa's with that code, which names the file and the POSIX error below it.
inline void ExpectCocoaError(NSError* error, NSInteger code, int posixError,
                             const std::string& path) {
    ASSERT_NE(error, nil);
    EXPECT_EQ(Text([error domain]), "NSCocoaErrorDomain");
    EXPECT_EQ([error code], code);
    NSDictionary* info = [error userInfo];
    EXPECT_EQ(Text((NSString*)[info objectForKey:@"NSFilePath"]), path);
    NSError* underlying = [info objectForKey:NSUnderlyingErrorKey];
    EXPECT_EQ([underlying code], posixError);
    if (posixError != 0) {
        EXPECT_EQ(Text([underlying domain]), "NSPOSIXErrorDomain");
    }
    EXPECT_GT([[error localizedDescription] length], 0U);
}
