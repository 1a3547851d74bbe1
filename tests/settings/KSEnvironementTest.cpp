#include "settings/KSEnvironement.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "installer/BrowserBridges.h"
#include "logging/CLogger.h"
#include "platform/UtilsBridges.h"
#include "settings/LocalSettings.h"
#include "tests/support/Files.h"
#include "tests/support/SettingsFiles.h"

namespace fs = std::filesystem;

namespace {

const std::string kLogFolder = "//Users//Shared//Keystrel////logs//";

class KSEnvironementTest : public SettingsFiles {};

TEST_F(KSEnvironementTest, FoldersAreFixedAndKeepTheirDoubledSeparators) {
    const KSEnvironement environment;
    EXPECT_EQ(environment.InstallationFolder(), "//Applications//Keystrel.app//Contents//");
    EXPECT_EQ(environment.BinariesFolder(),
              "//Applications//Keystrel.app//Contents//Keystrel//Bin");
    EXPECT_EQ(environment.DataFolder(), "//Users//Shared//Keystrel//");
    EXPECT_EQ(environment.VaultsFolder(), "//Users//Shared//Keystrel//Vaults");
    EXPECT_EQ(environment.TemporaryFolder(), "//var//tmp");
    EXPECT_EQ(environment.FirefoxImporterTool64(), "KSFirefoxImporterTool_x64.exe");
    EXPECT_EQ(environment.FirefoxImporterTool32(), "KSFirefoxImporterTool_x86.exe");
}

TEST_F(KSEnvironementTest, WithoutSettingsThereAreDefaults) {
    const KSEnvironement environment;
    EXPECT_EQ(environment.PID(), "");
    EXPECT_EQ(environment.Version(), "20200902");
    EXPECT_FALSE(environment.IsLoggingEnabled());
    EXPECT_EQ(environment.LoggingPassword(), "");
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(KSEnvironementTest, SettingsAreTakenIn) {
    WriteXml(file,
             "{'PID': 'a pid', 'KSVersion': '20240305', 'KSLoggingEnabled': '1',"
             "'KSLoggingPassword': 'Zürich', 'KSTemporaryFolder': '/elsewhere'}");
    const KSEnvironement environment;
    EXPECT_EQ(environment.PID(), "a pid");
    EXPECT_EQ(environment.Version(), "20240305");
    EXPECT_TRUE(environment.IsLoggingEnabled());
    EXPECT_EQ(environment.LoggingPassword(), "Zürich");
    EXPECT_EQ(environment.TemporaryFolder(), "//var//tmp");  // written, but never read
}

TEST_F(KSEnvironementTest, LoadingReadsTheSettingsOnce) {
    WriteXml(file, "{'PID': 'a pid'}");
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    // Two events of one kind that nothing parts would be told as one.
    ASSERT_GE(inotify_add_watch(watch, file.c_str(), IN_OPEN | IN_CLOSE), 0);
    const KSEnvironement environment;
    inotify_event events[64];
    const ssize_t length = read(watch, events, sizeof events);
    close(watch);
    EXPECT_EQ(environment.PID(), "a pid");
    EXPECT_EQ(length, static_cast<ssize_t>(2 * sizeof(inotify_event)));  // opened, closed
}

TEST_F(KSEnvironementTest, EmptySettingsCountAsNone) {
    WriteXml(file, "{'PID': '', 'KSVersion': '', 'KSLoggingEnabled': '', 'KSLoggingPassword': ''}");
    const KSEnvironement environment;
    EXPECT_EQ(environment.PID(), "");
    EXPECT_EQ(environment.Version(), "20200902");
    EXPECT_FALSE(environment.IsLoggingEnabled());
    EXPECT_EQ(environment.LoggingPassword(), "");
}

TEST_F(KSEnvironementTest, SettingsOfAnotherTypeCountAsNone) {
    WriteXml(file,
             "{'PID': ['a'], 'KSVersion': 20240305, 'KSLoggingEnabled': True,"
             "'KSLoggingPassword': datetime.datetime(2024, 3, 5)}");
    const KSEnvironement environment;
    EXPECT_EQ(environment.PID(), "");
    EXPECT_EQ(environment.Version(), "20200902");
    EXPECT_FALSE(environment.IsLoggingEnabled());
    EXPECT_EQ(environment.LoggingPassword(), "");
}

TEST_F(KSEnvironementTest, ABadSettingsFileLeavesDefaultsAndIsLeftAlone) {
    for (const std::string& bytes :
         {std::string(), std::string("garbage"), std::string("bplist00")}) {
        WriteFile(file, bytes);
        const KSEnvironement environment;
        EXPECT_EQ(environment.PID(), "");
        EXPECT_FALSE(environment.IsLoggingEnabled());
        EXPECT_EQ(ReadFile(file), bytes);
    }
}

TEST_F(KSEnvironementTest, OnlyOneMeansLogging) {
    for (const char* value : {"0", "2", "11", "1 ", " 1", "true", "YES", "yes", "on", "١"}) {
        LocalSettings::SetSettingValueWithName(value, "KSLoggingEnabled");
        EXPECT_FALSE(KSEnvironement().IsLoggingEnabled()) << value;
    }
    LocalSettings::SetSettingValueWithName("1", "KSLoggingEnabled");
    EXPECT_TRUE(KSEnvironement().IsLoggingEnabled());
}

TEST_F(KSEnvironementTest, AnEmptyLoggingSettingKeepsThePreviousStateUntilClear) {
    LocalSettings::SetSettingValueWithName("1", "KSLoggingEnabled");
    KSEnvironement environment;
    LocalSettings::SetSettingValueWithName("", "KSLoggingEnabled");
    EXPECT_TRUE(environment.LoadRegistryData());
    EXPECT_TRUE(environment.IsLoggingEnabled());
    LocalSettings::SetSettingValueWithName("true", "KSLoggingEnabled");
    environment.LoadRegistryData();
    EXPECT_FALSE(environment.IsLoggingEnabled());
}

TEST_F(KSEnvironementTest, AnEmptyPasswordReplacesAnEarlierOne) {
    LocalSettings::SetSettingValueWithName("secret", "KSLoggingPassword");
    KSEnvironement environment;
    LocalSettings::RemoveSettingForName("KSLoggingPassword");
    environment.LoadRegistryData();
    EXPECT_EQ(environment.LoggingPassword(), "");
}

TEST_F(KSEnvironementTest, LoadingMakesTheSharedFoldersOpenToEverybody) {
    fs::remove_all(folder);
    const mode_t umaskBefore = umask(022);
    const KSEnvironement environment;
    umask(umaskBefore);
    EXPECT_EQ(ModeOf(folder), 0777U);
    EXPECT_EQ(ModeOf(vaults), 0777U);
}

TEST_F(KSEnvironementTest, LoadingLeavesTheModeOfExistingFolders) {
    ASSERT_EQ(chmod(folder.c_str(), 0750), 0);
    ASSERT_EQ(chmod(vaults.c_str(), 0700), 0);
    const KSEnvironement environment;
    EXPECT_EQ(ModeOf(folder), 0750U);
    EXPECT_EQ(ModeOf(vaults), 0700U);
}

TEST_F(KSEnvironementTest, FoldersThatCannotBeMadeAreIgnored) {
    fs::remove_all(folder);
    WriteFile(folder, "a file where the folder belongs");
    KSEnvironement environment;
    EXPECT_TRUE(environment.LoadRegistryData());
    EXPECT_EQ(ReadFile(folder), "a file where the folder belongs");
    EXPECT_EQ(KSEnvironement::LogPath(true), kLogFolder);
    fs::remove(folder);
}

TEST_F(KSEnvironementTest, FolderInitSetsThePlacesAndForgetsThePID) {
    WriteXml(file, "{'PID': 'a pid', 'KSVersion': '1', 'KSLoggingEnabled': '1'}");
    KSEnvironement environment;
    environment.FolderInit();
    EXPECT_EQ(environment.PID(), "");
    EXPECT_EQ(environment.Version(), GetKSVersionOSX());
    EXPECT_EQ(environment.InstallationFolder(), "//Applications//Keystrel.app//Contents//");
    EXPECT_TRUE(environment.IsLoggingEnabled());
}

TEST_F(KSEnvironementTest, ClearEmptiesAllButTheDataFolderAndTheImporters) {
    WriteXml(file, "{'PID': 'a', 'KSLoggingEnabled': '1', 'KSLoggingPassword': 'secret'}");
    KSEnvironement environment;
    environment.Clear();
    EXPECT_EQ(environment.InstallationFolder(), "");
    EXPECT_EQ(environment.BinariesFolder(), "");
    EXPECT_EQ(environment.VaultsFolder(), "");
    EXPECT_EQ(environment.PID(), "");
    EXPECT_EQ(environment.TemporaryFolder(), "");
    EXPECT_EQ(environment.Version(), "20200101");
    EXPECT_FALSE(environment.IsLoggingEnabled());
    EXPECT_EQ(environment.LoggingPassword(), "");
    EXPECT_EQ(environment.DataFolder(), "//Users//Shared//Keystrel//");
    EXPECT_EQ(environment.FirefoxImporterTool64(), "KSFirefoxImporterTool_x64.exe");
    EXPECT_EQ(environment.FirefoxImporterTool32(), "KSFirefoxImporterTool_x86.exe");
    EXPECT_EQ(KSEnvironement::DEFAULT_APP_VERSION_NUMBER, "20200101");
}

TEST_F(KSEnvironementTest, ReloadTakesEverythingInAgain) {
    LocalSettings::SetSettingValueWithName("1", "KSLoggingEnabled");
    KSEnvironement environment;
    LocalSettings::SetSettingValueWithName("new", "PID");
    LocalSettings::RemoveSettingForName("KSLoggingEnabled");
    EXPECT_TRUE(environment.Reload());
    EXPECT_EQ(environment.PID(), "new");
    EXPECT_EQ(environment.Version(), "20200902");
    EXPECT_FALSE(environment.IsLoggingEnabled());
    EXPECT_EQ(environment.InstallationFolder(), "//Applications//Keystrel.app//Contents//");
}

TEST_F(KSEnvironementTest, AWrittenValueIsSeenAfterReload) {
    WriteXml(file, "{'PID': 'old', 'KSVersion': '1'}");
    KSEnvironement environment;
    EXPECT_TRUE(environment.writePID("new"));
    EXPECT_TRUE(environment.writeVersion("2"));
    EXPECT_TRUE(environment.writeTemporaryFolder("/elsewhere"));
    EXPECT_TRUE(Holds(file, "{'PID': 'new', 'KSVersion': '2', 'KSTemporaryFolder': '/elsewhere'}"));
    EXPECT_EQ(environment.PID(), "old");
    EXPECT_EQ(environment.Version(), "1");
    environment.Reload();
    EXPECT_EQ(environment.PID(), "new");
    EXPECT_EQ(environment.Version(), "2");
    EXPECT_EQ(environment.TemporaryFolder(), "//var//tmp");
}

TEST_F(KSEnvironementTest, WritingSucceedsAlsoWhereNothingCanBeStored) {
    const KSEnvironement environment;
    ASSERT_EQ(chmod(folder.c_str(), 0555), 0);
    EXPECT_TRUE(environment.writePID("new"));
    EXPECT_TRUE(environment.writeVersion("2"));
    EXPECT_TRUE(environment.writeTemporaryFolder("/elsewhere"));
    ASSERT_EQ(chmod(folder.c_str(), 0777), 0);
    EXPECT_NE(access(file.c_str(), F_OK), 0);
}

TEST_F(KSEnvironementTest, FixedPlacesAreNotWritten) {
    const KSEnvironement environment;
    EXPECT_FALSE(environment.writeInstallationFolder("x"));
    EXPECT_FALSE(environment.writeInstallerLocation("x"));
    EXPECT_FALSE(environment.writeVaultsFolder("x"));
    EXPECT_FALSE(environment.writeLanguageID("x"));
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(KSEnvironementTest, TheStoredPIDGoesBeforeANewOne) {
    WriteXml(file, "{'PID': 'stored'}");
    const KSEnvironement environment;
    EXPECT_EQ(environment.get_StoredOrNewPID(false), "stored");
    EXPECT_EQ(environment.get_StoredOrNewPID(true), "stored");
    EXPECT_EQ(KSEnvironement::GetInstallDataPassword(), "stored");
    EXPECT_NE(environment.GeneratePID(), "stored");
}

TEST_F(KSEnvironementTest, ANewPIDIsTheHardwareUUIDAndIsNotStored) {
    const KSEnvironement environment;
    const std::string pid = environment.GeneratePID();
    ASSERT_EQ(pid.size(), 36U);
    for (size_t i = 0; i < pid.size(); ++i) {
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        EXPECT_TRUE(hyphen ? pid[i] == '-' : isxdigit(static_cast<unsigned char>(pid[i])) != 0);
    }
    EXPECT_EQ(environment.GeneratePID(), pid);
    EXPECT_EQ(environment.get_StoredOrNewPID(false), pid);
    EXPECT_EQ(environment.get_StoredOrNewPID(true), pid);
    EXPECT_EQ(KSEnvironement::GetInstallDataPassword(), pid);
    EXPECT_EQ(environment.PID(), "");
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(KSEnvironementTest, TheExtraPIDIsEmpty) {
    std::string extra = "something";
    EXPECT_TRUE(KSEnvironement().GenerateExtraPID(extra));
    EXPECT_EQ(extra, "");
}

TEST_F(KSEnvironementTest, DumpsAndLogsBelongIntoTheDataFolder) {
    EXPECT_EQ(KSEnvironement::DefaultDumpDataFolder(false), "//Users//Shared//Keystrel//");
    EXPECT_EQ(KSEnvironement::DefaultDumpDataFolder(true), "//Users//Shared//Keystrel//");
    EXPECT_EQ(KSEnvironement::CreateCrashDumpPathFolder(), "//Users//Shared//Keystrel////dumps//");
    EXPECT_FALSE(fs::exists(folder + "/dumps"));
    EXPECT_EQ(KSEnvironement::CrashDumpPath(false), "");
    EXPECT_EQ(KSEnvironement::CrashDumpPath(true), "");
    EXPECT_EQ(KSEnvironement::CreateDefaultDumpFolder(), "");
    EXPECT_FALSE(fs::exists(folder + "/logs"));
}

TEST_F(KSEnvironementTest, TheLogFolderIsMadeUnderTheUmask) {
    for (const mode_t mask : {0U, 022U, 077U}) {
        fs::remove_all(folder);
        const mode_t before = umask(mask);
        EXPECT_EQ(KSEnvironement::CreateLogPathFolder(), kLogFolder);
        umask(before);
        EXPECT_EQ(ModeOf(folder + "/logs"), 0777U & ~mask);
        EXPECT_EQ(ModeOf(folder), 0777U);  // the environment had made it before
    }
}

TEST_F(KSEnvironementTest, AskingForTheLogFolderMakesItEitherWay) {
    for (const bool create : {false, true}) {
        fs::remove_all(folder);
        EXPECT_EQ(KSEnvironement::LogPath(create), kLogFolder);
        EXPECT_TRUE(fs::is_directory(folder + "/logs"));
        EXPECT_EQ(KSEnvironement::LogPath(create), kLogFolder);
    }
}

TEST_F(KSEnvironementTest, NoModuleHasAFileName) {
    const KSEnvironement environment;
    std::string name = "kept";
    EXPECT_EQ(environment.GetFullFileNameForModule(KSModuleID::Application, name, environment), "");
    EXPECT_EQ(environment.GetFullFileNameForModule(KSModuleID::Installer, name, environment), "");
    EXPECT_EQ(name, "kept");
}

TEST_F(KSEnvironementTest, InternetExplorerIsNeverThere) {
    EXPECT_FALSE(KSEnvironement::GetIsIExplorerInstalled());
    EXPECT_FALSE(KSEnvironement::GetIsIExplorerExtInstalled());
}

TEST_F(KSEnvironementTest, TheOperatingSystemIsMacOS) {
    EXPECT_EQ(KSEnvironement::GetOSType(), 2);
    EXPECT_EQ(KSEnvironement::OSTypeToString(KSEnvironement::GetOSType()), "OSX");
    EXPECT_EQ(KSEnvironement::GetOSVersion(), GetOSXVersion());
    EXPECT_EQ(KSEnvironement::GetShortenedOSVersion(), GetOSXVersion());
    EXPECT_EQ(KSEnvironement::GetOSVersion().substr(0, 5), "OSX: ");
}

TEST_F(KSEnvironementTest, OperatingSystemsHaveNames) {
    EXPECT_EQ(KSEnvironement::OSTypeToString(0), "Unknown Operating Sistem");
    EXPECT_EQ(KSEnvironement::OSTypeToString(1), "Windows");
    EXPECT_EQ(KSEnvironement::OSTypeToString(2), "OSX");
    EXPECT_EQ(KSEnvironement::OSTypeToString(3), "Android");
    EXPECT_EQ(KSEnvironement::OSTypeToString(4), "iOS");
    for (const int other : {-1, 5, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(KSEnvironement::OSTypeToString(other), "Other unknown OS");
    }
}

TEST_F(KSEnvironementTest, TheSharedInstanceIsOneAndOutlivesItsHolders) {
    const KSEnvironement* first = KSEnvironement::SharedEnvironement().get();
    const std::shared_ptr<KSEnvironement> second = KSEnvironement::SharedEnvironement();
    EXPECT_EQ(first, second.get());
    EXPECT_EQ(second.use_count(), 2);  // the class's own and this one
    EXPECT_EQ(second->DataFolder(), "//Users//Shared//Keystrel//");
}

}  // namespace
