#include "settings/KSEnvironement.h"

#include <sys/stat.h>
#include <sys/utsname.h>
#include <time.h>

#include "crypto/StringUtils.h"
#include "installer/BrowserBridges.h"
#include "platform/PathUtils.h"
#include "platform/UtilsBridges.h"
#include "product/Applications.h"
#include "product/Keys.h"
#include "product/Places.h"
#include "settings/LocalSettings.h"
#include "settings/PlatformUUID.h"

namespace {

constexpr const char* kTemporaryFolder = "//var//tmp";
constexpr const char* kDumpsSubfolder = "//dumps//";
constexpr const char* kLogsSubfolder = "//logs//";

constexpr const char* kFirefoxApplication = "/Applications/" KS_FIREFOX_NAME ".app";
// Meant: programs of another system. They are names only.
constexpr const char* kFirefoxImporterTool64 = "KSFirefoxImporterTool_x64.exe";
constexpr const char* kFirefoxImporterTool32 = "KSFirefoxImporterTool_x86.exe";

constexpr const char* kYes = "1";

constexpr size_t kLongestDBVersion = 255;

constexpr int kOSX = 2;
constexpr const char* k32BitMachine = "i386";

void EnsureFolder(const std::string& folder) {
    PathUtils::EnsureFolderExists(StringUtils::ConvertStringToWString(folder));
}

}  // namespace

KSEnvironement::KSEnvironement()
    : firefoxImporterTool64(kFirefoxImporterTool64), firefoxImporterTool32(kFirefoxImporterTool32) {
    LoadRegistryData();
}

std::shared_ptr<KSEnvironement> KSEnvironement::SharedEnvironement() {
    const std::lock_guard<std::mutex> lock(sharedMutex);
    if (!shared) {
        shared = std::make_shared<KSEnvironement>();
    }
    return shared;
}

void KSEnvironement::FolderInit() {
    installationFolder = KS_ENVIRONMENT_CONTENTS_FOLDER;
    binariesFolder = KS_ENVIRONMENT_TOOLS_FOLDER;
    vaultsFolder = KS_ENVIRONMENT_VAULTS_FOLDER;
    reserved.clear();
    pid.clear();
    version = GetKSVersionOSX();
    dataFolder = KS_ENVIRONMENT_DATA_FOLDER;
    temporaryFolder = kTemporaryFolder;
}

bool KSEnvironement::LoadRegistryData() {
    FolderInit();
    const std::vector<std::string> values = LocalSettings::GetSettingValuesForNames(
        {KS_PID_KEY, KS_VERSION_KEY, KS_LOGGING_ENABLED_KEY, KS_LOGGING_PASSWORD_KEY});
    const std::string& storedVersion = values[1];
    const std::string& logging = values[2];

    pid = values[0];
    if (!storedVersion.empty()) {
        version = storedVersion;
    }
    if (!logging.empty()) {
        loggingEnabled = logging == kYes;
    }
    loggingPassword = values[3];

    EnsureFolder(dataFolder);
    EnsureFolder(vaultsFolder);
    return true;
}

void KSEnvironement::Clear() {
    installationFolder.clear();
    binariesFolder.clear();
    vaultsFolder.clear();
    reserved.clear();
    pid.clear();
    firstReserved.clear();
    version = DEFAULT_APP_VERSION_NUMBER;
    temporaryFolder.clear();
    loggingEnabled = false;
    loggingPassword.clear();
}

bool KSEnvironement::Reload() {
    Clear();
    return LoadRegistryData();
}

std::string KSEnvironement::get_StoredOrNewPID(bool /*flag*/) const {
    return pid.empty() ? GeneratePID() : pid;
}

std::string KSEnvironement::GeneratePID() const {
    return PlatformUUID();
}

std::string KSEnvironement::GetInstallDataPassword() {
    return KSEnvironement().get_StoredOrNewPID(false);
}

std::string KSEnvironement::GenerateDBVersion() const {
    const time_t now = time(nullptr);
    tm local = {};
    localtime_r(&now, &local);

    // Meant: year and month as the calendar structure counts them, nothing padded.
    std::string stamp = pid;
    for (const int field :
         {local.tm_year, local.tm_mon, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec}) {
        stamp += std::to_string(field);
    }
    return stamp.substr(0, kLongestDBVersion);
}

