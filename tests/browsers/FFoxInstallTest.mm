// Firefox's operations one by one, and through the bridges, on a Mac that has Firefox. /Library and
// /Applications belong to alex here, so that the tests can arrange them.
#include "browsers/FFoxInstall.h"

#include <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "installer/BrowserBridges.h"
#include "settings/KSEnvironement.h"
#include "tests/support/Command.h"
#include "tests/support/ErrorChecks.h"
#include "tests/support/Files.h"
#include "tests/support/Growth.h"
#include "tests/support/Launching.h"
#include "tests/support/LogFile.h"

namespace {

using namespace std::string_literals;

const std::string kLocal = "/Library/Application Support";
const std::string kUser = "/Users/alex/Library/Application Support";
const std::string kFolder = "/Mozilla/Extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}";
const std::string kProfiles = kUser + "/Firefox/Profiles";
const std::string kHostFolder = kUser + "/Mozilla/NativeMessagingHosts";
const std::string kHostManifest = kHostFolder + "/com.corvendale.ksnative.json";
const std::string kPayload =
    "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/com.corvendale.ksnative.json";
const std::string kApplication = "/Applications/Firefox.app";

const std::string kButton = "/KeystrelButton@corvendale.com";
const std::string kMain = "/Keystrel@corvendale.com";
const std::string kShort = "/ks@corvendale.com";
const std::string kTypes = "/js-ctypes";

const std::string kFound = "INFO : Application URL is: file:///Applications/Firefox.app/";

// What stands for an error's description in the expected log: only its beginning is compared.
const std::string kGone = "Error Domain=NSCocoaErrorDomain Code=4 ";
const std::string kDenied = "Error Domain=NSCocoaErrorDomain Code=513 ";

class FFoxInstallTest : public testing::Test {
  protected:
    FFoxInstallTest() {
        for (const std::string& base : {kLocal, kUser}) {
            OutputOf("if [ -e '" + base + "/Mozilla' ]; then chmod -R u+w '" + base +
                     "/Mozilla'; fi; rm -rf '" + base + "/Mozilla'");
        }
        OutputOf("rm -rf '" + kUser + "/Firefox'");
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    }
    static void MakeFolder(const std::string& path) { OutputOf("mkdir -p '" + path + "'"); }

    // A folder that cannot be removed, because what it holds cannot.
    static void MakeStubborn(const std::string& path) {
        MakeFolder(path + "/closed/inside");
        EXPECT_EQ(chmod((path + "/closed").c_str(), 0555), 0);
    }

    static bool Exists(const std::string& path) {
        struct stat info;
        return lstat(path.c_str(), &info) == 0;
    }

    // The log's lines without the time; of an error's description only the domain and the code.
    std::vector<std::string> Lines() {
        std::vector<std::string> lines;
        std::string text = WithoutTime(log.Bytes());
        const std::string start = "\nHH:MM:SS - ";
        while (!text.empty()) {
            EXPECT_EQ(text.rfind(start, 0), 0U) << text;
            const size_t end = text.find(start, 1);
            std::string line = text.substr(start.size(), end - start.size());
            const size_t error = line.find("Error Domain=");
            if (error != std::string::npos) {
                const size_t code = line.find("Code=", error);
                EXPECT_NE(line.find("NSFilePath=", code), std::string::npos) << line;
                EXPECT_EQ(line.back(), '}') << line;
                line.resize(line.find(' ', code) + 1);
            }
            lines.push_back(line);
            text.erase(0, end);
        }
        return lines;
    }

    // What a removal logs in a folder that holds nothing.
    static std::string ButtonMissing(const std::string& base) {
        return "INFO : File at: " + base + kFolder + kButton + ", not present";
    }
    static std::string Missing(const std::string& base, const std::string& name) {
        return "INFO : Can't delete. File not present " + base + kFolder + name;
    }
    static std::string FolderError(const std::string& error) {
        return "INFO : Error deleting FFox extension directory: " + error;
    }
    static std::string Failed(const std::string& error) {
        return "FAILURE :  Error uninstalling FFox extension: " + error;
    }

