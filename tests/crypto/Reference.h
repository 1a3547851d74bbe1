#pragma once

#include <cstddef>
#include <string>

/// Plain forms of the crypto room's operations, step by step as the standards write them, which
/// share nothing with the fast ones: what those are compared with on random input.
namespace reference {

/// AES (FIPS-197) of whole blocks, byte by byte.
/// @param key  16, 24 or 32 bytes
std::string Encipher(const std::string& key, std::string blocks);
std::string Decipher(const std::string& key, std::string blocks);

/// SHA-256 (FIPS 180-4) as bytes.
std::string Digest(const char* data, size_t length);

/// Base64 (RFC 4648), character by character. Decoding ends at the first "=" and takes a foreign
/// character as the value 255.
std::string Base64Encode(const char* data, size_t length);
std::string Base64Decode(const char* data, size_t length);

}  // namespace reference
