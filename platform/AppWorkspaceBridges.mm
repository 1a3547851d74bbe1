#include "platform/AppWorkspaceBridges.h"

#include "platform/AppWorkspaceUtils.h"
#include "platform/CocoaStrings.h"

bool IsAppRunningBridge(const std::string& name) {
    @autoreleasepool {
        return [AppWorkspaceUtils IsAppRunning:CocoaString(name)];
    }
}
