#include "installer/BrowserBridges.h"

bool IsEdgeInstalledBridgeCPP() {
    return IsEdgeInstalledBridge();
}
bool IsEdgeExtensionInstalledBridgeCPP() {
    return IsEdgeExtensionInstalledBridge();
}
bool IsEdgeStartedBridgeCPP() {
    return IsEdgeStartedBridge();
}
bool EdgeInstallExtensionBridgeCPP() {
    return EdgeInstallExtensionBridge();
}
bool EdgeUninstallExtensionBridgeCPP() {
    return EdgeUninstallExtensionBridge();
}
