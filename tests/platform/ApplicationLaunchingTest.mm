// Starting the product's programs and opening addresses, on a Mac that has them: real processes
// tell what they were given.
#include "platform/AppWorkspaceUtils.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/AppWorkspaceBridges.h"
#include "tests/support/Command.h"
#include "tests/support/ErrorChecks.h"
#include "tests/support/Files.h"
#include "tests/support/LogFile.h"

namespace {

using namespace std::string_literals;

const std::string kContents = "/Applications/Keystrel.app/Contents";
const std::string kMain = kContents + "/Keystrel/Keystrel.app";
const std::string kTools = kContents + "/Keystrel/Bin/";
const std::string kUpdater = kTools + "KSUpdater.app/Contents/MacOS/KSUpdater";
const std::string kWizardApplication =
    kContents + "/KeystrelOLD/Keystrel.app/Contents/Keystrel/Bin/Keystrel Wizard.app";
const std::string kWizard = kWizardApplication + "/Contents/MacOS/Keystrel Wizard";
const std::string kMarker = kContents + "/infoDict.plist";

const std::string kSaid = "/private/tmp/said";

class ApplicationLaunching : public testing::Test {
  protected:
    ApplicationLaunching() {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
        OutputOf("rm -rf '" + kContents + "/KeystrelOLD' '" + kMarker + "' " + kSaid);
        EXPECT_EQ(mkfifo(kSaid.c_str(), 0600), 0);
    }
    // A program that tells its arguments to whoever reads the pipe.
    void Install(const std::string& program) {
        Write(program, "#!/bin/sh\nexec >" + kSaid + "\nprintf '<%s>' \"$@\"\n", 0755);
    }

    void Write(const std::string& path, const std::string& text, mode_t mode) {
        OutputOf("mkdir -p \"$(dirname '" + path + "')\" && rm -rf '" + path + "'");
        WriteFile(path, text);
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
    }

    std::string Said() { return ReadFile(kSaid); }
    std::string Log() { return WithoutTime(log.Bytes()); }

    // The marker file as Python's plistlib reads it.
    std::string Marker() {
        return Python("import plistlib; print(sorted(plistlib.load(open('" + kMarker +
                      "', 'rb'), fmt=plistlib.FMT_XML).items()), end='')");
    }

    // That the log ends with the failure to save the marker and the launch, which counts all the
    // same.
    void ExpectMarkerFailure(const std::string& error) {
        const std::string text = Log();
        const std::string failure = "\nHH:MM:SS - FAILURE : Coudn't save local data with error: ";
        const std::string end = "!\nHH:MM:SS - INFO : Launchig application: " + kWizard;
        const size_t at = text.rfind(failure + error);
        EXPECT_TRUE(at != std::string::npos && at == text.rfind(failure)) << text;
        EXPECT_EQ(text.substr(text.size() - end.size()), end);
    }

    LogFile log;
};

TEST_F(ApplicationLaunching, TheMainApplicationIsLaunched) {
    Install(kMain + "/Contents/MacOS/Keystrel");
    EXPECT_EQ(StartKeystrelCPP(), 1);
    EXPECT_EQ(Said(), "<>");
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : Launchig Keystrel!");
}

TEST_F(ApplicationLaunching, AMainApplicationThatIsMissingIsAFailure) {
    const std::string elsewhere = kMain + ".away";
    ASSERT_EQ(rename(kMain.c_str(), elsewhere.c_str()), 0);
    EXPECT_EQ(StartKeystrelCPP(), 0);
    EXPECT_FALSE([AppWorkspaceUtils StartKeystrel]);
    ASSERT_EQ(rename(elsewhere.c_str(), kMain.c_str()), 0);
    EXPECT_EQ(Log(), "\nHH:MM:SS - FAILURE : Can't launch Keystrel.app"
                     "\nHH:MM:SS - FAILURE : Can't launch Keystrel.app");
}

TEST_F(ApplicationLaunching, AnApplicationOfTheToolsIsLaunchedByItsName) {
    Install(kUpdater);
    StartApplicationCPP("KSUpdater.app");
    EXPECT_EQ(Said(), "<>");
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : Launchig application: " + kTools + "KSUpdater.app");
}

TEST_F(ApplicationLaunching, AnApplicationThatIsMissingIsLoggedAsLaunchedAllTheSame) {
    StartApplicationCPP("None 100%n.app");
    [AppWorkspaceUtils StartApplication:@""];
    [AppWorkspaceUtils StartApplication:nil];
    const std::string folder = kTools.substr(0, kTools.size() - 1);
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : Launchig application: " + kTools +
                         "None 100%n.app"
                         "\nHH:MM:SS - INFO : Launchig application: " +
                         folder);
}

