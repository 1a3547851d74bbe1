#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "settings/KSModuleID.h"

/// Where the product keeps its things on this machine, the values that the settings hold for all of
/// it, and a few facts about the machine. An instance takes everything in when it is built and
/// reads the settings again only in Reload; the write… operations change the settings, not the
/// instance.
///
/// Folder values hold doubled separators, which are part of the values: the file system takes a run
/// of them for one. Nothing here reports an error: a setting that cannot be read is an empty one, a
/// folder that cannot be made is not made. An operation logs only where it says so; in addition,
/// what stores a setting logs the failure of LocalSettings_Mac when the settings cannot be encoded.
///
/// Building an instance has effects of its own, those of LoadRegistryData, and so have the
/// operations that build one for themselves: GetInstallDataPassword, DefaultDumpDataFolder,
/// CreateCrashDumpPathFolder, CreateLogPathFolder and LogPath.
///
/// An instance takes no lock: Clear, FolderInit, LoadRegistryData and Reload must not run while
/// others read it.
class KSEnvironement {
  public:
    /// "20200101": the version after Clear.
    static const std::string DEFAULT_APP_VERSION_NUMBER;

    /// Loads everything, as LoadRegistryData does.
    KSEnvironement();

    /// The instance that the process shares, built by the first call, which others wait for.
    static std::shared_ptr<KSEnvironement> SharedEnvironement();

    /// Sets the folders and the version to those of the installed product, and empties the PID. A
    /// version that the main bundle tells is stored as a setting (see Utils_Mac getKSVersion).
    void FolderInit();

    /// FolderInit, then the values that the settings hold: "PID", "KSVersion" where it is not
    /// empty, "KSLoggingEnabled" where it is not empty (only "1" means yes), and
    /// "KSLoggingPassword". Makes the data folder and the vaults folder, new ones with mode 0777.
    /// @return always true
    bool LoadRegistryData();

    /// Empties all but the data folder and the importers' names; the version becomes
    /// DEFAULT_APP_VERSION_NUMBER.
    void Clear();

    /// Clear, then LoadRegistryData.
    /// @return always true
    bool Reload();

    /// Absolute folders of the product, whether they exist or not: its bundle's contents, its
    /// tools, what all users share, the vaults in it, and scratch files.
    const std::string& InstallationFolder() const { return installationFolder; }
    const std::string& BinariesFolder() const { return binariesFolder; }
    const std::string& DataFolder() const { return dataFolder; }
    const std::string& VaultsFolder() const { return vaultsFolder; }
    const std::string& TemporaryFolder() const { return temporaryFolder; }

    /// The product's identifier of this machine; empty until one is stored.
    const std::string& PID() const { return pid; }
    /// The product's version, such as "20200902".
    const std::string& Version() const { return version; }

    /// File names of the importers from Firefox, which are another system's.
    const std::string& FirefoxImporterTool64() const { return firefoxImporterTool64; }
    const std::string& FirefoxImporterTool32() const { return firefoxImporterTool32; }

    /// What the settings say of the log: whether there is one, and the bytes that it is enciphered
    /// under, none for a plain one.
    bool IsLoggingEnabled() const { return loggingEnabled; }
    const std::string& LoggingPassword() const { return loggingPassword; }

    /// The PID, else what GeneratePID returns. The flag has no effect.
    std::string get_StoredOrNewPID(bool flag) const;

    /// The hardware UUID of this machine as the platform spells it, not stored anywhere; empty
    /// where the platform does not tell.
    std::string GeneratePID() const;

    /// The password of the installation's data, which is get_StoredOrNewPID of a new instance.
    static std::string GetInstallDataPassword();

    /// The PID, which may be empty, followed by the local time's fields as plain numbers without
    /// padding: years since 1900, month counted from 0, day, hour, minute, second. At most 255
    /// bytes: the end is cut.
    std::string GenerateDBVersion() const;

