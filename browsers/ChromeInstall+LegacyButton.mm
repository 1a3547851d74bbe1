#include "browsers/ChromeInstall.h"

#include "browsers/ChromePaths.h"
#include "browsers/ChromeRemoval.h"
#include "browsers/ExternalExtension.h"
#include "logging/NSLogger.h"
#include "platform/FileModes.h"
#include "product/Addresses.h"

@implementation ChromeInstall (LegacyButton)

+ (void)installChromeButtonCurrUser {
    NSFileManager* files = [NSFileManager defaultManager];
    NSError* error = nil;
    CreateOpenFolder(ChromeUserExternalFolder(), &error);

    NSString* target = ChromeUserExternal(kChromeButtonPackage);
    if ([files fileExistsAtPath:target]) {
        // Meant: said of a package that is present.
        [NSLogger LogWarning:@"No copy, file not present: %@", target];
    } else {
        [files copyItemAtPath:ChromePayload(kChromeButtonPackage) toPath:target error:&error];
        if (error != nil) {
            // Meant: said of a copy that failed.
            [NSLogger LogWarning:@"Error removing file: %@", [error description]];
        }
    }
    WriteExternalExtension(ChromeUserExternal(kChromeButtonDescriptor), @KS_CHROME_UPDATE_URL);
}

+ (void)uninstallChromeButtonCurrUser {
    NSString* package = ChromeUserExternal(kChromeButtonPackage);
    RemoveChromeFile(package, package);
    [[NSFileManager defaultManager] removeItemAtPath:ChromeUserExternal(kChromeButtonDescriptor)
                                               error:NULL];
}

@end
