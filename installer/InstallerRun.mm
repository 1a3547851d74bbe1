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
        // Meant: installing asks for the browser again and removes once more.
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
