// GNUstep's AppKit, with the declarations that Apple's has and GNUstep's lacks.
#pragma once

#include_next <AppKit/AppKit.h>
#include <Foundation/Foundation.h>

// GNUstep's has another bit.
#define NSWorkspaceLaunchDefault static_cast<NSWorkspaceLaunchOptions>(0x10000)

@interface NSApplication (ActivationPolicy)
/// How the application shows itself. There is no Dock to keep out of here: any policy is in force
/// already, and the answer is YES.
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
@end
