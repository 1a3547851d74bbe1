// The ciphers in all their forms, against OpenSSL, and back.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <vector>

#include "crypto/DecryptionEngine.h"
#include "crypto/EncryptDecrypt.h"
#include "crypto/EncryptionEngine.h"
#include "crypto/Rijndael.h"
#include "tests/fuzz/OpenSsl.h"
#include "tests/fuzz/Require.h"

namespace {

constexpr std::size_t kLongestKey = 40;

const std::uint8_t* Bytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}
std::uint8_t* Room(std::string& text) {
    return reinterpret_cast<std::uint8_t*>(&text[0]);
}

std::string WholeBlocks(const std::string& bytes) {
    return bytes.substr(0, bytes.size() - bytes.size() % kRijndaelBlockBytes);
}

// Every key size, block by block and all blocks at once.
void CheckBlocks(const std::string& material, const std::string& blocks) {
    for (const std::size_t size : {16u, 24u, 32u}) {
        std::string key = material;
        key.resize(size, '\0');
        unsigned long schedule[kRijndaelScheduleWords];
        const std::size_t count = blocks.size() / kRijndaelBlockBytes;
        std::string result(blocks.size(), '\0');

        int rounds = rijndaelSetupEncrypt(schedule, Bytes(key), static_cast<int>(8 * size));
        rijndaelEncryptBlocks(schedule, rounds, Bytes(blocks), Room(result), count);
        REQUIRE(result == openssl::Encipher(key, blocks));

        rounds = rijndaelSetupDecrypt(schedule, Bytes(key), static_cast<int>(8 * size));
        rijndaelDecryptBlocks(schedule, rounds, Bytes(blocks), Room(result), count);
        REQUIRE(result == openssl::Decipher(key, blocks));
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = i * kRijndaelBlockBytes;
            rijndaelDecrypt(schedule, rounds, Bytes(blocks) + at, Room(result) + at);
        }
        REQUIRE(result == openssl::Decipher(key, blocks));
    }
}

// A tail is enciphered at the start of a block whose other bytes are `behind`, and cut.
std::string Enciphered(const std::string& key, const std::string& text, std::string behind) {
    const std::string blocks = WholeBlocks(text);
    const std::string tail = text.substr(blocks.size());
    behind.replace(0, tail.size(), tail);
    return openssl::Encipher(key, blocks) + openssl::Encipher(key, behind).substr(0, tail.size());
}

void CheckEngines(const std::string& password, const std::string& text) {
    std::string key = password;
    key.resize(AesEngine::kKeyBytes, '\0');
    const std::string zeros(kRijndaelBlockBytes, '\0');
    const std::uint32_t length = static_cast<std::uint32_t>(password.size());
    const std::string expected = Enciphered(key, text, zeros);

    std::string inPlace = text;
    EncryptionEngine(Bytes(password), length).Encrypt(inPlace);
    REQUIRE(inPlace == expected);

    std::string apart(text.size(), '\0');
    EncryptionEngine(Bytes(password), length)
        .Encrypt(Bytes(text), Room(apart), static_cast<std::uint32_t>(text.size()));
    REQUIRE(apart == expected);

    apart = WholeBlocks(apart);
    DecryptionEngine(Bytes(password), length).Decrypt(apart);
    REQUIRE(apart == WholeBlocks(text));
}

void CheckStrings(const std::string& password, const std::string& text) {
    std::string key = password;
    key.resize(AesEngine::kKeyBytes, '\0');
    const std::string blocks = WholeBlocks(text);
    const std::string before = blocks.empty() ? std::string(kRijndaelBlockBytes, '\0')
                                              : blocks.substr(blocks.size() - kRijndaelBlockBytes);
    EncryptDecrypt cipher;
    cipher.InitEncryption(password);
    std::string result(text.size(), '\0');
    cipher.Encrypt(text, Room(result), static_cast<std::int32_t>(text.size()));
    REQUIRE(result == Enciphered(key, text, before));

    std::string back(blocks.size(), '\0');
    cipher.Decrypt(result, Room(back), static_cast<std::int32_t>(back.size()));
    REQUIRE(back == blocks);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::size_t length = input.ConsumeIntegralInRange<std::size_t>(0, kLongestKey);
    const std::string password = input.ConsumeBytesAsString(length);
    const std::string text = input.ConsumeRemainingBytesAsString();
    CheckBlocks(password, WholeBlocks(text));
    CheckEngines(password, text);
    CheckStrings(password, text);
    return 0;
}
