// In the place of the bridges to the platform, for a program without Cocoa.
#include "platform/PathUtilsBridges.h"

#include <cstdlib>

std::wstring FromModuleFileNameBridge() {
    std::abort();
}
bool DirectoryExistsBridge(const std::wstring& /*path*/) {
    std::abort();
}
bool CreateDirectoryBridge(const std::wstring& /*path*/) {
    std::abort();
}
bool EnsureFolderPathBridge(const std::wstring& /*path*/) {
    std::abort();
}
std::wstring ExpandPathBridge(const std::wstring& /*path*/) {
    std::abort();
}
std::vector<std::wstring> EnumAllItemsInFolderBridge(const std::wstring& /*folder*/,
                                                     bool /*foldersOnly*/) {
    std::abort();
}
bool FileExistsBridge(const std::string& /*path*/) {
    std::abort();
}
bool KSDeleteFileBridge(const std::string& /*path*/, long* /*errorCode*/) {
    std::abort();
}
bool KSDeleteFolderBridge(const std::string& /*path*/) {
    std::abort();
}
bool KSCopyFileBridge(const std::string& /*source*/, const std::string& /*destination*/,
                      bool /*overwrite*/) {
    std::abort();
}
bool KSMoveFileBridge(const std::string& /*source*/, const std::string& /*destination*/,
                      bool /*overwrite*/) {
    std::abort();
}
