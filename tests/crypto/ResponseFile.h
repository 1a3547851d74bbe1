#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// One test case of a NIST response file: its "NAME = value" lines.
using ResponseRecord = std::map<std::string, std::string>;

/// The test cases of tests/crypto/vectors/`name`, which a blank line parts. Headings ("[ENCRYPT]")
/// and comments are left out. Throws when there is no such file.
std::vector<ResponseRecord> ReadResponseFile(const std::string& name);

/// The bytes that hexadecimal digits stand for. Throws for anything else.
std::string FromHex(const std::string& digits);

/// Bytes as lower-case hexadecimal digits.
std::string ToHex(const std::string& bytes);

/// The bytes of a string as the ciphers take them.
inline const uint8_t* Data(const std::string& bytes) {
    return reinterpret_cast<const uint8_t*>(bytes.data());
}
inline uint8_t* Data(std::string& bytes) {
    return reinterpret_cast<uint8_t*>(&bytes[0]);
}
