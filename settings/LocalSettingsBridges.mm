#include "settings/LocalSettingsBridges.h"

#include "crypto/CocoaStrings.h"
#include "settings/LocalSettings_Mac.h"

namespace {

// Whoever edits the file may put a number or an array where a string belongs. No reader of this
// face expects one, so it counts as absent.
std::string TextOf(id value) {
    return [value isKindOfClass:[NSString class]] ? Utf8Bytes(value) : std::string();
}

}  // namespace

// Each opens an autorelease scope of its own: its callers, some of which run before main, have
// none.

std::string GetSettingValueForNameBridge(const std::string& name) {
    @autoreleasepool {
        return TextOf([LocalSettings_Mac GetSettingValueForName:CocoaStringFromUtf8(name)]);
    }
}

std::vector<std::string> GetSettingValuesForNamesBridge(const std::vector<std::string>& names) {
    @autoreleasepool {
        NSDictionary* settings = [LocalSettings_Mac GetPlistDictionary];
        std::vector<std::string> values;
        values.reserve(names.size());
        for (const std::string& name : names) {
            values.push_back(TextOf([settings objectForKey:CocoaStringFromUtf8(name)]));
        }
        return values;
    }
}

void SetSettingValueWithNameBridge(const std::string& value, const std::string& name) {
    @autoreleasepool {
        [LocalSettings_Mac SetSettingValue:CocoaStringFromUtf8(value)
                                  withName:CocoaStringFromUtf8(name)];
    }
}

void RemoveSettingForNameBridge(const std::string& name) {
    @autoreleasepool {
        [LocalSettings_Mac RemoveSettingForName:CocoaStringFromUtf8(name)];
    }
}

void SetSettingValueWithNameAndVaultBridge(const std::string& value, const std::string& name,
                                           const std::string& vault) {
    @autoreleasepool {
        [LocalSettings_Mac SetSettingValue:CocoaStringFromUtf8(value)
                                  withName:CocoaStringFromUtf8(name)
                                  AndVault:CocoaStringFromUtf8(vault)];
    }
}

std::string GetSettingValueForNameAndVaultBridge(const std::string& name,
                                                 const std::string& vault) {
    @autoreleasepool {
        return TextOf([LocalSettings_Mac GetSettingValueForName:CocoaStringFromUtf8(name)
                                                       AndVault:CocoaStringFromUtf8(vault)]);
    }
}
