#include "browsers/ExternalExtension.h"

#include "platform/FileModes.h"
#include "product/Places.h"

BOOL WriteExternalExtension(NSString* path, NSString* updateURL) {
    NSString* text = [NSString stringWithFormat:@"{ \"external_update_url\": \"%@\" }", updateURL];
    [text writeToFile:path atomically:YES encoding:NSUTF8StringEncoding error:NULL];
    return SetFileMode(path, kOpenToEverybody);
}
