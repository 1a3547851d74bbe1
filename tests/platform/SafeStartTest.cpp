// What the first object of the process does, done once more in a child in an odd state.
#include "platform/SafeStart.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

namespace {

int StatusOfChild(const std::function<int()>& act) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(act());
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

struct stat Standard(int descriptor) {
    struct stat found = {};
    fstat(descriptor, &found);
    return found;
}

// How many of the three standard descriptors are not what they should be after those in the set
// of bits were closed.
int Wrong(int closed) {
    struct stat null = {};
    stat("/dev/null", &null);
    const struct stat before[] = {Standard(0), Standard(1), Standard(2)};
    for (int standard = 0; standard < 3; ++standard) {
        if (closed >> standard & 1) {
            close(standard);
        }
    }
    const SafeStart again;
    int wrong = 0;
    for (int standard = 0; standard < 3; ++standard) {
        const struct stat& expected = closed >> standard & 1 ? null : before[standard];
        const struct stat found = Standard(standard);
        wrong += found.st_ino != expected.st_ino || found.st_dev != expected.st_dev;
    }
    return wrong;
}

TEST(SafeStart, WhatIsClosedBecomesTheNullDeviceAndTheOthersStay) {
    for (int closed = 0; closed < 8; ++closed) {
        EXPECT_EQ(StatusOfChild([closed] { return Wrong(closed); }), 0) << closed;
    }
}

TEST(SafeStart, NothingIsOpenedWhereNothingIsClosed) {
    EXPECT_EQ(StatusOfChild([] {
                  const int next = dup(STDIN_FILENO);
                  close(next);
                  errno = EBADF;  // of an earlier call
                  const SafeStart again;
                  return dup(STDIN_FILENO) == next ? 0 : 1;
              }),
              0);
}

}  // namespace
