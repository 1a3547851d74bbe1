// Apple says why a folder could not be listed; GNUstep takes an unreadable one for empty.
// subpathsOfDirectoryAtPath:error: is missing from GNUstep.
#include <sys/stat.h>

#include <string>
#include <vector>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileSystemPath.h"
#include "linux/corrections/FileTree.h"

namespace {

/// Lists the folder of a path that came from the program.
bool ListNamedFolder(NSString* path, std::string& folder, std::vector<std::string>& names,
                     NSError** error) {
    NSString* failed =
        [NSString stringWithFormat:@"The folder %@ couldn’t be opened", QuotedName(path)];
    if (!FileSystemPath(path, folder)) {
        return Fail(error, FileError(NSFileReadInvalidFileNameError, failed, path, 0));
    }
    if (const int posixError = ListFolder(folder, names)) {
        return Fail(error, FileError(CocoaReadingCode(posixError), failed, path, posixError));
    }
    return true;
}

bool IsFolderItself(const std::string& path) {
    struct stat info;
    return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

void AddSubpaths(const std::string& folder, const std::string& prefix,
                 const std::vector<std::string>& names, NSMutableArray* subpaths) {
    for (const std::string& name : names) {
        NSString* subpath = StringFromFileSystem(prefix + name);
        if (subpath == nil) {
            continue;
        }
        [subpaths addObject:subpath];
        const std::string path = folder + '/' + name;
        std::vector<std::string> inner;
        // What lies in a folder that cannot be read stays unknown; the folder itself is listed.
        if (IsFolderItself(path) && ListFolder(path, inner) == 0) {
            AddSubpaths(path, prefix + name + '/', inner, subpaths);
        }
    }
}

}  // namespace

@implementation NSFileManager (AppleListing)

- (NSArray*)mac_contentsOfDirectoryAtPath:(NSString*)path error:(NSError**)error {
    std::string folder;
    std::vector<std::string> names;
    if (!ListNamedFolder(path, folder, names, error)) {
        return nil;
    }
    NSMutableArray* contents = [NSMutableArray array];
    for (const std::string& name : names) {
        if (NSString* text = StringFromFileSystem(name)) {
            [contents addObject:text];
        }
    }
    return contents;
}

- (NSArray*)subpathsOfDirectoryAtPath:(NSString*)path error:(NSError**)error {
    std::string folder;
    std::vector<std::string> names;
    if (!ListNamedFolder(path, folder, names, error)) {
        return nil;
    }
    NSMutableArray* subpaths = [NSMutableArray array];
    AddSubpaths(folder, "", names, subpaths);
    return subpaths;
}

@end
