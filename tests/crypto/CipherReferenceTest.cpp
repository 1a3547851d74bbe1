#include <gtest/gtest.h>

#include <cstdlib>

#include "crypto/DecryptionEngine.h"
#include "crypto/EncryptionEngine.h"
#include "tests/crypto/RandomBytes.h"
#include "tests/crypto/Reference.h"
#include "tests/crypto/ResponseFile.h"

namespace {

constexpr size_t kBlock = kRijndaelBlockBytes;

/// Blocks to compare: KS_BLOCKS, or what unoptimised code does in a second.
size_t Blocks() {
    const char* const asked = std::getenv("KS_BLOCKS");
    return asked != nullptr ? std::stoul(asked) : 20000;
}

}  // namespace

TEST(CipherReference, AgreesWithTheStandardsExample) {
    const std::string key =
        FromHex("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
    const std::string plain = FromHex("00112233445566778899aabbccddeeff");
    const std::string enciphered = FromHex("8ea2b7ca516745bfeafc49904b496089");
    EXPECT_EQ(reference::Encipher(key, plain), enciphered);
    EXPECT_EQ(reference::Decipher(key, enciphered), plain);
}

TEST(CipherReference, EnginesAgreeOnRandomKeysAndTexts) {
    std::mt19937_64 engine(12);
    for (size_t done = 0, count; done < Blocks(); done += count) {
        count = std::min(1 + engine() % 1000, Blocks() - done);
        const std::string key = RandomBytes(engine, 32);
        const std::string text = RandomBytes(engine, count * kBlock);
        const std::string enciphered = reference::Encipher(key, text);

        // At any address, and behind it what must not be touched.
        const size_t in = engine() % kBlock, out = engine() % kBlock;
        const std::string source = std::string(in, '#') + text;
        std::string target(out + text.size() + kBlock, '#');
        const uint32_t length = static_cast<uint32_t>(text.size());
        EncryptionEngine(Data(key), 32).Encrypt(Data(source) + in, Data(target) + out, length);
        ASSERT_TRUE(target == std::string(out, '#') + enciphered + std::string(kBlock, '#'))
            << done << ", " << count << " blocks";
        DecryptionEngine(Data(key), 32).Decrypt(Data(target) + out, Data(target) + out, length);
        ASSERT_TRUE(target == std::string(out, '#') + text + std::string(kBlock, '#'))
            << done << ", " << count << " blocks";
        // Random bytes are as good a ciphertext as any.
        ASSERT_EQ(reference::Decipher(key, text.substr(0, kBlock)), [&] {
            std::string block = text.substr(0, kBlock);
            DecryptionEngine(Data(key), 32).Decrypt(block);
            return block;
        }());
    }
}
