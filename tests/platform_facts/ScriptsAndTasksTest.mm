// Programs that are started: by AppleScript's `do shell script` without further rights, and as
// tasks.
#include <gtest/gtest.h>

#include "tests/support/TaskFixture.h"

namespace {

class ShellScript : public testing::Test {
  protected:
    ~ShellScript() override { [pool_ release]; }

    /// The result of a command that is written as in AppleScript's quotes.
    std::string Run(const char* quoted) {
        NSString* source = [NSString stringWithFormat:@"do shell script \"%s\"", quoted];
        NSAppleScript* script = [[[NSAppleScript alloc] initWithSource:source] autorelease];
        error_ = nil;
        return Text([[script executeAndReturnError:&error_] stringValue]);
    }

    void ExpectError(int number, const std::string& message) const {
        EXPECT_EQ([[error_ objectForKey:NSAppleScriptErrorNumber] intValue], number);
        EXPECT_EQ(Text((NSString*)[error_ objectForKey:NSAppleScriptErrorMessage]), message);
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    NSDictionary* error_ = nil;
};

TEST_F(ShellScript, RunsAsTheUser) {
    EXPECT_EQ(Run("echo hello"), "hello");
    EXPECT_EQ(error_, nil);
}

TEST_F(ShellScript, LineEndsBecomeReturnsAndOneAtTheEndGoes) {
    EXPECT_EQ(Run("printf 'a\\\\nb\\\\nc\\\\n\\\\n'"), "a\rb\rc\r");
    EXPECT_EQ(Run("printf 'no end'"), "no end");
    EXPECT_EQ(Run("true"), "");
}

TEST_F(ShellScript, AFailureTellsTheStatusAndWhatWasSaid) {
    EXPECT_EQ(Run("echo out; printf 'one\\\\ntwo\\\\n' >&2; exit 3"), "(nil)");
    ExpectError(3, "one\rtwo");
    Run("exit 5");
    ExpectError(5, "The command exited with a non-zero status.");
}

TEST_F(ShellScript, WhatIsNoScriptIsAnErrorOfItsOwn) {
    NSAppleScript* script =
        [[[NSAppleScript alloc] initWithSource:@"do shell script \"true"] autorelease];
    EXPECT_EQ([script executeAndReturnError:&error_], nil);
    EXPECT_EQ([[error_ objectForKey:NSAppleScriptErrorNumber] intValue], -2741);
}

class Task : public TaskFixture {};

TEST_F(Task, TheProgramGetsItsArgumentsAsTheyAre) {
    NSArray* arguments =
        [NSArray arrayWithObjects:@"-path", @"", @"two words", @"100%n", @"Zoë 東京", @"quo'te\"s",
                                  @"line\nbreak", @"-x", nil];
    EXPECT_EQ(SaidBy("printf '<%s>' \"$@\"\n", arguments),
              "<-path><><two words><100%n><Zoë 東京><quo'te\"s><line\nbreak><-x>");
}

TEST_F(Task, WhatCannotBeStartedRaises) {
    ExpectToRaise("missing");
    folder_.MakeFolder("folder");
    ExpectToRaise("folder");
    folder_.Write("not executable", "#!/bin/sh\n", 0644);
    ExpectToRaise("not executable");
}

}  // namespace
