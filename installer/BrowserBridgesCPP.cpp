#include "installer/BrowserBridges.h"

bool IsChromeInstalledBridgeCPP() {
    return IsChromeInstalledBridge();
}
bool IsChromeStartedBridgeCPP() {
    return IsChromeStartedBridge();
}
bool IsChromeExtensionInstalledBridgeCPP() {
    return IsChromeExtensionInstalledBridge();
}
bool ChromeInstallExtensionBridgeCPP() {
    return ChromeInstallExtensionBridge();
}
bool ChromeUninstallExtensionBridgeCPP() {
    return ChromeUninstallExtensionBridge();
}
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
