#include "browsers/ChromePreferences.h"

#include <string>
#include <string_view>

#include "browsers/ChromePaths.h"
#include "crypto/Utf8.h"

namespace {

constexpr int kMostFurtherReadings = 3;

struct Edit {
    const char* condition;  // the edit is made when the text contains this; "": in any other case
    const char* search;
    const char* replacement;
};

// The first edit whose condition holds is the only one. Meant: only one blank behind a colon is
// understood. Meant: two tabs before a setting that is switched off, eight blanks before one on.
const Edit kSwitchOff[] = {
    {"password_manager_enabled",  //
     "\"password_manager_enabled\": true", "\"password_manager_enabled\": false"},
    {"\"exited_cleanly\": true",  //
     "\"exited_cleanly\": true",
     "\"exited_cleanly\": true, \n\t\t\"password_manager_enabled\": false"},
    {"",  //
     "\"exited_cleanly\": false",
     "\"exited_cleanly\": false, \n\t\t\"password_manager_enabled\": false"},
};
const Edit kSwitchOn[] = {
    {"password_manager_enabled",  //
     "\"password_manager_enabled\": false", "\"password_manager_enabled\": true"},
    {"\"exited_cleanly\": true",  //
     "\"exited_cleanly\": true",
     "\"exited_cleanly\": true, \n        \"password_manager_enabled\": true"},
    {"",  //
     "\"exited_cleanly\": false",
     "\"exited_cleanly\": false, \n        \"password_manager_enabled\": true"},
};

}  // namespace

// The bytes are edited, not a string made of them: what the edit does not name stays as it is, a
// byte-order mark and characters that no editor would have written among it.
std::string EditedChromePreferences(std::string_view text, BOOL on) {
    const Edit* edit = on ? kSwitchOn : kSwitchOff;
    while (text.find(edit->condition) == std::string_view::npos) {
        ++edit;
    }
    const std::string_view search = edit->search;
    std::string edited;
    edited.reserve(text.size());
    size_t from = 0;
    for (size_t at = 0; (at = text.find(search, from)) != std::string_view::npos;
         from = at + search.size()) {
        edited.append(text, from, at - from).append(edit->replacement);
    }
    return edited.append(text, from);
}

namespace {

NSError* NoUtf8(NSString* path) {
    NSDictionary* info = [NSDictionary
        dictionaryWithObjectsAndKeys:path, NSFilePathErrorKey,
                                     [NSNumber numberWithUnsignedInteger:NSUTF8StringEncoding],
                                     NSStringEncodingErrorKey, nil];
    return [NSError errorWithDomain:NSCocoaErrorDomain
                               code:NSFileReadInapplicableStringEncodingError
                           userInfo:info];
}

// Reads the preferences and edits what they hold.
BOOL ReadEdited(NSString* path, BOOL on, std::string& edited, NSError** error) {
    // The file may be large: nothing of it lives longer than this.
    NSError* failure = nil;
    @autoreleasepool {
        NSData* data = [NSData dataWithContentsOfFile:path options:0 error:&failure];
        const std::string_view text(static_cast<const char*>([data bytes]), [data length]);
        if (data != nil && !IsUtf8(text)) {
            failure = NoUtf8(path);
        }
        if (failure == nil) {
            edited = EditedChromePreferences(text, on);
        }
        [failure retain];
    }
    [failure autorelease];
    if (failure != nil && error != NULL) {
        *error = failure;
    }
    return failure == nil;
}

// What is another one when the file was written since: which file it is, its size and its time.
NSArray* StateOf(NSString* path) {
    NSString* file = [path stringByResolvingSymlinksInPath];
    NSArray* keys =
        [NSArray arrayWithObjects:NSFileSystemFileNumber, NSFileSize, NSFileModificationDate, nil];
    return [[[NSFileManager defaultManager] attributesOfItemAtPath:file error:NULL]
        objectsForKeys:keys
        notFoundMarker:[NSNull null]];
}

}  // namespace

BOOL SwitchChromePasswordManager(BOOL on, NSError** error) {
    NSString* path = ChromePreferences();
    NSArray* state = StateOf(path);
    std::string edited;
    if (!ReadEdited(path, on, edited, error)) {
        return NO;
    }
    for (int again = 0; again < kMostFurtherReadings; ++again) {
        NSArray* now = StateOf(path);
        if ([now isEqual:state]) {
            break;
        }
        state = now;
        if (!ReadEdited(path, on, edited, NULL)) {
            return YES;
        }
    }
    [[NSData dataWithBytesNoCopy:const_cast<char*>(edited.data())
                          length:edited.size()
                    freeWhenDone:NO] writeToFile:path atomically:YES];
    return YES;
}
