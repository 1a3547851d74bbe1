#include "crypto/Rijndael.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "tests/crypto/ResponseFile.h"

namespace {

constexpr unsigned long kUntouched = 0xDEADBEEF;

using Schedule = std::array<unsigned long, kRijndaelScheduleWords>;

Schedule UntouchedSchedule() {
    Schedule schedule;
    schedule.fill(kUntouched);
    return schedule;
}

size_t WrittenWords(const Schedule& schedule) {
    return static_cast<size_t>(std::find(schedule.begin(), schedule.end(), kUntouched) -
                               schedule.begin());
}

std::string EachBlock(decltype(rijndaelSetupEncrypt) setup, decltype(rijndaelEncrypt) cipher,
                      const std::string& key, const std::string& in) {
    Schedule schedule = UntouchedSchedule();
    const int32_t rounds = setup(schedule.data(), Data(key), static_cast<int32_t>(key.size()) * 8);
    std::string out(in.size(), '\0');
    for (size_t at = 0; at < in.size(); at += kRijndaelBlockBytes) {
        cipher(schedule.data(), rounds, Data(in) + at, Data(out) + at);
    }
    return out;
}

}  // namespace

class RijndaelVectors : public testing::TestWithParam<std::pair<const char*, size_t>> {};

TEST_P(RijndaelVectors, AgreeInBothDirections) {
    const auto [name, count] = GetParam();
    const std::vector<ResponseRecord> records = ReadResponseFile(name);
    EXPECT_EQ(records.size(), count);
    for (const ResponseRecord& record : records) {
        const std::string key = FromHex(record.at("KEY"));
        const std::string plaintext = record.at("PLAINTEXT");
        const std::string ciphertext = record.at("CIPHERTEXT");
        ASSERT_EQ(ToHex(EachBlock(rijndaelSetupEncrypt, rijndaelEncrypt, key, FromHex(plaintext))),
                  ciphertext);
        ASSERT_EQ(ToHex(EachBlock(rijndaelSetupDecrypt, rijndaelDecrypt, key, FromHex(ciphertext))),
                  plaintext);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Nist, RijndaelVectors,
    testing::Values(std::pair("aes/ECBGFSbox128.rsp", 14), std::pair("aes/ECBGFSbox192.rsp", 12),
                    std::pair("aes/ECBGFSbox256.rsp", 10), std::pair("aes/ECBKeySbox128.rsp", 42),
                    std::pair("aes/ECBKeySbox192.rsp", 48), std::pair("aes/ECBKeySbox256.rsp", 32),
                    std::pair("aes/ECBVarKey128.rsp", 256), std::pair("aes/ECBVarKey192.rsp", 384),
                    std::pair("aes/ECBVarKey256.rsp", 512), std::pair("aes/ECBVarTxt128.rsp", 256),
                    std::pair("aes/ECBVarTxt192.rsp", 256), std::pair("aes/ECBVarTxt256.rsp", 256),
                    std::pair("aes/ECBMMT128.rsp", 20), std::pair("aes/ECBMMT192.rsp", 20),
                    std::pair("aes/ECBMMT256.rsp", 20)),
    [](const auto& info) {
        const std::string name = info.param.first;
        return name.substr(4, name.find('.') - 4);
    });

// FIPS-197, appendices A and C.
class RijndaelSetup : public testing::Test {
  protected:
    const std::string key128 = FromHex("2b7e151628aed2a6abf7158809cf4f3c");
    const std::string key256 =
        FromHex("603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4");
    Schedule schedule = UntouchedSchedule();
};

TEST_F(RijndaelSetup, HoldsTheStandardsRoundKeys) {
    rijndaelSetupEncrypt(schedule.data(), Data(key128), 128);
    EXPECT_EQ(schedule[0], 0x2b7e1516u);
    EXPECT_EQ(schedule[4], 0xa0fafe17u);
    EXPECT_EQ(schedule[43], 0xb6630ca6u);
    rijndaelSetupEncrypt(schedule.data(), Data(key256), 256);
    EXPECT_EQ(schedule[0], 0x603deb10u);
    EXPECT_EQ(schedule[12], 0xa8b09c1au);
    EXPECT_EQ(schedule[59], 0x706c631eu);
}

TEST_F(RijndaelSetup, ReturnsTheRoundsAndWritesTheirKeysOnly) {
    EXPECT_EQ(rijndaelSetupEncrypt(schedule.data(), Data(key256), 128), 10);
    EXPECT_EQ(WrittenWords(schedule), 44u);
    EXPECT_EQ(rijndaelSetupEncrypt(schedule.data(), Data(key256), 192), 12);
    EXPECT_EQ(WrittenWords(schedule), 52u);
    EXPECT_EQ(rijndaelSetupEncrypt(schedule.data(), Data(key256), 256), 14);
    EXPECT_EQ(WrittenWords(schedule), 60u);

    schedule = UntouchedSchedule();
    EXPECT_EQ(rijndaelSetupDecrypt(schedule.data(), Data(key256), 128), 10);
    EXPECT_EQ(WrittenWords(schedule), 44u);
    EXPECT_EQ(rijndaelSetupDecrypt(schedule.data(), Data(key256), 192), 12);
    EXPECT_EQ(WrittenWords(schedule), 52u);
    EXPECT_EQ(rijndaelSetupDecrypt(schedule.data(), Data(key256), 256), 14);
    EXPECT_EQ(WrittenWords(schedule), 60u);
}

TEST_F(RijndaelSetup, ReversesTheRoundKeysForDeciphering) {
    Schedule reversed = UntouchedSchedule();
    rijndaelSetupEncrypt(schedule.data(), Data(key128), 128);
    rijndaelSetupDecrypt(reversed.data(), Data(key128), 128);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(reversed[i], schedule[40 + i]);
        EXPECT_EQ(reversed[40 + i], schedule[i]);
        EXPECT_NE(reversed[4 + i], schedule[36 + i]) << "not passed through InvMixColumns";
    }
}

