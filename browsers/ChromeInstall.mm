#include "browsers/ChromeInstall.h"

#include "browsers/BrowserLookup.h"
#include "browsers/ChromePaths.h"
#include "browsers/ChromePreferences.h"
#include "logging/NSLogger.h"
#include "platform/AppWorkspaceUtils.h"
#include "product/Applications.h"

namespace {

NSString* const kBundleIdentifier = @KS_CHROME_IDENTIFIER;
NSString* const kApplicationName = @KS_CHROME_NAME;
NSString* const kUpdateURLKey = @"external_update_url";

}  // namespace

@implementation ChromeInstall

+ (BOOL)IsBrowserInstalled {
    NSURL* url = nil;
    const UInt32 status = FindBrowser(kBundleIdentifier, &url);
    if (status == noErr) {
        [NSLogger LogSuccess:@"The app's URL is: %@", url];
        return YES;
    }
    if (status == kBrowserNotFound) {
        [NSLogger LogWarning:@"App not found"];
    } else {
        // Meant: logged unsigned.
        [NSLogger LogFailure:@"An error occurred: %ld", static_cast<long>(status)];
    }
    return NO;
}

+ (BOOL)IsBrowserStarted {
    return [AppWorkspaceUtils IsAppRunning:kApplicationName];  // meant: asked by name
}

+ (BOOL)IsExtensionInstalled {
    if (![ChromeInstall IsBrowserInstalled]) {
        return NO;
    }
    NSFileManager* files = [NSFileManager defaultManager];
    NSString* descriptor = ChromeUserExternal(kChromeDescriptor);
    if (![files fileExistsAtPath:descriptor]) {
        descriptor = ChromeSystemExternal(kChromeDescriptor);
    }
    NSString* text = [NSString stringWithContentsOfFile:descriptor
                                               encoding:NSUTF8StringEncoding
                                                  error:NULL];
    return text != nil && [text rangeOfString:kUpdateURLKey].location != NSNotFound &&
           [files fileExistsAtPath:ChromeInstalledHostManifest()];
}

+ (BOOL)InstallExtension {
    if (![ChromeInstall IsBrowserInstalled]) {
        return YES;
    }
    if (![ChromeInstall installChromeAllUsers]) {
        [ChromeInstall uninstallChromeCurrUser];
        [ChromeInstall uninstallChromeButtonCurrUser];
        [ChromeInstall installChromeCurrUser];
        [ChromeInstall installChromeButtonCurrUser];
    }
    NSError* error = nil;
    if (!SwitchChromePasswordManager(NO, &error)) {
        [NSLogger LogWarning:@"ERROR deactivate password manager in chrome: %@. Error: %@",
                             ChromePreferences(), [error description]];
    }
    return YES;
}

+ (BOOL)UninstallExtension {
    return [ChromeInstall UninstallExtension:YES];
}

+ (BOOL)UninstallExtension:(BOOL)removeFiles {
    if (removeFiles && ![ChromeInstall uninstallChromeAllUsers]) {
        [ChromeInstall uninstallChromeCurrUser];
        [ChromeInstall uninstallChromeButtonCurrUser];
    }
    SwitchChromePasswordManager(YES, NULL);
    return YES;
}

@end