    LogFile log;
};

using Log = std::vector<std::string>;

TEST_F(FFoxInstallTest, TheExtensionIsInstalledWhenTheHostManifestExists) {
    EXPECT_FALSE([FFoxInstall IsExtensionInstalled]);
    EXPECT_TRUE([FFoxInstall InstallExtension]);
    EXPECT_TRUE([FFoxInstall IsExtensionInstalled]);
    OutputOf("rm '" + kHostManifest + "'");
    EXPECT_FALSE([FFoxInstall IsExtensionInstalled]);
    MakeFolder(kHostManifest);
    EXPECT_TRUE([FFoxInstall IsExtensionInstalled]);  // only existence counts
}

TEST_F(FFoxInstallTest, InstallingMakesOpenFoldersAndCopiesTheManifest) {
    EXPECT_TRUE([FFoxInstall InstallExtension]);
    EXPECT_EQ(OutputOf("cd '" + kUser + "' && stat -c '%n %a' . Mozilla Mozilla/* Mozilla/*/*"),
              ". 755\nMozilla 777\nMozilla/Extensions 777\nMozilla/NativeMessagingHosts 777\n"
              "Mozilla/Extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384} 777\n"
              "Mozilla/NativeMessagingHosts/com.corvendale.ksnative.json 644\n");
    EXPECT_EQ(OutputOf("cmp '" + kHostManifest + "' " + kPayload), "");
    EXPECT_EQ(OutputOf("ls -A '" + kUser + kFolder + "'"), "");  // meant: it is made empty
    EXPECT_FALSE(Exists(kLocal + "/Mozilla"));
}

TEST_F(FFoxInstallTest, InstallingHasFirefoxOpenThePrivacyPage) {
    const std::string program = kApplication + "/Contents/MacOS/firefox";
    const std::string said = "/private/tmp/said";
    OutputOf("mkfifo " + said + "; mv " + program + " " + program +
             ".away; printf '%s\\n' '#!/bin/sh'" + " 'exec >" + said +
             "' 'printf \"<%s>\" \"$@\"' >" + program + "; chmod 755 " + program);
    EXPECT_TRUE([FFoxInstall InstallExtension]);
    EXPECT_EQ(OutputOf("cat " + said), "<https://www.corvendale.com/keystrel/privacy/firefox>");
    OutputOf("mv " + kPayload + " " + kPayload + ".away");
    EXPECT_FALSE([FFoxInstall InstallExtension]);  // the page is opened all the same
    EXPECT_EQ(OutputOf("cat " + said), "<https://www.corvendale.com/keystrel/privacy/firefox>");
    OutputOf("mv " + kPayload + ".away " + kPayload + "; mv " + program + ".away " + program +
             "; rm " + said);
    const Log lines = Lines();
    EXPECT_EQ(lines.back(),
              "FAILURE : Error installing FFox: Error Domain=NSCocoaErrorDomain Code=260 ");
}

TEST_F(FFoxInstallTest, APageThatCannotBeOpenedDoesNotCount) {
    const std::string program = kApplication + "/Contents/MacOS/firefox";
    OutputOf("mv " + program + " " + program + ".away");
    EXPECT_TRUE([FFoxInstall InstallExtension]);
    OutputOf("mv " + program + ".away " + program);
    EXPECT_TRUE(Exists(kHostManifest));
}

TEST_F(FFoxInstallTest, WithoutFirefoxThereIsNothingToInstall) {
    MakeFolder(kUser + kFolder + kMain);
    OutputOf("mv " + kApplication + " /private/tmp/");
    EXPECT_TRUE([FFoxInstall InstallExtension]);
    EXPECT_TRUE(FFInstallExtensionBridgeCPP());
    MakeFolder(kHostManifest);
    EXPECT_FALSE([FFoxInstall IsExtensionInstalled]);
    EXPECT_FALSE(IsFFInstalledBridgeCPP());
    EXPECT_FALSE(KSEnvironement::GetIsFFInstalled());
    OutputOf("mv /private/tmp/Firefox.app /Applications/");
    EXPECT_TRUE(Exists(kUser + kFolder + kMain));
    EXPECT_EQ(Lines(), Log(5, "INFO : Firefox application not found!"));
}

TEST_F(FFoxInstallTest, AFolderThatCannotBeMadeIsLoggedAndTheManifestInstalled) {
    MakeFolder(kUser + "/Mozilla");
    OutputOf("touch '" + kUser + "/Mozilla/Extensions'");
    EXPECT_TRUE([FFoxInstall InstallExtension]);
    EXPECT_TRUE(Exists(kHostManifest));
    EXPECT_EQ(Lines().back(),
              "FAILURE : Error installing FFox: Error Domain=NSCocoaErrorDomain Code=512 ");
}

TEST_F(FFoxInstallTest, AHostFolderThatCannotBeMadeShowsInTheCopyOnly) {
    MakeFolder(kUser + "/Mozilla");
    OutputOf("touch '" + kHostFolder + "'");
    EXPECT_FALSE([FFoxInstall InstallExtension]);
    const Log lines = Lines();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) { return line.rfind("FAILURE", 0) == 0; }),
              1);
    EXPECT_EQ(lines.back().rfind("FAILURE : Error installing FFox: Error Domain=", 0), 0U);
    EXPECT_TRUE(Exists(kUser + kFolder));
}

