// Scripts and files run as a user whose administrator prompts are allowed.
#include "privileged/ElevatedRights.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/Files.h"
#include "tests/support/LogFile.h"

namespace {

NSString* const kScript = @"/var/tmp/script.sh";

class ElevatedRightsTest : public testing::Test {
  protected:
    ElevatedRightsTest() {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    }
    ~ElevatedRightsTest() override { EXPECT_NE(access([kScript UTF8String], F_OK), 0); }

    BOOL RunAsUser(NSString* script, NSArray* arguments) {
        return [ElevatedRights runString:script
                           withArguments:arguments
                                  output:&output
                        errorDescription:&errorDescription];
    }

    BOOL RunAsAdministrator(NSString* script, NSArray* arguments) {
        return [ElevatedRights runStringAsAdministrator:script
                                          withArguments:arguments
                                                 output:&output
                                       errorDescription:&errorDescription];
    }

    std::string Log() { return WithoutTime(log.Bytes()); }

    NSArray* const none = [NSArray arrayWithObject:@""];
    NSString* output = @"untouched output";
    NSString* errorDescription = @"untouched error";
    LogFile log;
};

std::string Text(NSString* text) {
    return text == nil ? "(nil)" : [text UTF8String];
}

TEST_F(ElevatedRightsTest, AScriptRunsAsTheUserOrAsTheAdministrator) {
    EXPECT_TRUE(RunAsUser(@"id -u", none));
    EXPECT_EQ(Text(output), "501");
    EXPECT_TRUE(RunAsAdministrator(@"id -u", none));
    EXPECT_EQ(Text(output), "0");
    EXPECT_EQ(Text(errorDescription), "untouched error");
}

TEST_F(ElevatedRightsTest, TheOutputHasReturnsForLineEndsAndNoneAtItsEnd) {
    EXPECT_TRUE(RunAsAdministrator(@"printf 'a\\nb\\r\\nc\\n\\n'", none));
    EXPECT_EQ(Text(output), "a\rb\rc\r");
    EXPECT_TRUE(RunAsUser(@"true", none));
    EXPECT_EQ(Text(output), "");
}

TEST_F(ElevatedRightsTest, AnAdministratorsScriptHasACleanSurrounding) {
    EXPECT_TRUE(RunAsAdministrator(@"echo $HOME; pwd; echo $PATH", none));
    EXPECT_EQ(Text(output), "/Users/alex\r/\r/usr/bin:/bin:/usr/sbin:/sbin");
}

TEST_F(ElevatedRightsTest, AFailingScriptAnswersItsStandardError) {
    EXPECT_FALSE(RunAsAdministrator(@"echo shown; echo first >&2; echo second >&2; exit 3", none));
    EXPECT_EQ(Text(output), "untouched output");
    EXPECT_EQ(Text(errorDescription), "first\rsecond");
    EXPECT_FALSE(RunAsUser(@"echo oops >&2; exit 1", none));
    EXPECT_EQ(Text(errorDescription), "oops");
}

TEST_F(ElevatedRightsTest, ExitStatusesThatPromptsAlsoUseAreTheScriptsOwn) {
    for (NSString *script in
         [NSArray arrayWithObjects:@"echo mine >&2; exit 126", @"echo mine >&2; exit 127",
                                   @"echo mine >&2; exit 128", nil]) {
        EXPECT_FALSE(RunAsAdministrator(script, none));
        EXPECT_EQ(Text(errorDescription), "mine");
    }
}

TEST_F(ElevatedRightsTest, ArgumentsAreJoinedByBlanksAndSplitByTheShell) {
    NSArray* arguments = [NSArray arrayWithObjects:@"two words", @"$HOME", @"'quoted  text'", nil];
    EXPECT_TRUE(RunAsUser(@"for a in \"$@\"; do printf '[%s]' \"$a\"; done", arguments));
    EXPECT_EQ(Text(output), "[two][words][/Users/alex][quoted  text]");
    EXPECT_TRUE(RunAsUser(@"echo $#", [NSArray array]));
    EXPECT_EQ(Text(output), "0");
}

TEST_F(ElevatedRightsTest, ADoubleQuoteInAnArgumentEndsTheCommandAndFails) {
    EXPECT_FALSE(RunAsUser(@"true", [NSArray arrayWithObject:@"\""]));
    EXPECT_FALSE([errorDescription isEqualToString:@"untouched error"]);
    EXPECT_EQ(Text(output), "untouched output");
}

TEST_F(ElevatedRightsTest, TheScriptFileIsOpenToEverybodyWhileItRuns) {
    EXPECT_TRUE(RunAsUser(@"stat -c %a \"$0\"", none));
    EXPECT_EQ(Text(output), "777");
}

TEST_F(ElevatedRightsTest, AScriptThatCannotBeSavedIsNotRun) {
    ASSERT_EQ(mkdir([kScript UTF8String], 0755), 0);
    EXPECT_FALSE(RunAsAdministrator(@"touch /private/tmp/ran", none));
    EXPECT_FALSE(RunAsUser(@"touch /private/tmp/ran", none));
    ASSERT_EQ(rmdir([kScript UTF8String]), 0);
    EXPECT_NE(access("/private/tmp/ran", F_OK), 0);
    EXPECT_EQ(Text(output), "untouched output");
    EXPECT_EQ(Text(errorDescription), "untouched error");
    const std::string line =
        "\nHH:MM:SS - FAILURE : Can't save SH to file! Error: Error Domain=NSCocoaErrorDomain";
    EXPECT_EQ(Log().compare(0, line.size(), line), 0) << Log();
    EXPECT_EQ(Log().back(), '}') << Log();
    EXPECT_EQ(Log().find("WARNING"), std::string::npos) << Log();  // nor is it deleted
}

TEST_F(ElevatedRightsTest, ALinkInPlaceOfTheScriptFileIsReplacedAndItsTargetStays) {
    const std::string mine = "/private/tmp/mine";
    WriteFile(mine, "private");
    ASSERT_EQ(chmod(mine.c_str(), 0600), 0);
    ASSERT_EQ(symlink(mine.c_str(), [kScript UTF8String]), 0);
    EXPECT_TRUE(RunAsUser(@"echo ran", none));
    EXPECT_EQ(Text(output), "ran");
    EXPECT_EQ(ReadFile(mine), "private");
    EXPECT_EQ(ModeOf(mine), 0600U);
    unlink(mine.c_str());
}

TEST_F(ElevatedRightsTest, AScriptThatIsGoneAlreadyIsNoError) {
    EXPECT_TRUE(RunAsUser(@"rm \"$0\"", none));
    EXPECT_EQ(Log(), "");
}

TEST_F(ElevatedRightsTest, AScriptThatCannotBeDeletedIsReportedAndKeepsItsResult) {
    // In a sticky folder only its owner may delete a file.
    EXPECT_TRUE(RunAsAdministrator(@"chown root \"$0\"", none));
    const std::string line =
        "\nHH:MM:SS - WARNING : Can't delete saved script. Error: Error Domain=NSCocoaErrorDomain "
        "Code=513 ";
    EXPECT_EQ(Log().compare(0, line.size(), line), 0) << Log();
    EXPECT_EQ(Log().back(), '}') << Log();
    EXPECT_TRUE([ElevatedRights runProcessAsAdministrator:@"/bin/rm"
                                            withArguments:[NSArray arrayWithObject:kScript]
                                                   output:&output
                                         errorDescription:&errorDescription]);
}

TEST_F(ElevatedRightsTest, AMissingFileIsNotRun) {
    EXPECT_FALSE([ElevatedRights runProcess:@"/private/tmp/missing"
                              withArguments:none
                                     output:&output
                           errorDescription:&errorDescription]);
    EXPECT_FALSE([ElevatedRights runProcessAsAdministrator:@"/private/tmp/missing"
                                             withArguments:none
                                                    output:&output
                                          errorDescription:&errorDescription]);
    EXPECT_EQ(Text(output), "untouched output");
    EXPECT_EQ(Text(errorDescription), "untouched error");
}

TEST_F(ElevatedRightsTest, APathWithBlanksRunsAndOneWithAQuoteDoesNot) {
    for (NSString *path in
         [NSArray arrayWithObjects:@"/private/tmp/two words", @"/private/tmp/it's", nil]) {
        [@"#!/bin/sh\necho ran" writeToFile:path
                                 atomically:YES
                                   encoding:NSUTF8StringEncoding
                                      error:NULL];
        chmod([path UTF8String], 0755);
    }
    EXPECT_TRUE([ElevatedRights runProcess:@"/private/tmp/two words"
                             withArguments:none
                                    output:&output
                          errorDescription:&errorDescription]);
    EXPECT_EQ(Text(output), "ran");
    EXPECT_FALSE([ElevatedRights runProcess:@"/private/tmp/it's"
                              withArguments:none
                                     output:&output
                           errorDescription:&errorDescription]);
}

TEST_F(ElevatedRightsTest, AFileNamedLikeAnOptionRunsByItsWholePathOnly) {
    [@"#!/bin/sh\necho ran \"$@\"" writeToFile:@"/private/tmp/-c"
                                    atomically:YES
                                      encoding:NSUTF8StringEncoding
                                         error:NULL];
    chmod("/private/tmp/-c", 0755);
    NSArray* arguments = [NSArray arrayWithObjects:@"-n", @"--", nil];
    EXPECT_TRUE([ElevatedRights runProcess:@"/private/tmp/-c"
                             withArguments:arguments
                                    output:&output
                          errorDescription:&errorDescription]);
    EXPECT_EQ(Text(output), "ran -n --");
    // Without a folder it is the name of a command, which the shell does not find.
    ASSERT_EQ(chdir("/private/tmp"), 0);
    EXPECT_FALSE([ElevatedRights runProcess:@"-c"
                              withArguments:arguments
                                     output:&output
                           errorDescription:&errorDescription]);
    EXPECT_NE(Text(errorDescription).find("not found"), std::string::npos);
    EXPECT_EQ(unlink("/private/tmp/-c"), 0);
}

TEST_F(ElevatedRightsTest, RightsAreGiven) {
    AuthorizationRef authorization = NULL;
    EXPECT_EQ([ElevatedRights elevate:&authorization], 0);
    EXPECT_NE(authorization, static_cast<AuthorizationRef>(NULL));
    EXPECT_EQ(AuthorizationFree(authorization, kAuthorizationFlagDestroyRights), 0);

    ElevatedRights* rights = [[ElevatedRights alloc] init];
    const AuthorizationRef own = [rights GetAuthorization];
    EXPECT_NE(own, static_cast<AuthorizationRef>(NULL));
    EXPECT_EQ([rights GetAuthorization], own);
    [rights release];
    // The object freed what it owned.
    EXPECT_DEATH(AuthorizationFree(own, kAuthorizationFlagDestroyRights), "freed before");
}

}  // namespace
