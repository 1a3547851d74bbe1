// The logger of the tools: it says nothing, and opens no log.
#include "logging/NSLogger.h"

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wunused-parameter"

@implementation NSLogger

+ (void)LogCritical:(NSString*)format, ... {
}

+ (void)LogFailure:(NSString*)format, ... {
}

+ (void)LogWarning:(NSString*)format, ... {
}

+ (void)LogInformation:(NSString*)format, ... {
}

+ (void)LogSuccess:(NSString*)format, ... {
}

+ (BOOL)IsEnabled {
    return NO;
}

+ (BOOL)IsEncryptionEnable {
    return NO;
}

+ (void)LogSystemInfo {
}

@end

#pragma clang diagnostic pop
