#include "product/Keys.h"
#include "settings/LocalSettings_Mac.h"
#include "tools/Password.h"

std::string MachinePassword() {
    @autoreleasepool {
        id password = [LocalSettings_Mac GetSettingValueForName:@KS_LOGGING_PASSWORD_KEY];
        const char* bytes =
            [password isKindOfClass:[NSString class]] ? [password UTF8String] : NULL;
        return bytes != NULL ? bytes : "";
    }
}
