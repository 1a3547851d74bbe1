#include "tests/support/Launching.h"

#include <AppKit/AppKit.h>
#include <unistd.h>

#include <stdexcept>

#include "platform/AppWorkspaceUtils.h"
#include "tests/support/Command.h"

namespace {

NSString* Text(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

}  // namespace

void Launch(const std::string& application, const std::string& identifier) {
    if (![[NSWorkspace sharedWorkspace] launchApplication:Text(application)]) {
        throw std::runtime_error("cannot launch " + application);
    }
    while (![AppWorkspaceUtils IsAppRunning:Text(identifier)]) {
        usleep(1000);
    }
}

std::string LaunchCopy(const std::string& application, const std::string& itsIdentifier,
                       const std::string& identifier) {
    const std::string copy = "/Applications/Sample.app";
    OutputOf("rm -rf " + copy + " && cp -R '" + application + "' " + copy + " && sed -i 's/" +
             itsIdentifier + "/" + identifier + "/' " + copy + "/Contents/Info.plist");
    Launch(copy, identifier);
    return copy;
}

void EndAll(const std::string& program) {
    OutputOf("killall '" + program + "'; while killall -0 '" + program +
             "' 2>/dev/null; do :; done");
}
