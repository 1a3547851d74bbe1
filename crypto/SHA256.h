#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "crypto/SHA256Blocks.h"

/// The SHA-256 digest of FIPS 180-4 over a stream of bytes. Reading it does not end the stream.
/// Nothing is logged, nothing fails. Where the processor has instructions for SHA-256, they do the
/// work; the results are the same.
class SHA256 {
  public:
    /// Bytes of a digest.
    static constexpr size_t kHashBytes = 32;

    /// Starts a new stream.
    SHA256();

    /// Forgets everything added and starts a new stream.
    void reset();

    /// Appends bytes.
    /// @param data  `numBytes` bytes
    void add(const void* data, size_t numBytes);

    /// Writes the digest of everything added so far: the hash words, first word first, each with
    /// its most significant byte first.
    void getHash(uint8_t buffer[kHashBytes]) const;

    /// The digest of everything added so far as 64 lower-case hexadecimal digits.
    std::string getHash() const;

    /// Starts a new stream of `numBytes` bytes. Returns its digest as getHash does.
    std::string operator()(const void* data, size_t numBytes);

    /// The same over the bytes of `text`.
    std::string operator()(const std::string& text);

  private:
    static constexpr size_t kBlockBytes = sha256::kBlockBytes;

    uint64_t processedBytes;  // in whole blocks
    uint64_t bufferedBytes;
    std::array<uint8_t, kBlockBytes> buffer;
    sha256::Hash hash;
};
