// How a file is written atomically: the steps, and what a run that was ended leaves behind. This
// program takes the place of the flush, and of the look at a file by way of its links.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <functional>
#include <utility>

#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

// What the next flush does instead.
std::function<int()> duringFlush;

// With what looking at a file fails; 0 while it works.
int lookError = 0;

}  // namespace

extern "C" int fsync(int descriptor) {
    const std::function<int()> instead = std::exchange(duringFlush, nullptr);
    return instead ? instead() : fdatasync(descriptor);
}

extern "C" int stat(const char* path, struct stat* info) {
    errno = lookError;
    return lookError != 0 ? -1 : fstatat(AT_FDCWD, path, info, 0);
}

namespace {

class AtomicWriting : public testing::Test {
  protected:
    BOOL WriteText(const std::string& name, NSString* text) {
        return [text writeToFile:Text(folder_ / name)
                      atomically:YES
                        encoding:NSUTF8StringEncoding
                           error:&error_];
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
    NSError* error_ = nil;

    ~AtomicWriting() override { [pool_ release]; }
};

TEST_F(AtomicWriting, TheTemporaryFileIsNeverWiderThanWhatItReplaces) {
    duringFlush = [&] {
        const std::string everything = folder_.Everything();
        const std::string name = everything.substr(0, everything.find(' '));
        EXPECT_EQ(folder_.Mode(name) & ~0640U, 0U) << name;
        EXPECT_NE(name.find('.' + std::to_string(getpid()) + '.'), std::string::npos) << name;
        EXPECT_EQ(folder_.Read("file"), "old");
        return 0;
    };
    folder_.Write("file", "old", 0640);
    EXPECT_TRUE(WriteText("file", @"new"));
    EXPECT_FALSE(duringFlush) << "nothing was flushed";
    EXPECT_EQ(folder_.Everything(), "file");
}

TEST_F(AtomicWriting, DataThatCannotBeFlushedIsNotWritten) {
    folder_.Write("file", "old");
    const struct {
        int error;
        NSInteger code;
    } failures[] = {{EIO, 512}, {ENOSPC, 640}};
    for (const auto& failure : failures) {
        duringFlush = [&] {
            errno = failure.error;
            return -1;
        };
        EXPECT_FALSE(WriteText("file", @"new"));
        ExpectCocoaError(error_, failure.code, failure.error, folder_ / "file");
        EXPECT_EQ(folder_.Read("file"), "old");
        EXPECT_EQ(folder_.Everything(), "file");
    }
}

TEST_F(AtomicWriting, NothingIsWrittenWithRightsThatAreAGuess) {
    folder_.Write("file", "old", 0600);
    folder_.MakeLink("link", "file");
    lookError = EACCES;
    const BOOL replacesLink = WriteText("link", @"new");
    NSError* const failure = error_;
    const BOOL replacesFile = WriteText("file", @"new");
    lookError = 0;
    EXPECT_FALSE(replacesLink);
    ExpectCocoaError(failure, 513, EACCES, folder_ / "link");
    EXPECT_TRUE(replacesFile) << "which needs no such look";
    EXPECT_EQ(folder_.Mode("file"), 0600U);
    EXPECT_EQ(folder_.Read("link"), "new") << "it still leads to the file";
    EXPECT_EQ(folder_.Everything(), "file link");
}

TEST_F(AtomicWriting, WhatAProcessLeftThatIsGoneIsRemovedByTheNextWrite) {
    for (const std::string name : {"file", "other"}) {
        const pid_t child = fork();
        if (child == 0) {
            duringFlush = []() -> int { _exit(0); };
            WriteText(name, @"lost");
        }
        waitpid(child, nullptr, 0);
    }
    const auto count = [&] {
        const std::string everything = folder_.Everything();
        return std::count(everything.begin(), everything.end(), ' ');
    };
    EXPECT_EQ(count(), 1) << folder_.Everything();
    EXPECT_TRUE(WriteText("file", @"new"));
    EXPECT_EQ(count(), 1) << folder_.Everything();
    EXPECT_TRUE(WriteText("other", @"new"));
    EXPECT_EQ(folder_.Everything(), "file other");
}

TEST_F(AtomicWriting, ATemporaryFileOfARunningProcessStays) {
    const pid_t child = fork();
    if (child == 0) {
        duringFlush = [] { return pause(); };
        WriteText("file", @"slow");
        _exit(0);
    }
    while (folder_.Everything().empty()) {
        usleep(1000);
    }
    EXPECT_TRUE(WriteText("file", @"new"));
    EXPECT_NE(folder_.Everything(), "file");
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(WriteText("file", @"newer"));
    EXPECT_EQ(folder_.Everything(), "file");
}

}  // namespace
