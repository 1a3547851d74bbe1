#include "linux/corrections/FileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <random>

#include "linux/corrections/Descriptor.h"

namespace {

constexpr size_t kBufferSize = 64 * 1024;
constexpr off_t kLargestFile = INT_MAX;
constexpr int kNameAttempts = 100;

ssize_t ReadSome(int source, void* buffer, size_t length) {
    ssize_t count;
    do {
        count = read(source, buffer, length);
    } while (count < 0 && errno == EINTR);
    return count;
}

std::string FolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

/// Opens a new file beside `path`, so that a rename stays on one disk. Not mkstemp: the kernel is
/// to apply the umask to 0666, which cannot be asked for without changing it.
int OpenBeside(const std::string& path, std::string& temporaryPath) {
    static thread_local std::mt19937 random{std::random_device{}()};
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        std::array<char, 32> name{};
        std::snprintf(name.data(), name.size(), "/.dat.%08x", static_cast<unsigned>(random()));
        temporaryPath = FolderOf(path) + name.data();
        const int descriptor =
            open(temporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST) {
            return descriptor;
        }
    }
    return -1;
}

int WriteBeside(int descriptor, const char* path, const void* bytes, size_t length) {
    struct stat replaced;
    if (lstat(path, &replaced) == 0 && S_ISREG(replaced.st_mode) &&
        fchmod(descriptor, replaced.st_mode & 07777) != 0) {
        return errno;
    }
    return WriteFully(descriptor, bytes, length);
}

int WriteAtomically(const char* path, const void* bytes, size_t length) {
    std::string temporaryPath;
    Descriptor file(OpenBeside(path, temporaryPath));
    if (!file) {
        return errno;
    }
    int error = WriteBeside(file.get(), path, bytes, length);
    if (!file.Close() && error == 0) {
        error = errno;
    }
    if (error == 0 && rename(temporaryPath.c_str(), path) != 0) {
        error = errno;
    }
    if (error != 0) {
        unlink(temporaryPath.c_str());
    }
    return error;
}

int WriteInPlace(const char* path, const void* bytes, size_t length, int extraFlags) {
    Descriptor file(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | extraFlags, 0666));
    if (!file) {
        return errno;
    }
    if (const int error = WriteFully(file.get(), bytes, length)) {
        return error;
    }
    return file.Close() ? 0 : errno;
}

}  // namespace

int ReadFileBytes(const char* path, std::string& bytes) {
    bytes.clear();
    // Without O_NONBLOCK the open itself would wait for a pipe's writer.
    Descriptor file(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat info;
    if (!file || fstat(file.get(), &info) != 0) {
        return errno;
    }
    if (!S_ISREG(info.st_mode)) {
        return S_ISDIR(info.st_mode) ? EISDIR : ENOTSUP;
    }
    if (info.st_size > kLargestFile) {
        return EFBIG;
    }
    // No more than a guess: some files of the system grow while they are read.
    bytes.reserve(static_cast<size_t>(info.st_size));
    std::array<char, kBufferSize> buffer;
    for (;;) {
        const ssize_t count = ReadSome(file.get(), buffer.data(), buffer.size());
        if (count <= 0) {
            return count == 0 ? 0 : errno;
        }
        bytes.append(buffer.data(), static_cast<size_t>(count));
    }
}

int WriteFileBytes(const char* path, const void* bytes, size_t length, WriteMode mode) {
    switch (mode) {
        case WriteMode::Atomic:
            return WriteAtomically(path, bytes, length);
        case WriteMode::InPlaceNew:
            return WriteInPlace(path, bytes, length, O_EXCL);
        case WriteMode::InPlace:
            break;
    }
    return WriteInPlace(path, bytes, length, 0);
}

int CopyBytes(int source, int target, bool& readingFailed) {
    std::array<char, kBufferSize> buffer;
    for (;;) {
        const ssize_t count = ReadSome(source, buffer.data(), buffer.size());
        readingFailed = count < 0;
        if (count <= 0) {
            return count == 0 ? 0 : errno;
        }
        if (const int error = WriteFully(target, buffer.data(), static_cast<size_t>(count))) {
            return error;
        }
    }
}

int WriteFully(int target, const void* bytes, size_t length) {
    const char* next = static_cast<const char*>(bytes);
    while (length > 0) {
        const ssize_t count = write(target, next, length);
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        if (count > 0) {
            next += count;
            length -= static_cast<size_t>(count);
        }
    }
    return 0;
}
