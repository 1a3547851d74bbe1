// Lines of scripts and texts with doubled separators are written out where they stand. Here they
// are held against the product's own values.
#include <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "browsers/ChromeScripts.h"
#include "product/Applications.h"
#include "product/Extensions.h"
#include "product/Keys.h"
#include "product/Places.h"
#include "settings/KSEnvironement.h"

namespace {

/// The folder without doubled separators and without one at its end.
std::string Plain(const std::string& folder) {
    std::string plain;
    for (const char letter : folder) {
        if (letter != '/' || plain.empty() || plain.back() != '/') {
            plain += letter;
        }
    }
    return plain.substr(0, plain.find_last_not_of('/') + 1);
}

/// How many lines of the script hold the text, with "\ " taken for a blank.
long LinesWith(NSString* script, const std::string& text) {
    NSString* plain = [script stringByReplacingOccurrencesOfString:@"\\ " withString:@" "];
    long count = 0;
    for (NSString* line in [plain componentsSeparatedByString:@"\n"]) {
        count += std::string([line UTF8String]).find(text) != std::string::npos;
    }
    return count;
}

TEST(ProductTest, TheEnvironmentsFoldersAreTheProductsWithDoubledSeparators) {
    const KSEnvironement environment;
    EXPECT_EQ(Plain(environment.InstallationFolder()), Plain(KS_CONTENTS_FOLDER));
    EXPECT_EQ(Plain(environment.BinariesFolder()), Plain(KS_TOOLS_FOLDER));
    EXPECT_EQ(Plain(environment.DataFolder()), Plain(KS_DATA_FOLDER));
    EXPECT_EQ(Plain(environment.VaultsFolder()), Plain(KS_VAULTS_FOLDER));
}

TEST(ProductTest, TheScriptsSpeakOfTheProductsFiles) {
    const std::string payload = KS_EXTENSIONS_FOLDER "chrome/";
    EXPECT_EQ(LinesWith(kChromeInstallScript, payload + KS_CHROME_PACKAGE), 1);
    EXPECT_EQ(LinesWith(kChromeInstallScript, payload + KS_CHROME_DESCRIPTOR), 2);
    EXPECT_EQ(LinesWith(kChromeInstallScript, payload + KS_CHROME_BUTTON_DESCRIPTOR), 1);
    EXPECT_EQ(LinesWith(kChromeInstallScript, payload + KS_CHROMIUM_HOST_MANIFEST), 1);

    for (NSString* script : {kChromeInstallScript, kChromeUninstallScript}) {
        for (const char* place :
             {"External Extensions/", KS_CHROME_NAME ".app/Contents/Extensions/"}) {
            EXPECT_GE(LinesWith(script, place + std::string(KS_CHROME_PACKAGE)), 1) << place;
            EXPECT_GE(LinesWith(script, place + std::string(KS_CHROME_BUTTON_PACKAGE)), 1) << place;
        }
        EXPECT_EQ(LinesWith(script, "Extensions/" KS_CHROME_DESCRIPTOR), 2);
        EXPECT_EQ(LinesWith(script, "Extensions/" KS_CHROME_BUTTON_DESCRIPTOR), 2);
        EXPECT_EQ(LinesWith(script, "Plug-Ins/" KS_CHROME_PLUG_IN), 2);
        EXPECT_GE(LinesWith(script, "NativeMessagingHosts/" KS_CHROMIUM_HOST_MANIFEST), 1);
    }
}

TEST(ProductTest, TheScriptsSpeakOfNoOtherPlaceInTheBundle) {
    const long lines = LinesWith(kChromeInstallScript, KS_BUNDLE);
    EXPECT_EQ(lines, 5);
    EXPECT_EQ(LinesWith(kChromeInstallScript, "/Applications/Keystrel"), lines);
    EXPECT_EQ(LinesWith(kChromeInstallScript, KS_EXTENSIONS_FOLDER "chrome/"), lines);
    EXPECT_EQ(LinesWith(kChromeUninstallScript, "/Applications/Keystrel"), 0);
}

}  // namespace
