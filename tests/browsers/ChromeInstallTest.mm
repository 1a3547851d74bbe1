// Chrome's operations one by one, on a Mac that has Chrome and none of the product's files. This
// program takes the administrator's place: it runs nothing, and keeps each script that is shown to
// it.
#include "browsers/ChromeInstall.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <regex>
#include <vector>

#include "Security/Administrator.h"
#include "browsers/ChromeScripts.h"
#include "installer/BrowserBridges.h"
#include "settings/KSEnvironement.h"
#include "tests/support/Files.h"
#include "tests/support/Launching.h"
#include "tests/support/LogFile.h"

namespace {

const std::string kApplication = "/Applications/Google Chrome.app";
const std::string kScriptFile = "/var/tmp/script.sh";

const std::string kLibrary = "/Users/alex/Library";
const std::string kChrome = kLibrary + "/Application Support/Google/Chrome";
const std::string kUserFolder = kChrome + "/External Extensions";
const std::string kPreferences = kChrome + "/Default/Preferences";
const std::string kPlugIn = kLibrary + "/Internet Plug-Ins/npKSPlugin.bundle";
const std::string kPayload =
    "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome";
const std::string kHosts = "/Library/Google/Chrome/NativeMessagingHosts";
const std::string kHost = kHosts + "/com.corvendale.kschromena.json";
const std::string kSystemFolder = "/Library/Application Support/Google/Chrome/External Extensions";

const std::string kDescriptor = "/kmcoedhplnbajgfiehkcpamdobnlgjie.json";
const std::string kButtonDescriptor = "/pbjaclkhgedmfonipcabhlmgkdjeoifn.json";
const std::string kDescriptorText =
    "{ \"external_update_url\": \"https://clients2.google.com/service/update2/crx\" }";

const std::string kFound =
    "\nHH:MM:SS - INFO : The app's URL is: file:///Applications/Google%20Chrome.app/";
const std::string kWarning = "\nHH:MM:SS - WARNING : ";

CommandResult answer;
std::vector<std::string> scripts;

void Remove(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

void MakeFolder(const std::string& path) {
    std::error_code ignored;
    std::filesystem::create_directories(path, ignored);
}

bool Exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

std::string Script(NSString* script) {
    return [script UTF8String];
}

}  // namespace

CommandResult RunAsAdministrator(const std::string& command) {
    EXPECT_EQ(command, "'/var/tmp/script.sh' ");
    EXPECT_EQ(ModeOf(kScriptFile), 0777U);
    scripts.push_back(ReadFile(kScriptFile));
    return answer;
}

namespace {

class ChromeInstallTest : public testing::Test {
  protected:
    ChromeInstallTest() {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
        answer = {Verdict::Refused, 0, "", ""};
        scripts.clear();
        Remove(kUserFolder);
        Remove(kSystemFolder + kDescriptor);
        Remove(kHost);
        Remove(kPlugIn);
        Remove(kPayload + kDescriptor);
        WriteFile(kPreferences, "\"exited_cleanly\": true");
    }

    ~ChromeInstallTest() override { EXPECT_FALSE(Exists(kScriptFile)); }

    // The log, errors cut behind their code.
    std::string Log() {
        static const std::regex error(R"(Error Domain=\w+ (Code=\d+) "[^\n]*(\n    \w+\n\)\})?)");
        return std::regex_replace(WithoutTime(log.Bytes()), error, "$1");
    }

    void InstallByHand() {
        MakeFolder(kUserFolder);
        WriteFile(kUserFolder + kDescriptor, kDescriptorText);
        WriteFile(kHost, "{}");
    }

    LogFile log;
};

TEST_F(ChromeInstallTest, InstallingForAllUsersShowsTheAdministratorOneScriptAndTheDescriptor) {
    answer.verdict = Verdict::Allowed;
    EXPECT_TRUE([ChromeInstall InstallExtension]);
    ASSERT_EQ(scripts, std::vector<std::string>{Script(kChromeInstallScript)});
    EXPECT_EQ(ReadFile(kPayload + kDescriptor), kDescriptorText);
    EXPECT_EQ(ModeOf(kPayload + kDescriptor), 0777U);
    EXPECT_EQ(ReadFile(kPreferences),
              "\"exited_cleanly\": true, \n\t\t\"password_manager_enabled\": false");
    EXPECT_FALSE(Exists(kUserFolder));
    EXPECT_EQ(Log(), kFound);
}

TEST_F(ChromeInstallTest, RemovingForAllUsersShowsTheAdministratorOneScript) {
    answer.verdict = Verdict::Allowed;
    EXPECT_TRUE([ChromeInstall UninstallExtension]);
    EXPECT_EQ(scripts, std::vector<std::string>{Script(kChromeUninstallScript)});
    EXPECT_EQ(ReadFile(kPreferences),
              "\"exited_cleanly\": true, \n        \"password_manager_enabled\": true");
    EXPECT_EQ(Log(), "");
}