TEST_F(ApplicationLaunching, TheUpdaterGetsItsOptions) {
    Install(kUpdater);
    EXPECT_TRUE(StartKSUpdaterWithArgumentsCPP("/tmp/a b", "Zoë 100%", true, false));
    // Meant: byte strings are taken for Mac Roman, as on a Western user's Mac.
    EXPECT_EQ(Said(), "<-path></tmp/a b><-desc><Zo√´ 100%><-mandatory><1><-console><0>");
    EXPECT_TRUE(StartKSUpdaterWithArgumentsCPP("", "-desc", false, true));
    EXPECT_EQ(Said(), "<-path><><-desc><-desc><-mandatory><0><-console><1>");
    EXPECT_TRUE(StartKSUpdaterWithArgumentsCPP("\xFF", "d", true, true));
    EXPECT_EQ(Said(), "<-path><ˇ><-desc><d><-mandatory><1><-console><1>");
    const std::string line = "\nHH:MM:SS - INFO : Launchig application: " + kUpdater;
    EXPECT_EQ(Log(), line + line + line);
}

TEST_F(ApplicationLaunching, AnUpdaterThatIsMissingIsAFailure) {
    ASSERT_EQ(unlink(kUpdater.c_str()), 0);
    EXPECT_FALSE(StartKSUpdaterWithArgumentsCPP("p", "d", true, true));
    EXPECT_EQ(Log(),
              "\nHH:MM:SS - FAILURE : Can't launch KSUpdater: " + kUpdater + ". File Not Found");
}

TEST_F(ApplicationLaunching, AnUpdaterThatDoesNotStartIsAFailure) {
    const std::string line = "\nHH:MM:SS - FAILURE : Can't launch KSUpdater: " + kUpdater;
    std::string lines;
    for (const auto& [text, mode] : {std::pair("#!/bin/sh\n", 0644U),
                                     {"no program\n", 0755U},
                                     {"#!/no/such/shell\n", 0755U},
                                     {"", 0755U}}) {
        Write(kUpdater, text, mode);
        EXPECT_FALSE(StartKSUpdaterWithArgumentsCPP("p", "d", true, true));
        lines += line;
        EXPECT_EQ(Log(), lines);
    }
    Install(kUpdater);
    EXPECT_FALSE([AppWorkspaceUtils StartKSUpdaterWithArguments:nil]);
    EXPECT_EQ(Log(), lines + line);
}

TEST_F(ApplicationLaunching, TheWizardGetsItsOptionsAndMarksTheGeneration) {
    Install(kWizard);
    EXPECT_TRUE(StartKSWizardOldWithArgumentsCPP("zo\x91@example.org", "p w'\"%n"));
    EXPECT_EQ(Said(), "<-mail><zoë@example.org><-pass><p w'\"%n>");
    EXPECT_EQ(Marker(), "[('IsNewKS', '0'), ('IsOldKS', '1')]");
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : Launchig application: " + kWizard);
}

TEST_F(ApplicationLaunching, TheOtherKeysOfTheMarkerStay) {
    Install(kWizard);
    for (const char* format : {"FMT_XML", "FMT_BINARY"}) {
        Python("import plistlib; plistlib.dump({'IsOldKS': '0', 'IsNewKS': '1', 'Other': 'ö', "
               "'Number': 7}, open('" +
               kMarker + "', 'wb'), fmt=plistlib." + format + ")");
        EXPECT_TRUE(StartKSWizardOldWithArgumentsCPP("m", "p"));
        EXPECT_EQ(Said(), "<-mail><m><-pass><p>");
        EXPECT_EQ(Marker(), "[('IsNewKS', '0'), ('IsOldKS', '1'), ('Number', 7), ('Other', 'ö')]");
    }
}

TEST_F(ApplicationLaunching, AMarkerThatHoldsNoDictionaryIsKeptAndTheFailureLogged) {
    Install(kWizard);
    const std::string corrupt = "Error Domain=NSCocoaErrorDomain Code=3840 ";
    const std::string none = "(null)";
    for (const auto& [bytes, error] :
         {std::pair(""s, corrupt),
          {"text"s, none},
          {"<plist><dict><key>IsOldKS</key>"s, corrupt},
          {"<plist version=\"1.0\"><array><string>IsOldKS</string></array></plist>"s, none}}) {
        Write(kMarker, bytes, 0644);
        EXPECT_TRUE(StartKSWizardOldWithArgumentsCPP("m", "p"));
        EXPECT_EQ(Said(), "<-mail><m><-pass><p>");
        EXPECT_EQ(ReadFile(kMarker), bytes);
        ExpectMarkerFailure(error);
    }
}

TEST_F(ApplicationLaunching, AMarkerThatCannotBeReadIsKeptAndTheFailureLogged) {
    Install(kWizard);
    Write(kMarker, "<plist><dict/></plist>", 0);
    EXPECT_TRUE(StartKSWizardOldWithArgumentsCPP("m", "p"));
    EXPECT_EQ(Said(), "<-mail><m><-pass><p>");
    ExpectMarkerFailure("Error Domain=NSCocoaErrorDomain Code=257 ");
    ASSERT_EQ(chmod(kMarker.c_str(), 0644), 0);
    EXPECT_EQ(ReadFile(kMarker), "<plist><dict/></plist>");
}

