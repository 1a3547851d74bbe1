// AES-256 in ECB mode over 16 kB, and key set-up with one block.
// Ahead of nettle, which gives some of its names another meaning by macros.
#include <tomcrypt.h>

#include <gcrypt.h>
#include <nettle/aes.h>
#include <openssl/evp.h>

#include "bench/Contest.h"
#include "crypto/DecryptionEngine.h"
#include "crypto/EncryptionEngine.h"

namespace {

constexpr size_t kKeyBytes = 32;
constexpr size_t kBlockBytes = 16;
constexpr size_t kTextBytes = 16384;

struct Texts {
    std::string key = RandomBytes(kKeyBytes);
    std::string plain = RandomBytes(kTextBytes);
    std::string enciphered = plain;
    Texts() { EncryptionEngine(Data(key), kKeyBytes).Encrypt(enciphered); }
};

gcry_cipher_hd_t OpenGcrypt() {
    gcry_cipher_hd_t cipher;
    gcry_cipher_open(&cipher, GCRY_CIPHER_AES256, GCRY_CIPHER_MODE_ECB, 0);
    return cipher;
}

gcry_cipher_hd_t OpenGcrypt(const std::string& key) {
    gcry_cipher_hd_t cipher = OpenGcrypt();
    gcry_cipher_setkey(cipher, key.data(), key.size());
    return cipher;
}

EVP_CIPHER_CTX* OpenOpenSsl(const std::string& key, bool encipher) {
    EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
    EVP_CipherInit_ex(context, EVP_aes_256_ecb(), nullptr, Data(key), nullptr, encipher);
    EVP_CIPHER_CTX_set_padding(context, 0);
    return context;
}

void EnterEnciphering(const Texts& texts) {
    const std::string row = "aes-encrypt";
    const std::string& plain = texts.plain;
    const auto enter = [&](const char* who, auto work) {
        Enter(row, who, kTextBytes, texts.enciphered, work);
    };
    auto* engine = new EncryptionEngine(Data(texts.key), kKeyBytes);
    enter("ours", [&plain, engine](std::string& out) {
        engine->Encrypt(Data(plain), Data(out), kTextBytes);
    });
    aes256_ctx nettle;
    aes256_set_encrypt_key(&nettle, Data(texts.key));
    enter("nettle", [&plain, nettle](std::string& out) {
        aes256_encrypt(&nettle, kTextBytes, Data(out), Data(plain));
    });
    symmetric_ECB tomcrypt;
    ecb_start(register_cipher(&aes_desc), Data(texts.key), kKeyBytes, 0, &tomcrypt);
    enter("libtomcrypt", [&plain, tomcrypt](std::string& out) mutable {
        ecb_encrypt(Data(plain), Data(out), kTextBytes, &tomcrypt);
    });
    gcry_cipher_hd_t gcrypt = OpenGcrypt(texts.key);
    enter("libgcrypt", [&plain, gcrypt](std::string& out) {
        gcry_cipher_encrypt(gcrypt, Data(out), kTextBytes, Data(plain), kTextBytes);
    });
    EVP_CIPHER_CTX* openssl = OpenOpenSsl(texts.key, true);
    enter("OpenSSL", [&plain, openssl](std::string& out) {
        int length;
        EVP_EncryptUpdate(openssl, Data(out), &length, Data(plain), kTextBytes);
    });
}

void EnterDeciphering(const Texts& texts) {
    const std::string row = "aes-decrypt";
    const std::string& enciphered = texts.enciphered;
    const auto enter = [&](const char* who, auto work) {
        Enter(row, who, kTextBytes, texts.plain, work);
    };
    auto* engine = new DecryptionEngine(Data(texts.key), kKeyBytes);
    enter("ours", [&enciphered, engine](std::string& out) {
        engine->Decrypt(Data(enciphered), Data(out), kTextBytes);
    });
    aes256_ctx nettle;
    aes256_set_decrypt_key(&nettle, Data(texts.key));
    enter("nettle", [&enciphered, nettle](std::string& out) {
        aes256_decrypt(&nettle, kTextBytes, Data(out), Data(enciphered));
    });
    symmetric_ECB tomcrypt;
    ecb_start(register_cipher(&aes_desc), Data(texts.key), kKeyBytes, 0, &tomcrypt);
    enter("libtomcrypt", [&enciphered, tomcrypt](std::string& out) mutable {
        ecb_decrypt(Data(enciphered), Data(out), kTextBytes, &tomcrypt);
    });
    gcry_cipher_hd_t gcrypt = OpenGcrypt(texts.key);
    enter("libgcrypt", [&enciphered, gcrypt](std::string& out) {
        gcry_cipher_decrypt(gcrypt, Data(out), kTextBytes, Data(enciphered), kTextBytes);
    });
    EVP_CIPHER_CTX* openssl = OpenOpenSsl(texts.key, false);
    enter("OpenSSL", [&enciphered, openssl](std::string& out) {
        int length;
        EVP_DecryptUpdate(openssl, Data(out), &length, Data(enciphered), kTextBytes);
    });
}

/// The contexts of the peers are made once: only keying them and one block count.
void EnterKeySetup(const Texts& texts) {
    const std::string row = "aes-key-setup";
    const std::string& key = texts.key;
    const std::string& plain = texts.plain;
    const auto enter = [&](const char* who, auto work) {
        Enter(row, who, 0, texts.enciphered.substr(0, kBlockBytes), work);
    };
    enter("ours", [&key, &plain](std::string& out) {
        EncryptionEngine engine(Data(key), kKeyBytes);
        engine.Encrypt(Data(plain), Data(out), kBlockBytes);
    });
    enter("nettle", [&key, &plain](std::string& out) {
        aes256_ctx context;
        aes256_set_encrypt_key(&context, Data(key));
        aes256_encrypt(&context, kBlockBytes, Data(out), Data(plain));
    });
    enter("libtomcrypt", [&key, &plain](std::string& out) {
        symmetric_key schedule;
        rijndael_enc_setup(Data(key), kKeyBytes, 0, &schedule);
        rijndael_enc_ecb_encrypt(Data(plain), Data(out), &schedule);
    });
    gcry_cipher_hd_t gcrypt = OpenGcrypt();
    enter("libgcrypt", [&key, &plain, gcrypt](std::string& out) {
        gcry_cipher_setkey(gcrypt, key.data(), kKeyBytes);
        gcry_cipher_encrypt(gcrypt, Data(out), kBlockBytes, Data(plain), kBlockBytes);
    });
    EVP_CIPHER_CTX* openssl = OpenOpenSsl(key, true);
    enter("OpenSSL", [&key, &plain, openssl](std::string& out) {
        int length;
        EVP_EncryptInit_ex(openssl, nullptr, nullptr, Data(key), nullptr);
        EVP_EncryptUpdate(openssl, Data(out), &length, Data(plain), kBlockBytes);
    });
}

}  // namespace

void EnterCiphers() {
    static const Texts texts;
    EnterEnciphering(texts);
    EnterDeciphering(texts);
    EnterKeySetup(texts);
}
