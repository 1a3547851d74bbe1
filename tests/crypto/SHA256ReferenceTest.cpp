#include <gtest/gtest.h>

#include "crypto/SHA256.h"
#include "tests/crypto/RandomBytes.h"
#include "tests/crypto/Reference.h"
#include "tests/crypto/ResponseFile.h"

TEST(SHA256Reference, AgreesForEveryLengthAtAnyAddress) {
    std::mt19937_64 engine(256);
    const std::string data = RandomBytes(engine, 4096 + 64);
    for (size_t length = 0; length <= 4096; ++length) {
        const char* const start = &data[length % 61];
        std::string digest(SHA256::kHashBytes, '\0');
        SHA256 sha256;
        const size_t first = length == 0 ? 0 : engine() % length;  // and in two pieces
        sha256.add(start, first);
        sha256.add(start + first, length - first);
        sha256.getHash(Data(digest));
        ASSERT_EQ(ToHex(digest), ToHex(reference::Digest(start, length))) << length;
    }
}
