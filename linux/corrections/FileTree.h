#pragma once

#include <string>
#include <vector>

// Files and folders with all that lies below them, by POSIX calls. Symbolic links are treated
// themselves, never what they point to. Nothing is printed and nothing is thrown.

/// Where an operation on a tree stopped.
struct TreeFailure {
    int error = 0;         ///< errno; 0 when everything worked
    bool reading = false;  ///< the side that was read failed, not the one that was changed
    std::string path;      ///< the item at which it stopped

    bool happened() const { return error != 0; }
};

/// Copies an item with its permissions and modification times; set-id bits are left behind. The
/// target must not exist (EEXIST). Stops at the first failure: the file in work is removed,
/// whatever was copied before it stays. Pipes, sockets and devices are ENOTSUP; a folder into
/// itself EINVAL.
TreeFailure CopyTree(const std::string& source, const std::string& target);

/// Moves an item within a disk by renaming it, else by copying and removing. The target must not
/// exist (EEXIST); a folder into itself is EINVAL.
TreeFailure MoveTree(const std::string& source, const std::string& target);

/// Removes an item with all its contents. Stops at the first failure.
TreeFailure RemoveTree(const std::string& path);

/// Lists a folder into `names`, without "." and "..", sorted by their bytes: disks answer in any
/// order, and a run is to give the same results everywhere.
/// @return 0 or errno
int ListFolder(const std::string& path, std::vector<std::string>& names);

/// Makes a folder and all that is missing above it. With a mode other than `kModeByUmask`, every
/// folder that was made gets exactly that mode; existing ones keep theirs.
/// @return 0 or errno: EEXIST when something other than a folder stands at the path itself, ENOTDIR
///         when it stands above it
constexpr int kModeByUmask = -1;
int MakeFolders(const std::string& path, int mode);

bool IsFolder(const std::string& path);
