// The file manager's errors say what failed and why; GNUstep's are empty or of another domain. It
// takes an unreadable folder for an empty one and a file for a folder, and lacks
// subpathsOfDirectoryAtPath:error:.
#include <sys/stat.h>

#include <cerrno>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileSystemPath.h"
#include "linux/corrections/FileTree.h"

namespace {

/// The mode among the attributes, if there is one.
int ModeOf(NSDictionary* attributes) {
    id permissions = [attributes objectForKey:NSFilePosixPermissions];
    return [permissions isKindOfClass:[NSNumber class]] ? [permissions intValue] & 07777
                                                        : kModeByUmask;
}

NSArray* Listed(NSString* path, int (*list)(const std::string&, std::vector<std::string>&),
                NSError** error) {
    std::string folder;
    std::vector<std::string> names;
    const bool isValid = FileSystemPath(path, folder);
    const int posixError = isValid ? list(folder, names) : kInvalidName;
    if (!isValid || posixError != 0) {
        Fail(error, FileAction::List, posixError, path);
        return nil;
    }
    NSMutableArray* listed = [NSMutableArray array];
    for (const std::string& name : names) {
        if (NSString* text = StringFromFileSystem(name)) {
            [listed addObject:text];
        }
    }
    return listed;
}

}  // namespace

@implementation NSFileManager (MacFiles)

- (BOOL)mac_fileExistsAtPath:(NSString*)path isDirectory:(BOOL*)isDirectory {
    std::string file;
    struct stat info;
    const bool exists = FileSystemPath(path, file) && stat(file.c_str(), &info) == 0;
    if (isDirectory != nullptr) {
        *isDirectory = exists && S_ISDIR(info.st_mode);
    }
    return exists;
}

// Without the folders on the way it is left to GNUstep: the program always asks for them.
- (BOOL)mac_createDirectoryAtPath:(NSString*)path
      withIntermediateDirectories:(BOOL)intermediates
                       attributes:(NSDictionary*)attributes
                            error:(NSError**)error {
    if (!intermediates) {
        return [self mac_createDirectoryAtPath:path
                   withIntermediateDirectories:NO
                                    attributes:attributes
                                         error:error];
    }
    std::string folder;
    if (!FileSystemPath(path, folder)) {
        return Fail(error, FileAction::MakeFolder, kInvalidName, path);
    }
    std::string failedAt;
    const int posixError = MakeFolders(folder, ModeOf(attributes), failedAt);
    NSString* failed = failedAt == folder ? path : StringFromFileSystem(failedAt);
    return posixError == 0 || Fail(error, FileAction::MakeFolder, posixError, failed);
}

- (NSArray*)mac_contentsOfDirectoryAtPath:(NSString*)path error:(NSError**)error {
    return Listed(path, ListFolder, error);
}

- (NSArray*)subpathsOfDirectoryAtPath:(NSString*)path error:(NSError**)error {
    return Listed(path, ListTree, error);
}

- (BOOL)mac_copyItemAtPath:(NSString*)source toPath:(NSString*)target error:(NSError**)error {
    if (source == nil || target == nil) {
        [NSException raise:NSInvalidArgumentException
                    format:@"*** -[NSFileManager copyItemAtPath:toPath:error:]: %@ path is nil",
                           source == nil ? @"source" : @"destination"];
    }
    std::string from;
    std::string to;
    struct stat info;
    if (!FileSystemPath(source, from)) {
        return Fail(error, FileAction::Read, kInvalidName, source);
    }
    if (!FileSystemPath(target, to)) {
        return Fail(error, FileAction::Copy, kInvalidName, source, target);
    }
    // Whatever fails behind this counts as writing, and names the source.
    if (lstat(from.c_str(), &info) != 0) {
        return Fail(error, FileAction::Read, errno, source);
    }
    const int posixError = CopyTree(from, to);
    return posixError == 0 || Fail(error, FileAction::Copy, posixError, source, target);
}

- (BOOL)mac_removeItemAtPath:(NSString*)path error:(NSError**)error {
    std::string item;
    const bool isValid = FileSystemPath(path, item);
    const int posixError = isValid ? RemoveTree(item) : kInvalidName;
    return (isValid && posixError == 0) || Fail(error, FileAction::Remove, posixError, path);
}

@end
