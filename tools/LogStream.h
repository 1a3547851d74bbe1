#pragma once

#include <sys/types.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

class DecryptionEngine;

/// The plain text of a log file, plain or enciphered, piece by piece; 64 kB of it are held.
class LogStream {
  public:
    LogStream();
    ~LogStream();
    LogStream(const LogStream&) = delete;
    LogStream& operator=(const LogStream&) = delete;

    /// @return an empty text, or why the file cannot be read, for people
    std::string Open(const std::string& path);

    /// Whether nothing could be read yet: the file is empty.
    bool IsEmpty() const { return isFirst && first.empty(); }

    /// Whether a message's header stands in the first 64 kB as they are.
    bool IsPlain();

    /// Whether a header stands in them under this password. If so, what follows is deciphered.
    /// @param password  as the logger takes it: its first 32 bytes, a shorter one followed by zeros
    bool IsEncipheredUnder(const std::string& password);

    /// How many bytes stand before the first header: those of a damaged beginning.
    size_t DamagedBytes() const { return damaged; }

    /// The next bytes in plain text, whole cipher blocks of an enciphered log; empty at the end of
    /// the file, as it is now. After an error too: see HasFailed.
    std::string_view Next();

    /// Whether reading ended with an error of the file system.
    bool HasFailed() const;

    /// How many bytes of a block that is not whole stand at the end of an enciphered log.
    size_t CutBytes() const { return IsPadded() ? rest : 0; }

    /// Whether the log is enciphered, so that its messages are padded.
    bool IsPadded() const { return engine != nullptr; }

  private:
    struct Closer {
        void operator()(FILE* stream) const { fclose(stream); }
    };

    bool HoldsHeader(std::string_view text);

    std::unique_ptr<FILE, Closer> file;
    std::unique_ptr<DecryptionEngine> engine;
    std::string first;  // read for finding out what the file is
    bool isFirst = true;
    std::string buffer;
    size_t rest = 0;  // at the start of the buffer: bytes of a block that is not whole
    size_t damaged = 0;
};
