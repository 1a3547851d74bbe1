#include "browsers/ChromeInstall.h"

#include "browsers/AdministratorScript.h"
#include "browsers/ChromePaths.h"
#include "browsers/ChromeScripts.h"
#include "browsers/ExternalExtension.h"
#include "product/Addresses.h"

@implementation ChromeInstall (AllUsers)

+ (BOOL)installChromeAllUsers {
    // The script copies the descriptor to the system's folder and deletes it from the bundle again.
    if (!WriteExternalExtension(ChromePayload(kChromeDescriptor), @KS_CHROME_UPDATE_URL)) {
        return NO;
    }
    return RunAdministratorScript(kChromeInstallScript);
}

+ (BOOL)uninstallChromeAllUsers {
    return RunAdministratorScript(kChromeUninstallScript);
}

@end
