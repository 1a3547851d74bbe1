#include "crypto/DecryptionEngine.h"

DecryptionEngine::DecryptionEngine(const uint8_t* key, uint32_t keyLength)
    : engine(rijndaelSetupDecrypt, key, keyLength) {}

void DecryptionEngine::Decrypt(const uint8_t* in, uint8_t* out, uint32_t length) {
    engine.Process(rijndaelDecryptBlocks, in, out, length);
}

void DecryptionEngine::Decrypt(std::string& text) {
    uint8_t* const bytes = reinterpret_cast<uint8_t*>(&text[0]);
    engine.Process(rijndaelDecryptBlocks, bytes, bytes, text.size());
}
