#include "settings/LocalSettings_Mac.h"

#include "logging/NSLogger.h"
#include "platform/PropertyLists.h"
#include "product/Places.h"

namespace {

NSString* const kSettingsFile = @KS_SETTINGS_FILE;
NSString* const kVaultsFolder = @KS_VAULTS_FOLDER;

NSString* const kNoValue = @"";

// Meant: "Coudn't" is spelled so.
void LogNotSaved(id error) {
    [NSLogger LogFailure:@"Coudn't save local data with error: %@!", [error description]];
}

// NO where a file is there that cannot be read. Without a file *data stays nil.
BOOL ReadFile(NSString* path, NSData** data) {
    if (![[NSFileManager defaultManager] fileExistsAtPath:path]) {
        return YES;
    }
    *data = [NSData dataWithContentsOfFile:path];
    return *data != nil;
}

NSDictionary* DictionaryOf(NSData* data) {
    id root = ParsePropertyList(data, NSPropertyListImmutable, NULL);
    return [root isKindOfClass:[NSDictionary class]] ? root : nil;
}

// An empty dictionary where there is no file, nil where there is one that holds no dictionary.
NSDictionary* ReadDictionary(NSString* path) {
    NSData* data = nil;
    return ReadFile(path, &data) && data == nil ? [NSDictionary dictionary] : DictionaryOf(data);
}

// What cannot be encoded is logged, what cannot be written is not.
void WriteDictionary(NSDictionary* dictionary, NSString* path) {
    if (path == nil) {
        return;
    }
    NSError* error = nil;
    NSData* data = EncodePropertyList(dictionary, NSPropertyListXMLFormat_v1_0, &error);
    if (data == nil) {
        LogNotSaved(error);
        return;
    }
    [data writeToFile:path atomically:YES];
}

void ReplaceDictionary(NSDictionary* dictionary, NSString* path) {
    NSData* data = nil;
    if (ReadFile(path, &data)) {
        WriteDictionary(dictionary, path);
    }
}

id ReadValue(NSString* name, NSString* path) {
    return [ReadDictionary(path) objectForKey:name];
}

void WriteValue(id value, NSString* name, NSString* path) {
    if (name == nil) {
        return;
    }
    NSData* data = nil;
    if (!ReadFile(path, &data)) {
        return;  // all that it holds would be lost
    }
    NSMutableDictionary* dictionary =
        [NSMutableDictionary dictionaryWithDictionary:DictionaryOf(data)];
    @try {
        [dictionary setValue:value forKey:name];
    } @catch (NSException* exception) {  // a name that is no string may be no key at all
        LogNotSaved(exception);
        return;
    }
    WriteDictionary(dictionary, path);
}

}  // namespace

@implementation LocalSettings_Mac

+ (NSString*)GetPlistPath {
    return kSettingsFile;
}

+ (NSString*)GetPlistCurUserPath:(NSString*)vault {
    if (vault == nil) {
        return nil;
    }
    return
        [[kVaultsFolder stringByAppendingPathComponent:vault] stringByAppendingPathComponent:@"/"];
}

+ (NSDictionary*)GetPlistDictionary {
    return ReadDictionary([LocalSettings_Mac GetPlistPath]);
}

+ (void)SetPlistDictionary:(NSDictionary*)dictionary {
    ReplaceDictionary(dictionary, [LocalSettings_Mac GetPlistPath]);
}

+ (NSDictionary*)GetPlistDictionaryForUser:(NSString*)vault {
    return ReadDictionary([LocalSettings_Mac GetPlistCurUserPath:vault]);
}

+ (void)SetPlistDictionary:(NSDictionary*)dictionary AndVault:(NSString*)vault {
    ReplaceDictionary(dictionary, [LocalSettings_Mac GetPlistCurUserPath:vault]);
}

+ (id)GetSettingValueForName:(NSString*)name {
    id value = ReadValue(name, [LocalSettings_Mac GetPlistPath]);
    return value != nil ? value : kNoValue;
}

+ (void)SetSettingValue:(id)value withName:(NSString*)name {
    WriteValue(value, name, [LocalSettings_Mac GetPlistPath]);
}

+ (id)GetSettingValueForName:(NSString*)name AndVault:(NSString*)vault {
    id value = ReadValue(name, [LocalSettings_Mac GetPlistCurUserPath:vault]);
    return value != nil ? value : kNoValue;
}

+ (void)SetSettingValue:(id)value withName:(NSString*)name AndVault:(NSString*)vault {
    WriteValue(value, name, [LocalSettings_Mac GetPlistCurUserPath:vault]);
}

+ (NSArray*)GetSettingsArrayForName:(NSString*)name {
    id value = ReadValue(name, [LocalSettings_Mac GetPlistPath]);
    return [value isKindOfClass:[NSArray class]] ? value : nil;
}

+ (void)SetSettingsArrayForName:(NSArray*)array withName:(NSString*)name {
    WriteValue(array, name, [LocalSettings_Mac GetPlistPath]);
}

+ (void)RemoveSettingForName:(NSString*)name {
    WriteValue(nil, name, [LocalSettings_Mac GetPlistPath]);
}

@end
