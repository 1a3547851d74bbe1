// Base64 of 48 kB. The peers write into memory that is there; our functions return a new string,
// and making it counts.
#include <glib.h>
#include <openssl/evp.h>

#include "bench/Contest.h"
#include "crypto/StringUtils.h"

namespace {

constexpr size_t kPlainBytes = 49152;  // whole groups: nobody has to pad

void EnterEncoding(const std::string& plain, const std::string& encoded) {
    const auto enter = [&](const char* who, auto work) {
        Enter("base64-encode", who, kPlainBytes, encoded, work);
    };
    enter("ours", [&plain](std::string& out) { out = StringUtils::Base64Encode(plain); });
    enter("OpenSSL", [&plain](std::string& out) {
        out.resize(out.size() + 1);  // its NUL
        EVP_EncodeBlock(Data(out), Data(plain), kPlainBytes);
        out.resize(out.size() - 1);
    });
    enter("glib", [&plain](std::string& out) {
        int state = 0, save = 0;
        const size_t length =
            g_base64_encode_step(Data(plain), kPlainBytes, FALSE, &out[0], &state, &save);
        g_base64_encode_close(FALSE, &out[length], &state, &save);
    });
}

void EnterDecoding(const std::string& plain, const std::string& encoded) {
    const auto enter = [&](const char* who, auto work) {
        Enter("base64-decode", who, kPlainBytes, plain, work);
    };
    enter("ours", [&encoded](std::string& out) { out = StringUtils::Base64Decode(encoded); });
    enter("OpenSSL", [&encoded](std::string& out) {
        EVP_DecodeBlock(Data(out), Data(encoded), static_cast<int>(encoded.size()));
    });
    enter("glib", [&encoded](std::string& out) {
        int state = 0;
        guint save = 0;
        g_base64_decode_step(encoded.data(), encoded.size(), Data(out), &state, &save);
    });
}

}  // namespace

void EnterBase64() {
    static const std::string plain = RandomBytes(kPlainBytes);
    static const std::string encoded = StringUtils::Base64Encode(plain);
    EnterEncoding(plain, encoded);
    EnterDecoding(plain, encoded);
}
