#pragma once

#include <string>

/// What OpenSSL makes of the same bytes, for comparison.
namespace openssl {

/// AES in ECB mode, without padding.
/// @param key     16, 24 or 32 bytes
/// @param blocks  whole blocks
std::string Encipher(const std::string& key, const std::string& blocks);
std::string Decipher(const std::string& key, const std::string& blocks);

std::string Sha256(const std::string& bytes);

std::string Base64Encode(const std::string& bytes);

/// @param text  whole groups of the alphabet, without "="
std::string Base64Decode(const std::string& text);

}  // namespace openssl
