#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>

class EncryptionEngine;

/// The process-wide file logger. A message goes to the log file, enciphered when so set up, and in
/// plain text to standard output; both happen only while logging is enabled.
///
/// File format, plain: per message "\nHH:MM:SS - LEVEL : " and the text, with no line break at the
/// end. Enciphered: header and text are each padded with blanks to whole blocks of 16 bytes and
/// enciphered by themselves with AES-256 (FIPS 197) in ECB mode; the file holds nothing but these
/// blocks.
///
/// Everything that writes holds one mutex for the whole message, so messages of different threads
/// never mix. A message reaches the file in one call, so those of several processes that share a
/// file do not mix either; one that is interrupted or cut short goes on. Writing allocates nothing.
/// A message must not be logged from inside another one's formatting.
class CLogger {
  public:
    /// A smaller number is more severe. A message is written when its level is at most the
    /// threshold.
    enum LogLevel : int32_t {
        LevelNone = 0,      ///< as a threshold: logging off; as a message's level: no header
        LevelCritical = 1,  ///< "CRITICAL"
        LevelFailure = 2,   ///< "FAILURE"
        LevelWarning = 3,   ///< "WARNING"
        LevelInfo = 4,      ///< "INFO"
    };

    /// The one logger of the process: built before main from the settings, destroyed at exit.
    static CLogger m_Logger;

    /// Starts disabled, then runs DefaultInitWindows.
    CLogger();

    /// Starts disabled, then runs InitLogger with the same arguments.
    CLogger(const std::string& path, const std::string& name, bool encrypt, const uint8_t* key,
            uint32_t keyLength, LogLevel level);

    /// Closes the file and frees the engine.
    ~CLogger();

    CLogger(const CLogger&) = delete;
    CLogger& operator=(const CLogger&) = delete;

    /// Opens the log file for appending and switches logging on. An earlier file is left open: it
    /// may be the caller's. Nothing is logged.
    /// @param path       full path of the log file; it is made when missing
    /// @param name       accepted and ignored
    /// @param encrypt    whether the file is enciphered
    /// @param key        AES-256 key, used as it is; read only when `encrypt` is set
    /// @param keyLength  length of `key` in bytes; only 32 is accepted
    /// @param level      threshold; LevelNone opens nothing and succeeds
    /// @return false, with the threshold at LevelNone, for an empty path, for a file that cannot be
    ///         opened, and for enciphering without a key of 32 bytes (the file then stays open)
    bool InitLogger(const std::string& path, const std::string& name, bool encrypt,
                    const uint8_t* key, uint32_t keyLength, LogLevel level);

    /// The default set-up on every platform, whatever its name says: takes the log folder from the
    /// environment (it is made even when logging is off), the switch "KSLoggingEnabled" and the
    /// password "KSLoggingPassword" from the settings, and starts a file named after the local time
    /// with threshold LevelInfo. The password's first 32 bytes, followed by zero bytes, are the
    /// key. Nothing is logged.
    /// @return whether logging is on; false also when the file cannot be opened
    bool DefaultInitWindows();

    /// The same as DefaultInitWindows.
    bool DefaultInitMac();

    /// Forgets file and engine without closing or freeing them, and without taking the mutex.
    /// @return always false
    bool SetupEmptyLogger();

    /// Writes one message. Does nothing while logging is off or when `level` is above the
    /// threshold. Write errors are ignored.
    /// @param level   1 to 4 write a header before the text; any other level that passes the
    ///                threshold writes the text alone, and standard output then shows what the
    ///                message before left in the buffer
    /// @param format  printf format; the text is cut to 10,239 bytes
    /// @param args    the format's arguments
    void LogPrint(LogLevel level, const char* format, va_list args)
        __attribute__((format(printf, 3, 0)));

    /// Writes one message to m_Logger: the entry for code that has byte strings. See LogPrint.
    static void WriteLog(LogLevel level, const char* format, ...)
        __attribute__((format(printf, 2, 3)));

    /// Whether m_Logger was ever set up successfully. Reads without the mutex.
    static bool IsEnabled();

    /// Whether m_Logger was last asked to encipher its file. Reads without the mutex.
    static bool IsEncryptionEnable();

  private:
    struct Closer {
        void operator()(FILE* stream) const { fclose(stream); }
    };

    static constexpr size_t kLongestHeader = 32;  // enciphered

    void AddHeader(LogLevel level);
    void AddBuffer(int formattedLength);
    void WriteToFile();

    std::mutex mutex;
    std::string path;
    std::unique_ptr<FILE, Closer> file;
    bool enabled = false;
    bool initialised = false;  // set together with enabled; nothing reads it
    bool encrypted = false;
    LogLevel level = LevelNone;
    std::string name;  // stays empty: the name argument of InitLogger is ignored
    std::unique_ptr<EncryptionEngine> engine;
    uint32_t bufferSize = sizeof(buffer);
    char buffer[10240] = {};
    char pending[kLongestHeader + sizeof buffer] = {};  // what the message adds to the file
    size_t pendingLength = 0;
};
