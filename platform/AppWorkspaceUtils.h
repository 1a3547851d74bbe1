#pragma once

#include <Foundation/Foundation.h>

/// Questions about the applications of this session. No state.
@interface AppWorkspaceUtils : NSObject

/// Whether an application with this bundle identifier runs and has finished launching. The
/// identifier must match exactly, letter case included; names of processes, programs or bundles are
/// never looked at. Nothing is logged.
+ (BOOL)IsAppRunning:(NSString*)bundleIdentifier;

@end
