#pragma once

/// The product's modules.
enum class KSModuleID {
    Application,  ///< the password manager itself
    Installer,    ///< the browser-extension installer
    Updater,
    Wizard,
};
