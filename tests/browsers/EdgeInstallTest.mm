// Edge's operations one by one, and through the bridges, on a Mac that has Edge.
#include "browsers/EdgeInstall.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "installer/BrowserBridges.h"
#include "settings/KSEnvironement.h"
#include "tests/support/Files.h"
#include "tests/support/Launching.h"
#include "tests/support/LogFile.h"

namespace {

const std::string kApplication = "/Applications/Microsoft Edge.app";
NSString* const kEdgeFolder = @"/Users/alex/Library/Application Support/Microsoft Edge";
NSString* const kHostManifest = @"NativeMessagingHosts/com.corvendale.kschromena.json";
NSString* const kDescriptor = @"External Extensions/ljdimbpkaehcfognojlkbmcpiedhfagk.json";

const std::string kFound =
    "\nHH:MM:SS - INFO : Application URL is: file:///Applications/Microsoft%20Edge.app/";
const std::string kUninstalled = "\nHH:MM:SS - INFO : Edge extension uninstalled!";

class EdgeInstallTest : public testing::Test {
  protected:
    EdgeInstallTest() {
        [files removeItemAtPath:kEdgeFolder error:NULL];
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    }

    bool Exists(NSString* name) {
        return [files fileExistsAtPath:[kEdgeFolder stringByAppendingPathComponent:name]];
    }

    void Remove(NSString* name) {
        EXPECT_TRUE([files removeItemAtPath:[kEdgeFolder stringByAppendingPathComponent:name]
                                      error:NULL]);
    }

    void Make(NSString* name) {
        EXPECT_TRUE([files createDirectoryAtPath:[kEdgeFolder stringByAppendingPathComponent:name]
                     withIntermediateDirectories:YES
                                      attributes:nil
                                           error:NULL]);
    }

    // An installation with this folder closed ends with this failure, an error's description behind it.
    void ExpectFailure(NSString* closed, const std::string& failure) {
        const std::string path = [[kEdgeFolder stringByAppendingPathComponent:closed] UTF8String];
        ASSERT_EQ(chmod(path.c_str(), 0555), 0);
        EXPECT_FALSE([EdgeInstall InstallExtension]);
        ASSERT_EQ(chmod(path.c_str(), 0755), 0);
        const std::string logged = WithoutTime(log.Bytes());
        EXPECT_EQ(logged.rfind(kFound + kUninstalled + "\nHH:MM:SS - FAILURE : " + failure +
                                   ": Error Domain=NSCocoaErrorDomain Code=513 ",
                               0),
                  0U)
            << logged;
        EXPECT_EQ(logged.back(), '}') << logged;
    }

