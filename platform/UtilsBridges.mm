#include "platform/UtilsBridges.h"

#include "crypto/CocoaStrings.h"
#include "platform/Utils_Mac.h"

// Each opens an autorelease scope of its own: its callers, some of which run before main, have
// none.

long GetCurrentProcessIdBridge() {
    @autoreleasepool {
        return [Utils_Mac GetCurrentProcessId];
    }
}

std::string GetOSVersionBridge() {
    @autoreleasepool {
        return Utf8Bytes([Utils_Mac getOSVersion]);
    }
}

std::string GetKSVersionBridge() {
    @autoreleasepool {
        return Utf8Bytes([Utils_Mac getKSVersion]);
    }
}

void CloseAppBridge() {
    @autoreleasepool {
        [Utils_Mac closeApp];
    }
}

long hid_resetBridge() {
    @autoreleasepool {
        return [Utils_Mac hid_reset];
    }
}

long GetSystemIdleTimeBridge() {
    @autoreleasepool {
        return [Utils_Mac GetSystemIdleTime];
    }
}

bool areConnectedBridge() {
    @autoreleasepool {
        return [Utils_Mac areConnected];
    }
}
