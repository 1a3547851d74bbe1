// AppleScript's `do shell script`. This program takes the administrator's place, and tells what was
// asked of him.
#include <gtest/gtest.h>

#include "Security/Administrator.h"
#include "tests/support/ErrorChecks.h"

namespace {

CommandResult answer = {Verdict::Allowed, 0, "", ""};
std::string asked;

}  // namespace

CommandResult RunAsAdministrator(const std::string& command) {
    asked = command;
    return answer;
}

namespace {

class AppleScript : public testing::Test {
  protected:
    AppleScript() {
        answer = {Verdict::Allowed, 0, "", ""};
        asked = "nothing";
    }
    ~AppleScript() override { [pool_ release]; }

    std::string ResultOf(NSString* source) {
        error_ = nil;
        NSAppleScript* script = [[[NSAppleScript alloc] initWithSource:source] autorelease];
        return Text([[script executeAndReturnError:&error_] stringValue]);
    }

    // The result of a command of the user's own that is written in AppleScript's quotes.
    std::string Run(const char* quoted) {
        return ResultOf([NSString stringWithFormat:@"do shell script \"%s\"", quoted]);
    }

    void ExpectError(int number, const std::string& message) const {
        EXPECT_EQ([[error_ objectForKey:NSAppleScriptErrorNumber] intValue], number);
        EXPECT_EQ(Text((NSString*)[error_ objectForKey:NSAppleScriptErrorMessage]), message);
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    NSDictionary* error_ = nil;
};

TEST_F(AppleScript, ACommandRunsAsTheUser) {
    EXPECT_EQ(Run("echo hello"), "hello");
    EXPECT_EQ(error_, nil);
    EXPECT_EQ(asked, "nothing");
}

TEST_F(AppleScript, ACommandWithRightsGoesToTheAdministrator) {
    answer = {Verdict::Allowed, 0, "done\n", "ignored"};
    EXPECT_EQ(ResultOf(@"do shell script \"'/var/tmp/script.sh' \" with administrator privileges"),
              "done");
    EXPECT_EQ(asked, "'/var/tmp/script.sh' ");
}

TEST_F(AppleScript, EscapesAreResolvedBeforeTheShellSeesTheCommand) {
    answer.output = "";
    ResultOf(@"do shell script \"a\\\"b\\\\c\\nd\\re\\tf é\nover lines\" with administrator "
             @"privileges");
    EXPECT_EQ(asked, "a\"b\\c\nd\re\tf é\nover lines");
}

TEST_F(AppleScript, LineEndsBecomeReturnsAndOneAtTheEndGoes) {
    EXPECT_EQ(Run("printf 'a\\\\nb\\\\r\\\\nc\\\\rd\\\\n\\\\n'"), "a\rb\rc\rd\r");
    EXPECT_EQ(Run("printf 'no end'"), "no end");
    EXPECT_EQ(Run("printf '\\\\n'"), "");
    EXPECT_EQ(Run("true"), "");
}

TEST_F(AppleScript, OutputThatIsNoUtf8IsReadAsMacRoman) {
    EXPECT_EQ(Run("printf 'caf\\\\216'"), "café");
}

TEST_F(AppleScript, AFailureTellsTheStatusAndTheStandardError) {
    EXPECT_EQ(Run("echo out; printf 'one\\\\ntwo\\\\n' >&2; exit 3"), "(nil)");
    ExpectError(3, "one\rtwo");
}

TEST_F(AppleScript, AFailureWithoutStandardErrorTellsTheOutputOrThatItFailed) {
    Run("echo out; exit 4");
    ExpectError(4, "out");
    Run("exit 5");
    ExpectError(5, "The command exited with a non-zero status.");
}

TEST_F(AppleScript, ACancelledAndARefusedPromptHaveTheirOwnNumbers) {
    answer.verdict = Verdict::Cancelled;
    EXPECT_EQ(ResultOf(@"do shell script \"true\" with administrator privileges"), "(nil)");
    ExpectError(-128, "User canceled.");
    answer.verdict = Verdict::Refused;
    EXPECT_EQ(ResultOf(@"do shell script \"true\" with administrator privileges"), "(nil)");
    ExpectError(-60007, "The administrator user name or password was incorrect.");
}

TEST_F(AppleScript, OtherSourcesAreErrors) {
    for (NSString *source in
         [NSArray arrayWithObjects:@"", @"beep", @"do shell script", @"do shell script \"",
                                   @"do shell script \"true", @"do shell script \"true\\",
                                   @"do shell script \"true\\\"", @"do shell script \"a\\zb\"",
                                   @"do shell script \"true\" with prompt",
                                   @"do shell script \"true\" with administrator privileges ",
                                   @"do shell script \"'/it\"s' \" with administrator privileges",
                                   nil]) {
        EXPECT_EQ(ResultOf(source), "(nil)") << Text(source);
        EXPECT_EQ([[error_ objectForKey:NSAppleScriptErrorNumber] intValue], -2741) << Text(source);
        EXPECT_GT([[error_ objectForKey:NSAppleScriptErrorMessage] length], 0U);
    }
    EXPECT_EQ(ResultOf(nil), "(nil)");
    EXPECT_EQ(asked, "nothing");
}

TEST_F(AppleScript, NobodyHasToTakeTheError) {
    NSAppleScript* script =
        [[[NSAppleScript alloc] initWithSource:@"do shell script \"false\""] autorelease];
    EXPECT_EQ([script executeAndReturnError:NULL], nil);
}

}  // namespace
