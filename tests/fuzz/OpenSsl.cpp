#include "tests/fuzz/OpenSsl.h"

#include <openssl/evp.h>

#include <memory>

#include "tests/fuzz/Require.h"

namespace {

// OpenSSL counts in int and takes unsigned bytes.
const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
unsigned char* Room(std::string& text) {
    return reinterpret_cast<unsigned char*>(&text[0]);
}
int Length(const std::string& text) {
    return static_cast<int>(text.size());
}

std::string Run(const std::string& key, const std::string& blocks, int encipher) {
    const EVP_CIPHER* cipher = key.size() == 16   ? EVP_aes_128_ecb()
                               : key.size() == 24 ? EVP_aes_192_ecb()
                                                  : EVP_aes_256_ecb();
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
        EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    std::string result(blocks.size() + EVP_MAX_BLOCK_LENGTH, '\0');
    int length = 0;
    REQUIRE(EVP_CipherInit_ex(context.get(), cipher, nullptr, Bytes(key), nullptr, encipher) == 1);
    REQUIRE(EVP_CIPHER_CTX_set_padding(context.get(), 0) == 1);
    REQUIRE(EVP_CipherUpdate(context.get(), Room(result), &length, Bytes(blocks), Length(blocks)) ==
            1);
    REQUIRE(length == Length(blocks));
    result.resize(blocks.size());
    return result;
}

}  // namespace

std::string openssl::Encipher(const std::string& key, const std::string& blocks) {
    return Run(key, blocks, 1);
}

std::string openssl::Decipher(const std::string& key, const std::string& blocks) {
    return Run(key, blocks, 0);
}

std::string openssl::Sha256(const std::string& bytes) {
    std::string digest(EVP_MAX_MD_SIZE, '\0');
    unsigned length = 0;
    REQUIRE(EVP_Digest(bytes.data(), bytes.size(), Room(digest), &length, EVP_sha256(), nullptr) ==
            1);
    digest.resize(length);
    return digest;
}

std::string openssl::Base64Encode(const std::string& bytes) {
    std::string text(4 * ((bytes.size() + 2) / 3) + 1, '\0');  // it ends in a NUL
    text.resize(static_cast<size_t>(EVP_EncodeBlock(Room(text), Bytes(bytes), Length(bytes))));
    return text;
}

std::string openssl::Base64Decode(const std::string& text) {
    std::string bytes(3 * (text.size() / 4), '\0');
    REQUIRE(EVP_DecodeBlock(Room(bytes), Bytes(text), Length(text)) ==
            static_cast<int>(bytes.size()));
    return bytes;
}
