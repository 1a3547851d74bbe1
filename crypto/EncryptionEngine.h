#pragma once

#include <cstdint>
#include <string>

#include "crypto/AesEngine.h"

/// Enciphers with AES-256 (FIPS 197), block by block without chaining (ECB), without padding. One
/// engine must not be used by two threads at once. Nothing is logged, nothing fails. What a
/// destroyed engine clears stands with AesEngine.
class EncryptionEngine {
  public:
    /// @param key        the first 32 bytes are the key; a shorter one is extended with zero bytes
    /// @param keyLength  length of `key` in bytes; the cipher is AES-256 whatever it is
    EncryptionEngine(const uint8_t* key, uint32_t keyLength);

    /// Enciphers `length` bytes; `in` and `out` may be the same buffer. A tail shorter than a
    /// block is cut to its own length after enciphering, so it cannot be deciphered (see
    /// AesEngine::Process).
    void Encrypt(const uint8_t* in, uint8_t* out, uint32_t length);

    /// Enciphers the string's bytes in place, over its whole length.
    void Encrypt(std::string& text);

  private:
    AesEngine engine;
};