    NSFileManager* const files = [NSFileManager defaultManager];
    LogFile log;
};

TEST_F(EdgeInstallTest, AnInstallationRemovesFirstAndTellsThatItIsDone) {
    EXPECT_TRUE([EdgeInstall InstallExtension]);
    EXPECT_EQ(WithoutTime(log.Bytes()),
              kFound + kUninstalled + "\nHH:MM:SS - INFO : Edge extension installed!");
}

TEST_F(EdgeInstallTest, TheFirstStepThatFailsIsToldAndEndsTheInstallation) {
    Make(@"");
    ExpectFailure(@"", "Error creating Edge Native directory");
    EXPECT_FALSE(Exists(@"NativeMessagingHosts"));
}

TEST_F(EdgeInstallTest, AClosedHostFolderEndsTheInstallation) {
    Make(@"NativeMessagingHosts");
    ExpectFailure(@"NativeMessagingHosts", "Error copying Edge JSON");
    EXPECT_FALSE(Exists(@"External Extensions"));
}

TEST_F(EdgeInstallTest, AnExternalFolderThatCannotBeMadeEndsTheInstallation) {
    Make(@"NativeMessagingHosts");
    ExpectFailure(@"", "Error creating Edge External directory");
    EXPECT_TRUE(Exists(kHostManifest));
}

TEST_F(EdgeInstallTest, AClosedExternalFolderEndsTheInstallation) {
    Make(@"External Extensions");
    ExpectFailure(@"External Extensions", "Error copying Edge created JSON");
    EXPECT_FALSE(Exists(kDescriptor));
}

TEST_F(EdgeInstallTest, TheExtensionIsInstalledWhenBothFilesExist) {
    EXPECT_FALSE([EdgeInstall IsExtensionInstalled]);
    EXPECT_TRUE([EdgeInstall InstallExtension]);
    EXPECT_TRUE([EdgeInstall IsExtensionInstalled]);
    Remove(kDescriptor);
    EXPECT_FALSE([EdgeInstall IsExtensionInstalled]);
    EXPECT_TRUE([EdgeInstall InstallExtension]);
    Remove(kHostManifest);
    EXPECT_FALSE([EdgeInstall IsExtensionInstalled]);
}

TEST_F(EdgeInstallTest, OnlyExistenceCounts) {
    EXPECT_TRUE([EdgeInstall InstallExtension]);
    for (NSString *name in [NSArray arrayWithObjects:kHostManifest, kDescriptor, nil]) {
        NSString* path = [kEdgeFolder stringByAppendingPathComponent:name];
        [files removeItemAtPath:path error:NULL];
        EXPECT_TRUE([files createDirectoryAtPath:path
                     withIntermediateDirectories:NO
                                      attributes:nil
                                           error:NULL]);
    }
    EXPECT_TRUE([EdgeInstall IsExtensionInstalled]);
}

TEST_F(EdgeInstallTest, UninstallingRemovesBothFilesAndKeepsTheFolders) {
    EXPECT_TRUE([EdgeInstall InstallExtension]);
    EXPECT_TRUE([EdgeInstall UninstallExtension]);
    EXPECT_FALSE(Exists(kHostManifest));
    EXPECT_FALSE(Exists(kDescriptor));
    EXPECT_TRUE(Exists(@"NativeMessagingHosts"));
    EXPECT_TRUE(Exists(@"External Extensions"));
    EXPECT_TRUE([EdgeInstall UninstallExtension]);  // nothing there to remove
}

TEST_F(EdgeInstallTest, AnOrdinaryInstallationIsNeverReportedAsStarted) {
    Launch(kApplication, "com.microsoft.edgemac");
    EXPECT_FALSE([EdgeInstall IsBrowserStarted]);
    EXPECT_FALSE(IsEdgeStartedBridgeCPP());
    EndAll("Microsoft Edge");
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(EdgeInstallTest, AnApplicationThatIsIdentifiedByTheNameCountsAsStarted) {
    const std::string copy = LaunchCopy(kApplication, "com.microsoft.edgemac", "Microsoft Edge");
    EXPECT_TRUE([EdgeInstall IsBrowserStarted]);
    EXPECT_TRUE(IsEdgeStartedBridgeCPP());
    EndAll("Microsoft Edge");
    std::filesystem::remove_all(copy);
    EXPECT_FALSE([EdgeInstall IsBrowserStarted]);
}

TEST_F(EdgeInstallTest, TheBridgesReachTheOperations) {
    EXPECT_TRUE(IsEdgeInstalledBridgeCPP());
    EXPECT_FALSE(IsEdgeStartedBridgeCPP());
    EXPECT_FALSE(IsEdgeExtensionInstalledBridgeCPP());
    EXPECT_TRUE(EdgeInstallExtensionBridgeCPP());
    ASSERT_TRUE(Exists(kHostManifest));
    EXPECT_TRUE(IsEdgeExtensionInstalledBridgeCPP());
    EXPECT_TRUE(EdgeUninstallExtensionBridgeCPP());
    EXPECT_FALSE(Exists(kHostManifest));
    EXPECT_FALSE(IsEdgeExtensionInstalledBridgeCPP());
    EXPECT_TRUE([files removeItemAtPath:kEdgeFolder error:NULL]);
    WriteFile([kEdgeFolder UTF8String], "in the way");
    EXPECT_FALSE(EdgeInstallExtensionBridgeCPP());
}

TEST_F(EdgeInstallTest, TheEnvironmentTellsOfTheBrowserAndTheExtension) {
    EXPECT_TRUE(KSEnvironement::GetIsEdgeInstalled());
    EXPECT_FALSE(KSEnvironement::GetIsEdgeExtInstalled());
    EXPECT_TRUE([EdgeInstall InstallExtension]);
    EXPECT_TRUE(KSEnvironement::GetIsEdgeExtInstalled());
    const std::string aside = "/Applications/aside";
    ASSERT_EQ(rename(kApplication.c_str(), aside.c_str()), 0);
    EXPECT_FALSE(KSEnvironement::GetIsEdgeInstalled());
    EXPECT_FALSE(IsEdgeInstalledBridgeCPP());
    EXPECT_FALSE(KSEnvironement::GetIsEdgeExtInstalled());
    ASSERT_EQ(rename(aside.c_str(), kApplication.c_str()), 0);
}

TEST_F(EdgeInstallTest, WithoutEdgeNothingIsInstalledNorRemoved) {
    Make(kHostManifest);
    const std::string aside = "/Applications/aside";
    ASSERT_EQ(rename(kApplication.c_str(), aside.c_str()), 0);
    EXPECT_TRUE([EdgeInstall InstallExtension]);
    ASSERT_EQ(rename(aside.c_str(), kApplication.c_str()), 0);
    EXPECT_TRUE(Exists(kHostManifest));
    EXPECT_FALSE(Exists(kDescriptor));
    EXPECT_EQ(WithoutTime(log.Bytes()), "\nHH:MM:SS - INFO : Edge application not found!");
}

}  // namespace
