#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "crypto/DecryptionEngine.h"
#include "crypto/EncryptDecrypt.h"
#include "crypto/EncryptionEngine.h"
#include "crypto/SHA256.h"

namespace {

int allocations = 0;

}  // namespace

// Every allocation of C++ passes here; the plain form is what the others call.
void* operator new(size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}

TEST(Allocations, AreCounted) {
    const int before = allocations;
    delete new int;
    const std::string text(100, 'x');
    EXPECT_GE(allocations, before + 1);
}

TEST(Allocations, AreNotMadeByTheCiphersAndTheDigest) {
    std::string text(1000, 'x');
    const std::string key(32, 'k');
    uint8_t* const bytes = reinterpret_cast<uint8_t*>(&text[0]);
    const uint8_t* const keyBytes = reinterpret_cast<const uint8_t*>(key.data());

    const int before = allocations;
    EncryptionEngine(keyBytes, 32).Encrypt(bytes, bytes, 1000);
    EncryptionEngine(keyBytes, 32).Encrypt(text);
    DecryptionEngine(keyBytes, 32).Decrypt(bytes, bytes, 1000);
    DecryptionEngine(keyBytes, 32).Decrypt(text);
    EncryptDecrypt cipher;
    cipher.InitEncryption(key);
    cipher.Encrypt(text, bytes, 1000);
    cipher.Decrypt(text, bytes, 1000);
    SHA256 sha256;
    sha256.add(bytes, 1000);
    sha256.getHash(bytes);
    EXPECT_EQ(allocations, before);
}
