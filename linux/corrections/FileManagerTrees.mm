// Copying, moving and removing: Apple's errors say what failed and why; GNUstep's are empty or of
// another domain.
#include <string>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileSystemPath.h"
#include "linux/corrections/FileTree.h"

namespace {

NSInteger CodeOf(const TreeFailure& failure) {
    return failure.reading ? CocoaReadingCode(failure.error) : CocoaWritingCode(failure.error);
}

/// Apple raises for a missing argument here, and only here.
void RequirePaths(NSString* method, NSString* source, NSString* target) {
    if (source == nil || target == nil) {
        [NSException raise:NSInvalidArgumentException
                    format:@"*** -[NSFileManager %@]: %@ path is nil", method,
                           source == nil ? @"source" : @"destination"];
    }
}

}  // namespace

@implementation NSFileManager (AppleTrees)

- (BOOL)mac_copyItemAtPath:(NSString*)source toPath:(NSString*)target error:(NSError**)error {
    RequirePaths(NSStringFromSelector(_cmd), source, target);
    NSString* failed = [NSString stringWithFormat:@"%@ couldn’t be copied to %@",
                                                  QuotedName(source), QuotedFolderName(target)];
    std::string from;
    std::string to;
    if (!FileSystemPath(source, from)) {
        return Fail(error, FileError(NSFileReadInvalidFileNameError, failed, source, 0));
    }
    if (!FileSystemPath(target, to)) {
        return Fail(error, FileError(NSFileWriteInvalidFileNameError, failed, target, 0));
    }
    const TreeFailure failure = CopyTree(from, to);
    if (failure.happened()) {
        return Fail(error, FileError(CodeOf(failure), failed, StringFromFileSystem(failure.path),
                                     failure.error));
    }
    return YES;
}

- (BOOL)mac_moveItemAtPath:(NSString*)source toPath:(NSString*)target error:(NSError**)error {
    RequirePaths(NSStringFromSelector(_cmd), source, target);
    NSString* failed = [NSString stringWithFormat:@"%@ couldn’t be moved to %@", QuotedName(source),
                                                  QuotedFolderName(target)];
    std::string from;
    std::string to;
    if (!FileSystemPath(source, from) || !FileSystemPath(target, to)) {
        return Fail(error, FileError(NSFileWriteInvalidFileNameError, failed, source, 0));
    }
    const TreeFailure failure = MoveTree(from, to);
    if (failure.happened()) {
        // A missing source counts as a failed change here: 4, where copying answers 260.
        return Fail(error, FileError(CocoaWritingCode(failure.error), failed,
                                     StringFromFileSystem(failure.path), failure.error));
    }
    return YES;
}

- (BOOL)mac_removeItemAtPath:(NSString*)path error:(NSError**)error {
    NSString* failed = [NSString stringWithFormat:@"%@ couldn’t be removed", QuotedName(path)];
    std::string item;
    if (!FileSystemPath(path, item)) {
        return Fail(error, FileError(NSFileWriteInvalidFileNameError, failed, path, 0));
    }
    const TreeFailure failure = RemoveTree(item);
    if (failure.happened()) {
        return Fail(error, FileError(CodeOf(failure), failed, StringFromFileSystem(failure.path),
                                     failure.error));
    }
    return YES;
}

@end
