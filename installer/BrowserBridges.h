#pragma once

// The browser installers for code that cannot send messages to their classes. An outer function
// (…CPP) only calls the inner one of its name, which calls the class operation; the result is true
// exactly when the operation's is not zero. What an operation does and logs stands with its class.
// Meant: an uneven set, without Firefox's other operations and without Safari's.

bool IsChromeInstalledBridgeCPP();           ///< ChromeInstall IsBrowserInstalled
bool IsChromeStartedBridgeCPP();             ///< ChromeInstall IsBrowserStarted
bool IsChromeExtensionInstalledBridgeCPP();  ///< ChromeInstall IsExtensionInstalled
bool ChromeInstallExtensionBridgeCPP();      ///< ChromeInstall InstallExtension
bool ChromeUninstallExtensionBridgeCPP();    ///< ChromeInstall UninstallExtension

bool IsFFInstalledBridgeCPP();       ///< FFoxInstall IsBrowserInstalled
bool IsFFStartedBridgeCPP();         ///< FFoxInstall IsBrowserStarted
bool FFInstallExtensionBridgeCPP();  ///< FFoxInstall InstallExtension

bool IsEdgeInstalledBridgeCPP();           ///< EdgeInstall IsBrowserInstalled
bool IsEdgeExtensionInstalledBridgeCPP();  ///< EdgeInstall IsExtensionInstalled
bool IsEdgeStartedBridgeCPP();             ///< EdgeInstall IsBrowserStarted
bool EdgeInstallExtensionBridgeCPP();      ///< EdgeInstall InstallExtension
bool EdgeUninstallExtensionBridgeCPP();    ///< EdgeInstall UninstallExtension

bool IsChromeInstalledBridge();
bool IsChromeStartedBridge();
bool IsChromeExtensionInstalledBridge();
bool ChromeInstallExtensionBridge();
bool ChromeUninstallExtensionBridge();

bool IsFFInstalledBridge();
bool IsFFStartedBridge();
bool FFInstallExtensionBridge();

bool IsEdgeInstalledBridge();
bool IsEdgeExtensionInstalledBridge();
bool IsEdgeStartedBridge();
bool EdgeInstallExtensionBridge();
bool EdgeUninstallExtensionBridge();
