#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

/// Starts programs of a folder of the test's own as tasks.
class TaskFixture : public testing::Test {
  protected:
    ~TaskFixture() override { [pool_ release]; }

    NSTask* Launch(const std::string& name, NSArray* arguments) {
        return [NSTask launchedTaskWithLaunchPath:Text(folder_ / name) arguments:arguments];
    }

    void ExpectToRaise(const std::string& name) {
        NSString* raised = nil;
        @try {
            Launch(name, [NSArray array]);
        } @catch (NSException* exception) {
            raised = [exception name];
        }
        EXPECT_EQ(Text(raised), "NSInvalidArgumentException") << name;
    }

    /// What a started program says in a pipe of ours, once it and all that it started have ended.
    std::string SaidBy(const std::string& script, NSArray* arguments) {
        EXPECT_EQ(mkfifo((folder_ / "said").c_str(), 0600), 0);
        folder_.Write("program", "#!/bin/sh\nexec >'" + folder_ / "said" + "'\n" + script, 0755);
        EXPECT_NE(Launch("program", arguments), nil);
        return folder_.Read("said");
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};
