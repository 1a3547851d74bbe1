#include "installer/BrowserBridges.h"

#include "browsers/EdgeInstall.h"

// Each opens an autorelease scope of its own: its callers have none.

bool IsEdgeInstalledBridge() {
    @autoreleasepool {
        return [EdgeInstall IsBrowserInstalled] != NO;
    }
}

bool IsEdgeExtensionInstalledBridge() {
    @autoreleasepool {
        return [EdgeInstall IsExtensionInstalled] != NO;
    }
}

bool IsEdgeStartedBridge() {
    @autoreleasepool {
        return [EdgeInstall IsBrowserStarted] != NO;
    }
}

bool EdgeInstallExtensionBridge() {
    @autoreleasepool {
        return [EdgeInstall InstallExtension] != NO;
    }
}

bool EdgeUninstallExtensionBridge() {
    @autoreleasepool {
        return [EdgeInstall UninstallExtension] != NO;
    }
}
