#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <map>
#include <set>
#include <string>
#include <vector>

/// One path that differs in the shadow from what is on the disk.
struct Change {
    enum class Kind { kCreated, kRemoved, kChanged, kTouched };

    std::string path;
    Kind kind;                      ///< touched: written again alike
    std::vector<std::string> what;  ///< of kChanged: "type", or some of "mode", "owner", "bytes"
    std::string by;                 ///< on whose behalf
};

/// The file system as it would be after operations that are never carried out. The disk is only
/// looked at. Each operation acts as this user or as root, fails where the system would refuse it,
/// and says whether it succeeded. Links are followed on the way to a file, as the disk has them.
class ShadowTree {
  public:
    enum class User { kSelf, kRoot };

    ShadowTree();

    /// On whose behalf the next operations act.
    void ActFor(const std::string& name) { actor = name; }

    bool Exists(const std::string& path) const;  ///< follows a link
    bool IsFolder(const std::string& path) const;
    std::vector<std::string> Names(const std::string& folder) const;

    /// Whether this user may read the file; its bytes are then in `bytes`.
    bool Read(const std::string& path, std::string* bytes) const;

    /// With all it holds; stops at the first entry that may not go.
    bool Remove(const std::string& path, User user);

    /// One folder; false where there is something already.
    bool MakeFolder(const std::string& path, mode_t mode, User user);

    /// The folder and the missing ones above it, as this user; true where it is there.
    bool MakeFolders(const std::string& path, mode_t mode);

    /// A file or tree to a path where nothing is, with its modes, as this user.
    bool Copy(const std::string& source, const std::string& target);

    /// As root's `cp -f -R`: into a folder or over a file, with modes that the umask cuts.
    bool CopyByShell(const std::string& source, const std::string& target);

    /// Atomically, as this user: a file keeps its mode, and becomes this user's.
    bool Write(const std::string& path, const std::string& bytes);

    /// Of a regular file, as this user.
    bool SetMode(const std::string& path, mode_t mode);

    /// Whether this user may make and remove entries of a folder.
    bool MayChange(const std::string& folder) const { return MayChange(folder, User::kSelf); }

    /// What the operations left different, by path.
    std::vector<Change> Changes() const;

    /// Folders of the disk where root acted and this user may not look: what became of their
    /// content is not known.
    const std::set<std::string>& Hidden() const { return hidden; }

  private:
    struct Entry {
        mode_t mode = 0;  // with its type; 0 where nothing is
        uid_t owner = 0;
        bool isDisks = false;  // as it is on the disk, not made by an operation
        std::string source;    // the file on the disk that has its bytes, a link its target; or ""
        std::string bytes;
        std::string by;
    };

    std::string Canonical(const std::string& path) const;
    Entry Look(const std::string& canonical) const;
    Entry Follow(const std::string& canonical) const;
    void Put(const std::string& canonical, Entry entry);
    bool MayChange(const std::string& folder, User user) const;
    bool MayReplace(const std::string& canonical, User user) const;
    bool MayRead(const Entry& entry, const std::string& canonical) const;
    void NoteIfHidden(const std::string& canonical, User user);
    bool CopyEntry(const std::string& source, const std::string& target, User user);
    static std::vector<std::string> Difference(const Entry& entry, const std::string& path);
    static Change Compare(const std::string& path, const Entry& entry);

    uid_t self;
    mode_t mask;
    std::string actor;
    std::map<std::string, Entry> changed;
    std::set<std::string> hidden;
};
