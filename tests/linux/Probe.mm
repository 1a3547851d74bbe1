// Tells what a program finds when it starts: one fact a line. Tests run it in environments of their
// own.
#include <Foundation/Foundation.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace {

void Tell(const char* what, NSString* value) {
    std::printf("%s=%s\n", what, value == nil ? "(nil)" : [value UTF8String]);
}

}  // namespace

int main() {
    @autoreleasepool {
        NSProcessInfo* process = [NSProcessInfo processInfo];
        // GNUstep asks for the environment's locale while it works these out.
        [[NSUserDefaults standardUserDefaults] dictionaryRepresentation];
        // A run loop does this from time to time.
        [[NSUserDefaults standardUserDefaults] synchronize];
        [[[[NSNumberFormatter alloc] init] autorelease] stringFromNumber:@1.5];
        Tell("process", [process processName]);
        Tell("arguments", [[process arguments] componentsJoinedByString:@"|"]);
        Tell("variable", [[process environment] objectForKey:@"KS_VARIABLE"]);
        Tell("encoding",
             [NSString localizedNameOfStringEncoding:[NSString defaultCStringEncoding]]);
        Tell("c-string", [NSString stringWithCString:"\xC3\xBC"
                                            encoding:[NSString defaultCStringEncoding]]);
        NSBundle* bundle = [NSBundle mainBundle];
        Tell("bundle", [bundle bundlePath]);
        Tell("identifier", [bundle bundleIdentifier]);
        Tell("version", [process operatingSystemVersionString]);
        std::printf("locale=%s\n", setlocale(LC_ALL, nullptr));
        std::printf("wide=%s\n", std::mbstowcs(nullptr, "\xC3\xBC", 0) == 1 ? "utf-8" : "bytes");
        std::printf("number=%s\n", [[NSString stringWithFormat:@"%.1f", 1.5] UTF8String]);
    }
    return 0;
}
