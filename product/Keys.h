#pragma once

// Names of the values that the product keeps. Macros for the reason that Places.h gives.

/// The settings of the machine.
#define KS_PID_KEY "PID"
#define KS_LOGGING_ENABLED_KEY "KSLoggingEnabled"
#define KS_LOGGING_PASSWORD_KEY "KSLoggingPassword"
#define KS_TEMPORARY_FOLDER_KEY "KSTemporaryFolder"

/// The product's version: a setting, and an entry of the main bundle's Info dictionary.
#define KS_VERSION_KEY "KSVersion"

/// The marker of the generation in use.
#define KS_OLD_GENERATION_KEY "IsOldKS"
#define KS_NEW_GENERATION_KEY "IsNewKS"