TEST_F(FFoxInstallTest, InstallingTwiceReplacesTheManifest) {
    MakeFolder(kHostFolder);
    OutputOf("echo old >'" + kHostManifest + "'; echo mine >'" + kHostFolder + "/mine.json'");
    EXPECT_TRUE(FFInstallExtensionBridgeCPP());
    EXPECT_TRUE(FFInstallExtensionBridgeCPP());
    EXPECT_EQ(OutputOf("cmp '" + kHostManifest + "' " + kPayload), "");
    EXPECT_EQ(OutputOf("cat '" + kHostFolder + "/mine.json'"), "mine\n");
}

TEST_F(FFoxInstallTest, WhereNothingWasInstalledTheRemovalSaysSo) {
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    EXPECT_EQ(Lines(), (Log{ButtonMissing(kLocal), ButtonMissing(kUser),
                            // The first path again, for the short identifier: that is meant.
                            Missing(kLocal, kMain), Missing(kLocal, kMain), FolderError(kGone),
                            Missing(kUser, kMain), Missing(kUser, kMain), FolderError(kGone),
                            Missing(kLocal, kTypes), FolderError(kGone), Missing(kUser, kTypes),
                            FolderError(kGone)}));
}

TEST_F(FFoxInstallTest, EverythingOfEarlierVersionsIsRemoved) {
    for (const std::string& base : {kLocal, kUser}) {
        for (const std::string& name : {kButton, kMain, kShort, kTypes, "/foreign@example.org"s}) {
            MakeFolder(base + kFolder + name + "/deep");
        }
        MakeFolder(base + "/Mozilla/Extensions/other");
    }
    MakeFolder(kHostManifest);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    for (const std::string& base : {kLocal, kUser}) {
        EXPECT_EQ(OutputOf("ls -A '" + base + "/Mozilla/Extensions'"), "other\n");
    }
    EXPECT_FALSE(Exists(kHostManifest));
    EXPECT_TRUE(Exists(kHostFolder));
    // Removals that succeed are silent; js-ctypes went with the folder around it.
    EXPECT_EQ(Lines(), (Log{Missing(kLocal, kTypes), FolderError(kGone), Missing(kUser, kTypes),
                            FolderError(kGone)}));
}

TEST_F(FFoxInstallTest, OnlyTheMainExtensionThere) {
    MakeFolder(kUser + kFolder + kMain);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    const Log lines = Lines();
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[5], Missing(kUser, kMain));
    EXPECT_EQ(lines[8], Missing(kUser, kTypes));
}

TEST_F(FFoxInstallTest, OnlyTheShortExtensionThere) {
    MakeFolder(kUser + kFolder + kShort);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    const Log lines = Lines();
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[5], Missing(kUser, kMain));
    EXPECT_EQ(lines[8], Missing(kUser, kTypes));
    EXPECT_FALSE(Exists(kUser + kFolder));
}

TEST_F(FFoxInstallTest, AButtonThatCannotBeRemovedIsInformation) {
    MakeStubborn(kUser + kFolder + kButton);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    EXPECT_TRUE(Exists(kUser + kFolder + kButton + "/closed/inside"));
    EXPECT_EQ(Lines(), (Log{ButtonMissing(kLocal), "INFO : " + kDenied, Missing(kLocal, kMain),
                            Missing(kLocal, kMain), FolderError(kGone), Missing(kUser, kMain),
                            Missing(kUser, kMain), FolderError(kDenied), Missing(kLocal, kTypes),
                            FolderError(kGone), Missing(kUser, kTypes), FolderError(kDenied)}));
}

// The slot of a pass over a folder keeps an error until another one takes its place.

TEST_F(FFoxInstallTest, AnErrorOfTheMainExtensionShowsAgainWhenTheShortOneIsRemoved) {
    MakeStubborn(kUser + kFolder + kMain);
    MakeFolder(kUser + kFolder + kShort);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    EXPECT_FALSE(Exists(kUser + kFolder + kShort));
    EXPECT_EQ(Lines(), (Log{ButtonMissing(kLocal), ButtonMissing(kUser), Missing(kLocal, kMain),
                            Missing(kLocal, kMain), FolderError(kGone), Failed(kDenied),
                            Failed(kDenied), FolderError(kDenied), Missing(kLocal, kTypes),
                            FolderError(kGone), Missing(kUser, kTypes), FolderError(kDenied)}));
    const std::string text = log.Bytes();
    const size_t first = text.find("Error uninstalling");
    const size_t second = text.find("Error uninstalling", first + 1);
    const auto messageAt = [&text](size_t start) {
        return text.substr(start, text.find('\n', start) - start);
    };
    EXPECT_EQ(messageAt(first), messageAt(second));
    EXPECT_NE(messageAt(second).find("NSFilePath=" + kUser + kFolder + kMain), std::string::npos)
        << messageAt(second);
}

