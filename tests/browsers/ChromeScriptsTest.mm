// The administrator scripts: their bytes, and what they do as root on a typical Mac. The digests
// were made by sha256sum from the lines joined by a blank, a line feed and a blank.
#include "browsers/ChromeScripts.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "privileged/ElevatedRights.h"
#include "tests/support/Command.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace {

const std::string kUserFolder =
    "/Users/alex/Library/Application Support/Google/Chrome/External Extensions";
const std::string kSystemFolder = "/Library/Application Support/Google/Chrome/External Extensions";
const std::string kHosts = "/Library/Google/Chrome/NativeMessagingHosts";
const std::string kHost = kHosts + "/com.corvendale.kschromena.json";
const std::string kMozillaHosts = "/Library/Application Support/Mozilla/NativeMessagingHosts";
const std::string kOldFirefoxHost = "/com.corvendale.ksnative.manifest.json";
const std::string kPlugIn = "/Library/Internet Plug-Ins/npKSPlugin.bundle";
const std::string kApplication = "/Applications/Google Chrome.app/Contents/Extensions";
const std::string kPayload =
    "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome";
const std::string kOldPayload = "/Library/Application Support/Keystrel/Tools/BExtensions/chrome";

const std::string kExtensionFiles[] = {"/Keystrel.crx", "/KeystrelButton.crx",
                                       "/kmcoedhplnbajgfiehkcpamdobnlgjie.json",
                                       "/pbjaclkhgedmfonipcabhlmgkdjeoifn.json"};
const std::string kPackages[] = {kExtensionFiles[0], kExtensionFiles[1]};
const std::string kDescriptors[] = {kExtensionFiles[2], kExtensionFiles[3]};

std::string Digest(NSString* script) {
    const TemporaryFolder folder;
    WriteFile(folder / "script", [script UTF8String]);
    return OutputOf("sha256sum < " + folder.path() + "/script").substr(0, 64);
}

bool Exists(const std::string& path) {
    struct stat entry = {};
    return lstat(path.c_str(), &entry) == 0;
}

void ExpectRootsFolder(const std::string& path, mode_t mode) {
    struct stat entry = {};
    ASSERT_EQ(lstat(path.c_str(), &entry), 0) << path;
    EXPECT_TRUE(S_ISDIR(entry.st_mode)) << path;
    EXPECT_EQ(entry.st_mode & 07777, mode) << path;
    EXPECT_EQ(entry.st_uid, 0U) << path;
}

// What the script prints, as AppleScript gives it; its success is expected.
std::string RunAsRoot(NSString* script) {
    NSString* output = nil;
    NSString* errorDescription = @"none";
    EXPECT_TRUE([ElevatedRights runStringAsAdministrator:script
                                           withArguments:[NSArray arrayWithObject:@""]
                                                  output:&output
                                        errorDescription:&errorDescription])
        << [errorDescription UTF8String];
    return [output UTF8String];
}

class ChromeScriptsTest : public testing::Test {
  protected:
    // Every leftover, as earlier versions made them.
    ChromeScriptsTest() {
        std::string script = "umask 022\n";
        for (const std::string& folder : {kUserFolder, kSystemFolder, kApplication}) {
            script += "mkdir -p '" + folder + "'\n";
            for (const std::string& file : kExtensionFiles) {
                script += "echo old > '" + folder + file + "'\n";
            }
            script += "echo foreign > '" + folder + "/foreign.json'\n";
        }
        for (const std::string& folder : {kPayload, kOldPayload}) {
            script += "mkdir -p '" + folder + "'\n";
            for (const std::string& file : kDescriptors) {
                script += "echo written > '" + folder + file + "'\n";
            }
        }
        for (const std::string& home : {std::string(), std::string("/Users/alex")}) {
            script += "mkdir -p '" + home + kPlugIn + "/Contents' '" + home + kMozillaHosts + "'\n";
            script += "echo old > '" + home + kMozillaHosts + kOldFirefoxHost + "'\n";
        }
        script += "mkdir -p " + kHosts + "\necho old > " + kHost + "\n";
        script += "touch /private/tmp/createDirUninstall.sh /private/tmp/createDirChrome.sh\n";
        RunAsRoot([NSString stringWithUTF8String:script.c_str()]);
    }

    template <typename Files>
    void ExpectGone(const std::string& folder, const Files& files) {
        for (const std::string& file : files) {
            EXPECT_FALSE(Exists(folder + file)) << folder + file;
        }
    }

    template <typename Files>
    void ExpectKept(const std::string& folder, const Files& files) {
        for (const std::string& file : files) {
            EXPECT_TRUE(Exists(folder + file)) << folder + file;
        }
    }

    void ExpectForeignFilesKept() {
        for (const std::string& folder : {kUserFolder, kSystemFolder, kApplication}) {
            EXPECT_EQ(ReadFile(folder + "/foreign.json"), "foreign\n");
        }
    }
};

