#include "installer/InstallerRun.h"

#include "browsers/EdgeInstall.h"
#include "browsers/FFoxInstall.h"
#include "browsers/SafariInstall.h"

void RunInstaller() {
    @autoreleasepool {
        [FFoxInstall UninstallExtension];
        [SafariInstall UninstallExtension];
        [EdgeInstall UninstallExtension];

        [SafariInstall InstallExtension];
        // Installing asks for the browser again and removes once more: that is meant.
        if ([FFoxInstall IsBrowserInstalled]) {
            [FFoxInstall InstallExtension];
        }
        if ([EdgeInstall IsBrowserInstalled]) {
            [EdgeInstall InstallExtension];
        }
    }
}
