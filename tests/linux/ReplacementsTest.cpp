// The table of replaced methods names what is missing before a program can trip over it.
#include "linux/corrections/Replacements.h"

#include <gtest/gtest.h>

namespace {

void Install(const char* className, const char* method, bool isInherited = false) {
    const Replacement replacement{className, method, isInherited};
    InstallReplacements(&replacement, 1);
}

TEST(ReplacementsDeathTest, AMissingClassEndsTheProgram) {
    EXPECT_DEATH(Install("NoSuchClass", "-length"), R"(-\[NoSuchClass length\] is missing)");
}

TEST(ReplacementsDeathTest, AMissingMethodEndsTheProgram) {
    EXPECT_DEATH(Install("NSString", "-noSuchMethod"), R"(-\[NSString noSuchMethod\] is missing)");
    EXPECT_DEATH(Install("NSString", "+length"), R"(\+\[NSString length\] is missing)");
}

TEST(ReplacementsDeathTest, AMissingReplacementEndsTheProgram) {
    EXPECT_DEATH(Install("NSString", "-length"), R"(-\[NSString mac_length\] is missing)");
}

TEST(ReplacementsDeathTest, AMethodThatNoParentHasEndsTheProgram) {
    EXPECT_DEATH(Install("NSString", "-length", true), R"(-\[NSString length\] is missing)");
}

TEST(ReplacementsDeathTest, AnInheritedMethodIsNotReplaced) {
    EXPECT_DEATH(Install("NSFileManager", "-retain"), R"(-\[NSFileManager retain\] is missing)");
}

}  // namespace
