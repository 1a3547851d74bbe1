// Edge's operations one by one, and through the bridges, on a Mac that has Edge.
#include "browsers/EdgeInstall.h"

#include <gtest/gtest.h>

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

    NSFileManager* const files = [NSFileManager defaultManager];
    LogFile log;
};

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

}  // namespace
