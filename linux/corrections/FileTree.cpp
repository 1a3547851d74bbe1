#include "linux/corrections/FileTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "linux/corrections/Descriptor.h"
#include "linux/corrections/FileBytes.h"

namespace {

constexpr mode_t kCopiedModeBits = 01777;

TreeFailure ReadingFailed(const std::string& path, int error) {
    return {error, true, path};
}
TreeFailure ChangingFailed(const std::string& path, int error) {
    return {error, false, path};
}

std::string Join(const std::string& folder, const std::string& name) {
    return folder + '/' + name;
}

std::string FolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

/// The path as the kernel knows it, or empty.
std::string RealPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? real.get() : "";
}

bool LiesInside(const std::string& target, const std::string& source) {
    const std::string outer = RealPath(source);
    const std::string inner = RealPath(FolderOf(target));
    return !outer.empty() && (inner + '/').compare(0, outer.size() + 1, outer + '/') == 0;
}

int SetModeAndTimes(int descriptor, const struct stat& info) {
    const std::array<timespec, 2> times{info.st_atim, info.st_mtim};
    const bool done = fchmod(descriptor, info.st_mode & kCopiedModeBits) == 0 &&
                      futimens(descriptor, times.data()) == 0;
    return done ? 0 : errno;
}

TreeFailure CopyItem(const std::string& source, const std::string& target);

TreeFailure CopyFile(const std::string& source, const struct stat& info,
                     const std::string& target) {
    const Descriptor from(open(source.c_str(), O_RDONLY | O_CLOEXEC));
    if (!from) {
        return ReadingFailed(source, errno);
    }
    Descriptor to(open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!to) {
        return ChangingFailed(target, errno);
    }
    bool reading = false;
    int error = CopyBytes(from.get(), to.get(), reading);
    if (error == 0) {
        error = SetModeAndTimes(to.get(), info);
    }
    if (!to.Close() && error == 0) {
        error = errno;
    }
    if (error == 0) {
        return {};
    }
    unlink(target.c_str());
    return reading ? ReadingFailed(source, error) : ChangingFailed(target, error);
}

TreeFailure CopyLink(const std::string& source, const std::string& target) {
    std::array<char, PATH_MAX + 1> destination{};
    if (readlink(source.c_str(), destination.data(), PATH_MAX) < 0) {
        return ReadingFailed(source, errno);
    }
    if (symlink(destination.data(), target.c_str()) != 0) {
        return ChangingFailed(target, errno);
    }
    return {};
}

TreeFailure CopyFolder(const std::string& source, const struct stat& info,
                       const std::string& target) {
    std::vector<std::string> names;
    if (const int error = ListFolder(source, names)) {
        return ReadingFailed(source, error);
    }
    if (mkdir(target.c_str(), 0700) != 0) {
        return ChangingFailed(target, errno);
    }
    for (const std::string& name : names) {
        const TreeFailure failure = CopyItem(Join(source, name), Join(target, name));
        if (failure.happened()) {
            return failure;
        }
    }
    const Descriptor copy(open(target.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const int error = copy ? SetModeAndTimes(copy.get(), info) : errno;
    return error == 0 ? TreeFailure{} : ChangingFailed(target, error);
}

TreeFailure CopyItem(const std::string& source, const std::string& target) {
    struct stat info;
    if (lstat(source.c_str(), &info) != 0) {
        return ReadingFailed(source, errno);
    }
    if (S_ISREG(info.st_mode)) {
        return CopyFile(source, info, target);
    }
    if (S_ISLNK(info.st_mode)) {
        return CopyLink(source, target);
    }
    if (S_ISDIR(info.st_mode)) {
        return CopyFolder(source, info, target);
    }
    return ReadingFailed(source, ENOTSUP);
}

/// What stands at the target keeps an item from being copied or moved there.
TreeFailure CheckTarget(const std::string& source, const std::string& target) {
    struct stat info;
    if (lstat(source.c_str(), &info) != 0) {
        return ReadingFailed(source, errno);
    }
    const bool isFolder = S_ISDIR(info.st_mode);
    if (lstat(target.c_str(), &info) == 0) {
        return ChangingFailed(target, EEXIST);
    }
    if (isFolder && LiesInside(target, source)) {
        return ChangingFailed(target, EINVAL);
    }
    return {};
}

TreeFailure RemoveContents(const std::string& path) {
    std::vector<std::string> names;
    if (const int error = ListFolder(path, names)) {
        return ChangingFailed(path, error);
    }
    for (const std::string& name : names) {
        const TreeFailure failure = RemoveTree(Join(path, name));
        if (failure.happened()) {
            return failure;
        }
    }
    return {};
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

TreeFailure CopyTree(const std::string& source, const std::string& target) {
    const TreeFailure failure = CheckTarget(source, target);
    return failure.happened() ? failure : CopyItem(source, target);
}

TreeFailure MoveTree(const std::string& source, const std::string& target) {
    TreeFailure failure = CheckTarget(source, target);
    if (failure.happened() || rename(source.c_str(), target.c_str()) == 0) {
        return failure;
    }
    if (errno != EXDEV) {
        return ChangingFailed(target, errno);
    }
    failure = CopyItem(source, target);
    return failure.happened() ? failure : RemoveTree(source);
}

TreeFailure RemoveTree(const std::string& path) {
    if (std::remove(path.c_str()) == 0) {
        return {};
    }
    if (errno != ENOTEMPTY && errno != EEXIST) {
        return ChangingFailed(path, errno);
    }
    const TreeFailure failure = RemoveContents(path);
    if (failure.happened() || rmdir(path.c_str()) == 0) {
        return failure;
    }
    return ChangingFailed(path, errno);
}

int ListFolder(const std::string& path, std::vector<std::string>& names) {
    const std::unique_ptr<DIR, decltype(&closedir)> folder(opendir(path.c_str()), &closedir);
    if (!folder) {
        return errno;
    }
    names.clear();
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(folder.get());
        if (entry == nullptr) {
            break;
        }
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            names.emplace_back(entry->d_name);
        }
    }
    const int error = errno;
    std::sort(names.begin(), names.end());
    return error;
}

int MakeFolders(const std::string& path, int mode) {
    std::vector<std::string> made;
    int error = 0;
    for (const std::string& level : Levels(path)) {
        if (mkdir(level.c_str(), 0777) == 0) {
            made.push_back(level);
            // Whatever the umask, its owner must be able to make the next level inside.
            if (mode != kModeByUmask) {
                chmod(level.c_str(), 0700);
            }
            continue;
        }
        const int failure = errno;
        if (!IsFolder(level)) {
            error = failure == EEXIST && level.size() < path.size() ? ENOTDIR : failure;
            break;
        }
    }
    for (auto level = made.rbegin(); mode != kModeByUmask && level != made.rend(); ++level) {
        if (chmod(level->c_str(), static_cast<mode_t>(mode)) != 0 && error == 0) {
            error = errno;
        }
    }
    return error;
}

bool IsFolder(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}
