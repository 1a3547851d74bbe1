#include "tools/ShadowTree.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <utility>

namespace {

constexpr mode_t kModeBits = 07777;
constexpr mode_t kCopiedModeBits = 01777;
constexpr mode_t kNewFile = 0666;

std::string ParentOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string Join(const std::string& folder, const std::string& name) {
    return folder == "/" ? folder + name : folder + '/' + name;
}

bool ReadDisk(const std::string& path, std::string* bytes) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return false;
    }
    bytes->assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return !file.bad();
}

std::string LinkTarget(const std::string& path) {
    std::array<char, PATH_MAX> target = {};
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    return length < 0 ? "" : std::string(target.data(), static_cast<size_t>(length));
}

std::vector<std::string> DiskNames(const std::string& folder) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), closedir);
    while (const dirent* entry = open != nullptr ? readdir(open.get()) : nullptr) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    return names;
}

mode_t CurrentMask() {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

}  // namespace

ShadowTree::ShadowTree() : self(geteuid()), mask(CurrentMask()) {}

// Without doubled separators, and with the links on the way resolved; a link at the end stays.
std::string ShadowTree::Canonical(const std::string& path) const {
    std::string plain;
    for (const char each : path) {
        if (each != '/' || plain.empty() || plain.back() != '/') {
            plain += each;
        }
    }
    if (plain.size() > 1 && plain.back() == '/') {
        plain.pop_back();
    }
    if (plain.empty() || plain == "/") {
        return "/";
    }
    // The deepest folder that the disk has.
    std::string above = ParentOf(plain);
    std::string rest = NameOf(plain);
    std::array<char, PATH_MAX> real = {};
    while (realpath(above.c_str(), real.data()) == nullptr && above != "/") {
        rest.insert(0, NameOf(above) + '/');
        above = ParentOf(above);
    }
    return Join(above == "/" ? above : real.data(), rest);
}

ShadowTree::Entry ShadowTree::Look(const std::string& canonical) const {
    const auto found = changed.find(canonical);
    if (found != changed.end()) {
        return found->second;
    }
    for (std::string above = canonical; above != "/";) {
        above = ParentOf(above);
        const auto folder = changed.find(above);
        if (folder != changed.end()) {
            return Entry();  // the disk's folder is gone, and with it all that was in it
        }
    }
    struct stat info = {};
    Entry entry;
    if (lstat(canonical.c_str(), &info) == 0) {
        entry.mode = info.st_mode;
        entry.owner = info.st_uid;
        entry.isDisks = true;
        entry.source = S_ISLNK(info.st_mode) ? LinkTarget(canonical) : canonical;
    }
    return entry;
}

ShadowTree::Entry ShadowTree::Follow(const std::string& canonical) const {
    Entry entry = Look(canonical);
    std::string path = canonical;
    for (int links = 0; S_ISLNK(entry.mode) && links < 32; ++links) {
        path =
            Canonical(entry.source[0] == '/' ? entry.source : Join(ParentOf(path), entry.source));
        entry = Look(path);
    }
    return S_ISLNK(entry.mode) ? Entry() : entry;
}

// Of an entry that the disk hides from this user, the folder that hides it.
void ShadowTree::NoteIfHidden(const std::string& canonical, User user) {
    struct stat info = {};
    if (user == User::kSelf || changed.count(canonical) != 0 ||
        lstat(canonical.c_str(), &info) == 0 || errno != EACCES) {
        return;
    }
    std::string folder = ParentOf(canonical);
    while (lstat(folder.c_str(), &info) != 0) {
        folder = ParentOf(folder);
    }
    hidden.insert(folder);
}

void ShadowTree::Put(const std::string& canonical, Entry entry) {
    entry.isDisks = false;
    entry.by = actor;
    changed[canonical] = std::move(entry);
}

bool ShadowTree::Exists(const std::string& path) const {
    return Follow(Canonical(path)).mode != 0;
}

bool ShadowTree::IsFolder(const std::string& path) const {
    return S_ISDIR(Follow(Canonical(path)).mode);
}

