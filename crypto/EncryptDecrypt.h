#pragma once

#include <cstdint>
#include <string>

#include "crypto/AesEngine.h"

/// AES-256 (FIPS 197) for strings, keyed from a password: block by block without chaining (ECB),
/// without padding. Nothing is allocated, nothing is logged, nothing fails. Once keyed, it may be
/// used by several threads at once.
class EncryptDecrypt {
  public:
    /// Must come before Encrypt and Decrypt.
    /// @param password  its first 32 bytes are the key as they are; a shorter one is extended with
    ///                  zero bytes
    void InitEncryption(const std::string& password);

    /// Enciphers the first `length` bytes of `in`, at most all of them, into `out`. The last chunk
    /// may be shorter than a block: its block keeps the bytes of the one before (zeros at first) in
    /// its other places, and the result is cut to the chunk's length, so it cannot be deciphered. A
    /// length of 0 or below writes nothing.
    /// @param out     room for `length` bytes
    /// @param length  in bytes
    void Encrypt(const std::string& in, uint8_t* out, int32_t length) const;

    /// Deciphers in the same way what Encrypt made of whole blocks. Arguments as with Encrypt.
    void Decrypt(const std::string& in, uint8_t* out, int32_t length) const;

  private:
    AesEngine::Schedule encryptSchedule{};
    AesEngine::Schedule decryptSchedule{};
    int32_t encryptRounds = 0;
    int32_t decryptRounds = 0;
};
