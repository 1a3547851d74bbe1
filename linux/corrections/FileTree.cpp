#include "linux/corrections/FileTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>

#include "linux/corrections/Descriptor.h"
#include "linux/corrections/FileBytes.h"

namespace fs = std::filesystem;

namespace {

constexpr mode_t kCopiedModeBits = 01777;

bool LiesInside(const std::string& target, const std::string& source) {
    std::error_code failure;
    const fs::path outer = fs::canonical(source, failure);
    const fs::path inner = fs::weakly_canonical(target, failure);
    return !failure &&
           std::search(inner.begin(), inner.end(), outer.begin(), outer.end()) == inner.begin();
}

// A correct copy stays, whatever the disk says to these.
void CopyModeAndTimes(int descriptor, const struct stat& info) {
    const std::array<timespec, 2> times{info.st_atim, info.st_mtim};
    (void)!fchmod(descriptor, info.st_mode & kCopiedModeBits);
    (void)!futimens(descriptor, times.data());
}

int CopyFile(const std::string& source, const struct stat& info, const std::string& target) {
    const Descriptor from(open(source.c_str(), O_RDONLY | O_CLOEXEC));
    if (!from) {
        return errno;
    }
    Descriptor to(open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!to) {
        return errno;
    }
    int error = CopyBytes(from.get(), to.get());
    CopyModeAndTimes(to.get(), info);
    if (!to.Close() && error == 0) {
        error = errno;
    }
    if (error != 0) {
        unlink(target.c_str());
    }
    return error;
}

int CopyItem(const std::string& source, const std::string& target);

int CopyFolder(const std::string& source, const struct stat& info, const std::string& target) {
    std::vector<std::string> names;
    if (mkdir(target.c_str(), 0700) != 0) {
        return errno;
    }
    int error = ListFolder(source, names);
    for (auto name = names.begin(); error == 0 && name != names.end(); ++name) {
        error = CopyItem(fs::path(source) / *name, fs::path(target) / *name);
        error = error == ENOENT ? 0 : error;
    }
    if (error == 0) {
        CopyModeAndTimes(Descriptor(open(target.c_str(), O_RDONLY | O_CLOEXEC)).get(), info);
    }
    return error;
}

int CopyItem(const std::string& source, const std::string& target) {
    struct stat info;
    std::error_code failure;
    if (lstat(source.c_str(), &info) != 0) {
        return errno;
    }
    switch (info.st_mode & S_IFMT) {
        case S_IFREG:
            return CopyFile(source, info, target);
        case S_IFLNK:
            fs::copy_symlink(source, target, failure);
            return failure.value();
        case S_IFDIR:
            return CopyFolder(source, info, target);
        default:
            return ENOTSUP;
    }
}

int RemoveItem(const std::string& path, dev_t disk) {
    struct stat info;
    if (lstat(path.c_str(), &info) != 0) {
        return errno;
    }
    if (!S_ISDIR(info.st_mode)) {
        return unlink(path.c_str()) == 0 ? 0 : errno;
    }
    std::vector<std::string> names;
    if (const int error = info.st_dev == disk ? ListFolder(path, names) : 0) {
        return error;
    }
    for (const std::string& name : names) {
        const int error = RemoveItem(fs::path(path) / name, disk);
        if (error != 0 && error != ENOENT && error != ENOTDIR) {
            return error;
        }
    }
    return rmdir(path.c_str()) == 0 ? 0 : errno;
}

}  // namespace

int CopyTree(const std::string& source, const std::string& target) {
    struct stat info;
    if (lstat(target.c_str(), &info) == 0) {
        return EEXIST;
    }
    const bool isFolder = lstat(source.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    return isFolder && LiesInside(target, source) ? EINVAL : CopyItem(source, target);
}

int RemoveTree(const std::string& path) {
    struct stat info;
    if (lstat(path.c_str(), &info) != 0) {
        return errno;
    }
    const int error = RemoveItem(path, info.st_dev);
    return error == ENOTEMPTY ? EPERM : error;
}

int ListFolder(const std::string& path, std::vector<std::string>& names) {
    std::error_code failure;
    names.clear();
    for (fs::directory_iterator entry(path, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        names.push_back(entry->path().filename());
    }
    std::sort(names.begin(), names.end());
    return failure.value();
}

int ListTree(const std::string& path, std::vector<std::string>& subpaths) {
    std::error_code failure;
    std::vector<fs::path> found;
    for (fs::recursive_directory_iterator entry(path, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        found.push_back(entry->path().lexically_relative(path));
    }
    // Part by part: what lies in a folder comes right behind it.
    std::sort(found.begin(), found.end());
    subpaths.assign(found.begin(), found.end());
    return failure.value();
}

int MakeFolders(const std::string& path, int mode, std::string& failedAt) {
    std::vector<fs::path> made;
    std::error_code failure;
    int error = 0;
    failedAt = path;
    fs::path level;
    for (const fs::path& part : fs::path(path)) {
        level /= part;
        if (mkdir(level.c_str(), 0777) == 0) {
            made.push_back(level);
            // Whatever the umask, its owner must be able to make the next level inside.
            if (mode != kModeByUmask) {
                chmod(level.c_str(), 0700);
            }
            continue;
        }
        error = errno;
        if (fs::is_directory(level, failure)) {
            error = 0;
            continue;
        }
        if (error == EEXIST) {
            failedAt = level;
            error = ENOTDIR;
        }
        break;
    }
    for (auto folder = made.rbegin(); mode != kModeByUmask && folder != made.rend(); ++folder) {
        chmod(folder->c_str(), static_cast<mode_t>(mode));
    }
    return error;
}
