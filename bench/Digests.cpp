// SHA-256 over 16 kB and over one block's length.
// Ahead of nettle, which gives some of its names another meaning by macros.
#include <tomcrypt.h>

#include <gcrypt.h>
#include <nettle/sha2.h>
#include <openssl/evp.h>

#include "bench/Contest.h"
#include "crypto/SHA256.h"

namespace {

std::string OurDigest(const std::string& text) {
    std::string digest(SHA256::kHashBytes, '\0');
    SHA256 sha256;
    sha256.add(text.data(), text.size());
    sha256.getHash(Data(digest));
    return digest;
}

/// @param bytes  as with Enter
void EnterDigest(const std::string& row, const std::string& text, size_t bytes) {
    const auto enter = [&](const char* who, auto work) {
        Enter(row, who, bytes, OurDigest(text), work);
    };
    enter("ours", [&text](std::string& out) {
        SHA256 sha256;
        sha256.add(text.data(), text.size());
        sha256.getHash(Data(out));
    });
    enter("nettle", [&text](std::string& out) {
        sha256_ctx context;
        sha256_init(&context);
        sha256_update(&context, text.size(), Data(text));
        sha256_digest(&context, out.size(), Data(out));
    });
    enter("libtomcrypt", [&text](std::string& out) {
        hash_state state;
        sha256_desc.init(&state);
        sha256_desc.process(&state, Data(text), text.size());
        sha256_desc.done(&state, Data(out));
    });
    enter("libgcrypt", [&text](std::string& out) {
        gcry_md_hash_buffer(GCRY_MD_SHA256, Data(out), text.data(), text.size());
    });
    // Looked up once, as OpenSSL's manual advises.
    EVP_MD* method = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    enter("OpenSSL", [&text, method, context](std::string& out) {
        EVP_DigestInit_ex(context, method, nullptr);
        EVP_DigestUpdate(context, text.data(), text.size());
        EVP_DigestFinal_ex(context, Data(out), nullptr);
    });
}

}  // namespace

void EnterDigests() {
    static const std::string page = RandomBytes(16384);
    static const std::string line = RandomBytes(64);
    EnterDigest("sha256", page, page.size());
    EnterDigest("sha256-short", line, 0);
}
