// The folders of the user and of the machine lie where a Mac has them ("~/Library/Application
// Support"); GNUstep has a layout of its own. It finds its own parts through the system domain,
// which is left to it.
#include <Foundation/Foundation.h>
#include <dlfcn.h>

namespace {

struct StandardFolder {
    NSSearchPathDirectory directory;
    NSString* path;
    bool alsoOfMachine;  ///< there is one for all users, below "/"
};

const StandardFolder kStandardFolders[] = {
    {NSApplicationDirectory, @"Applications", true},
    {NSLibraryDirectory, @"Library", true},
    {NSCachesDirectory, @"Library/Caches", true},
    {NSApplicationSupportDirectory, @"Library/Application Support", true},
    {NSDocumentDirectory, @"Documents", false},
    {NSDesktopDirectory, @"Desktop", false},
    {NSDownloadsDirectory, @"Downloads", false},
    {NSMoviesDirectory, @"Movies", false},
    {NSMusicDirectory, @"Music", false},
    {NSPicturesDirectory, @"Pictures", false},
};

const StandardFolder* Find(NSSearchPathDirectory directory) {
    for (const StandardFolder& folder : kStandardFolders) {
        if (folder.directory == directory) {
            return &folder;
        }
    }
    return nullptr;
}

NSArray* PathsOfGNUstep(NSSearchPathDirectory directory, NSSearchPathDomainMask domains,
                        BOOL expandTilde) {
    static const auto original = reinterpret_cast<decltype(&NSSearchPathForDirectoriesInDomains)>(
        dlsym(RTLD_NEXT, "NSSearchPathForDirectoriesInDomains"));
    return original(directory, domains, expandTilde);
}

}  // namespace

NSArray* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                             NSSearchPathDomainMask domains, BOOL expandTilde) {
    const StandardFolder* folder = Find(directory);
    if (folder == nullptr) {
        return PathsOfGNUstep(directory, domains, expandTilde);
    }
    NSMutableArray* paths = [NSMutableArray array];
    if ((domains & NSUserDomainMask) != 0) {
        NSString* home = expandTilde ? NSHomeDirectory() : @"~";
        [paths addObject:[home stringByAppendingPathComponent:folder->path]];
    }
    if ((domains & NSLocalDomainMask) != 0 && folder->alsoOfMachine) {
        [paths addObject:[@"/" stringByAppendingPathComponent:folder->path]];
    }
    const NSSearchPathDomainMask others = domains & ~(NSUserDomainMask | NSLocalDomainMask);
    if (others != 0) {
        [paths addObjectsFromArray:PathsOfGNUstep(directory, others, expandTilde)];
    }
    return paths;
}
