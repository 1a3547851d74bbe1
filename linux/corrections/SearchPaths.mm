// The Library folder and its Application Support lie where a Mac has them; GNUstep has a layout of
// its own. It finds its own parts through the system domain and in other folders, which are left to
// it.
#include <Foundation/Foundation.h>
#include <dlfcn.h>

namespace {

NSArray* PathsOfGNUstep(NSSearchPathDirectory directory, NSSearchPathDomainMask domains,
                        BOOL expandTilde) {
    static const auto original = reinterpret_cast<decltype(&NSSearchPathForDirectoriesInDomains)>(
        dlsym(RTLD_NEXT, "NSSearchPathForDirectoriesInDomains"));
    return original(directory, domains, expandTilde);
}

}  // namespace

NSArray* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                             NSSearchPathDomainMask domains, BOOL expandTilde) {
    if (directory != NSLibraryDirectory && directory != NSApplicationSupportDirectory) {
        return PathsOfGNUstep(directory, domains, expandTilde);
    }
    NSString* folder =
        directory == NSLibraryDirectory ? @"Library" : @"Library/Application Support";
    NSMutableArray* paths = [NSMutableArray array];
    if ((domains & NSUserDomainMask) != 0) {
        NSString* home = expandTilde ? NSHomeDirectory() : @"~";
        [paths addObject:[home stringByAppendingPathComponent:folder]];
    }
    if ((domains & NSLocalDomainMask) != 0) {
        [paths addObject:[@"/" stringByAppendingPathComponent:folder]];
    }
    const NSSearchPathDomainMask others =
        domains & ~NSSearchPathDomainMask{NSUserDomainMask | NSLocalDomainMask};
    if (others != 0) {
        [paths addObjectsFromArray:PathsOfGNUstep(directory, others, expandTilde)];
    }
    return paths;
}
