#pragma once

// What every file with mutants in it includes: which of them is in force.
//
// GTEST_MUTANT is a number, or "reached": then each mutant that a test comes by is named on standard error, once a
// test, below the line with the test's name. Its name begins so because a Mac root passes on GoogleTest's variables.

#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>

// GoogleTest's current test, where the program has any.
extern "C" {
const void* MutantUnitTest() asm("_ZN7testing8UnitTest11GetInstanceEv") __attribute__((weak));
const void* MutantCurrentTest(const void*) asm("_ZNK7testing8UnitTest17current_test_infoEv")
    __attribute__((weak));
}

enum : int { kNoMutant = 0, kReachedMutants = -1, kMostMutants = 10000 };

inline int ReadChosenMutant() {
    const char* chosen = getenv("GTEST_MUTANT");
    return chosen == nullptr                ? kNoMutant
           : strcmp(chosen, "reached") == 0 ? kReachedMutants
                                            : atoi(chosen);
}

// Opened at the start: some tests have another standard error for a while. Out of the way of what
// the product takes for its standard descriptors.
inline int MutantOutput() {
    static const int output = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 64);
    return output;
}
inline const int mutantOutputFromTheStart = MutantOutput();

inline void MutantIsReached(int number) {
    static const void* test = nullptr;
    static bool known[kMostMutants];
    const void* current = MutantUnitTest == nullptr ? nullptr : MutantCurrentTest(MutantUnitTest());
    if (current != test) {
        test = current;
        memset(known, 0, sizeof(known));
    }
    if (!known[number]) {
        known[number] = true;
        char line[32];
        const int length = snprintf(line, sizeof(line), "\nreached %d\n", number);
        // Not write: some tests have one of their own.
        if (syscall(SYS_write, MutantOutput(), line, static_cast<size_t>(length)) < 0) {
            abort();
        }
    }
}

inline bool IsMutant(int number) {
    static const int chosen = ReadChosenMutant();
    if (chosen == kReachedMutants) {
        MutantIsReached(number);
    }
    return number == chosen;
}