bool KSEnvironement::GenerateExtraPID(std::string& extraPID) const {
    extraPID.clear();
    return true;
}

bool KSEnvironement::writePID(const std::string& value) const {
    LocalSettings::SetSettingValueWithName(value, KS_PID_KEY);
    return true;
}

bool KSEnvironement::writeVersion(const std::string& value) const {
    LocalSettings::SetSettingValueWithName(value, KS_VERSION_KEY);
    return true;
}

bool KSEnvironement::writeTemporaryFolder(const std::string& value) const {
    LocalSettings::SetSettingValueWithName(value, KS_TEMPORARY_FOLDER_KEY);
    return true;
}

bool KSEnvironement::writeInstallationFolder(const std::string& /*value*/) const {
    return false;
}

bool KSEnvironement::writeInstallerLocation(const std::string& /*value*/) const {
    return false;
}

bool KSEnvironement::writeVaultsFolder(const std::string& /*value*/) const {
    return false;
}

bool KSEnvironement::writeLanguageID(const std::string& /*value*/) const {
    return false;
}

bool KSEnvironement::GetIsIExplorerInstalled() {
    return false;
}

bool KSEnvironement::GetIsIExplorerExtInstalled() {
    return false;
}

bool KSEnvironement::GetIsChromeInstalled() {
    return IsChromeInstalledBridgeCPP();
}

bool KSEnvironement::GetIsChromeExtInstalled() {
    return IsChromeExtensionInstalledBridgeCPP();
}

bool KSEnvironement::GetIsFFInstalled() {
    return IsFFInstalledBridgeCPP();
}

bool KSEnvironement::GetFFInstallationPath(std::string& path) const {
    path = kFirefoxApplication;
    return true;
}

bool KSEnvironement::GetIsEdgeInstalled() {
    return IsEdgeInstalledBridgeCPP();
}

bool KSEnvironement::GetIsEdgeExtInstalled() {
    return IsEdgeExtensionInstalledBridgeCPP();
}

std::string KSEnvironement::DefaultDumpDataFolder(bool /*flag*/) {
    return KSEnvironement().DataFolder();
}

std::string KSEnvironement::CreateCrashDumpPathFolder() {
    return DefaultDumpDataFolder(false) + kDumpsSubfolder;
}

std::string KSEnvironement::CreateLogPathFolder() {
    const std::string data = DefaultDumpDataFolder(false);
    mkdir(data.c_str(), kOpenToEverybody);
    std::string logs = data + kLogsSubfolder;
    mkdir(logs.c_str(), kOpenToEverybody);
    return logs;
}

std::string KSEnvironement::LogPath(bool create) {
    if (!logPath.empty()) {
        return logPath;
    }
    std::string folder = CreateLogPathFolder();
    if (create) {
        EnsureFolder(folder);
    }
    return folder;
}

std::string KSEnvironement::CrashDumpPath(bool /*flag*/) {
    return crashDumpPath;
}

std::string KSEnvironement::CreateDefaultDumpFolder() {
    return defaultDumpFolder;
}

std::string KSEnvironement::GetFullFileNameForModule(KSModuleID /*module*/, std::string& /*name*/,
                                                     const KSEnvironement& /*environment*/) const {
    return std::string();
}

int KSEnvironement::GetOSType() {
    return kOSX;
}

std::string KSEnvironement::GetOSVersion() {
    return GetOSXVersion();
}

std::string KSEnvironement::GetShortenedOSVersion() {
    return GetOSXVersion();
}

std::string KSEnvironement::GetOSArhitecture() {
    utsname system = {};
    if (uname(&system) != 0) {
        return "unknown";
    }
    // Meant: the labels are crossed.
    return std::string(system.machine) == k32BitMachine ? "64 Bit" : "32 Bit";
}

std::string KSEnvironement::OSTypeToString(int type) {
    switch (type) {
        case 0:
            return "Unknown Operating Sistem";  // meant: "Sistem" is spelled so
        case 1:
            return "Windows";
        case kOSX:
            return "OSX";
        case 3:
            return "Android";
        case 4:
            return "iOS";
        default:
            return "Other unknown OS";
    }
}
