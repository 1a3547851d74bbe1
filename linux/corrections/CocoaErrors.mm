#include "linux/corrections/CocoaErrors.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

// GNUstep's value is the constant's own name.
NSString* const NSUnderlyingErrorKey = @"NSUnderlyingError";

namespace {

NSString* const kVariant = @"NSUserStringVariant";
NSString* const kMissingFile = @"fnfErr: File not found";
constexpr NSInteger kMissingFileStatus = -43;

/// An errno, its number on a Mac, and the codes of what fails with it.
struct KnownError {
    int here;
    int mac;
    NSInteger reading = NSFileReadUnknownError;
    NSInteger writing = NSFileWriteUnknownError;
};

constexpr KnownError kKnownErrors[] = {
    {ENOENT, ENOENT, NSFileReadNoSuchFileError, NSFileNoSuchFileError},
    {EACCES, EACCES, NSFileReadNoPermissionError, NSFileWriteNoPermissionError},
    {EPERM, EPERM, NSFileReadNoPermissionError, NSFileWriteNoPermissionError},
    {kInvalidName, 0, NSFileReadInvalidFileNameError, NSFileWriteInvalidFileNameError},
    {ENAMETOOLONG, 63, NSFileReadInvalidFileNameError, NSFileWriteInvalidFileNameError},
    {EFBIG, EFBIG, NSFileReadTooLargeError},
    {EEXIST, EEXIST, NSFileReadUnknownError, NSFileWriteFileExistsError},
    {ENOSPC, ENOSPC, NSFileReadUnknownError, NSFileWriteOutOfSpaceError},
    {EDQUOT, 69, NSFileReadUnknownError, NSFileWriteOutOfSpaceError},
    {EROFS, EROFS, NSFileReadUnknownError, NSFileWriteVolumeReadOnlyError},
    {ELOOP, 62},
    {ENOTEMPTY, 66},
    {ENOTSUP, 45},
};

/// The row with this number in that column; else one that has it in both.
KnownError Known(int KnownError::*column, int number) {
    const auto* const row =
        std::find_if(std::begin(kKnownErrors), std::end(kKnownErrors),
                     [&](const KnownError& known) { return known.*column == number; });
    return row == std::end(kKnownErrors) ? KnownError{number, number} : *row;
}

bool IsReading(FileAction action) {
    return action == FileAction::Read || action == FileAction::List;
}

NSInteger CodeOf(FileAction action, int posixError) {
    const KnownError known = Known(&KnownError::here, posixError);
    return IsReading(action) ? known.reading : known.writing;
}

/// The sentence of a failure, with %@ for the item's name, then for a folder's.
NSString* Sentence(FileAction action, NSInteger code) {
    switch (code) {
        case NSFileReadNoSuchFileError:
            return action == FileAction::List
                       ? @"The folder “%@” doesn’t exist."
                       : @"The file “%@” couldn’t be opened because there is no such file.";
        case NSFileReadNoPermissionError:
            return @"The file “%@” couldn’t be opened because you don’t have permission to view "
                   @"it.";
        case NSFileNoSuchFileError:
            if (action == FileAction::Remove) {
                return @"“%@” couldn’t be removed.";
            }
            // A Mac's own oddity: what it calls a folder is the file.
            return action == FileAction::Write ? @"The folder “%@” doesn’t exist."
                                               : @"The file “%@” doesn’t exist.";
        case NSFileWriteNoPermissionError:
            if (action == FileAction::Remove) {
                return @"“%@” couldn’t be removed because you don’t have permission to access it.";
            }
            return action == FileAction::Copy
                       ? @"“%@” couldn’t be copied because you don’t have permission to access "
                         @"“%@”."
                       : @"You don’t have permission to save the file “%@” in the folder “%@”.";
        default:
            break;
    }
    switch (action) {
        case FileAction::Read:
        case FileAction::List:
            return @"The file “%@” couldn’t be opened.";
        case FileAction::Remove:
            return @"“%@” couldn’t be removed.";
        case FileAction::Copy:
            return code == NSFileWriteFileExistsError
                       ? @"“%@” couldn’t be copied to “%@” because an item with the same name "
                         @"already exists."
                       : @"“%@” couldn’t be copied to “%@”.";
        default:
            return @"The file “%@” couldn’t be saved in the folder “%@”.";
    }
}

/// Nothing for no path.
NSString* NameOf(NSString* path) {
    return path == nil ? @"" : [path lastPathComponent];
}

NSString* Filled(NSString* sentence, NSString* path, NSString* target) {
    NSString* folder = [(target == nil ? path : target) stringByDeletingLastPathComponent];
    return [NSString stringWithFormat:sentence, NameOf(path), NameOf(folder)];
}

NSError* InnerError(FileAction action, int posixError) {
    if (action == FileAction::List && posixError == ENOENT) {
        return [NSError errorWithDomain:NSOSStatusErrorDomain code:kMissingFileStatus userInfo:nil];
    }
    return [NSError errorWithDomain:NSPOSIXErrorDomain
                               code:Known(&KnownError::here, posixError).mac
                           userInfo:nil];
}

NSString* Variant(FileAction action) {
    switch (action) {
        case FileAction::List:
            return @"Folder";
        case FileAction::Copy:
            return @"Copy";
        case FileAction::Remove:
            return @"Remove";
        default:
            return nil;
    }
}

/// What is known of an error by its domain and number.
NSString* KnownText(NSError* error) {
    NSString* domain = [error domain];
    const NSInteger code = [error code];
    if ([domain isEqual:NSCocoaErrorDomain] && code == NSFileReadInapplicableStringEncodingError) {
        // Written here, so that who makes such an error need not know it.
        return Filled(@"The file “%@” couldn’t be opened using text encoding Unicode (UTF-8).",
                      [[error userInfo] objectForKey:NSFilePathErrorKey], nil);
    }
    if ([domain isEqual:NSOSStatusErrorDomain] && code == kMissingFileStatus) {
        return kMissingFile;
    }
    if (![domain isEqual:NSPOSIXErrorDomain]) {
        return nil;
    }
    const int number = Known(&KnownError::mac, static_cast<int>(code)).here;
    return [NSString stringWithUTF8String:std::strerror(number)];
}

/// An inner error stands in braces, without the address that Apple puts before it: no two runs would
/// log the same line. An array prints an entry a line.
NSString* Printed(id value) {
    if ([value isKindOfClass:[NSArray class]]) {
        NSString* lines = [value componentsJoinedByString:@",\n    "];
        return [NSString stringWithFormat:@"(\n    %@\n)", lines];
    }
    const BOOL isError = [value isKindOfClass:[NSError class]];
    return isError ? [NSString stringWithFormat:@"{%@}", value] : value;
}

/// The user info, sorted by key so that equal errors print alike.
NSString* UserInfoText(NSDictionary* userInfo) {
    NSMutableArray* entries = [NSMutableArray array];
    for (NSString* key in [[userInfo allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
        // The text already stands before the user info.
        if ([key isEqual:NSLocalizedDescriptionKey]) {
            continue;
        }
        [entries addObject:[NSString stringWithFormat:@"%@=%@", key,
                                                      Printed([userInfo objectForKey:key])]];
    }
    return [entries componentsJoinedByString:@", "];
}

}  // namespace

BOOL Fail(NSError** slot, FileAction action, int posixError, NSString* path, NSString* target) {
    if (slot == nullptr) {
        return NO;
    }
    const NSInteger code = CodeOf(action, posixError);
    NSMutableDictionary* info =
        [NSMutableDictionary dictionaryWithObject:Filled(Sentence(action, code), path, target)
                                           forKey:NSLocalizedDescriptionKey];
    if (path != nil) {
        [info setObject:path forKey:NSFilePathErrorKey];
    }
    if (posixError != kInvalidName) {
        [info setObject:InnerError(action, posixError) forKey:NSUnderlyingErrorKey];
    }
    if (Variant(action) != nil) {
        [info setObject:[NSArray arrayWithObject:Variant(action)] forKey:kVariant];
    }
    if (action == FileAction::Copy) {
        [info setObject:path forKey:@"NSSourceFilePathErrorKey"];
        [info setObject:target forKey:@"NSDestinationFilePath"];
    }
    *slot = [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:info];
    return NO;
}

void FailEncoding(NSError** slot, NSStringEncoding encoding, NSString* path) {
    if (slot != nullptr) {
        *slot = [NSError errorWithDomain:NSCocoaErrorDomain
                                    code:NSFileReadInapplicableStringEncodingError
                                userInfo:@{
                                    NSStringEncodingErrorKey : @(encoding),
                                    NSFilePathErrorKey : path
                                }];
    }
}

@implementation NSError (MacDescription)

- (NSString*)mac_description {
    NSString* text = [[self userInfo] objectForKey:@"NSDebugDescription"];
    if (text == nil) {
        text = [[self userInfo] objectForKey:NSLocalizedDescriptionKey];
    }
    if (text == nil) {
        text = KnownText(self);
    }
    NSString* info = UserInfoText([self userInfo]);
    NSString* head = [NSString stringWithFormat:@"Error Domain=%@ Code=%ld \"%@\"", [self domain],
                                                (long)[self code],
                                                text == nil ? [self localizedDescription] : text];
    return [info length] == 0 ? head : [head stringByAppendingFormat:@" UserInfo={%@}", info];
}

- (NSString*)mac_localizedDescription {
    NSString* text = [[self userInfo] objectForKey:NSLocalizedDescriptionKey];
    if (text != nil) {
        return text;
    }
    if ([[self domain] isEqual:NSCocoaErrorDomain] && KnownText(self) != nil) {
        return KnownText(self);
    }
    NSString* known =
        [[self domain] isEqual:NSPOSIXErrorDomain]
            ? KnownText(self)
            : [NSString stringWithFormat:@"(%@ error %ld.)", [self domain], (long)[self code]];
    return [@"The operation couldn’t be completed. " stringByAppendingString:known];
}

@end
