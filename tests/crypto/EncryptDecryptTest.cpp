#include "crypto/EncryptDecrypt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "crypto/EncryptionEngine.h"
#include "tests/crypto/ResponseFile.h"

namespace {

const std::string kPassword = "correct horse battery staple, twice over";  // 40 bytes
const std::string kText = "The quick brown fox jumps over the lazy dog and home again, twice.";
constexpr size_t kBlock = kRijndaelBlockBytes;

EncryptDecrypt Keyed(const std::string& password) {
    EncryptDecrypt cipher;
    cipher.InitEncryption(password);
    return cipher;
}

std::string Encrypted(const EncryptDecrypt& cipher, const std::string& text) {
    std::string out(text.size(), '\0');
    cipher.Encrypt(text, Data(out), static_cast<int32_t>(text.size()));
    return out;
}

std::string Decrypted(const EncryptDecrypt& cipher, const std::string& text) {
    std::string out(text.size(), '\0');
    cipher.Decrypt(text, Data(out), static_cast<int32_t>(text.size()));
    return out;
}

/// Whole blocks under a key of 32 bytes.
std::string Expected(const std::string& key, std::string text) {
    EncryptionEngine(Data(key), 32).Encrypt(text);
    return text;
}

}  // namespace

TEST(EncryptDecrypt, KeysFromTheFirst32BytesOfThePassword) {
    const std::string text = kText.substr(0, 3 * kBlock);
    for (size_t length = 0; length <= kPassword.size(); ++length) {
        // Storage of exactly that length, so that a sanitizer sees any reading behind it.
        const std::string password(kPassword.data(), length);
        std::string key = password;
        key.resize(32);
        EXPECT_EQ(Encrypted(Keyed(password), text), Expected(key, text));
    }
}

TEST(EncryptDecrypt, TakesNulsInThePasswordAsTheyAre) {
    const std::string password("ab\0cd", 5);
    std::string key = password;
    key.resize(32);
    const std::string text = kText.substr(0, kBlock);
    EXPECT_EQ(Encrypted(Keyed(password), text), Expected(key, text));
    EXPECT_NE(Encrypted(Keyed(password), text), Encrypted(Keyed("ab"), text));
}

TEST(EncryptDecrypt, BringsWholeBlocksBack) {
    const EncryptDecrypt cipher = Keyed(kPassword);
    const std::string text = kText.substr(0, 4 * kBlock);
    EXPECT_EQ(Decrypted(cipher, Encrypted(cipher, text)), text);
}

TEST(EncryptDecrypt, FillsTheTailsBlockFromTheOneBefore) {
    const EncryptDecrypt cipher = Keyed(kPassword);
    const std::string key = kPassword.substr(0, 32);
    for (size_t length = 0; length <= kText.size(); ++length) {
        const std::string text = kText.substr(0, length);
        const size_t tail = length % kBlock;
        const size_t whole = length - tail;
        std::string last =
            whole == 0 ? std::string(kBlock, '\0') : text.substr(whole - kBlock, kBlock);
        last.replace(0, tail, text.substr(whole));
        EXPECT_EQ(Encrypted(cipher, text),
                  Expected(key, text.substr(0, whole)) + Expected(key, last).substr(0, tail));
    }
    EXPECT_EQ(Encrypted(cipher, "abc"), Encrypted(cipher, "abc")) << "no state between calls";
}

// Cipher text whose last block, filled from the one before, is that of a text.
TEST(EncryptDecrypt, DecryptsATailAsTheBlockFilledFromTheOneBefore) {
    const EncryptDecrypt cipher = Keyed(kPassword);
    const std::string key = kPassword.substr(0, 32);
    const std::string text = kText.substr(0, kBlock);
    const std::string block = Expected(key, text);
    for (size_t tail = 0; tail < kBlock; ++tail) {
        EXPECT_EQ(Decrypted(cipher, block + block.substr(0, tail)), text + text.substr(0, tail));
    }
    // Without one before, zeros fill it.
    const std::string zeros(kBlock, '\0');
    EXPECT_EQ(Decrypted(cipher, std::string(5, '\0')), Decrypted(cipher, zeros).substr(0, 5));
}

TEST(EncryptDecrypt, WritesTheAskedLengthOnly) {
    const EncryptDecrypt cipher = Keyed(kPassword);
    const std::string whole = Encrypted(cipher, kText.substr(0, 2 * kBlock));
    for (const int32_t length : {INT32_MIN, -1, 0, 16, 32}) {
        std::string out(kText.size(), '#');
        cipher.Encrypt(kText, Data(out), length);
        const size_t written = static_cast<size_t>(std::max(length, 0));
        EXPECT_EQ(out, whole.substr(0, written) + std::string(kText.size() - written, '#'));
        cipher.Decrypt(out, Data(out), length);
        EXPECT_EQ(out, kText.substr(0, written) + std::string(kText.size() - written, '#'));
    }
}

TEST(EncryptDecrypt, ReadsNothingBehindTheText) {
    const EncryptDecrypt cipher = Keyed(kPassword);
    std::string out(64, '#');
    cipher.Encrypt(kText.substr(0, kBlock), Data(out), 64);
    EXPECT_EQ(out, Encrypted(cipher, kText.substr(0, kBlock)) + std::string(48, '#'));
}

TEST(EncryptDecrypt, HoldsBothSchedulesBeforeBothRoundCounts) {
    const EncryptDecrypt cipher = Keyed(kPassword);
    struct {
        unsigned long encrypt[kRijndaelScheduleWords];
        unsigned long decrypt[kRijndaelScheduleWords];
        int32_t encryptRounds;
        int32_t decryptRounds;
    } expected;
    expected.encryptRounds = rijndaelSetupEncrypt(expected.encrypt, Data(kPassword), 256);
    expected.decryptRounds = rijndaelSetupDecrypt(expected.decrypt, Data(kPassword), 256);
    static_assert(std::is_standard_layout_v<EncryptDecrypt>);
    ASSERT_EQ(sizeof(cipher), sizeof(expected));
    EXPECT_EQ(std::memcmp(&cipher, &expected, sizeof(expected)), 0);
}
