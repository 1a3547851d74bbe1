#include "browsers/ChromePreferences.h"

#include "browsers/ChromePaths.h"

namespace {

struct Edit {
    NSString* condition;  // the edit is made when the text contains this; nil: in any other case
    NSString* search;
    NSString* replacement;
};

// The first edit whose condition holds is the only one. A new setting is indented differently by
// the two tables, which is meant.
const Edit kSwitchOff[] = {
    {@"password_manager_enabled",  //
     @"\"password_manager_enabled\": true", @"\"password_manager_enabled\": false"},
    {@"\"exited_cleanly\": true",  //
     @"\"exited_cleanly\": true",
     @"\"exited_cleanly\": true, \n\t\t\"password_manager_enabled\": false"},
    {nil,  //
     @"\"exited_cleanly\": false",
     @"\"exited_cleanly\": false, \n\t\t\"password_manager_enabled\": false"},
};
const Edit kSwitchOn[] = {
    {@"password_manager_enabled",  //
     @"\"password_manager_enabled\": false", @"\"password_manager_enabled\": true"},
    {@"\"exited_cleanly\": true",  //
     @"\"exited_cleanly\": true",
     @"\"exited_cleanly\": true, \n        \"password_manager_enabled\": true"},
    {nil,  //
     @"\"exited_cleanly\": false",
     @"\"exited_cleanly\": false, \n        \"password_manager_enabled\": true"},
};

bool Contains(NSString* text, NSString* part) {
    return [text rangeOfString:part options:NSLiteralSearch].location != NSNotFound;
}

NSString* Edited(NSString* text, BOOL on) {
    const Edit* edit = on ? kSwitchOn : kSwitchOff;
    while (edit->condition != nil && !Contains(text, edit->condition)) {
        ++edit;
    }
    // Literal: a search by meaning would miss a match before a combining character.
    return [text stringByReplacingOccurrencesOfString:edit->search
                                           withString:edit->replacement
                                              options:NSLiteralSearch
                                                range:NSMakeRange(0, [text length])];
}

}  // namespace

BOOL SwitchChromePasswordManager(BOOL on, NSError** error) {
    NSString* path = ChromePreferences();
    NSString* text = [[NSString alloc] initWithContentsOfFile:path
                                                     encoding:NSUTF8StringEncoding
                                                        error:error];
    if (text == nil) {
        return NO;
    }
    // The file may be large: no text of it lives longer than it is needed.
    NSString* edited = nil;
    @autoreleasepool {
        edited = [Edited([text autorelease], on) retain];
    }
    @autoreleasepool {
        [[edited autorelease] writeToFile:path
                               atomically:YES
                                 encoding:NSUTF8StringEncoding
                                    error:NULL];
    }
    return YES;
}