TEST_F(RijndaelSetup, RefusesOtherKeySizes) {
    for (const int32_t bits : {100, 0, -128, 32, 64, 127, 160, 224, 255, 257, 512}) {
        EXPECT_EQ(rijndaelSetupEncrypt(schedule.data(), Data(key256), bits), 0);
        EXPECT_EQ(rijndaelSetupDecrypt(schedule.data(), Data(key256), bits), 0);
    }
    EXPECT_EQ(WrittenWords(schedule), 0u);
}

TEST(RijndaelBlock, MayBeProcessedInPlace) {
    const std::string key = FromHex("000102030405060708090a0b0c0d0e0f");
    const std::string plaintext = FromHex("00112233445566778899aabbccddeeff");
    Schedule schedule;
    std::string block = plaintext;
    rijndaelEncrypt(schedule.data(), rijndaelSetupEncrypt(schedule.data(), Data(key), 128),
                    Data(block), Data(block));
    EXPECT_EQ(ToHex(block), "69c4e0d86a7b0430d8cdb78070b4c55a");
    rijndaelDecrypt(schedule.data(), rijndaelSetupDecrypt(schedule.data(), Data(key), 128),
                    Data(block), Data(block));
    EXPECT_EQ(block, plaintext);
}

TEST(RijndaelBlocks, AreProcessedEachByItself) {
    const std::string key = FromHex("000102030405060708090a0b0c0d0e0f");
    std::string text;
    for (int i = 0; i < 7 * 16; ++i) {
        text += static_cast<char>(i * i);
    }
    Schedule schedule;
    for (size_t count = 0; count <= 7; ++count) {
        const std::string blocks = text.substr(0, count * kRijndaelBlockBytes);
        const std::string enciphered =
            EachBlock(rijndaelSetupEncrypt, rijndaelEncrypt, key, blocks);
        const std::string behind = text.substr(blocks.size());
        std::string buffer = text;
        rijndaelEncryptBlocks(schedule.data(),
                              rijndaelSetupEncrypt(schedule.data(), Data(key), 128), Data(buffer),
                              Data(buffer), count);
        EXPECT_EQ(ToHex(buffer), ToHex(enciphered + behind)) << count;
        rijndaelDecryptBlocks(schedule.data(),
                              rijndaelSetupDecrypt(schedule.data(), Data(key), 128), Data(buffer),
                              Data(buffer), count);
        EXPECT_EQ(ToHex(buffer), ToHex(text)) << count;
    }
}
