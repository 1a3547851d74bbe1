#include "crypto/EncryptionEngine.h"

EncryptionEngine::EncryptionEngine(const uint8_t* key, uint32_t keyLength)
    : engine(rijndaelSetupEncrypt, key, keyLength) {}

void EncryptionEngine::Encrypt(const uint8_t* in, uint8_t* out, uint32_t length) {
    engine.Process(rijndaelEncryptBlocks, in, out, length);
}

void EncryptionEngine::Encrypt(std::string& text) {
    uint8_t* const bytes = reinterpret_cast<uint8_t*>(&text[0]);
    engine.Process(rijndaelEncryptBlocks, bytes, bytes, text.size());
}
