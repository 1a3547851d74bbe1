// GNUstep's NSAppleScript, an empty class, and the class of its results, with what the program uses
// of Apple's.
#pragma once

#include <Foundation/NSAppleEventDescriptor.h>
#include_next <Foundation/NSAppleScript.h>

@class NSDictionary, NSString;

extern NSString* const NSAppleScriptErrorMessage;  ///< NSString
extern NSString* const NSAppleScriptErrorNumber;   ///< NSNumber

@interface NSAppleEventDescriptor (AppleDeclarations)
- (NSString*)stringValue;
@end

/// Understands exactly `do shell script "…"`, with or without `with administrator privileges`
/// behind it, and the escapes of AppleScript's texts: \" \\ \n \r \t.
@interface NSAppleScript (AppleDeclarations)

- (id)initWithSource:(NSString*)source;

/// @param errorInfo  on failure gets NSAppleScriptErrorNumber and NSAppleScriptErrorMessage: the
///                   exit status of the command with its standard error (else its output, else a
///                   text of AppleScript's own); -128 for a prompt that was cancelled; -60007 for
///                   rights that were refused; -2741 for any other source
/// @return the command's standard output, with every line end a return and one at its end dropped;
///         nil on failure
- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)errorInfo;

@end
