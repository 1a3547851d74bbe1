#include "installer/BrowserBridges.h"

bool IsFFInstalledBridgeCPP() {
    return IsFFInstalledBridge();
}
bool IsFFStartedBridgeCPP() {
    return IsFFStartedBridge();
}
bool FFInstallExtensionBridgeCPP() {
    return FFInstallExtensionBridge();
}
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
