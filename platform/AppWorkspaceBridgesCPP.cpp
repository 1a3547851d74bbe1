#include "platform/AppWorkspaceBridges.h"

bool IsAppRunningCPP(const std::string& name) {
    return IsAppRunningBridge(name);
}
