#include "platform/PathUtilsBridges.h"

#include <type_traits>

#include "crypto/CocoaStrings.h"
#include "crypto/StringUtilsBridge.h"
#include "platform/PathUtils_Mac.h"

static_assert(std::is_same<NSInteger, long>::value, "error codes are passed on as they are");

namespace {

NSString* FromWide(const std::wstring& text) {
    return [StringUtilsBridge ConvertWStringToNSString:text];
}

std::wstring ToWide(NSString* text) {
    return [StringUtilsBridge ConvertNSStringToWString:text];
}

}  // namespace

// Each opens an autorelease scope of its own: its callers, some of which run before main, have
// none.

std::wstring FromModuleFileNameBridge() {
    @autoreleasepool {
        return ToWide([PathUtils_Mac FromModuleFileName]);
    }
}

bool DirectoryExistsBridge(const std::wstring& path) {
    @autoreleasepool {
        return [PathUtils_Mac DirectoryExists:FromWide(path)];
    }
}

bool CreateDirectoryBridge(const std::wstring& path) {
    @autoreleasepool {
        return [PathUtils_Mac CreateDirectory:FromWide(path)];
    }
}

bool EnsureFolderPathBridge(const std::wstring& path) {
    @autoreleasepool {
        return [PathUtils_Mac EnsureFolderPath:FromWide(path)];
    }
}

std::wstring ExpandPathBridge(const std::wstring& path) {
    @autoreleasepool {
        return ToWide([PathUtils_Mac ExpandPath:FromWide(path)]);
    }
}

std::vector<std::wstring> EnumAllItemsInFolderBridge(const std::wstring& folder, bool foldersOnly) {
    @autoreleasepool {
        std::vector<std::wstring> items;
        for (NSString* item in [PathUtils_Mac EnumAllItemsInFolder:FromWide(folder):foldersOnly]) {
            items.push_back(ToWide(item));
        }
        return items;
    }
}

bool FileExistsBridge(const std::string& path) {
    @autoreleasepool {
        return [PathUtils_Mac FileExists:CocoaString(path)];
    }
}

bool KSDeleteFileBridge(const std::string& path, long* errorCode) {
    @autoreleasepool {
        return [PathUtils_Mac KSDeleteFile:CocoaString(path):errorCode];
    }
}

bool KSDeleteFolderBridge(const std::string& path) {
    @autoreleasepool {
        return [PathUtils_Mac KSDeleteFolder:CocoaString(path)];
    }
}

bool KSCopyFileBridge(const std::string& source, const std::string& destination, bool overwrite) {
    @autoreleasepool {
        return [PathUtils_Mac KSCopyFolder:CocoaString(source):CocoaString(destination):overwrite];
    }
}

bool KSMoveFileBridge(const std::string& source, const std::string& destination, bool overwrite) {
    @autoreleasepool {
        NSString* file = CocoaString(source);
        const BOOL copied = [PathUtils_Mac KSCopyFolder:file:CocoaString(destination):overwrite];
        // Meant: even if the copy failed.
        const BOOL deleted = [PathUtils_Mac KSDeleteFile:file:nullptr];
        return copied && deleted;
    }
}
