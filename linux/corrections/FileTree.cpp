#include "linux/corrections/FileTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "linux/corrections/Descriptor.h"
#include "linux/corrections/FileBytes.h"

namespace fs = std::filesystem;

namespace {

constexpr mode_t kCopiedModeBits = 01777;

int Answer(int result) {
    return result == 0 ? 0 : errno;
}

std::string Join(const std::string& folder, const std::string& name) {
    return folder + '/' + name;
}

bool IsFolder(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

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

int CopyLink(const std::string& source, const std::string& target) {
    std::error_code failure;
    fs::copy_symlink(source, target, failure);
    return failure.value();
}

int CopyItem(const std::string& source, const std::string& target);

int CopyFolder(const std::string& source, const struct stat& info, const std::string& target) {
    std::vector<std::string> names;
    if (mkdir(target.c_str(), 0700) != 0) {
        return errno;
    }
    int error = ListFolder(source, names);
    for (auto name = names.begin(); error == 0 && name != names.end(); ++name) {
        error = CopyItem(Join(source, *name), Join(target, *name));
        error = error == ENOENT ? 0 : error;
    }
    if (error == 0) {
        CopyModeAndTimes(Descriptor(open(target.c_str(), O_RDONLY | O_CLOEXEC)).get(), info);
    }
    return error;
}

int CopyItem(const std::string& source, const std::string& target) {
    struct stat info;
    if (lstat(source.c_str(), &info) != 0) {
        return errno;
    }
    switch (info.st_mode & S_IFMT) {
        case S_IFREG:
            return CopyFile(source, info, target);
        case S_IFLNK:
            return CopyLink(source, target);
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
        return Answer(unlink(path.c_str()));
    }
    std::vector<std::string> names;
    if (const int error = info.st_dev == disk ? ListFolder(path, names) : 0) {
        return error;
    }
    for (const std::string& name : names) {
        const int error = RemoveItem(Join(path, name), disk);
        if (error != 0 && error != ENOENT && error != ENOTDIR) {
            return error;
        }
    }
    return Answer(rmdir(path.c_str()));
}

int AddSubpaths(const std::string& folder, const std::string& prefix,
                std::vector<std::string>& subpaths) {
    std::vector<std::string> names;
    int error = ListFolder(folder, names);
    for (auto name = names.begin(); error == 0 && name != names.end(); ++name) {
        subpaths.push_back(prefix + *name);
        const std::string path = Join(folder, *name);
        struct stat info;
        if (lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) {
            error = AddSubpaths(path, prefix + *name + '/', subpaths);
        }
    }
    return error;
}

/// "/a//b/" gives "/a", "/a//b".
std::vector<std::string> Levels(const std::string& path) {
    std::vector<std::string> levels;
    for (size_t end = 0; (end = path.find_first_not_of('/', end)) != std::string::npos;) {
        end = std::min(path.find('/', end), path.size());
        levels.push_back(path.substr(0, end));
    }
    return levels;
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
    const std::unique_ptr<DIR, decltype(&closedir)> folder(opendir(path.c_str()), &closedir);
    if (!folder) {
        return errno;
    }
    names.clear();
    errno = 0;
    while (const dirent* entry = readdir(folder.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
        errno = 0;
    }
    const int error = errno;
    std::sort(names.begin(), names.end());
    return error;
}

int ListTree(const std::string& path, std::vector<std::string>& subpaths) {
    subpaths.clear();
    return AddSubpaths(path, "", subpaths);
}

int MakeFolders(const std::string& path, int mode, std::string& failedAt) {
    std::vector<std::string> made;
    int error = 0;
    failedAt = path;
    for (const std::string& level : Levels(path)) {
        if (mkdir(level.c_str(), 0777) == 0) {
            made.push_back(level);
            // Whatever the umask, its owner must be able to make the next level inside.
            if (mode != kModeByUmask) {
                chmod(level.c_str(), 0700);
            }
            continue;
        }
        error = errno;
        if (IsFolder(level)) {
            error = 0;
            continue;
        }
        if (error == EEXIST) {
            failedAt = level;
            error = ENOTDIR;
        }
        break;
    }
    for (auto level = made.rbegin(); mode != kModeByUmask && level != made.rend(); ++level) {
        chmod(level->c_str(), static_cast<mode_t>(mode));
    }
    return error;
}
