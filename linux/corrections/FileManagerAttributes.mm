// setAttributes:ofItemAtPath:error: is missing from GNUstep, and attributesOfItemAtPath:error:
// fails in another error domain than Apple's.
#include <sys/stat.h>

#include <cerrno>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileSystemPath.h"

namespace {

int SetPermissions(const std::string& path, id permissions) {
    return chmod(path.c_str(), [permissions unsignedIntValue] & 07777) == 0 ? 0 : errno;
}

}  // namespace

@implementation NSFileManager (AppleAttributes)

- (BOOL)setAttributes:(NSDictionary*)attributes
         ofItemAtPath:(NSString*)path
                error:(NSError**)error {
    NSString* failed = [NSString stringWithFormat:@"%@ couldn’t be changed", QuotedName(path)];
    std::string file;
    if (!FileSystemPath(path, file)) {
        return Fail(error, FileError(NSFileWriteInvalidFileNameError, failed, path, 0));
    }
    struct stat info;
    int posixError = stat(file.c_str(), &info) == 0 ? 0 : errno;
    id permissions = [attributes objectForKey:NSFilePosixPermissions];
    if (posixError == 0 && [permissions isKindOfClass:[NSNumber class]]) {
        posixError = SetPermissions(file, permissions);
    }
    if (posixError != 0) {
        return Fail(error, FileError(CocoaWritingCode(posixError), failed, path, posixError));
    }
    NSMutableDictionary* others = [[attributes mutableCopy] autorelease];
    [others removeObjectForKey:NSFilePosixPermissions];
    if ([others count] > 0 && ![self changeFileAttributes:others atPath:path]) {
        return Fail(error, FileError(NSFileWriteUnknownError, failed, path, 0));
    }
    return YES;
}

- (NSDictionary*)mac_attributesOfItemAtPath:(NSString*)path error:(NSError**)error {
    NSString* failed = [NSString stringWithFormat:@"%@ couldn’t be opened", QuotedName(path)];
    std::string file;
    if (!FileSystemPath(path, file)) {
        Fail(error, FileError(NSFileReadInvalidFileNameError, failed, path, 0));
        return nil;
    }
    struct stat info;
    if (lstat(file.c_str(), &info) != 0) {
        const int posixError = errno;
        Fail(error, FileError(CocoaReadingCode(posixError), failed, path, posixError));
        return nil;
    }
    return [self fileAttributesAtPath:path traverseLink:NO];
}

@end
