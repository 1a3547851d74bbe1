#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr uid_t kOrdinaryUser = 501;
constexpr gid_t kOrdinaryGroup = 20;

void Require(bool done, const std::string& what) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

struct stat InfoOf(const std::string& path) {
    struct stat info;
    Require(lstat(path.c_str(), &info) == 0, path);
    return info;
}

/// Folders that a test closed could not be removed by an ordinary user.
void OpenFolders(const fs::path& folder) {
    chmod(folder.c_str(), 0700);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.is_directory() && !entry.is_symlink()) {
            OpenFolders(entry.path());
        }
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
    const fs::path ofAMac = "/private/tmp";  // by its real name, which results name too
    std::string name = (fs::exists(ofAMac) ? ofAMac : fs::temp_directory_path()) / "test-XXXXXX";
    Require(mkdtemp(name.data()) != nullptr, name);
    path_ = name;
    Require(chmod(path_.c_str(), 0777) == 0, path_);
}

TemporaryFolder::~TemporaryFolder() {
    OpenFolders(path_);
    fs::remove_all(path_);
}

void TemporaryFolder::Write(const std::string& name, const std::string& text, mode_t mode) const {
    const std::string path = *this / name;
    std::ofstream(path, std::ios::binary) << text;
    Require(chmod(path.c_str(), mode) == 0, path);
}

void TemporaryFolder::MakeFolder(const std::string& name, mode_t mode) const {
    const std::string path = *this / name;
    Require(mkdir(path.c_str(), mode) == 0 && chmod(path.c_str(), mode) == 0, path);
}

void TemporaryFolder::MakeLink(const std::string& name, const std::string& destination) const {
    const std::string path = *this / name;
    Require(symlink(destination.c_str(), path.c_str()) == 0, path);
}

std::string TemporaryFolder::Read(const std::string& name) const {
    std::ifstream file(*this / name, std::ios::binary);
    Require(file.is_open(), name);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

mode_t TemporaryFolder::Mode(const std::string& name) const {
    return InfoOf(*this / name).st_mode & 07777;
}

std::string TemporaryFolder::Destination(const std::string& link) const {
    return fs::read_symlink(*this / link);
}

bool TemporaryFolder::Has(const std::string& name) const {
    struct stat info;
    return lstat((*this / name).c_str(), &info) == 0;
}

std::string TemporaryFolder::Everything() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path_)) {
        names.push_back(entry.path().string().substr(path_.size() + 1));
    }
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names) {
        all += (all.empty() ? "" : " ") + name;
    }
    return all;
}

OrdinaryUser::OrdinaryUser() : user_(geteuid()), group_(getegid()) {
    if (user_ == 0) {
        Require(setegid(kOrdinaryGroup) == 0 && seteuid(kOrdinaryUser) == 0, "seteuid");
    }
}

OrdinaryUser::~OrdinaryUser() {
    if (user_ == 0) {
        Require(seteuid(user_) == 0 && setegid(group_) == 0, "seteuid");
    }
}

Umask::Umask(mode_t mask) : previous_(umask(mask)) {}
Umask::~Umask() {
    umask(previous_);
}

LargestFile::LargestFile(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    Require(getrlimit(RLIMIT_FSIZE, &previous_) == 0, "getrlimit");
    const rlimit limit{bytes, previous_.rlim_max};
    Require(setrlimit(RLIMIT_FSIZE, &limit) == 0, "setrlimit");
}

LargestFile::~LargestFile() {
    setrlimit(RLIMIT_FSIZE, &previous_);
    std::signal(SIGXFSZ, handler_);
}
