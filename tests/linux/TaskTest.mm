// Programs that are started and not waited for.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "linux/corrections/Programs.h"
#include "tests/support/TaskFixture.h"

namespace {

class Task : public TaskFixture {};

TEST_F(Task, TheProgramGetsNoFileOfThisProcess) {
    const int ours =
        open("/dev/null", O_RDONLY);  // without close-on-exec, as a library may open it
    ASSERT_GE(ours, 3);
    const std::string open = SaidBy("ls /proc/$$/fd", [NSArray array]);
    EXPECT_EQ(open.find("\n" + std::to_string(ours) + "\n"), std::string::npos) << open;
    close(ours);
}

TEST_F(Task, TheProgramIsNobodysChildAndInASessionOfItsOwn) {
    const std::string ids = SaidBy("cut -d' ' -f4,6 /proc/$$/stat; echo $$", [NSArray array]);
    int parent = 0;
    int session = 0;
    int self = 0;
    ASSERT_EQ(sscanf(ids.c_str(), "%d %d %d", &parent, &session, &self), 3);
    EXPECT_NE(parent, getpid());
    EXPECT_NE(session, getsid(0));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(Task, WhatIsNoProgramRaises) {
    ExpectToRaise("missing");
    folder_.Write("no program", "only text\n", 0755);
    ExpectToRaise("no program");
    folder_.Write("empty", "", 0755);
    ExpectToRaise("empty");
    folder_.Write("no interpreter", "#!/no/such/shell\n", 0755);
    ExpectToRaise("no interpreter");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(Task, NeitherPathNorArgumentsMayBeMissing) {
    for (NSArray* arguments : {[NSArray array], static_cast<NSArray*>(nil)}) {
        BOOL raised = NO;
        @try {
            [NSTask launchedTaskWithLaunchPath:arguments == nil ? @"/bin/true" : nil
                                     arguments:arguments];
        } @catch (NSException*) {
            raised = YES;
        }
        EXPECT_TRUE(raised);
    }
}

TEST_F(Task, AProgramCanBeKeptQuiet) {
    int ours[2];
    ASSERT_EQ(pipe(ours), 0);
    const int output = dup(STDOUT_FILENO);
    dup2(ours[1], STDOUT_FILENO);
    folder_.Write("program", "#!/bin/sh\necho heard\necho done >" + folder_ / "done", 0755);
    EXPECT_EQ(mkfifo((folder_ / "done").c_str(), 0600), 0);
    EXPECT_EQ(StartDetached(folder_ / "program", {}, Output::Nowhere), 0);
    EXPECT_EQ(folder_.Read("done"), "done\n");
    dup2(output, STDOUT_FILENO);
    close(output);
    close(ours[1]);
    char byte = 0;
    EXPECT_EQ(read(ours[0], &byte, 1), 0);
    close(ours[0]);
}

}  // namespace
