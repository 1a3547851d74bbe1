#include "logging/CLogger.h"

#include <errno.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "crypto/EncryptionEngine.h"
#include "settings/KSEnvironement.h"

namespace {

constexpr uint32_t kKeyLength = AesEngine::kKeyBytes;
constexpr uint32_t kCipherBlock = kRijndaelBlockBytes;

constexpr const char* kLogFileExtension = ".log";

tm LocalTime() {
    const time_t now = time(nullptr);
    tm local = {};
    localtime_r(&now, &local);
    return local;
}

// Year, month, day, hour, minute and second, none of them padded.
std::string LogFileName() {
    const tm now = LocalTime();
    return std::to_string(now.tm_year + 1900) + "_" + std::to_string(now.tm_mon + 1) + "_" +
           std::to_string(now.tm_mday) + "_" + std::to_string(now.tm_hour) + "_" +
           std::to_string(now.tm_min) + "_" + std::to_string(now.tm_sec) + kLogFileExtension;
}

// The word that a message's header shows, or null for a level that has no header.
const char* HeaderWord(CLogger::LogLevel level) {
    switch (level) {
        case CLogger::LevelCritical:
            return "CRITICAL";
        case CLogger::LevelFailure:
            return "FAILURE";
        case CLogger::LevelWarning:
            return "WARNING";
        case CLogger::LevelInfo:
            return "INFO";
        default:
            return nullptr;
    }
}

// Gives up what the pointer owns without freeing it.
template <typename Pointer>
void Forget(Pointer& pointer) {
    static_cast<void>(pointer.release());
}

}  // namespace

CLogger::CLogger() {
    DefaultInitWindows();
}

CLogger::CLogger(const std::string& logPath, const std::string& logName, bool encrypt,
                 const uint8_t* key, uint32_t keyLength, LogLevel threshold) {
    InitLogger(logPath, logName, encrypt, key, keyLength, threshold);
}

CLogger::~CLogger() = default;

bool CLogger::DefaultInitWindows() {
    const std::string folder = KSEnvironement::LogPath(true);

    // Kept until the process ends once logging is on.
    static KSEnvironement* environment = nullptr;
    environment = new KSEnvironement();
    if (!environment->IsLoggingEnabled()) {
        delete environment;
        environment = nullptr;
        return false;
    }

    // The password's bytes are the key as they are, cut or followed by zero bytes.
    const std::string password = environment->LoggingPassword();
    const AesEngine::Key key =
        AesEngine::PrepareKey(reinterpret_cast<const uint8_t*>(password.data()), password.size());

    return InitLogger(folder + LogFileName(), std::string(), !password.empty(), key.data(),
                      kKeyLength, LevelInfo);
}

bool CLogger::DefaultInitMac() {
    return DefaultInitWindows();
}

bool CLogger::InitLogger(const std::string& logPath, const std::string& /*logName*/, bool encrypt,
                         const uint8_t* key, uint32_t keyLength, LogLevel threshold) {
    level = threshold;
    encrypted = encrypt;
    path = logPath;
    if (level == LevelNone) {
        return true;
    }

    const std::lock_guard<std::mutex> lock(mutex);
    if (path.empty()) {
        level = LevelNone;
        return false;
    }
    Forget(file);  // an earlier stream is left open: it may be the caller's
    file.reset(fopen(path.c_str(), "at"));
    if (file == nullptr) {
        level = LevelNone;
        return false;
    }

    engine.reset();
    if (encrypt) {
        if (key == nullptr || keyLength != kKeyLength) {
            level = LevelNone;
            return false;
        }
        engine = std::make_unique<EncryptionEngine>(key, kKeyLength);
    }

    enabled = true;
    initialised = true;
    return true;
}

bool CLogger::SetupEmptyLogger() {
    Forget(file);
    Forget(engine);
    return false;
}

void CLogger::LogPrint(LogLevel messageLevel, const char* format, va_list args) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (!enabled || level < messageLevel) {
        return;
    }
    AddHeader(messageLevel);

    const int length = vsnprintf(buffer, bufferSize, format, args);
    if (length < 0) {
        buffer[0] = '\0';
    }
    puts(buffer);
    AddBuffer(length);
    WriteToFile();
}

void CLogger::AddHeader(LogLevel messageLevel) {
    int length = 0;
    if (const char* word = HeaderWord(messageLevel)) {
        const tm now = LocalTime();
        length = snprintf(
            buffer, bufferSize, "\n%02u:%02u:%02u - %s : ", static_cast<unsigned>(now.tm_hour),
            static_cast<unsigned>(now.tm_min), static_cast<unsigned>(now.tm_sec), word);
    }
    // Meant: without a header the console shows whatever the buffer last held. It may be cipher
    // text that fills the buffer to its end.
    printf("\n%.*s", static_cast<int>(bufferSize), buffer);
    AddBuffer(length);
}

// Adds what a printf function left in the buffer, enciphered in place where the log is
// enciphered.
void CLogger::AddBuffer(int formattedLength) {
    // No stream, or no engine for a log that must not show plain text: nothing to write to.
    if (formattedLength <= 0 || file == nullptr || (encrypted && engine == nullptr)) {
        return;
    }
    // The formatter reports the length that it would have liked.
    uint32_t length = std::min(static_cast<uint32_t>(formattedLength), bufferSize - 1);
    if (encrypted) {
        while (length % kCipherBlock != 0 && length < bufferSize) {
            buffer[length++] = ' ';
        }
        uint8_t* bytes = reinterpret_cast<uint8_t*>(buffer);
        engine->Encrypt(bytes, bytes, length);
    }
    memcpy(pending + pendingLength, buffer, length);
    pendingLength += length;
}

// Not by fwrite: it would part a message where the stream's own buffer ends, and lose it when the
// call is interrupted.
void CLogger::WriteToFile() {
    const char* next = pending;
    while (pendingLength > 0) {
        const ssize_t count = write(fileno(file.get()), next, pendingLength);
        if (count > 0) {
            next += count;
            pendingLength -= static_cast<size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            pendingLength = 0;
        }
    }
}

void CLogger::WriteLog(LogLevel level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    m_Logger.LogPrint(level, format, args);
    va_end(args);
}

bool CLogger::IsEnabled() {
    return m_Logger.enabled;
}

bool CLogger::IsEncryptionEnable() {
    return m_Logger.encrypted;
}
