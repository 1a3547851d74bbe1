#include "platform/PropertyLists.h"
#include "product/Keys.h"
#include "product/Places.h"
#include "tools/Password.h"

std::string MachinePassword() {
    @autoreleasepool {
        NSDictionary* settings = ReadPropertyList(@KS_SETTINGS_FILE, NSPropertyListImmutable, NULL);
        if (![settings isKindOfClass:[NSDictionary class]]) {
            return "";
        }
        NSString* password = [settings objectForKey:@KS_LOGGING_PASSWORD_KEY];
        const char* bytes =
            [password isKindOfClass:[NSString class]] ? [password UTF8String] : NULL;
        return bytes != NULL ? bytes : "";
    }
}
