#include "crypto/EncryptDecrypt.h"

#include <algorithm>

namespace {

void ProcessChunks(decltype(rijndaelEncrypt) cipher, const AesEngine::Schedule& schedule,
                   int32_t rounds, const std::string& in, uint8_t* out, int32_t length) {
    uint8_t inputBlock[kRijndaelBlockBytes] = {};
    uint8_t outputBlock[kRijndaelBlockBytes];
    size_t remaining = std::min(static_cast<size_t>(std::max(length, 0)), in.size());
    for (const char* from = in.data(); remaining > 0;) {
        const size_t chunk = std::min(remaining, kRijndaelBlockBytes);
        std::copy_n(from, chunk, inputBlock);
        cipher(schedule.data(), rounds, inputBlock, outputBlock);
        out = std::copy_n(outputBlock, chunk, out);
        from += chunk;
        remaining -= chunk;
    }
}

}  // namespace

void EncryptDecrypt::InitEncryption(const std::string& password) {
    const AesEngine::Key key =
        AesEngine::PrepareKey(reinterpret_cast<const uint8_t*>(password.data()), password.size());
    encryptRounds = rijndaelSetupEncrypt(encryptSchedule.data(), key.data(), AesEngine::kKeyBits);
    decryptRounds = rijndaelSetupDecrypt(decryptSchedule.data(), key.data(), AesEngine::kKeyBits);
}

void EncryptDecrypt::Encrypt(const std::string& in, uint8_t* out, int32_t length) const {
    ProcessChunks(rijndaelEncrypt, encryptSchedule, encryptRounds, in, out, length);
}

void EncryptDecrypt::Decrypt(const std::string& in, uint8_t* out, int32_t length) const {
    ProcessChunks(rijndaelDecrypt, decryptSchedule, decryptRounds, in, out, length);
}