TEST_F(ApplicationLaunching, AMarkerThatCannotBeWrittenIsAFailureButTheWizardRuns) {
    Install(kWizard);
    ASSERT_EQ(chmod(kContents.c_str(), 0555), 0);
    EXPECT_TRUE(StartKSWizardOldWithArgumentsCPP("m", "p"));
    ASSERT_EQ(chmod(kContents.c_str(), 0755), 0);
    EXPECT_EQ(Said(), "<-mail><m><-pass><p>");
    const std::string text = Log();
    EXPECT_EQ(text.find("\nHH:MM:SS - FAILURE : Coudn't save local data with error: Error "
                        "Domain=NSCocoaErrorDomain Code=513 "),
              0U)
        << text;
    const std::string end = "!\nHH:MM:SS - INFO : Launchig application: " + kWizard;
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
    EXPECT_NE(access(kMarker.c_str(), F_OK), 0);
}

TEST_F(ApplicationLaunching, AWizardThatDoesNotStartMarksNothing) {
    EXPECT_FALSE(StartKSWizardOldWithArgumentsCPP("m", "p"));
    Write(kWizard, "no program\n", 0755);
    EXPECT_FALSE(StartKSWizardOldWithArgumentsCPP("m", "p"));
    Write(kWizard, "#!/bin/sh\n", 0644);
    EXPECT_FALSE(StartKSWizardOldWithArgumentsCPP("m", "p"));
    const std::string line = "\nHH:MM:SS - FAILURE : Can't launch legacy Wizard: " + kWizard;
    EXPECT_EQ(Log(), line + ". File Not Found" + line + line);
    EXPECT_NE(access(kMarker.c_str(), F_OK), 0);
}

TEST_F(ApplicationLaunching, AnAddressIsOpenedInTheNamedBrowser) {
    const struct {
        NSString* browser;
        const char* program;
    } browsers[] = {{@"Safari", "/Applications/Safari.app/Contents/MacOS/Safari"},
                    {@"FF", "/Applications/Firefox.app/Contents/MacOS/firefox"},
                    {@"Chrome", "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"}};
    const struct {
        NSString* address;
        const char* opened;
    } addresses[] = {
        {@"https://www.example.org/a%20b?c=d", "<https://www.example.org/a%20b?c=d>"},
        {@"http://example.org", "<http://example.org>"},
        {@"www.example.org", "<http://www.example.org>"},
        {@"httpbin.example.org", "<httpbin.example.org>"},
        {@"HTTP://example.org", "<http://HTTP://example.org>"},
        {@"ftp://example.org", "<http://ftp://example.org>"},
        {@"", "<http://>"},
    };
    AppWorkspaceUtils* utils = [[[AppWorkspaceUtils alloc] init] autorelease];
    for (const auto& [browser, program] : browsers) {
        Install(program);
        for (const auto& [address, opened] : addresses) {
            [utils OpenURL:address withBrowser:browser];
            EXPECT_EQ(Said(), opened);
        }
    }
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(ApplicationLaunching, WhatIsNoAddressAndAnUnknownBrowserOpenNothing) {
    Install("/Applications/Firefox.app/Contents/MacOS/firefox");
    AppWorkspaceUtils* utils = [[[AppWorkspaceUtils alloc] init] autorelease];
    [utils OpenURL:@"two words" withBrowser:@"FF"];
    [utils OpenURL:@"http://exämple.org" withBrowser:@"FF"];
    [utils OpenURL:nil withBrowser:@"FF"];
    for (NSString *browser in [NSArray arrayWithObjects:@"ff", @"Firefox", @"Edge", @"", nil]) {
        [utils OpenURL:@"http://example.org" withBrowser:browser];
    }
    [utils OpenURL:@"http://example.org" withBrowser:nil];
    // Had one of them started the browser, it would come before this one.
    [utils OpenURL:@"http://last.example.org" withBrowser:@"FF"];
    EXPECT_EQ(Said(), "<http://last.example.org>");
    EXPECT_EQ(log.Bytes(), "");
}

TEST_F(ApplicationLaunching, ABrowserThatIsMissingOpensNothing) {
    const char* const application = "/Applications/Firefox.app";
    ASSERT_EQ(rename(application, "/private/tmp/Firefox.app"), 0);
    AppWorkspaceUtils* utils = [[[AppWorkspaceUtils alloc] init] autorelease];
    [utils OpenURL:@"http://example.org" withBrowser:@"FF"];
    ASSERT_EQ(rename("/private/tmp/Firefox.app", application), 0);
    EXPECT_EQ(log.Bytes(), "");
}

}  // namespace
