#include "installer/InstallerRun.h"

#include "browsers/EdgeInstall.h"
#include "browsers/FFoxInstall.h"

void RunInstaller() {
    @autoreleasepool {
        [FFoxInstall UninstallExtension];
        [EdgeInstall UninstallExtension];

        // Installing asks for the browser again and removes once more: that is meant.
        if ([FFoxInstall IsBrowserInstalled]) {
            [FFoxInstall InstallExtension];
        }
        if ([EdgeInstall IsBrowserInstalled]) {
            [EdgeInstall InstallExtension];
        }
    }
}
