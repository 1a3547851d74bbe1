#include "platform/AppWorkspaceBridges.h"

#include "crypto/CocoaStrings.h"
#include "platform/AppWorkspaceUtils.h"

// Each opens an autorelease scope of its own: its callers have none.

namespace {

NSString* Value(const std::string& text) {
    NSString* value = CocoaString(text);
    return value != nil ? value : @"";
}

NSString* Value(bool flag) {
    return flag ? @"1" : @"0";
}

}  // namespace

bool IsAppRunningBridge(const std::string& name) {
    @autoreleasepool {
        return [AppWorkspaceUtils IsAppRunning:CocoaString(name)];
    }
}

long StartKeystrelBridge() {
    @autoreleasepool {
        return [AppWorkspaceUtils StartKeystrel];
    }
}

void StartApplicationBridge(const std::string& name) {
    @autoreleasepool {
        [AppWorkspaceUtils StartApplication:CocoaString(name)];
    }
}

bool StartKSWizardOldWithArgumentsBridge(const std::string& mail, const std::string& pass) {
    @autoreleasepool {
        return [AppWorkspaceUtils
            StartKSWizardOldWithArguments:[NSArray arrayWithObjects:@"-mail", Value(mail), @"-pass",
                                                                    Value(pass), nil]];
    }
}

bool StartKSUpdaterWithArgumentsBridge(const std::string& path, const std::string& desc,
                                       bool mandatory, bool console) {
    @autoreleasepool {
        return [AppWorkspaceUtils
            StartKSUpdaterWithArguments:[NSArray arrayWithObjects:@"-path", Value(path), @"-desc",
                                                                  Value(desc), @"-mandatory",
                                                                  Value(mandatory), @"-console",
                                                                  Value(console), nil]];
    }
}
