// An application that does nothing: it says "ready" once the system knows it, and waits for its
// end.
#include <AppKit/AppKit.h>
#include <unistd.h>

#include <cstdio>

int main() {
    @autoreleasepool {
        NSApplication* const application = [NSApplication sharedApplication];
        std::puts("ready");
        std::fflush(stdout);
        [application run];
        pause();  // without a display there is nothing to run
    }
    return 0;
}
