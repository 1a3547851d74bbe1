#include "linux/corrections/FileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>

#include "linux/corrections/Descriptor.h"

namespace fs = std::filesystem;

namespace {

constexpr size_t kBufferSize = size_t{64} * 1024;
constexpr off_t kLargestFile = INT_MAX;

/// Writes the whole buffer, however many calls it takes.
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

/// The beginning of the names of temporary files that stand for `path` until they are complete.
std::string TemporaryPrefix(const std::string& path) {
    const fs::path file(path);
    std::array<char, 32> hash{};
    std::snprintf(hash.data(), hash.size(), ".dat.%016zx.",
                  std::hash<std::string>{}(file.filename()));
    return hash.data();
}

/// Removes what a process left that ended while it wrote the same file.
void RemoveLeftovers(const fs::path& folder, const std::string& prefix) {
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const std::string name = entry->path().filename();
        if (name.compare(0, prefix.size(), prefix) != 0) {
            continue;
        }
        const pid_t writer = std::atoi(name.c_str() + prefix.size());
        struct stat info;
        if (writer > 0 && kill(writer, 0) != 0 && errno == ESRCH &&
            lstat(entry->path().c_str(), &info) == 0 && info.st_uid == geteuid()) {
            unlink(entry->path().c_str());
        }
    }
}

/// The mode that a file at `path` must get: the one of the file that it replaces, also by way of a
/// link; else what the umask leaves.
/// @return 0 or an errno
int FindMode(const std::string& path, std::optional<mode_t>& mode) {
    struct stat info;
    if (lstat(path.c_str(), &info) != 0) {
        return errno == ENOENT ? 0 : errno;
    }
    if (S_ISLNK(info.st_mode) && stat(path.c_str(), &info) != 0) {
        return errno == ENOENT || errno == ELOOP ? 0 : errno;
    }
    if (S_ISREG(info.st_mode)) {
        mode = info.st_mode & 07777;
    }
    return 0;
}

/// Opens a new file beside `path`, so that a rename stays on one disk, with no more rights than it
/// shall have in the end. Not mkstemp: the kernel is to apply the umask to 0666, which cannot be
/// asked for without changing it.
int OpenBeside(const std::string& path, std::optional<mode_t> mode, std::string& temporaryPath) {
    static std::atomic<unsigned> counter{0};
    const fs::path folder = fs::path(path).has_parent_path() ? fs::path(path).parent_path() : ".";
    const std::string prefix = TemporaryPrefix(path);
    RemoveLeftovers(folder, prefix);
    temporaryPath = folder / (prefix + std::to_string(getpid()) + '.' + std::to_string(counter++));
    return open(temporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                0666 & mode.value_or(0666));
}

int WriteWhole(Descriptor& file, std::optional<mode_t> mode, const void* bytes, size_t length) {
    if (const int error = WriteFully(file.get(), bytes, length)) {
        return error;
    }
    const bool done = (!mode || fchmod(file.get(), *mode) == 0) && fsync(file.get()) == 0;
    return done && file.Close() ? 0 : errno;
}

}  // namespace

int ReadFileBytes(const std::string& path, std::string& bytes) {
    bytes.clear();
    // Without O_NONBLOCK the open itself would wait for a pipe's writer.
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
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
        const ssize_t count = TEMP_FAILURE_RETRY(read(file.get(), buffer.data(), buffer.size()));
        if (count <= 0) {
            return count == 0 ? 0 : errno;
        }
        bytes.append(buffer.data(), static_cast<size_t>(count));
    }
}

int WriteAtomically(const std::string& path, const void* bytes, size_t length) {
    std::optional<mode_t> mode;
    if (const int error = FindMode(path, mode)) {
        return error;
    }
    std::string temporaryPath;
    Descriptor file(OpenBeside(path, mode, temporaryPath));
    if (!file) {
        return errno;
    }
    int error = WriteWhole(file, mode, bytes, length);
    if (error == 0 && rename(temporaryPath.c_str(), path.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        unlink(temporaryPath.c_str());
    }
    return error;
}

int CopyBytes(int source, int target) {
    std::array<char, kBufferSize> buffer;
    for (;;) {
        const ssize_t count = TEMP_FAILURE_RETRY(read(source, buffer.data(), buffer.size()));
        if (count <= 0) {
            return count == 0 ? 0 : errno;
        }
        if (const int error = WriteFully(target, buffer.data(), static_cast<size_t>(count))) {
            return error;
        }
    }
}
