#include "browsers/ChromePreferences.h"

#include <string>
#include <string_view>

#include "browsers/ChromePaths.h"
#include "crypto/Utf8.h"

namespace {

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

// The bytes are edited, not a string made of them: what the edit does not name stays as it is, a
// byte-order mark and characters that no editor would have written among it.
std::string Edited(std::string_view text, BOOL on) {
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

}  // namespace

std::string EditedChromePreferences(std::string_view text, BOOL on) {
    return Edited(text, on);
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

}  // namespace

BOOL SwitchChromePasswordManager(BOOL on, NSError** error) {
    // The file may be large: nothing of it lives longer than this.
    NSError* failure = nil;
    @autoreleasepool {
        NSString* path = ChromePreferences();
        NSData* data = [NSData dataWithContentsOfFile:path options:0 error:&failure];
        const std::string_view text(static_cast<const char*>([data bytes]), [data length]);
        if (data != nil && !IsUtf8(text)) {
            failure = NoUtf8(path);
        }
        if (failure == nil) {
            const std::string edited = Edited(text, on);
            [[NSData dataWithBytesNoCopy:const_cast<char*>(edited.data())
                                  length:edited.size()
                            freeWhenDone:NO] writeToFile:path atomically:YES];
        }
        [failure retain];
    }
    [failure autorelease];
    if (failure != nil && error != NULL) {
        *error = failure;
    }
    return failure == nil;
}