std::vector<std::string> ShadowTree::Names(const std::string& folder) const {
    const std::string path = Canonical(folder);
    std::vector<std::string> names;
    for (const std::string& name : DiskNames(path)) {
        if (Look(Join(path, name)).mode != 0) {
            names.push_back(name);
        }
    }
    const std::string prefix = Join(path, "");
    for (auto each = changed.lower_bound(prefix);
         each != changed.end() && each->first.compare(0, prefix.size(), prefix) == 0; ++each) {
        const std::string name = each->first.substr(prefix.size());
        if (each->second.mode != 0 && name.find('/') == std::string::npos &&
            std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool ShadowTree::MayRead(const Entry& entry, const std::string& canonical) const {
    if (entry.isDisks) {
        return access(canonical.c_str(), R_OK) == 0;
    }
    return self == 0 || (entry.mode & (entry.owner == self ? S_IRUSR : S_IROTH)) != 0;
}

bool ShadowTree::Read(const std::string& path, std::string* bytes) const {
    const std::string canonical = Canonical(path);
    const Entry entry = Follow(canonical);
    if (!S_ISREG(entry.mode) || !MayRead(entry, canonical)) {
        return false;
    }
    if (entry.source.empty()) {
        *bytes = entry.bytes;
        return true;
    }
    return ReadDisk(entry.source, bytes);
}

bool ShadowTree::MayChange(const std::string& folder, User user) const {
    const std::string path = Canonical(folder);
    const Entry entry = Follow(path);
    if (!S_ISDIR(entry.mode)) {
        return false;
    }
    if (user == User::kRoot) {
        return true;
    }
    if (entry.isDisks) {
        return access(path.c_str(), W_OK | X_OK) == 0;
    }
    const mode_t needed = entry.owner == self ? S_IWUSR | S_IXUSR : S_IWOTH | S_IXOTH;
    return self == 0 || (entry.mode & needed) == needed;
}

// Whether an entry may be removed or be replaced by another: in a sticky folder only by its owner.
bool ShadowTree::MayReplace(const std::string& canonical, User user) const {
    const std::string folder = ParentOf(canonical);
    if (!MayChange(folder, user)) {
        return false;
    }
    const Entry above = Follow(folder);
    const Entry entry = Look(canonical);
    return user == User::kRoot || self == 0 || (above.mode & S_ISVTX) == 0 || entry.mode == 0 ||
           entry.owner == self || above.owner == self;
}

bool ShadowTree::Remove(const std::string& path, User user) {
    const std::string canonical = Canonical(path);
    NoteIfHidden(canonical, user);
    const Entry entry = Look(canonical);
    if (entry.mode == 0) {
        return false;
    }
    if (S_ISDIR(entry.mode)) {
        if (entry.isDisks && access(canonical.c_str(), R_OK) != 0) {
            if (user == User::kSelf) {
                return false;
            }
            hidden.insert(canonical);
        }
        for (const std::string& name : Names(canonical)) {
            if (!Remove(Join(canonical, name), user)) {
                return false;
            }
        }
    }
    if (!MayReplace(canonical, user)) {
        return false;
    }
    Put(canonical, Entry());
    return true;
}

bool ShadowTree::MakeFolder(const std::string& path, mode_t mode, User user) {
    const std::string canonical = Canonical(path);
    NoteIfHidden(canonical, user);
    if (Look(canonical).mode != 0 || !MayChange(ParentOf(canonical), user)) {
        return false;
    }
    Entry folder;
    folder.mode = S_IFDIR | mode;
    folder.owner = user == User::kRoot ? 0 : self;
    Put(canonical, folder);
    return true;
}

bool ShadowTree::MakeFolders(const std::string& path, mode_t mode) {
    if (IsFolder(path)) {
        return true;
    }
    const std::string canonical = Canonical(path);
    return canonical != "/" && MakeFolders(ParentOf(canonical), mode) &&
           MakeFolder(canonical, mode, User::kSelf);
}

bool ShadowTree::CopyEntry(const std::string& source, const std::string& target, User user) {
    Entry entry = Look(source);
    if (S_ISREG(entry.mode) && user == User::kSelf && !MayRead(entry, source)) {
        return false;
    }
    if (!MayChange(ParentOf(target), user) || (entry.mode & S_IFMT) == 0) {
        return false;
    }
    const bool isFolder = S_ISDIR(entry.mode);
    const std::vector<std::string> names = isFolder ? Names(source) : std::vector<std::string>();
    entry.owner = user == User::kRoot ? 0 : self;
    if (!S_ISLNK(entry.mode)) {
        entry.mode &= S_IFMT | (user == User::kRoot ? 0777 & ~mask : kCopiedModeBits);
    }
    const mode_t mode = entry.mode;
    if (isFolder) {
        entry.source.clear();
        entry.mode |= S_IRWXU;  // until it is full
    }
    Put(target, entry);
    bool isWhole = true;
    for (const std::string& name : names) {
        isWhole = CopyEntry(Join(source, name), Join(target, name), user) && isWhole;
        if (!isWhole && user == User::kSelf) {
            return false;
        }
    }
    changed[target].mode = mode;
    return isWhole;
}

bool ShadowTree::Copy(const std::string& source, const std::string& target) {
    const std::string from = Canonical(source);
    const std::string to = Canonical(target);
    return Look(from).mode != 0 && Look(to).mode == 0 && CopyEntry(from, to, User::kSelf);
}

bool ShadowTree::CopyByShell(const std::string& source, const std::string& target) {
    const std::string from = Canonical(source);
    NoteIfHidden(from, User::kRoot);
    if (Look(from).mode == 0) {
        return false;
    }
    const std::string to = Canonical(IsFolder(target) ? Join(target, NameOf(from)) : target);
    NoteIfHidden(to, User::kRoot);
    const Entry there = Look(to);
    if (there.mode == 0) {
        return CopyEntry(from, to, User::kRoot);
    }
    Entry copy = Look(from);
    if (!S_ISREG(copy.mode) || !S_ISREG(there.mode)) {
        return false;
    }
    copy.mode = there.mode;  // written over, it stays the file that it was
    copy.owner = there.owner;
    Put(to, copy);
    return true;
}

bool ShadowTree::Write(const std::string& path, const std::string& bytes) {
    const std::string canonical = Canonical(path);
    const Entry before = Follow(canonical);
    if (S_ISDIR(Look(canonical).mode) || !MayReplace(canonical, User::kSelf)) {
        return false;
    }
    Entry file;
    file.mode = S_IFREG | (S_ISREG(before.mode) ? before.mode & kModeBits : kNewFile & ~mask);
    file.owner = self;
    file.bytes = bytes;
    Put(canonical, file);
    return true;
}

bool ShadowTree::SetMode(const std::string& path, mode_t mode) {
    const std::string canonical = Canonical(path);
    Entry entry = Look(canonical);
    if (!S_ISREG(entry.mode) || (entry.owner != self && self != 0)) {
        return false;
    }
    entry.mode = S_IFREG | mode;
    Put(canonical, entry);
    return true;
}

std::vector<std::string> ShadowTree::Difference(const Entry& entry, const std::string& path) {
    struct stat info = {};
    lstat(path.c_str(), &info);
    if ((entry.mode & S_IFMT) != (info.st_mode & S_IFMT)) {
        return {"type"};
    }
    std::vector<std::string> what;
    if (entry.mode != info.st_mode && !S_ISLNK(entry.mode)) {
        what.push_back("mode");
    }
    if (entry.owner != info.st_uid) {
        what.push_back("owner");
    }
    if (S_ISLNK(entry.mode) && entry.source != LinkTarget(path)) {
        what.push_back("bytes");
    }
    if (S_ISREG(entry.mode) && entry.source != path) {
        std::string is;
        std::string becomes = entry.bytes;
        const bool isKnown =
            ReadDisk(path, &is) && (entry.source.empty() || ReadDisk(entry.source, &becomes));
        if (!isKnown || is != becomes) {
            what.push_back("bytes");
        }
    }
    return what;
}

Change ShadowTree::Compare(const std::string& path, const Entry& entry) {
    struct stat info = {};
    const bool isThere = lstat(path.c_str(), &info) == 0;
    if (entry.mode == 0) {
        return {path, Change::Kind::kRemoved, {}, entry.by};
    }
    if (!isThere) {
        return {path, Change::Kind::kCreated, {}, entry.by};
    }
    const std::vector<std::string> what = Difference(entry, path);
    return {path, what.empty() ? Change::Kind::kTouched : Change::Kind::kChanged, what, entry.by};
}

std::vector<Change> ShadowTree::Changes() const {
    std::vector<Change> changes;
    for (const auto& [path, entry] : changed) {
        struct stat info = {};
        if (entry.mode != 0 || lstat(path.c_str(), &info) == 0) {
            changes.push_back(Compare(path, entry));
        }
    }
    return changes;
}