TEST_F(ChromeInstallTest, RemovingWithoutFilesOnlySwitchesThePasswordManagerOn) {
    InstallByHand();
    EXPECT_TRUE([ChromeInstall UninstallExtension:NO]);
    EXPECT_TRUE(scripts.empty());
    EXPECT_TRUE(Exists(kUserFolder + kDescriptor));
    EXPECT_EQ(ReadFile(kPreferences),
              "\"exited_cleanly\": true, \n        \"password_manager_enabled\": true");
    EXPECT_EQ(Log(), "");
}

TEST_F(ChromeInstallTest, AFailingScriptCountsAsARefusal) {
    for (const CommandResult& failure : {CommandResult{Verdict::Allowed, 1, "", "failed"},
                                         CommandResult{Verdict::Cancelled, 0, "", ""},
                                         CommandResult{Verdict::Refused, 0, "", ""}}) {
        answer = failure;
        Remove(kUserFolder);
        EXPECT_FALSE([ChromeInstall installChromeAllUsers]);
        EXPECT_FALSE([ChromeInstall uninstallChromeAllUsers]);
        EXPECT_TRUE([ChromeInstall InstallExtension]);
        EXPECT_EQ(ReadFile(kUserFolder + kDescriptor), kDescriptorText);
    }
}

TEST_F(ChromeInstallTest, ABundleThatIsClosedFailsWithoutAPrompt) {
    answer.verdict = Verdict::Allowed;
    ASSERT_EQ(chmod(kPayload.c_str(), 0555), 0);
    EXPECT_FALSE([ChromeInstall installChromeAllUsers]);
    EXPECT_TRUE(scripts.empty());
    ASSERT_EQ(chmod(kPayload.c_str(), 0755), 0);
    EXPECT_EQ(Log(), "");
}

TEST_F(ChromeInstallTest, AnEarlierDescriptorInAClosedBundleIsInstalledAsItIs) {
    answer.verdict = Verdict::Allowed;
    WriteFile(kPayload + kDescriptor, "earlier");
    ASSERT_EQ(chmod(kPayload.c_str(), 0555), 0);
    EXPECT_TRUE([ChromeInstall installChromeAllUsers]);
    EXPECT_EQ(ReadFile(kPayload + kDescriptor), "earlier");
    EXPECT_EQ(ModeOf(kPayload + kDescriptor), 0777U);
    ASSERT_EQ(chmod(kPayload.c_str(), 0755), 0);
}

TEST_F(ChromeInstallTest, TheUserGetsTheHostManifestThePackageAndTheDescriptor) {
    [ChromeInstall installChromeCurrUser];
    EXPECT_TRUE(scripts.empty());
    EXPECT_EQ(ReadFile(kHost), ReadFile(kPayload + "/com.corvendale.kschromena.json"));
    EXPECT_EQ(ReadFile(kUserFolder + "/Keystrel.crx"), ReadFile(kPayload + "/Keystrel.crx"));
    EXPECT_EQ(ReadFile(kUserFolder + kDescriptor), kDescriptorText);
    EXPECT_EQ(ModeOf(kUserFolder), 0777U);
    EXPECT_EQ(ModeOf(kUserFolder + kDescriptor), 0777U);
    EXPECT_EQ(Log(), kWarning + "Error install for current user: (null)");
}

TEST_F(ChromeInstallTest, FilesThatAreThereAreNotCopiedAgain) {
    InstallByHand();
    WriteFile(kUserFolder + "/Keystrel.crx", "earlier");
    [ChromeInstall installChromeCurrUser];
    EXPECT_EQ(ReadFile(kUserFolder + "/Keystrel.crx"), "earlier");
    EXPECT_EQ(ReadFile(kHost), "{}");
    EXPECT_EQ(Log(), kWarning + "No copy: file not present: " + kHost +  //
                         kWarning + "No copy: file not present: " + kUserFolder + "/Keystrel.crx");
}

TEST_F(ChromeInstallTest, AClosedHostFolderIsOpenedByTheAdministratorAndTriedAgain) {
    ASSERT_EQ(chmod(kHosts.c_str(), 0555), 0);
    [ChromeInstall installChromeCurrUser];
    EXPECT_EQ(scripts, std::vector<std::string>{Script(kChromeFolderMakingScript)});
    ASSERT_EQ(chmod(kHosts.c_str(), 0755), 0);
    EXPECT_FALSE(Exists(kHost));
    EXPECT_EQ(Log(), kWarning + "Error install for current user: Code=513" +  //
                         kWarning + "Error install for current user: (null)");
}

