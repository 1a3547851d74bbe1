#include "installer/InstallerRun.h"

#include <Foundation/Foundation.h>

void RunInstaller() {
    @autoreleasepool {
    }
}
