#pragma once

#include <Foundation/Foundation.h>

/// CLogger for code that has Cocoa strings. No instances, no state.
///
/// Each Log… operation builds its text from an NSString format and arguments, and hands its UTF-8
/// bytes, up to the first NUL, to CLogger. Meant: the text is formatted a second time, by printf's
/// formatter and without arguments: "%%" becomes "%", and any other "%" is written as it stands. An
/// object that is nil prints as "(null)". A nil format does nothing. The compiler holds the arguments
/// against the format.
@interface NSLogger : NSObject

/// Level CRITICAL.
+ (void)LogCritical:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
/// Level FAILURE.
+ (void)LogFailure:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
/// Level WARNING.
+ (void)LogWarning:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
/// Level INFO.
+ (void)LogInformation:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
/// Level INFO. Meant: there is no level of success.
+ (void)LogSuccess:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);

/// Whether the process-wide logger is on.
+ (BOOL)IsEnabled;
/// Whether the process-wide logger was last asked to encipher its file.
+ (BOOL)IsEncryptionEnable;

/// Five INFO lines about the process, which end in "<br>" as in a page:
///  - "System Info - OS: OSX %@<br>" with the system's version
///  - "System Info - Process Name: %@<br>"
///  - "System Info - Process ID: %d<br>"
///  - "System Info - Environment: %@<br><br>"
///  - "System Info - Call arguments: %@<br>" with "; " between them
/// The environment may hold secrets of the user: call it only for a log that stays with the user.
+ (void)LogSystemInfo;

@end
