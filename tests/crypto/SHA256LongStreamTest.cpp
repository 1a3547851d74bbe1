#include <gtest/gtest.h>

#include <string>

#include "crypto/SHA256.h"

TEST(SHA256LargeStream, CountsBitsBeyond32Bits) {
    // 2^29 bytes of zeros: the first length whose bit count needs a 33rd bit.
    SHA256 digest;
    const std::string zeros(1 << 20, '\0');
    for (int i = 0; i < 512; ++i) {
        digest.add(zeros.data(), zeros.size());
    }
    EXPECT_EQ(digest.getHash(), "9acca8e8c22201155389f65abbf6bc9723edc7384ead80503839f49dcc56d767");
}
