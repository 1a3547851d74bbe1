#pragma once

#include <string>
#include <vector>

// PathUtils' way to PathUtils_Mac: each converts its strings and calls one class operation, with
// whose name and comment it goes. Wide strings pass through the process's C locale, narrow ones are
// read in the default C-string encoding; a path without a form there counts as an empty one.

std::wstring FromModuleFileNameBridge();
bool DirectoryExistsBridge(const std::wstring& path);
bool CreateDirectoryBridge(const std::wstring& path);
bool EnsureFolderPathBridge(const std::wstring& path);
std::wstring ExpandPathBridge(const std::wstring& path);
std::vector<std::wstring> EnumAllItemsInFolderBridge(const std::wstring& folder, bool foldersOnly);
bool FileExistsBridge(const std::string& path);
bool KSDeleteFileBridge(const std::string& path, long* errorCode);
bool KSDeleteFolderBridge(const std::string& path);

/// KSCopyFolder:::, which copies files too.
bool KSCopyFileBridge(const std::string& source, const std::string& destination, bool overwrite);

/// KSCopyFolder::: and then KSDeleteFile:: of the source. Meant: even if the copy failed.
/// @return whether both succeeded
bool KSMoveFileBridge(const std::string& source, const std::string& destination, bool overwrite);
