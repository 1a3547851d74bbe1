#include "crypto/SHA256.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "tests/crypto/ResponseFile.h"

namespace {

const std::string kEmpty = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
const std::string kAbc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

std::string Pattern(size_t length) {
    std::string bytes;
    for (size_t i = 0; i < length; ++i) {
        bytes += static_cast<char>(i * 7 + 1);
    }
    return bytes;
}

std::string Raw(const SHA256& digest) {
    std::string bytes(SHA256::kHashBytes, '\0');
    digest.getHash(Data(bytes));
    return bytes;
}

void CheckMessages(const std::string& file, size_t count) {
    size_t messages = 0;
    for (const ResponseRecord& record : ReadResponseFile(file)) {
        if (record.count("Msg") != 0) {
            // The file writes the empty message as one byte.
            const std::string message =
                FromHex(record.at("Msg")).substr(0, std::stoul(record.at("Len")) / 8);
            ASSERT_EQ(SHA256()(message), record.at("MD")) << record.at("Len") << " bits";
            ++messages;
        }
    }
    EXPECT_EQ(messages, count);
}

}  // namespace

TEST(SHA256, AgreesWithTheShortMessagesOfNist) {
    CheckMessages("sha256/SHA256ShortMsg.rsp", 65);
}

TEST(SHA256, AgreesWithTheLongMessagesOfNist) {
    CheckMessages("sha256/SHA256LongMsg.rsp", 64);
}

TEST(SHA256, AgreesWithTheMonteCarloChainOfNist) {
    const std::vector<ResponseRecord> records = ReadResponseFile("sha256/SHA256Monte.rsp");
    ASSERT_EQ(records.size(), 101u);
    std::string seed = FromHex(records[0].at("Seed"));
    for (size_t i = 1; i < records.size(); ++i) {
        std::string lastThree = seed + seed + seed;
        for (int j = 0; j < 1000; ++j) {
            SHA256 digest;
            digest.add(lastThree.data(), lastThree.size());
            lastThree = lastThree.substr(SHA256::kHashBytes) + Raw(digest);
        }
        seed = lastThree.substr(2 * SHA256::kHashBytes);
        ASSERT_EQ(ToHex(seed), records[i].at("MD")) << "COUNT = " << records[i].at("COUNT");
    }
}

TEST(SHA256, StartsEmpty) {
    SHA256 digest;
    EXPECT_EQ(digest.getHash(), kEmpty);
    digest.add(nullptr, 0);
    EXPECT_EQ(digest.getHash(), kEmpty);
    EXPECT_EQ(digest(""), kEmpty);
}

TEST(SHA256, GivesTheSameDigestRawAndAsText) {
    SHA256 digest;
    EXPECT_EQ(digest("abc"), kAbc);
    EXPECT_EQ(ToHex(Raw(digest)), kAbc);
}

TEST(SHA256, DoesNotCareHowTheDataIsSplit) {
    const std::string data = Pattern(200);
    const std::string whole = SHA256()(data);
    for (size_t first = 0; first <= data.size(); ++first) {
        for (size_t second = first; second <= data.size(); ++second) {
            SHA256 digest;
            digest.add(data.data(), first);
            digest.add(data.data() + first, second - first);
            digest.add(data.data() + second, data.size() - second);
            ASSERT_EQ(digest.getHash(), whole) << first << ", " << second;
        }
    }
    SHA256 digest;
    for (const char& byte : data) {
        digest.add(&byte, 1);
    }
    EXPECT_EQ(digest.getHash(), whole);
}

TEST(SHA256, MayBeReadInMidStream) {
    const std::string data = Pattern(200);
    SHA256 digest;
    for (size_t length = 0; length < data.size(); ++length) {
        const std::string soFar = SHA256()(data.data(), length);
        ASSERT_EQ(digest.getHash(), soFar) << length;
        ASSERT_EQ(digest.getHash(), soFar) << length << ", read again";
        ASSERT_EQ(ToHex(Raw(digest)), soFar) << length;
        digest.add(&data[length], 1);
    }
    EXPECT_EQ(digest.getHash(), SHA256()(data));
}

TEST(SHA256, ForgetsEverythingOnReset) {
    SHA256 digest;
    const std::string data = Pattern(100);
    digest.add(data.data(), data.size());
    digest.reset();
    EXPECT_EQ(digest.getHash(), kEmpty);
}

TEST(SHA256, CallStartsANewStreamAndLeavesItOpen) {
    SHA256 digest;
    digest.add("rest", 4);
    EXPECT_EQ(digest("ab"), SHA256()("ab", 2));
    digest.add("c", 1);
    EXPECT_EQ(digest.getHash(), kAbc);
    EXPECT_EQ(digest(std::string{'a', '\0', 'b'}), SHA256()("a\0b", 3));
}

TEST(SHA256, IsPlainData) {
    static_assert(std::is_standard_layout_v<SHA256> && !std::is_polymorphic_v<SHA256>);
    static_assert(sizeof(SHA256) == 8 + 8 + 64 + 32);
    SHA256 digest;
    const std::string data = Pattern(130);
    digest.add(data.data(), data.size());
    uint64_t counters[2];
    std::memcpy(counters, &digest, sizeof(counters));
    EXPECT_EQ(counters[0], 128u) << "bytes in whole blocks";
    EXPECT_EQ(counters[1], 2u) << "bytes waiting";
    const std::string storage(reinterpret_cast<const char*>(&digest), sizeof(digest));
    EXPECT_EQ(storage.substr(16, 2), data.substr(128));
}
