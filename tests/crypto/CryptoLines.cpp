// crypto_lines OPERATION: runs one operation of the crypto room on each line of standard input, so
// that other programs can be asked for the same. A line holds the operation's arguments and the
// answer its result, both in hexadecimal, "-" for no bytes at all. Where the operation throws a
// range error, the answer is "! " and the error's text.
#include <cstring>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "crypto/DecryptionEngine.h"
#include "crypto/EncryptDecrypt.h"
#include "crypto/EncryptionEngine.h"
#include "crypto/SHA256.h"
#include "crypto/StringUtils.h"
#include "tests/crypto/ResponseFile.h"

namespace {

using Arguments = std::vector<std::string>;
using Operation = std::function<std::string(const Arguments&)>;

uint32_t Length(const std::string& bytes) {
    return static_cast<uint32_t>(bytes.size());
}

std::string Encrypt(const Arguments& keyAndText) {
    std::string text = keyAndText.at(1);
    EncryptionEngine(Data(keyAndText[0]), Length(keyAndText[0])).Encrypt(text);
    return text;
}

std::string Decrypt(const Arguments& keyAndText) {
    std::string text = keyAndText.at(1);
    DecryptionEngine(Data(keyAndText[0]), Length(keyAndText[0])).Decrypt(text);
    return text;
}

/// The block enciphered a thousand times over.
std::string EncryptChain(const Arguments& keyAndBlock) {
    std::string block = keyAndBlock.at(1);
    EncryptionEngine engine(Data(keyAndBlock[0]), Length(keyAndBlock[0]));
    for (int i = 0; i < 1000; ++i) {
        engine.Encrypt(block);
    }
    return block;
}

/// The block deciphered a thousand times over.
std::string DecryptChain(const Arguments& keyAndBlock) {
    std::string block = keyAndBlock.at(1);
    DecryptionEngine engine(Data(keyAndBlock[0]), Length(keyAndBlock[0]));
    for (int i = 0; i < 1000; ++i) {
        engine.Decrypt(block);
    }
    return block;
}

std::string PasswordEncrypt(const Arguments& passwordAndText) {
    EncryptDecrypt cipher;
    cipher.InitEncryption(passwordAndText.at(0));
    std::string out(passwordAndText.at(1).size(), '\0');
    cipher.Encrypt(passwordAndText[1], Data(out), static_cast<int32_t>(out.size()));
    return out;
}

std::string PasswordDecrypt(const Arguments& passwordAndText) {
    EncryptDecrypt cipher;
    cipher.InitEncryption(passwordAndText.at(0));
    std::string out(passwordAndText.at(1).size(), '\0');
    cipher.Decrypt(passwordAndText[1], Data(out), static_cast<int32_t>(out.size()));
    return out;
}

// UTF-16 travels as little-endian bytes, which is how it stands in memory.

std::u16string Units(const std::string& bytes) {
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(&units[0], bytes.data(), 2 * units.size());
    return units;
}

template <typename String>
std::string Bytes(const String& text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(text[0]));
}

std::string Utf8ToUtf16(const Arguments& text) {
    return Bytes(StringUtils::ConvertU8StringtoU16String(text.at(0)));
}

std::string Utf16ToUtf8(const Arguments& text) {
    return StringUtils::ConvertU16StringtoU8String(Units(text.at(0)));
}

std::string Utf16ToUtf32(const Arguments& text) {
    return Bytes(StringUtils::ConvertU16StringToWString(Units(text.at(0))));
}

const std::map<std::string, Operation> kOperations = {
    {"encrypt", Encrypt},
    {"decrypt", Decrypt},
    {"encrypt-chain", EncryptChain},
    {"decrypt-chain", DecryptChain},
    {"password-encrypt", PasswordEncrypt},
    {"password-decrypt", PasswordDecrypt},
    {"sha256", [](const Arguments& data) { return SHA256()(data.at(0)); }},
    {"base64-encode", [](const Arguments& data) { return StringUtils::Base64Encode(data.at(0)); }},
    {"base64-decode", [](const Arguments& data) { return StringUtils::Base64Decode(data.at(0)); }},
    {"utf8-to-utf16", Utf8ToUtf16},
    {"utf16-to-utf8", Utf16ToUtf8},
    {"utf16-to-utf32", Utf16ToUtf32},
};

}  // namespace

int main(int argc, char** argv) {
    const auto operation = kOperations.find(argc == 2 ? argv[1] : "");
    if (operation == kOperations.end()) {
        std::cerr << "crypto_lines: no such operation\n";
        return 2;
    }
    for (std::string line; std::getline(std::cin, line);) {
        Arguments arguments;
        std::istringstream fields(line);
        for (std::string field; fields >> field;) {
            arguments.push_back(field == "-" ? "" : FromHex(field));
        }
        try {
            const std::string result = operation->second(arguments);
            std::cout << (result.empty() ? "-" : ToHex(result)) << '\n';
        } catch (const std::range_error& error) {
            std::cout << "! " << error.what() << '\n';
        }
    }
}