TEST_F(FFoxInstallTest, AnErrorOfTheMainExtensionDoesNotShowAgainForAMissingShortOne) {
    MakeStubborn(kUser + kFolder + kMain);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    const Log lines = Lines();
    EXPECT_EQ(lines[5], Failed(kDenied));
    EXPECT_EQ(lines[6], Missing(kUser, kMain));
    EXPECT_EQ(lines[7], FolderError(kDenied));
}

TEST_F(FFoxInstallTest, TheErrorOfTheFolderTakesThePlaceOfAnEarlierOne) {
    MakeStubborn(kUser + kFolder + kShort);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    const Log lines = Lines();
    EXPECT_EQ(lines[5], Missing(kUser, kMain));
    EXPECT_EQ(lines[6], Failed(kDenied));
    EXPECT_EQ(lines[7], FolderError(kDenied));
    const std::string text = log.Bytes();
    const size_t folder = text.find("Error deleting", text.find("Error uninstalling"));
    EXPECT_EQ(text.find("\"“{ec8030f7-", folder), text.find('"', folder)) << text;
}

TEST_F(FFoxInstallTest, AnErrorOfTheComputersFolderDoesNotShowForTheUsers) {
    MakeStubborn(kLocal + kFolder + kMain);
    for (const std::string& name : {kMain, kShort}) {
        MakeFolder(kUser + kFolder + name);
    }
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    EXPECT_FALSE(Exists(kUser + kFolder));
    EXPECT_EQ(Lines(), (Log{ButtonMissing(kLocal), ButtonMissing(kUser), Failed(kDenied),
                            Missing(kLocal, kMain), FolderError(kDenied), Missing(kLocal, kTypes),
                            FolderError(kDenied), Missing(kUser, kTypes), FolderError(kGone)}));
}

TEST_F(FFoxInstallTest, AnErrorOfJsCtypesShowsOnceMoreWithTheFolder) {
    MakeStubborn(kUser + kFolder + kTypes);
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    const Log lines = Lines();
    EXPECT_EQ(lines[7], FolderError(kDenied));
    EXPECT_EQ(lines[10], Failed(kDenied));
    EXPECT_EQ(lines[11], FolderError(kDenied));
}

TEST_F(FFoxInstallTest, ALinkInPlaceOfTheFolderIsRemovedAndItsTargetKept) {
    MakeFolder(kUser + "/Mozilla/Extensions");
    MakeFolder("/private/tmp/elsewhere/mine");
    MakeFolder("/private/tmp/elsewhere" + kMain);
    OutputOf("ln -s /private/tmp/elsewhere '" + kUser + kFolder + "'");
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    EXPECT_FALSE(Exists(kUser + kFolder));
    EXPECT_EQ(OutputOf("ls /private/tmp/elsewhere"), "mine\n");  // its path led to the extension
    OutputOf("rm -r /private/tmp/elsewhere");
}

TEST_F(FFoxInstallTest, ADanglingLinkIsRemovedWithTheFolder) {
    MakeFolder(kUser + kFolder);
    OutputOf("ln -s /nowhere '" + kUser + kFolder + kMain + "'");
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    EXPECT_FALSE(Exists(kUser + kFolder));
    EXPECT_EQ(Lines()[5], Missing(kUser, kMain));  // what a link to nothing counts as
}

TEST_F(FFoxInstallTest, ProfilesAreEverythingInTheirFolder) {
    EXPECT_EQ([[FFoxInstall ffoxProfiles] count], 0U);
    for (const char* name : {"ab12.default", "two words", "100%n%s", "Zoë 東京", "quo'te"}) {
        OutputOf("mkdir -p \""s + kProfiles + "/" + name + "\"");
    }
    OutputOf("touch '" + kProfiles + "/.DS_Store'; ln -s /nowhere '" + kProfiles + "/link'");
    NSArray* profiles = [[FFoxInstall ffoxProfiles] sortedArrayUsingSelector:@selector(compare:)];
    NSMutableArray* expected = [NSMutableArray array];
    for (const char* name :
         {".DS_Store", "100%n%s", "Zoë 東京", "ab12.default", "link", "quo'te", "two words"}) {
        [expected addObject:Text(kProfiles + "/" + name)];
    }
    [expected sortUsingSelector:@selector(compare:)];
    EXPECT_TRUE([profiles isEqual:expected]) << Text([profiles description]);
    OutputOf("rm -r '" + kProfiles + "'; touch '" + kProfiles + "'");
    EXPECT_EQ([[FFoxInstall ffoxProfiles] count], 0U);
}