TEST_F(ChromeScriptsTest, TheScriptsAreTheseBytes) {
    EXPECT_EQ(Digest(kChromeInstallScript),
              "a537dffebab47f1155377ca014a1518ba096f3ebd4684677ec3e86a339a07b2a");
    EXPECT_EQ(Digest(kChromeUninstallScript),
              "369503b8a34e55a80dc9c2214c927a0d4444c0a3350734bb6021a769cb3bbc5a");
    EXPECT_EQ(Digest(kChromeFolderMakingScript),
              "42f05456da9ffd3b763a2c99d90cd0f83a9d2da1c125f1efc8c59a01e54c1737");
}

TEST_F(ChromeScriptsTest, TheInstallingOneReplacesTheSystemsFiles) {
    EXPECT_EQ(RunAsRoot(kChromeInstallScript),
              "remove extension\rmaking directory\rcopy extension\rremove temp files");
    EXPECT_EQ(ReadFile(kSystemFolder + "/Keystrel.crx"), ReadFile(kPayload + "/Keystrel.crx"));
    EXPECT_EQ(ReadFile(kSystemFolder + kDescriptors[0]), "written\n");
    EXPECT_EQ(ReadFile(kHost), ReadFile(kPayload + "/com.corvendale.kschromena.json"));
    EXPECT_FALSE(Exists(kSystemFolder + kPackages[1]));
    EXPECT_FALSE(Exists(kSystemFolder + kDescriptors[1]));
    ExpectGone(kApplication, kPackages);
    ExpectGone(kPayload, kDescriptors);
    ExpectGone(kOldPayload, kDescriptors);
    EXPECT_FALSE(Exists(kPlugIn));
    EXPECT_FALSE(Exists("/Users/alex" + kPlugIn));
    ExpectForeignFilesKept();
}

// The blank in its paths is not escaped: the shell sees two words.
TEST_F(ChromeScriptsTest, TheInstallingOneMissesTheUsersFilesAndHitsAnExternalFile) {
    const std::string hit = "/Users/alex/Library/Application Support/Google/Chrome/External";
    RunAsRoot([NSString stringWithFormat:@"echo mine > '%s'", hit.c_str()]);
    RunAsRoot(kChromeInstallScript);
    ExpectKept(kUserFolder, kExtensionFiles);
    EXPECT_FALSE(Exists(hit));
}

TEST_F(ChromeScriptsTest, TheInstallingOneMakesMissingFolders) {
    RunAsRoot(@"rm -rf /Library/Google '/Library/Application Support/Google'"
              @" '/Library/Application Support/Mozilla'");
    RunAsRoot(kChromeInstallScript);
    for (const std::string& folder :
         {std::string("/Library/Application Support/Google"),
          std::string("/Library/Application Support/Google/Chrome"), kSystemFolder,
          std::string("/Library/Google"), std::string("/Library/Google/Chrome"), kHosts,
          std::string("/Library/Application Support/Mozilla"), kMozillaHosts}) {
        ExpectRootsFolder(folder, 0755);
    }
    EXPECT_TRUE(Exists(kHost));
}

TEST_F(ChromeScriptsTest, TheRemovingOneRemovesEverythingForTheSystemAndTheUser) {
    EXPECT_EQ(RunAsRoot(kChromeUninstallScript), "remove extension");
    ExpectGone(kSystemFolder, kExtensionFiles);
    ExpectGone(kUserFolder, kExtensionFiles);
    ExpectGone(kApplication, kPackages);
    EXPECT_FALSE(Exists(kHost));
    for (const std::string& home : {std::string(), std::string("/Users/alex")}) {
        EXPECT_FALSE(Exists(home + kPlugIn));
        EXPECT_FALSE(Exists(home + kMozillaHosts + kOldFirefoxHost));
    }
    EXPECT_FALSE(Exists("/private/tmp/createDirUninstall.sh"));
    EXPECT_TRUE(Exists("/private/tmp/createDirChrome.sh"));
    ExpectKept(kPayload, kDescriptors);
    ExpectForeignFilesKept();
}

TEST_F(ChromeScriptsTest, TheRemovingOneSucceedsWithNothingToRemove) {
    RunAsRoot(kChromeUninstallScript);
    EXPECT_EQ(RunAsRoot(kChromeUninstallScript), "remove extension");
}

TEST_F(ChromeScriptsTest, TheFolderMakingOneOpensNewHostFolders) {
    RunAsRoot(@"rm -rf /Library/Google '/Library/Application Support/Mozilla'");
    EXPECT_EQ(RunAsRoot(kChromeFolderMakingScript), "making directory");
    ExpectRootsFolder("/Library/Google", 0777);
    ExpectRootsFolder("/Library/Google/Chrome", 0777);
    ExpectRootsFolder(kHosts, 0777);
    ExpectRootsFolder("/Library/Application Support/Mozilla", 0755);
    ExpectRootsFolder(kMozillaHosts, 0755);
    EXPECT_FALSE(Exists("/private/tmp/createDirChrome.sh"));
}

TEST_F(ChromeScriptsTest, TheFolderMakingOneKeepsFoldersThatAreThere) {
    RunAsRoot([NSString stringWithFormat:@"chmod 755 %s", kHosts.c_str()]);
    EXPECT_EQ(RunAsRoot(kChromeFolderMakingScript), "making directory");
    ExpectRootsFolder(kHosts, 0755);
    EXPECT_EQ(ReadFile(kHost), "old\n");
}

}  // namespace
