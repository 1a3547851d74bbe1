#pragma once

#include <cstddef>
#include <string>

// The bytes of whole files, read and written as Foundation does it. Every function answers 0, or
// the errno of the system call that failed; nothing is printed and nothing is thrown.

enum class WriteMode {
    InPlace,     ///< into the file at the path, which is made when missing
    InPlaceNew,  ///< the same, but an existing item is EEXIST
    Atomic,      ///< into a new file beside it, which then takes its place: all or nothing
};

/// Reads the file at `path` to its end into `bytes`. Only regular files are read: a folder is
/// EISDIR, a pipe or a device ENOTSUP, so that nothing waits for a writer. 2 GiB and more is EFBIG.
int ReadFileBytes(const char* path, std::string& bytes);

/// Writes `length` bytes to `path`. A new file gets 0666 less the umask. An atomic write keeps the
/// mode of the regular file that it replaces; a symbolic link is replaced itself. After a failed
/// atomic write everything is as it was.
int WriteFileBytes(const char* path, const void* bytes, size_t length, WriteMode mode);

/// Copies everything from one open file to another.
/// @param readingFailed  set to whether a failure came from the reading side
int CopyBytes(int source, int target, bool& readingFailed);

/// Writes the whole buffer, however many calls it takes.
int WriteFully(int target, const void* bytes, size_t length);
