// Apple reports why a folder could not be made and does not take a file for one; GNUstep leaves the
// error empty or answers YES.
#include <sys/stat.h>

#include <cerrno>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileSystemPath.h"
#include "linux/corrections/FileTree.h"

namespace {

int MakeFolder(const std::string& path, int mode) {
    if (mkdir(path.c_str(), 0777) != 0 ||
        (mode != kModeByUmask && chmod(path.c_str(), mode) != 0)) {
        return errno;
    }
    return 0;
}

}  // namespace

@implementation NSFileManager (AppleFolders)

- (BOOL)mac_fileExistsAtPath:(NSString*)path isDirectory:(BOOL*)isDirectory {
    std::string file;
    struct stat info;
    const bool exists = FileSystemPath(path, file) && stat(file.c_str(), &info) == 0;
    if (isDirectory != nullptr) {
        *isDirectory = exists && S_ISDIR(info.st_mode);
    }
    return exists;
}

- (BOOL)mac_createDirectoryAtPath:(NSString*)path
    withIntermediateDirectories:(BOOL)intermediates
                     attributes:(NSDictionary*)attributes
                          error:(NSError**)error {
    NSString* failed = [NSString stringWithFormat:@"The folder %@ couldn’t be made in %@",
                                                  QuotedName(path), QuotedFolderName(path)];
    std::string folder;
    if (!FileSystemPath(path, folder)) {
        return Fail(error, FileError(NSFileWriteInvalidFileNameError, failed, path, 0));
    }
    id permissions = [attributes objectForKey:NSFilePosixPermissions];
    const int mode = [permissions isKindOfClass:[NSNumber class]] ? [permissions intValue] & 07777
                                                                  : kModeByUmask;
    const int posixError = intermediates ? MakeFolders(folder, mode) : MakeFolder(folder, mode);
    if (posixError != 0) {
        return Fail(error, FileError(CocoaWritingCode(posixError), failed, path, posixError));
    }
    return YES;
}

@end
