#include "installer/BrowserBridges.h"

#include "browsers/ChromeInstall.h"
#include "browsers/EdgeInstall.h"
#include "browsers/FFoxInstall.h"

// Each opens an autorelease scope of its own: its callers have none.

bool IsChromeInstalledBridge() {
    @autoreleasepool {
        return [ChromeInstall IsBrowserInstalled] != NO;
    }
}

bool IsChromeStartedBridge() {
    @autoreleasepool {
        return [ChromeInstall IsBrowserStarted] != NO;
    }
}

bool IsChromeExtensionInstalledBridge() {
    @autoreleasepool {
        return [ChromeInstall IsExtensionInstalled] != NO;
    }
}

bool ChromeInstallExtensionBridge() {
    @autoreleasepool {
        return [ChromeInstall InstallExtension] != NO;
    }
}

bool ChromeUninstallExtensionBridge() {
    @autoreleasepool {
        return [ChromeInstall UninstallExtension] != NO;
    }
}

bool IsFFInstalledBridge() {
    @autoreleasepool {
        return [FFoxInstall IsBrowserInstalled] != NO;
    }
}

bool IsFFStartedBridge() {
    @autoreleasepool {
        return [FFoxInstall IsBrowserStarted] != NO;
    }
}

bool FFInstallExtensionBridge() {
    @autoreleasepool {
        return [FFoxInstall InstallExtension] != NO;
    }
}

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
