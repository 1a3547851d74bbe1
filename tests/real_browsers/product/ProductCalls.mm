// product_calls OPERATION [ARGUMENT...]: one operation of the product, for tests with real
// browsers.
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <string>

#include "browsers/BrowserUtils.h"
#include "browsers/ChromeInstall.h"
#include "browsers/EdgeInstall.h"
#include "browsers/FFoxInstall.h"
#include "platform/AppWorkspaceUtils.h"
#include "tests/support/Asking.h"

namespace {

// The button "Exit" of three, in the alert's content.
constexpr int kExit = 354;
constexpr int kRow = 38;

int Uninstall() {
    return [ChromeInstall UninstallExtension] && [EdgeInstall UninstallExtension] &&
           [FFoxInstall UninstallExtension];
}

// With somebody who waits until the alert is to be seen, and presses "Exit".
int Verify() {
    DesktopUser user;
    return AskUser(
        user, [] { return [BrowserUtils VerifyBrowsers:YES]; },
        [&user] { user.Click(kExit, kRow); });
}

int Open(NSString* address, NSString* browser) {
    AppWorkspaceUtils* workspace = [[[AppWorkspaceUtils alloc] init] autorelease];
    [workspace OpenURL:address withBrowser:browser];
    return 0;
}

}  // namespace

int main(int count, char* arguments[]) {
    @autoreleasepool {
        const auto argument = [&](int number) {
            return number < count ? [NSString stringWithUTF8String:arguments[number]] : @"";
        };
        const std::map<std::string, std::function<int()>> operations = {
            {"uninstall", Uninstall},
            {"started", [] { return [BrowserUtils AreBrowsersStarted]; }},
            {"close", [] { return [BrowserUtils removeTraces:nil]; }},
            {"verify", Verify},
            {"open", [&] { return Open(argument(2), argument(3)); }},
        };
        const auto operation = operations.find(count > 1 ? arguments[1] : "");
        if (operation == operations.end()) {
            std::fprintf(stderr, "usage: product_calls uninstall|started|close|verify|open "
                                 "[ADDRESS BROWSER]\n");
            return 2;
        }
        std::cout << operation->second() << std::endl;
    }
    return 0;
}
