#include "platform/FileModes.h"

#include <sys/stat.h>

#include <string>

#include "crypto/CocoaStrings.h"
#include "product/Places.h"

BOOL CreateOpenFolder(NSString* path, NSError** error) {
    NSDictionary* attributes =
        [NSDictionary dictionaryWithObject:[NSNumber numberWithShort:kOpenToEverybody]
                                    forKey:NSFilePosixPermissions];
    return [[NSFileManager defaultManager] createDirectoryAtPath:path
                                     withIntermediateDirectories:YES
                                                      attributes:attributes
                                                           error:error];
}

BOOL SetFileMode(NSString* path, mode_t mode) {
    const std::string file = Utf8Bytes(path);
    struct stat info;
    // Between the two calls a link may come: lchmod does not follow it.
    return lstat(file.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           lchmod(file.c_str(), mode) == 0;
}
