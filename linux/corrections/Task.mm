// GNUstep starts a program without learning whether it could be started: a file that is no program
// would count as running. As on a Mac, it raises here.
#include <Foundation/Foundation.h>

#include <cstring>

#include "linux/corrections/FileSystemPath.h"
#include "linux/corrections/Programs.h"

namespace {

// Half a surrogate pair, which has no UTF-8 form, becomes a question mark.
std::string Utf8(NSString* text) {
    NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return std::string(static_cast<const char*>([bytes bytes]), [bytes length]);
}

}  // namespace

@implementation NSTask (Launching)

+ (NSTask*)mac_launchedTaskWithLaunchPath:(NSString*)path arguments:(NSArray*)arguments {
    std::string program;
    if (!FileSystemPath(path, program) || arguments == nil) {
        [NSException raise:NSInvalidArgumentException format:@"no launch path or no arguments"];
    }
    Words words;
    for (NSString* argument in arguments) {
        words.push_back(Utf8(argument));
    }
    if (const int failure = StartDetached(program, words, Output::Inherited)) {
        [NSException raise:NSInvalidArgumentException
                    format:@"%@: %s", path, std::strerror(failure)];
    }
    NSTask* task = [[[NSTask alloc] init] autorelease];
    [task setLaunchPath:path];
    [task setArguments:arguments];
    return task;
}

@end
