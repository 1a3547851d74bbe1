#pragma once

#include <Foundation/Foundation.h>

/// The product's settings: one property list for the machine, shared by all users, and one a vault.
/// No instances and no cache: every operation reads the file, and every setter writes it back
/// whole.
///
/// A file is an XML property list with a dictionary as its root (a binary one is read as well). It
/// is written atomically, so a reader never sees half of it; of two writers that race, one loses
/// its change. Folders are never made here. A write that fails is silent and leaves the file as it
/// was. A dictionary that cannot be encoded, nil among them, is not written; that is logged, here
/// and in every setter, as the failure "Coudn't save local data with error: %@!" with the error's
/// description. Meant: "Coudn't" is spelled so.
///
/// A missing file, or one that holds no dictionary, counts as an empty dictionary: a getter finds
/// nothing in it and leaves it as it is, a setter replaces it. A file that is there but cannot be
/// read counts as empty for a getter, and no setter touches it: nobody knows what would be lost. A
/// vault's name becomes a part of a path as it is, ".." and "/" included. Nothing raises, whatever
/// the files hold.
@interface LocalSettings_Mac : NSObject

/// The file of the machine's settings.
+ (NSString*)GetPlistPath;

/// The file of a vault's settings; nil for a nil name.
+ (NSString*)GetPlistCurUserPath:(NSString*)vault;

/// All settings of the machine: an empty dictionary when there is no file, nil when there is one
/// that holds no dictionary.
+ (NSDictionary*)GetPlistDictionary;

/// Writes all settings of the machine.
+ (void)SetPlistDictionary:(NSDictionary*)dictionary;

/// All settings of a vault, as GetPlistDictionary returns them.
+ (NSDictionary*)GetPlistDictionaryForUser:(NSString*)vault;

/// Writes all settings of a vault.
+ (void)SetPlistDictionary:(NSDictionary*)dictionary AndVault:(NSString*)vault;

/// A setting of the machine, of whatever type the file holds; "" when there is none.
+ (id)GetSettingValueForName:(NSString*)name;

/// Changes a setting of the machine. Value first, name second.
/// @param value  anything that a property list can hold; nil removes the setting
/// @param name   nil changes nothing
+ (void)SetSettingValue:(id)value withName:(NSString*)name;

/// A setting of a vault, of whatever type the file holds; "" when there is none.
+ (id)GetSettingValueForName:(NSString*)name AndVault:(NSString*)vault;

/// Changes a setting of a vault, as SetSettingValue:withName: does.
+ (void)SetSettingValue:(id)value withName:(NSString*)name AndVault:(NSString*)vault;

/// A setting of the machine that is an array; nil, and not "", when there is none or when it is
/// something else.
+ (NSArray*)GetSettingsArrayForName:(NSString*)name;

/// Changes a setting of the machine to an array; nil removes it.
+ (void)SetSettingsArrayForName:(NSArray*)array withName:(NSString*)name;

/// Removes a setting of the machine. The file is written even when the setting is not in it.
+ (void)RemoveSettingForName:(NSString*)name;

@end
