#pragma once

#include <cstddef>
#include <string>

// The bytes of whole files, read and written as Foundation does it. Every function answers 0, or
// the errno of the system call that failed; nothing is printed and nothing is thrown.

/// Reads the file at `path` to its end into `bytes`. Only regular files are read: a folder is
/// EISDIR, a pipe or a device ENOTSUP, so that nothing waits for a writer. 2 GiB and more is EFBIG.
int ReadFileBytes(const std::string& path, std::string& bytes);

/// Writes a new file beside the path, flushes it to the disk and lets it take the path's place: all
/// or nothing. It takes the mode of the regular file that it replaces, else 0666 less the umask; a
/// symbolic link is replaced itself, by a file with the mode of what it leads to. After a failure
/// everything is as it was.
int WriteAtomically(const std::string& path, const void* bytes, size_t length);

/// Copies everything from one open file to another.
int CopyBytes(int source, int target);
