#include "platform/FileModes.h"

#include "product/Places.h"

namespace {

NSDictionary* Mode(short mode) {
    return [NSDictionary dictionaryWithObject:[NSNumber numberWithShort:mode]
                                       forKey:NSFilePosixPermissions];
}

}  // namespace

BOOL CreateOpenFolder(NSString* path, NSError** error) {
    return [[NSFileManager defaultManager] createDirectoryAtPath:path
                                     withIntermediateDirectories:YES
                                                      attributes:Mode(kOpenToEverybody)
                                                           error:error];
}

BOOL SetFileMode(NSString* path, short mode) {
    return [[NSFileManager defaultManager] setAttributes:Mode(mode) ofItemAtPath:path error:NULL];
}
