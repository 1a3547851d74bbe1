#pragma once

#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

/// Asks Foundation for operations on the files of a folder of the test's own.
class FileFixture : public testing::Test {
  protected:
    ~FileFixture() override { [pool_ release]; }

    NSString* ReadText(const std::string& name) {
        return [NSString stringWithContentsOfFile:Text(folder_ / name)
                                         encoding:NSUTF8StringEncoding
                                            error:&error_];
    }
    NSData* ReadData(const std::string& name) {
        return [NSData dataWithContentsOfFile:Text(folder_ / name)];
    }
    /// @param path  absolute
    /// @param mode  none where it is negative
    BOOL Create(const std::string& path, int mode) {
        NSDictionary* attributes =
            mode < 0 ? nil : @{NSFilePosixPermissions : [NSNumber numberWithInt:mode]};
        return [files_ createDirectoryAtPath:Text(path)
                 withIntermediateDirectories:YES
                                  attributes:attributes
                                       error:&error_];
    }
    BOOL Copy(const std::string& from, const std::string& to) {
        return [files_ copyItemAtPath:Text(folder_ / from) toPath:Text(folder_ / to) error:&error_];
    }
    BOOL Remove(const std::string& name) {
        return [files_ removeItemAtPath:Text(folder_ / name) error:&error_];
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    NSFileManager* files_ = [NSFileManager defaultManager];
    TemporaryFolder folder_;
    NSError* error_ = nil;
};