TEST_F(ChromeInstallTest, AClosedUserFolderIsReportedByTheCopies) {
    ASSERT_EQ(chmod(kChrome.c_str(), 0555), 0);
    [ChromeInstall installChromeCurrUser];
    [ChromeInstall installChromeButtonCurrUser];
    ASSERT_EQ(chmod(kChrome.c_str(), 0755), 0);
    // The folder is missing, so the copies say that there is no such folder.
    EXPECT_EQ(Log(), kWarning + "Error install for current user: Code=4" +  //
                         kWarning + "Error removing file: Code=4");
}

TEST_F(ChromeInstallTest, AMissingPayloadIsReported) {
    const std::string aside = kPayload + ".aside";
    ASSERT_EQ(rename(kPayload.c_str(), aside.c_str()), 0);
    [ChromeInstall installChromeCurrUser];
    [ChromeInstall installChromeButtonCurrUser];
    ASSERT_EQ(rename(aside.c_str(), kPayload.c_str()), 0);
    EXPECT_EQ(Log(), kWarning + "Error install for current user: Code=260" + kWarning +
                         "Error install for current user: Code=260" +  //
                         kWarning + "Error removing file: Code=260");
    EXPECT_EQ(scripts.size(), 1U);
    // The descriptors need no payload.
    EXPECT_EQ(ReadFile(kUserFolder + kDescriptor), kDescriptorText);
    EXPECT_EQ(ReadFile(kUserFolder + kButtonDescriptor), kDescriptorText);
}

TEST_F(ChromeInstallTest, TheUsersFilesAreRemoved) {
    InstallByHand();
    WriteFile(kUserFolder + "/Keystrel.crx", "crx");
    WriteFile(kUserFolder + "/KeystrelButton.crx", "crx");
    WriteFile(kUserFolder + kButtonDescriptor, kDescriptorText);
    WriteFile(kUserFolder + "/foreign.json", "{}");
    MakeFolder(kPlugIn + "/Contents");
    [ChromeInstall uninstallChromeCurrUser];
    EXPECT_FALSE(Exists(kPlugIn));
    EXPECT_FALSE(Exists(kHost));
    EXPECT_FALSE(Exists(kUserFolder + "/Keystrel.crx"));
    EXPECT_FALSE(Exists(kUserFolder + kDescriptor));
    EXPECT_TRUE(Exists(kUserFolder + "/KeystrelButton.crx"));
    EXPECT_TRUE(Exists(kUserFolder + kButtonDescriptor));
    [ChromeInstall uninstallChromeButtonCurrUser];
    EXPECT_FALSE(Exists(kUserFolder + "/KeystrelButton.crx"));
    EXPECT_FALSE(Exists(kUserFolder + kButtonDescriptor));
    EXPECT_TRUE(Exists(kUserFolder + "/foreign.json"));
    EXPECT_EQ(Log(), "");
}

TEST_F(ChromeInstallTest, FilesThatAreNotThereAreReportedInOrder) {
    [ChromeInstall uninstallChromeCurrUser];
    [ChromeInstall uninstallChromeButtonCurrUser];
    EXPECT_EQ(Log(), kWarning + "No delete, file not present: " + kPlugIn +  //
                         kWarning + "No delete, file not present: " + kHost + kWarning +
                         "No delete, file not present: " + kHost +  // the package
                         kWarning + "No delete, file not present: " + kUserFolder +
                         "/KeystrelButton.crx");
}

TEST_F(ChromeInstallTest, FilesThatCannotBeRemovedAreReportedInOrder) {
    InstallByHand();
    WriteFile(kUserFolder + "/Keystrel.crx", "crx");
    WriteFile(kUserFolder + "/KeystrelButton.crx", "crx");
    MakeFolder(kPlugIn);
    const std::string closed[] = {kLibrary + "/Internet Plug-Ins", kHosts, kUserFolder};
    for (const std::string& folder : closed) {
        ASSERT_EQ(chmod(folder.c_str(), 0555), 0);
    }
    [ChromeInstall uninstallChromeCurrUser];
    [ChromeInstall uninstallChromeButtonCurrUser];
    for (const std::string& folder : closed) {
        ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
    }
    const std::string line = kWarning + "Error removing file: Code=513";
    EXPECT_EQ(Log(), line + line + line + line);
}

