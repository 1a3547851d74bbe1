#include "linux/corrections/CocoaErrors.h"

#include <cerrno>
#include <cstring>

// GNUstep's value is the constant's own name.
NSString* const NSUnderlyingErrorKey = @"NSUnderlyingError";

namespace {

NSString* Reason(NSInteger code) {
    switch (code) {
        case NSFileNoSuchFileError:
        case NSFileReadNoSuchFileError:
            return @" because there is no such file or folder";
        case NSFileReadNoPermissionError:
        case NSFileWriteNoPermissionError:
            return @" because you don’t have permission";
        case NSFileReadInvalidFileNameError:
        case NSFileWriteInvalidFileNameError:
            return @" because the name is invalid";
        case NSFileReadTooLargeError:
            return @" because it is too large";
        case NSFileReadInapplicableStringEncodingError:
        case NSFileReadUnknownStringEncodingError:
        case NSFileWriteInapplicableStringEncodingError:
            return @" because the text encoding isn’t applicable";
        case NSFileWriteFileExistsError:
            return @" because an item with the same name already exists";
        case NSFileWriteOutOfSpaceError:
            return @" because there isn’t enough space";
        case NSFileWriteVolumeReadOnlyError:
            return @" because the disk is read only";
        default:
            return @"";
    }
}

NSError* PosixError(int posixError) {
    NSString* text = [NSString stringWithUTF8String:std::strerror(posixError)];
    return [NSError errorWithDomain:NSPOSIXErrorDomain
                               code:posixError
                           userInfo:@{NSLocalizedDescriptionKey : text}];
}

}  // namespace

NSInteger CocoaReadingCode(int posixError) {
    switch (posixError) {
        case ENOENT:
            return NSFileReadNoSuchFileError;
        case EACCES:
        case EPERM:
            return NSFileReadNoPermissionError;
        case ENAMETOOLONG:
            return NSFileReadInvalidFileNameError;
        case EFBIG:
            return NSFileReadTooLargeError;
        default:
            return NSFileReadUnknownError;
    }
}

NSInteger CocoaWritingCode(int posixError) {
    switch (posixError) {
        case ENOENT:
            return NSFileNoSuchFileError;
        case EACCES:
        case EPERM:
            return NSFileWriteNoPermissionError;
        case ENAMETOOLONG:
            return NSFileWriteInvalidFileNameError;
        case EEXIST:
            return NSFileWriteFileExistsError;
        case ENOSPC:
        case EDQUOT:
            return NSFileWriteOutOfSpaceError;
        case EROFS:
            return NSFileWriteVolumeReadOnlyError;
        default:
            return NSFileWriteUnknownError;
    }
}

NSError* FileError(NSInteger code, NSString* failed, NSString* path, int posixError) {
    NSMutableDictionary* userInfo = [NSMutableDictionary dictionary];
    [userInfo setObject:[NSString stringWithFormat:@"%@%@.", failed, Reason(code)]
                 forKey:NSLocalizedDescriptionKey];
    if (path != nil) {
        [userInfo setObject:path forKey:NSFilePathErrorKey];
    }
    if (posixError != 0) {
        [userInfo setObject:PosixError(posixError) forKey:NSUnderlyingErrorKey];
    }
    return [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:userInfo];
}

NSString* QuotedName(NSString* path) {
    return [NSString stringWithFormat:@"“%@”", path == nil ? @"" : [path lastPathComponent]];
}

NSString* QuotedFolderName(NSString* path) {
    return QuotedName([path stringByDeletingLastPathComponent]);
}

BOOL Fail(NSError** slot, NSError* error) {
    if (slot != nullptr) {
        *slot = error;
    }
    return NO;
}
