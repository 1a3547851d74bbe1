// Any bytes as the settings file: values are read as they stand, and a setter changes its own and
// nothing else.
#include <fuzzer/FuzzedDataProvider.h>

#include "crypto/CocoaStrings.h"
#include "product/Keys.h"
#include "product/Places.h"
#include "settings/KSEnvironement.h"
#include "settings/LocalSettings.h"
#include "settings/LocalSettings_Mac.h"
#include "tests/fuzz/Lists.h"
#include "tests/fuzz/Require.h"
#include "tests/support/Files.h"

namespace {

constexpr NSPropertyListFormat kFormat = NSPropertyListXMLFormat_v1_0;

NSString* const kNames[] = {@KS_VERSION_KEY, @KS_PID_KEY, @"a name of our own", @"dotted.name"};

std::string TextIn(NSDictionary* settings, NSString* name) {
    id value = [settings objectForKey:name];
    return [value isKindOfClass:[NSString class]] ? Utf8Bytes(value) : "";
}

// The file after `settings` was stored in it: as it was, where that has no form as a list.
void RequireStored(NSDictionary* settings, const std::string& before) {
    const std::string bytes = BytesOf(settings, kFormat);
    REQUIRE(ReadFile(KS_SETTINGS_FILE) == (bytes.empty() ? before : bytes));
}

void CheckReading(NSDictionary* settings) {
    const KSEnvironement environment;
    REQUIRE(environment.IsLoggingEnabled() == (TextIn(settings, @KS_LOGGING_ENABLED_KEY) == "1"));
    REQUIRE(environment.LoggingPassword() == TextIn(settings, @KS_LOGGING_PASSWORD_KEY));
    REQUIRE(environment.PID() == TextIn(settings, @KS_PID_KEY));
    for (NSString* name : kNames) {
        id value = [settings objectForKey:name];
        id read = [LocalSettings_Mac GetSettingValueForName:name];
        REQUIRE(BytesOf([NSArray arrayWithObject:read], kFormat) ==
                BytesOf([NSArray arrayWithObject:value != nil ? value : @""], kFormat));
        REQUIRE(LocalSettings::GetSettingValueForName([name UTF8String]) == TextIn(settings, name));
        REQUIRE(([LocalSettings_Mac GetSettingsArrayForName:name] != nil) ==
                [value isKindOfClass:[NSArray class]]);
    }
}

void CheckWriting(NSDictionary* settings, const std::string& bytes, NSString* name,
                  const std::string& value) {
    NSMutableDictionary* changed = [NSMutableDictionary dictionaryWithDictionary:settings];
    NSString* text = CocoaStringFromUtf8(value);
    if (text != nil) {
        [changed setObject:text forKey:name];
    } else {
        [changed removeObjectForKey:name];  // what is no UTF-8 counts as none
    }
    LocalSettings::SetSettingValueWithName(value, [name UTF8String]);
    RequireStored(changed, bytes);
    const std::string stored = ReadFile(KS_SETTINGS_FILE);
    if (stored != bytes) {
        [changed setDictionary:ListOf(stored)];
        [changed removeObjectForKey:name];
        [LocalSettings_Mac RemoveSettingForName:name];
        RequireStored(changed, stored);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    @autoreleasepool {
        FuzzedDataProvider input(data, size);
        NSString* const name = input.PickValueInArray(kNames);
        const std::string value =
            input.ConsumeRandomLengthString(input.ConsumeIntegral<std::uint8_t>() & 7);
        const std::string bytes = input.ConsumeRemainingBytesAsString();
        WriteFile(KS_SETTINGS_FILE, bytes);
        id settings = ListOf(bytes);
        if (![settings isKindOfClass:[NSDictionary class]]) {
            settings = nil;
        }
        CheckReading(settings);
        REQUIRE(ReadFile(KS_SETTINGS_FILE) == bytes);
        CheckWriting(settings, bytes, name, value);
    }
    return 0;
}
