#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "crypto/Rijndael.h"

/// What EncryptionEngine and DecryptionEngine have in common: AES-256 (FIPS 197) block by block
/// with one key, without chaining (ECB) and without padding of its own. Nothing is allocated,
/// nothing is logged, nothing fails. The block buffers are shared scratch space: one engine must
/// not be used by two threads at once.
class AesEngine {
  public:
    using Setup = decltype(rijndaelSetupEncrypt);
    using Cipher = decltype(rijndaelEncryptBlocks);

    static constexpr int32_t kKeyBits = 256;
    static constexpr size_t kKeyBytes = kKeyBits / 8;
    using Key = std::array<uint8_t, kKeyBytes>;
    using Schedule = std::array<unsigned long, kRijndaelScheduleWords>;

    /// The first 32 of `length` bytes; a shorter key is extended with zero bytes.
    /// @param key  `length` bytes; may be null when there are none
    static Key PrepareKey(const uint8_t* key, size_t length);

    /// Keys the engine for good.
    /// @param setup      rijndaelSetupEncrypt or rijndaelSetupDecrypt
    /// @param key        the key's bytes, prepared by PrepareKey
    /// @param keyLength  how many there are, in bytes
    AesEngine(Setup setup, const uint8_t* key, uint32_t keyLength);

    /// Meant: clears the round count and the first 32 bytes of the schedule, no more. Where an
    /// `unsigned long` has 64 bits, these are the first round key.
    ~AesEngine();

    AesEngine(const AesEngine&) = delete;
    AesEngine& operator=(const AesEngine&) = delete;

    /// Processes `length` bytes of `in` into `out`; both may be the same buffer. A tail shorter
    /// than a block is processed at the start of a block whose other bytes are those of the
    /// engine's earlier tails (zeros at first), and the result is cut to its length: such a tail
    /// cannot be brought back.
    /// @param cipher  rijndaelEncryptBlocks or rijndaelDecryptBlocks, as the set-up was
    /// @param out     room for `length` bytes
    void Process(Cipher cipher, const uint8_t* in, uint8_t* out, size_t length);

  private:
    using Block = std::array<uint8_t, kRijndaelBlockBytes>;

    int32_t rounds;
    Schedule schedule;
    Block inputBlock;
    Block outputBlock;
};
