// GNUstep's AppKit, with the declarations that Apple's has and GNUstep's lacks.
#pragma once

#include_next <AppKit/AppKit.h>
#include <Foundation/Foundation.h>

// GNUstep's has another bit.
#define NSWorkspaceLaunchDefault static_cast<NSWorkspaceLaunchOptions>(0x10000)
