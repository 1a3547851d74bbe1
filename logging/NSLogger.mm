#include "logging/NSLogger.h"

#include <string>

#include "crypto/CocoaStrings.h"
#include "logging/CLogger.h"

namespace {

// The text as a printf format that takes no arguments. "%%" is formatted like any other; every
// other "%" would ask for an argument that nobody passed, so it is doubled and comes out as it
// stands.
std::string AsFormat(const std::string& text) {
    std::string format;
    format.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        format += text[i];
        if (text[i] == '%') {
            format += '%';
            if (i + 1 < text.size() && text[i + 1] == '%') {
                ++i;
            }
        }
    }
    return format;
}

void Log(CLogger::LogLevel level, NSString* format, va_list args) {
    if (format == nil) {
        return;
    }
    @autoreleasepool {
        NSString* message = [[[NSString alloc] initWithFormat:format arguments:args] autorelease];
        const std::string text = AsFormat(Utf8Bytes(message));
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wformat-security"  // meant: the text is formatted a second time
        CLogger::WriteLog(level, text.c_str());
#pragma clang diagnostic pop
    }
}

}  // namespace

// Collects the variable arguments of the enclosing method; a function cannot do it for a method.
#define LOG_AT(level)             \
    do {                          \
        va_list args;             \
        va_start(args, format);   \
        Log(level, format, args); \
        va_end(args);             \
    } while (false)

@implementation NSLogger

+ (void)LogCritical:(NSString*)format, ... {
    LOG_AT(CLogger::LevelCritical);
}

+ (void)LogFailure:(NSString*)format, ... {
    LOG_AT(CLogger::LevelFailure);
}

+ (void)LogWarning:(NSString*)format, ... {
    LOG_AT(CLogger::LevelWarning);
}

+ (void)LogInformation:(NSString*)format, ... {
    LOG_AT(CLogger::LevelInfo);
}

+ (void)LogSuccess:(NSString*)format, ... {
    LOG_AT(CLogger::LevelInfo);  // meant: there is no level of success
}

+ (BOOL)IsEnabled {
    return CLogger::IsEnabled();
}

+ (BOOL)IsEncryptionEnable {
    return CLogger::IsEncryptionEnable();
}

+ (void)LogSystemInfo {
    NSProcessInfo* process = [NSProcessInfo processInfo];
    [NSLogger
        LogInformation:@"System Info - OS: OSX %@<br>", [process operatingSystemVersionString]];
    [NSLogger LogInformation:@"System Info - Process Name: %@<br>", [process processName]];
    [NSLogger LogInformation:@"System Info - Process ID: %d<br>", [process processIdentifier]];
    [NSLogger LogInformation:@"System Info - Environment: %@<br><br>", [process environment]];
    NSString* arguments =
        [[[process arguments] valueForKey:@"description"] componentsJoinedByString:@"; "];
    [NSLogger LogInformation:@"System Info - Call arguments: %@<br>", arguments];
}

@end
