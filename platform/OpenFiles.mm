#include "platform/OpenFiles.h"

#include "product/Places.h"

namespace {

NSDictionary* OpenMode() {
    return [NSDictionary dictionaryWithObject:[NSNumber numberWithShort:kOpenToEverybody]
                                       forKey:NSFilePosixPermissions];
}

}  // namespace

BOOL CreateOpenFolder(NSString* path, NSError** error) {
    return [[NSFileManager defaultManager] createDirectoryAtPath:path
                                     withIntermediateDirectories:YES
                                                      attributes:OpenMode()
                                                           error:error];
}

BOOL OpenToEverybody(NSString* path, NSError** error) {
    return [[NSFileManager defaultManager] setAttributes:OpenMode() ofItemAtPath:path error:error];
}
