#pragma once

#include <string>
#include <vector>

// Files and folders with all that lies below them. Symbolic links are treated themselves, never
// what they point to. Every function answers 0 or an errno; nothing is printed, nothing is thrown.

/// Copies an item with its permissions and modification times, as far as the disk takes those;
/// set-id bits are left behind. The target must not exist (EEXIST). Stops at the first failure: the
/// file in work is removed, whatever was copied before it stays. What vanishes meanwhile is passed
/// over. Pipes, sockets and devices are ENOTSUP; a folder into itself EINVAL.
int CopyTree(const std::string& source, const std::string& target);

/// Removes an item with all its contents, in the order of their names. A folder that cannot be
/// listed, or lies on another disk, keeps its contents. Stops at the first failure, but passes over
/// what vanishes meanwhile. A folder that is not empty in the end is EPERM.
int RemoveTree(const std::string& path);

/// Lists a folder into `names`, without "." and "..", sorted by their bytes: disks answer in any
/// order, and a run is to give the same results everywhere.
int ListFolder(const std::string& path, std::vector<std::string>& names);

/// The same all the way down, without following links; fails where one folder cannot be listed.
int ListTree(const std::string& path, std::vector<std::string>& subpaths);

/// Makes a folder and all that is missing above it. With a mode other than `kModeByUmask`, every
/// folder that was made gets exactly that mode, where the disk takes it; existing ones keep theirs.
/// @param failedAt  the file in the way, which is ENOTDIR; else the path itself
constexpr int kModeByUmask = -1;
int MakeFolders(const std::string& path, int mode, std::string& failedAt);