    /// Empties `extraPID`.
    /// @return always true
    bool GenerateExtraPID(std::string& extraPID) const;

    /// Store the value, UTF-8, under "PID", "KSVersion" or "KSTemporaryFolder". An instance sees a
    /// new PID or version after Reload; the temporary folder is never read back.
    /// @return always true
    bool writePID(const std::string& value) const;
    bool writeVersion(const std::string& value) const;
    bool writeTemporaryFolder(const std::string& value) const;

    /// Do nothing: these places are fixed on this platform.
    /// @return always false
    bool writeInstallationFolder(const std::string& value) const;
    bool writeInstallerLocation(const std::string& value) const;
    bool writeVaultsFolder(const std::string& value) const;
    bool writeLanguageID(const std::string& value) const;

    /// Always false: that browser is not of this platform.
    static bool GetIsIExplorerInstalled();
    static bool GetIsIExplorerExtInstalled();

    /// ChromeInstall IsBrowserInstalled and IsExtensionInstalled, with the lines that these log.
    static bool GetIsChromeInstalled();
    static bool GetIsChromeExtInstalled();

    /// FFoxInstall IsBrowserInstalled, with the line that it logs.
    static bool GetIsFFInstalled();

    /// Sets `path` to Firefox's usual place, whether it is there or not.
    /// @return always true
    bool GetFFInstallationPath(std::string& path) const;

    /// EdgeInstall IsBrowserInstalled and IsExtensionInstalled, with the lines that these log.
    static bool GetIsEdgeInstalled();
    static bool GetIsEdgeExtInstalled();

    /// The data folder of a new instance. The flag has no effect.
    static std::string DefaultDumpDataFolder(bool flag);

    /// DefaultDumpDataFolder and "//dumps//", which, for all its name, is not made.
    static std::string CreateCrashDumpPathFolder();

    /// DefaultDumpDataFolder and "//logs//", made where missing with mode 0777 less the umask.
    static std::string CreateLogPathFolder();

    /// The log folder, with a separator at its end: the class's own, which is never set, else what
    /// CreateLogPathFolder returns, which makes it in either case.
    /// @param create  whether to try once more, with the folders above it
    static std::string LogPath(bool create);

    /// Always empty. The flag has no effect.
    static std::string CrashDumpPath(bool flag);

    /// Always empty.
    static std::string CreateDefaultDumpFolder();

    /// Always empty; the arguments have no effect.
    std::string GetFullFileNameForModule(KSModuleID module, std::string& name,
                                         const KSEnvironement& environment) const;

    /// Always 2, which OSTypeToString names "OSX".
    static int GetOSType();

    /// Both: "OSX: " and the version of the operating system, "OSX: (null)" where it is not known.
    static std::string GetOSVersion();
    static std::string GetShortenedOSVersion();

    /// "64 Bit" on a machine that calls itself "i386", "32 Bit" on every other, "unknown" where the
    /// system does not tell. Meant: the labels are crossed.
    static std::string GetOSArhitecture();

    /// The name of an operating system: 1 "Windows", 2 "OSX", 3 "Android", 4 "iOS", 0 "Unknown
    /// Operating Sistem", any other "Other unknown OS". Meant: "Sistem" is spelled so.
    static std::string OSTypeToString(int type);

  private:
    static std::string defaultDumpFolder;
    static std::string crashDumpPath;
    static std::string logPath;
    static std::mutex sharedMutex;
    static std::shared_ptr<KSEnvironement> shared;

    // The three reserved strings are always empty.
    std::string installationFolder;
    std::string binariesFolder;
    std::string dataFolder;
    std::string vaultsFolder;
    std::string reserved;
    std::string pid;
    std::string version;
    std::string temporaryFolder;
    std::string firstReserved;
    std::string lastReserved;
    std::string firefoxImporterTool64;
    std::string firefoxImporterTool32;
    bool loggingEnabled = false;
    std::string loggingPassword;
};
