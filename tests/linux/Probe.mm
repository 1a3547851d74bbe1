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
        wchar_t wide[3] = {};
        const bool isWide = std::mbstowcs(wide, "\xC3\xFF", 3) == 2 && wide[0] == 0xC3 &&
                            wide[1] == 0xFF && std::mbstowcs(nullptr, "\xC3\xFF", 0) == 2;
        std::printf("wide=%s\n", isWide ? "bytes" : "else");
        char narrow[3] = {};
        const bool isNarrow = std::wcstombs(narrow, L"\xE9\xFF", 3) == 2 && narrow[0] == '\xE9' &&
                              std::wcstombs(narrow, L"\x100", 3) == static_cast<size_t>(-1);
        std::printf("narrow=%s\n", isNarrow ? "bytes" : "else");
        Tell("file", [[NSFileManager defaultManager] stringWithFileSystemRepresentation:"\xC3\xBC"
                                                                                 length:2]);
        Tell("path", [@"/x/a\\b:c" lastPathComponent]);
        std::printf("number=%s\n", [[NSString stringWithFormat:@"%.1f", 1.5] UTF8String]);
    }
    return 0;
}
