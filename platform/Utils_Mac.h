#pragma once

#include <Foundation/Foundation.h>

/// Small questions about the machine and the process. No instances, no state. A question that
/// cannot be answered has a neutral answer and no line in the log; getKSVersion alone may log, as
/// it says.
@interface Utils_Mac : NSObject

/// The process identifier.
+ (int)GetCurrentProcessId;

/// The dictionary that a property list, XML or binary, holds.
/// @return an autoreleased, immutable dictionary; nil for anything else, nil data included
+ (NSDictionary*)DictionaryWithContentsOfData:(NSData*)data;

/// "OSX: " and the product version of the operating system, "OSX: (null)" where that is not known.
+ (NSString*)getOSVersion;

/// The product's version: "KSVersion" of the main bundle's Info dictionary, which is then stored in
/// the settings under that name, else "20200902", which is not stored. Storing it logs what
/// LocalSettings_Mac SetSettingValue:withName: logs.
+ (NSString*)getKSVersion;

/// Quits the application in the next turn of the main thread's run loop, on which it must be
/// called. Nothing happens in a session without a screen, nor where there is no application.
+ (void)closeApp;

/// The names of the folders in a folder, links to folders among them, in listing order.
/// @return empty for a folder that cannot be read
+ (NSArray*)arrayOfFoldersInFolder:(NSString*)folder;

/// Does nothing. Meant: kept for the sake of the interface.
/// @return -1
+ (int)hid_reset;

/// For how many seconds nobody has touched keyboard, mouse or trackpad, fractions cut off.
/// @return -1 where the system does not know it
+ (int)GetSystemIdleTime;

/// Whether a large public web page answers an HTTP HEAD request with status 200 in the end. Blocks
/// its thread until the answer, up to the platform's time-out of 60 seconds.
+ (BOOL)areConnected;

@end
