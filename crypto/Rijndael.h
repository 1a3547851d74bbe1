#pragma once

#include <cstddef>
#include <cstdint>

/// The AES block cipher as published in FIPS 197, one block at a time. Nothing is allocated,
/// nothing is logged. Bytes become words big-endian: the first byte of a key or block is the most
/// significant byte of its first word.
///
/// A key schedule is an array of `unsigned long`, one 32-bit round-key word an element.

/// Bytes of a block.
constexpr size_t kRijndaelBlockBytes = 16;

/// Elements of a key schedule for the largest key, 256 bits.
constexpr size_t kRijndaelScheduleWords = 60;

/// Expands a key for rijndaelEncrypt.
/// @param rk       receives the schedule: 44, 52 or 60 elements by key size
/// @param key      the key, `keybits` / 8 bytes
/// @param keybits  128, 192 or 256
/// @return the number of rounds, 10, 12 or 14; for any other key size 0, and `rk` is left alone
int32_t rijndaelSetupEncrypt(unsigned long* rk, const uint8_t* key, int32_t keybits);

/// Expands a key for rijndaelDecrypt: the schedule of the equivalent inverse cipher, which is the
/// enciphering one with the round keys in reverse order and the inner ones passed through
/// InvMixColumns. Arguments and result as with rijndaelSetupEncrypt.
int32_t rijndaelSetupDecrypt(unsigned long* rk, const uint8_t* key, int32_t keybits);

/// Enciphers one block; both blocks may be the same.
/// @param rk       a schedule of rijndaelSetupEncrypt
/// @param nrounds  the number of rounds that it returned
void rijndaelEncrypt(const unsigned long* rk, int32_t nrounds,
                     const uint8_t plaintext[kRijndaelBlockBytes],
                     uint8_t ciphertext[kRijndaelBlockBytes]);

/// Deciphers one block; both blocks may be the same.
/// @param rk       a schedule of rijndaelSetupDecrypt
/// @param nrounds  the number of rounds that it returned
void rijndaelDecrypt(const unsigned long* rk, int32_t nrounds,
                     const uint8_t ciphertext[kRijndaelBlockBytes],
                     uint8_t plaintext[kRijndaelBlockBytes]);

/// Enciphers `count` blocks, each by itself. `plaintext` and `ciphertext` may be the same buffer.
/// Two blocks side by side take little longer than one.
void rijndaelEncryptBlocks(const unsigned long* rk, int32_t nrounds, const uint8_t* plaintext,
                           uint8_t* ciphertext, size_t count);

/// Deciphers in the same way.
void rijndaelDecryptBlocks(const unsigned long* rk, int32_t nrounds, const uint8_t* ciphertext,
                           uint8_t* plaintext, size_t count);
