#include "installer/InstallerRun.h"

#include "browsers/ChromeInstall.h"
#include "browsers/EdgeInstall.h"
#include "browsers/FFoxInstall.h"
#include "browsers/SafariInstall.h"

void RunInstaller() {
    @autoreleasepool {
        [ChromeInstall UninstallExtension];
        [FFoxInstall UninstallExtension];
        [SafariInstall UninstallExtension];
        [EdgeInstall UninstallExtension];

        [SafariInstall InstallExtension];
        // Installing asks for the browser again, and most remove once more: that is meant.
        if ([FFoxInstall IsBrowserInstalled]) {
            [FFoxInstall InstallExtension];
        }
        if ([ChromeInstall IsBrowserInstalled]) {
            [ChromeInstall InstallExtension];
        }
        if ([EdgeInstall IsBrowserInstalled]) {
            [EdgeInstall InstallExtension];
        }
    }
}