// How often a file was moved to its place in one of the folders that are watched.
size_t Arrivals(int watch) {
    alignas(inotify_event) char events[4096];
    const ssize_t length = read(watch, events, sizeof events);
    size_t arrivals = 0;
    for (ssize_t at = 0; at < length;) {
        const auto* event = reinterpret_cast<const inotify_event*>(events + at);
        arrivals += (event->mask & IN_MOVED_TO) != 0;
        at += static_cast<ssize_t>(sizeof *event + event->len);
    }
    return arrivals;
}

TEST_F(FFoxInstallTest, ARemovalWritesEachRegistryOnce) {
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    for (const std::string& profile : {kProfiles + "/one", kProfiles + "/two"}) {
        MakeFolder(profile);
        WriteFile(profile + "/extensions.rdf", "<RDF:RDF xmlns:RDF=\"urn:r\"/>");
        // Two arrivals of one name that nothing parts would be told as one.
        ASSERT_GE(inotify_add_watch(watch, profile.c_str(), IN_CREATE | IN_MOVED_TO), 0);
    }
    EXPECT_TRUE([FFoxInstall UninstallExtension]);
    EXPECT_EQ(Arrivals(watch), 2U);
    close(watch);
}

TEST_F(FFoxInstallTest, TimeGrowsWithTheProfilesAndNotFaster) {
    const auto seconds = [](size_t count) {
        OutputOf("rm -rf '" + kUser + "/Firefox'");
        for (size_t i = 0; i < count; ++i) {
            const std::string profile = kProfiles + "/" + std::to_string(i) + ".default";
            std::filesystem::create_directories(profile);
            WriteFile(profile + "/extensions.rdf", "<RDF:RDF xmlns:RDF=\"urn:r\"><RDF:Description "
                                                   "RDF:about=\"ks@corvendale.com\"/></RDF:RDF>");
            WriteFile(profile + "/compreg.dat", "cache");
        }
        const clock_t start = clock();
        [FFoxInstall UninstallExtension];
        const double spent = static_cast<double>(clock() - start) / CLOCKS_PER_SEC;
        EXPECT_EQ(OutputOf("cd '" + kProfiles + "' && cat */* | sort | uniq -c | tr -s ' '"),
                  " " + std::to_string(count) + " <?xml version=\"1.0\" encoding=\"UTF-8\"?>\n " +
                      std::to_string(count) + " <RDF:RDF xmlns:RDF=\"urn:r\"></RDF:RDF>\n");
        return spent;
    };
    seconds(10);  // what is made once is not counted
    EXPECT_LT(Growth(seconds, 50, 400, 16), 16);
}

TEST_F(FFoxInstallTest, AnOrdinaryInstallationIsNeverReportedAsStarted) {
    Launch(kApplication, "org.mozilla.firefox");
    EXPECT_FALSE([FFoxInstall IsBrowserStarted]);
    EXPECT_FALSE(IsFFStartedBridgeCPP());
    EndAll("firefox");
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(FFoxInstallTest, AnApplicationThatIsIdentifiedByAProgramNameCountsAsStarted) {
    for (const char* name : {"firefox-bin", "firefox", "aurora", "nightly"}) {
        const std::string copy = LaunchCopy(kApplication, "org.mozilla.firefox", name);
        EXPECT_TRUE([FFoxInstall IsBrowserStarted]) << name;
        EXPECT_TRUE(IsFFStartedBridgeCPP());
        EndAll("firefox");
        std::filesystem::remove_all(copy);
        EXPECT_FALSE([FFoxInstall IsBrowserStarted]);
    }
}

TEST_F(FFoxInstallTest, TheEnvironmentKnowsFirefox) {
    EXPECT_TRUE(KSEnvironement::GetIsFFInstalled());
    EXPECT_TRUE(IsFFInstalledBridgeCPP());
    EXPECT_EQ(Lines(), (Log{kFound, kFound}));
    std::string path = "before";
    EXPECT_TRUE(KSEnvironement().GetFFInstallationPath(path));
    EXPECT_EQ(path, "/Applications/Firefox.app");
}

}  // namespace