TEST_F(ChromeInstallTest, TheButtonsPackageAndDescriptorAreInstalled) {
    [ChromeInstall installChromeButtonCurrUser];
    EXPECT_EQ(ReadFile(kUserFolder + "/KeystrelButton.crx"),
              ReadFile(kPayload + "/KeystrelButton.crx"));
    EXPECT_EQ(ReadFile(kUserFolder + kButtonDescriptor), kDescriptorText);
    EXPECT_EQ(ModeOf(kUserFolder), 0777U);
    EXPECT_EQ(ModeOf(kUserFolder + kButtonDescriptor), 0777U);
    EXPECT_EQ(Log(), "");
    [ChromeInstall installChromeButtonCurrUser];
    EXPECT_EQ(Log(),
              kWarning + "No copy, file not present: " + kUserFolder + "/KeystrelButton.crx");
}

TEST_F(ChromeInstallTest, TheExtensionIsInstalledWithADescriptorAndTheHostManifest) {
    EXPECT_FALSE([ChromeInstall IsExtensionInstalled]);
    InstallByHand();
    EXPECT_TRUE([ChromeInstall IsExtensionInstalled]);
    Remove(kHost);
    EXPECT_FALSE([ChromeInstall IsExtensionInstalled]);
}

TEST_F(ChromeInstallTest, TheSystemsDescriptorCountsWhereTheUserHasNone) {
    InstallByHand();
    Remove(kUserFolder + kDescriptor);
    EXPECT_FALSE([ChromeInstall IsExtensionInstalled]);
    WriteFile(kSystemFolder + kDescriptor, "external_update_url");
    EXPECT_TRUE([ChromeInstall IsExtensionInstalled]);
    // The user's goes first, whatever it says.
    WriteFile(kUserFolder + kDescriptor, "{ \"external_crx\": \"old\" }");
    EXPECT_FALSE([ChromeInstall IsExtensionInstalled]);
    WriteFile(kUserFolder + kDescriptor, "external_update_url \xFF");
    EXPECT_FALSE([ChromeInstall IsExtensionInstalled]);
}

TEST_F(ChromeInstallTest, AnOrdinaryInstallationIsNeverReportedAsStarted) {
    Launch(kApplication, "com.google.Chrome");
    EXPECT_FALSE([ChromeInstall IsBrowserStarted]);
    EXPECT_FALSE(IsChromeStartedBridgeCPP());
    EndAll("Google Chrome");
    EXPECT_EQ(Log(), "");
}

TEST_F(ChromeInstallTest, AnApplicationThatIsIdentifiedByTheNameCountsAsStarted) {
    const std::string copy = LaunchCopy(kApplication, "com.google.Chrome", "Google Chrome");
    EXPECT_TRUE([ChromeInstall IsBrowserStarted]);
    EXPECT_TRUE(IsChromeStartedBridgeCPP());
    EndAll("Google Chrome");
    std::filesystem::remove_all(copy);
    EXPECT_FALSE([ChromeInstall IsBrowserStarted]);
}

TEST_F(ChromeInstallTest, TheBridgesReachTheOperations) {
    EXPECT_TRUE(IsChromeInstalledBridgeCPP());
    EXPECT_FALSE(IsChromeStartedBridgeCPP());
    EXPECT_FALSE(IsChromeExtensionInstalledBridgeCPP());
    EXPECT_TRUE(ChromeInstallExtensionBridgeCPP());
    EXPECT_TRUE(IsChromeExtensionInstalledBridgeCPP());
    EXPECT_TRUE(ChromeUninstallExtensionBridgeCPP());
    EXPECT_FALSE(IsChromeExtensionInstalledBridgeCPP());
}

TEST_F(ChromeInstallTest, TheEnvironmentTellsOfTheBrowserAndTheExtension) {
    EXPECT_TRUE(KSEnvironement::GetIsChromeInstalled());
    EXPECT_FALSE(KSEnvironement::GetIsChromeExtInstalled());
    InstallByHand();
    EXPECT_TRUE(KSEnvironement::GetIsChromeExtInstalled());
}

TEST_F(ChromeInstallTest, WithoutChromeNothingIsInstalledAndNothingAsked) {
    const std::string application = "/Applications/Google Chrome.app";
    const std::string aside = "/Applications/aside";
    ASSERT_EQ(rename(application.c_str(), aside.c_str()), 0);
    InstallByHand();
    EXPECT_TRUE([ChromeInstall InstallExtension]);
    EXPECT_FALSE([ChromeInstall IsExtensionInstalled]);
    EXPECT_FALSE(KSEnvironement::GetIsChromeInstalled());
    EXPECT_FALSE(IsChromeInstalledBridgeCPP());
    ASSERT_EQ(rename(aside.c_str(), application.c_str()), 0);
    EXPECT_TRUE(scripts.empty());
    EXPECT_EQ(ReadFile(kPreferences), "\"exited_cleanly\": true");
    const std::string line = kWarning + "App not found";
    EXPECT_EQ(Log(), line + line + line + line);
}

}  // namespace
