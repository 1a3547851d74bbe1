// Programs that are run to their end.
#include "linux/corrections/Programs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

namespace {

ProgramResult Shell(const std::string& script) {
    return RunProgram({"/bin/sh", "-c", script});
}

TEST(RunProgram, BothOutputsAndTheStatusAreCollected) {
    const ProgramResult result = Shell("printf out; printf err >&2; exit 3");
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, "out");
    EXPECT_EQ(result.errors, "err");
}

TEST(RunProgram, OutputsLargerThanAPipeComeWholeFromBothAtOnce) {
    const ProgramResult result = Shell(
        "head -c 3000000 /dev/zero | tr '\\0' o & head -c 2000000 /dev/zero | tr '\\0' e >&2; "
        "wait");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.output == std::string(3000000, 'o'));
    EXPECT_TRUE(result.errors == std::string(2000000, 'e'));
}

TEST(RunProgram, AnyByteButNulComesThrough) {
    EXPECT_EQ(Shell("printf 'a\\377\\n\\0b'").output, "a\377\n");
}

TEST(RunProgram, ArgumentsArriveAsTheyAre) {
    EXPECT_EQ(RunProgram({"/bin/sh", "-c", "printf '<%s>' \"$@\"", "sh", "", "a b", "$x'\"", "é\n"})
                  .output,
              "<><a b><$x'\"><é\n>");
}

TEST(RunProgram, StandardInputIsEmpty) {
    EXPECT_EQ(Shell("cat; echo end").output, "end\n");
}

TEST(RunProgram, ASignalIsToldByItsNumberBehind128) {
    EXPECT_EQ(Shell("kill -9 $$").status, 128 + 9);
}

TEST(RunProgram, WhatCannotBeStartedHasStatus127) {
    const ProgramResult result = RunProgram({"/nowhere/program"});
    EXPECT_EQ(result.status, 127);
    EXPECT_EQ(result.output + result.errors, "");
}

TEST(RunProgram, NoDescriptorIsLeftOpen) {
    const auto open = [] {
        const std::filesystem::directory_iterator descriptors("/proc/self/fd");
        return std::distance(begin(descriptors), end(descriptors));
    };
    const auto before = open();
    RunProgram({"/nowhere/program"});
    Shell("true");
    EXPECT_EQ(open(), before);
}

}  // namespace
