#pragma once

#include <cstdint>
#include <string>

#include "crypto/AesEngine.h"

/// Deciphers with AES-256 (FIPS 197) what EncryptionEngine enciphered with the same key, whole
/// blocks only. One engine must not be used by two threads at once. Nothing is logged, nothing
/// fails: a wrong key gives other bytes.
class DecryptionEngine {
  public:
    /// @param key        the first 32 bytes are the key; a shorter one is extended with zero bytes
    /// @param keyLength  length of `key` in bytes; the cipher is AES-256 whatever it is
    DecryptionEngine(const uint8_t* key, uint32_t keyLength);

    /// Deciphers `length` bytes; `in` and `out` may be the same buffer. A tail shorter than a
    /// block is processed, but is not the text that was enciphered (see AesEngine::Process).
    void Decrypt(const uint8_t* in, uint8_t* out, uint32_t length);

    /// Deciphers the string's bytes in place, over its whole length.
    void Decrypt(std::string& text);

  private:
    AesEngine engine;
};
