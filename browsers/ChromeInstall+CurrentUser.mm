#include "browsers/ChromeInstall.h"

#include "browsers/AdministratorScript.h"
#include "browsers/ChromePaths.h"
#include "browsers/ChromeRemoval.h"
#include "browsers/ChromeScripts.h"
#include "browsers/ExternalExtension.h"
#include "logging/NSLogger.h"
#include "platform/FileModes.h"
#include "product/Addresses.h"

namespace {

BOOL Copy(NSString* source, NSString* target, NSError** error) {
    return [[NSFileManager defaultManager] copyItemAtPath:source toPath:target error:error];
}

// Whether there is something at the target already. Meant: said of a file that is present.
bool IsPresent(NSString* target) {
    if (![[NSFileManager defaultManager] fileExistsAtPath:target]) {
        return false;
    }
    [NSLogger LogWarning:@"No copy: file not present: %@", target];
    return true;
}

void ReportInstallError(NSError* error) {
    [NSLogger LogWarning:@"Error install for current user: %@", [error description]];
}

void InstallHostManifest() {
    NSString* target = ChromeInstalledHostManifest();
    if (IsPresent(target)) {
        return;
    }
    NSError* error = nil;
    if (!Copy(ChromePayloadHostManifest(), target, &error)) {
        RunAdministratorScript(kChromeFolderMakingScript);
        Copy(ChromePayloadHostManifest(), target, &error);
        ReportInstallError(error);  // meant: the first error also when the second copy succeeded
    }
}

void InstallPackage() {
    NSError* error = nil;
    CreateOpenFolder(ChromeUserExternalFolder(), &error);

    NSString* target = ChromeUserExternal(kChromePackage);
    if (!IsPresent(target)) {
        Copy(ChromePayload(kChromePackage), target, &error);
        ReportInstallError(error);  // meant: also without any error
    }
}

}  // namespace

@implementation ChromeInstall (CurrentUser)

+ (void)installChromeCurrUser {
    InstallHostManifest();
    InstallPackage();
    WriteExternalExtension(ChromeUserExternal(kChromeDescriptor), @KS_CHROME_UPDATE_URL);
}

+ (void)uninstallChromeCurrUser {
    RemoveChromeFile(ChromeUserPlugIn(), ChromeUserPlugIn());
    RemoveChromeFile(ChromeInstalledHostManifest(), ChromeInstalledHostManifest());
    // Meant: a missing package is reported with the host manifest's path.
    RemoveChromeFile(ChromeUserExternal(kChromePackage), ChromeInstalledHostManifest());
    [[NSFileManager defaultManager] removeItemAtPath:ChromeUserExternal(kChromeDescriptor)
                                               error:NULL];
}

@end
