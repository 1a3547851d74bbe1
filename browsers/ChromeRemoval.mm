#include "browsers/ChromeRemoval.h"

#include "logging/NSLogger.h"

void RemoveChromeFile(NSString* path, NSString* reported) {
    NSFileManager* files = [NSFileManager defaultManager];
    if (![files fileExistsAtPath:path]) {
        [NSLogger LogWarning:@"No delete, file not present: %@", reported];
        return;
    }
    NSError* error = nil;
    if (![files removeItemAtPath:path error:&error]) {
        [NSLogger LogWarning:@"Error removing file: %@", [error description]];
    }
}
