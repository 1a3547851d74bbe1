#include "platform/FileModes.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/TemporaryFolder.h"

namespace {

class FileModes : public testing::Test {
  protected:
    BOOL Set(const std::string& name, mode_t mode) {
        return SetFileMode([NSString stringWithUTF8String:(folder_ / name).c_str()], mode);
    }

    TemporaryFolder folder_;
};

TEST_F(FileModes, AFileGetsThemWhateverItHadAndWhateverTheUmask) {
    const Umask umask(077);
    for (const mode_t before : {0000U, 0400U, 0666U}) {
        folder_.Write("Zoë %@", "x", before);
        EXPECT_TRUE(Set("Zoë %@", 0775));
        EXPECT_EQ(folder_.Mode("Zoë %@"), 0775U);
    }
}

TEST_F(FileModes, ALinkAndWhatItLeadsToStayAsTheyAre) {
    folder_.Write("file", "x", 0600);
    folder_.MakeFolder("folder", 0700);
    folder_.MakeLink("to file", "file");
    folder_.MakeLink("to folder", "folder");
    folder_.MakeLink("dangling", "nothing");
    for (const char* link : {"to file", "to folder", "dangling"}) {
        EXPECT_FALSE(Set(link, 0777)) << link;
    }
    EXPECT_EQ(folder_.Mode("file"), 0600U);
    EXPECT_EQ(folder_.Mode("folder"), 0700U);
}

TEST_F(FileModes, WhatIsNoFileStaysAsItIs) {
    folder_.MakeFolder("folder", 0700);
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    for (const char* name : {"folder", "pipe", "nothing", "folder/nothing"}) {
        EXPECT_FALSE(Set(name, 0777)) << name;
    }
    EXPECT_EQ(folder_.Mode("folder"), 0700U);
    EXPECT_EQ(folder_.Mode("pipe"), 0600U);
}

TEST_F(FileModes, AnothersFileIsRefused) {
    EXPECT_FALSE(SetFileMode(@"/usr/bin/env", 0777));
}

}  // namespace
