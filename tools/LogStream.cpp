#include "tools/LogStream.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "crypto/DecryptionEngine.h"
#include "tools/LogParser.h"

namespace {

constexpr size_t kPiece = size_t{64} * 1024;

std::unique_ptr<DecryptionEngine> EngineFor(const std::string& password) {
    return std::make_unique<DecryptionEngine>(
        reinterpret_cast<const uint8_t*>(password.data()),
        static_cast<uint32_t>(std::min(password.size(), AesEngine::kKeyBytes)));
}

// Without the end that is no whole block.
std::string Deciphered(DecryptionEngine& engine, std::string text) {
    text.resize(text.size() - text.size() % kRijndaelBlockBytes);
    engine.Decrypt(text);
    return text;
}

}  // namespace

LogStream::LogStream() = default;
LogStream::~LogStream() = default;

std::string LogStream::Open(const std::string& path) {
    struct stat found = {};
    file.reset(fopen(path.c_str(), "rb"));
    if (file == nullptr || fstat(fileno(file.get()), &found) != 0) {
        return strerror(errno);
    }
    if (S_ISDIR(found.st_mode)) {
        return strerror(EISDIR);
    }
    setvbuf(file.get(), nullptr, _IONBF, 0);
    first.resize(kPiece);
    first.resize(fread(first.data(), 1, kPiece, file.get()));
    return HasFailed() ? strerror(errno) : "";
}

bool LogStream::HoldsHeader(std::string_view text) {
    size_t header = 0;
    const size_t at = FindLogHeader(text, 0, &header);
    damaged = at == std::string_view::npos ? 0 : at;
    return at != std::string_view::npos;
}

bool LogStream::IsPlain() {
    return HoldsHeader(first);
}

bool LogStream::IsEncipheredUnder(const std::string& password) {
    std::unique_ptr<DecryptionEngine> candidate = EngineFor(password);
    if (!HoldsHeader(Deciphered(*candidate, first))) {
        return false;
    }
    engine = std::move(candidate);
    return true;
}

std::string_view LogStream::Next() {
    buffer.erase(0, buffer.size() - rest);
    if (isFirst) {
        buffer = std::move(first);
        isFirst = false;
    } else {
        buffer.resize(rest + kPiece);
        clearerr(file.get());
        buffer.resize(rest + fread(buffer.data() + rest, 1, kPiece, file.get()));
    }
    rest = IsPadded() ? buffer.size() % kRijndaelBlockBytes : 0;
    const size_t whole = buffer.size() - rest;
    if (IsPadded()) {
        uint8_t* bytes = reinterpret_cast<uint8_t*>(buffer.data());
        engine->Decrypt(bytes, bytes, static_cast<uint32_t>(whole));
    }
    return std::string_view(buffer).substr(0, whole);
}

bool LogStream::HasFailed() const {
    return ferror(file.get()) != 0;
}
