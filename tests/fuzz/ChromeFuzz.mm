// Any bytes as Chrome's preferences: the edit is made, and every other byte stays.
#include <fuzzer/FuzzedDataProvider.h>

#include "browsers/ChromePreferences.h"
#include "tests/fuzz/Iconv.h"
#include "tests/fuzz/Require.h"
#include "tests/support/Files.h"

namespace {

// In Latin-1 a byte is a letter, so that Cocoa's search and replacement work on bytes.
NSString* Letters(const std::string& bytes) {
    return [[[NSString alloc] initWithBytes:bytes.data()
                                     length:bytes.size()
                                   encoding:NSISOLatin1StringEncoding] autorelease];
}

bool Contains(NSString* text, NSString* part) {
    return [text rangeOfString:part options:NSLiteralSearch].location != NSNotFound;
}

NSString* Replaced(NSString* text, NSString* part, NSString* replacement) {
    return [text stringByReplacingOccurrencesOfString:part
                                           withString:replacement
                                              options:NSLiteralSearch
                                                range:NSMakeRange(0, [text length])];
}

std::string Expected(const std::string& bytes, BOOL on) {
    NSString* text = Letters(bytes);
    NSString* const switched =
        [NSString stringWithFormat:@"\"password_manager_enabled\": %s", on ? "true" : "false"];
    if (Contains(text, @"password_manager_enabled")) {
        text = Replaced(
            text,
            [NSString stringWithFormat:@"\"password_manager_enabled\": %s", on ? "false" : "true"],
            switched);
    } else {
        NSString* exited = Contains(text, @"\"exited_cleanly\": true")
                               ? @"\"exited_cleanly\": true"
                               : @"\"exited_cleanly\": false";
        text = Replaced(
            text, exited,
            [NSString stringWithFormat:@"%@, \n%s%@", exited, on ? "        " : "\t\t", switched]);
    }
    NSData* data = [text dataUsingEncoding:NSISOLatin1StringEncoding];
    return std::string(static_cast<const char*>([data bytes]), [data length]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    @autoreleasepool {
        FuzzedDataProvider input(data, size);
        const BOOL on = input.ConsumeBool();
        const std::string bytes = input.ConsumeRemainingBytesAsString();
        NSString* const place = @"~/Library/Application Support/Google/Chrome/Default/Preferences";
        const std::string path = [[place stringByExpandingTildeInPath] fileSystemRepresentation];
        WriteFile(path, bytes);
        NSError* error = nil;
        const bool done = SwitchChromePasswordManager(on, &error);
        std::u16string units;
        REQUIRE(done == Convert("UTF-16LE", "UTF-8", bytes, units));
        REQUIRE((error == nil) == done);
        REQUIRE(ReadFile(path) == (done ? Expected(bytes, on) : bytes));
    }
    return 0;
}
