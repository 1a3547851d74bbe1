// A program that shows a window now and then, on a machine that may have no display.
//
// GNUstep's application object is made for programs with a bundle, an icon and a main loop:
//  - without a display its making ends in a crash, where a program wants a nil to act on;
//  - it shows a tile of its own beside the windows, and the scrollers on the left of theirs;
//  - it ends the whole program when the display goes away, where only its windows are lost;
//  - it believes that a display always answers, where one that goes away answers nothing;
//  - until the launching is finished no window becomes the key window, so none takes the keyboard;
//    a Mac's modal window takes it in any case;
//  - finishing takes the command line for names of files, and says in a panel that it cannot open
//    them;
//  - finishing offers the program's services to others, and waits for thirteen seconds where a lost
//    program has left the list of them locked;
//  - it takes the signals that end a program, and does nothing on them; an exception that nobody
//    catches opens a panel of its own.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSDisplayServer.h>
#include <GNUstepGUI/GSServicesManager.h>
#include <X11/Xlib.h>
#include <dlfcn.h>

#include <csignal>
#include <memory>

#include "linux/corrections/FrameOffsets.h"

namespace {

bool isDisplayLost = false;

struct DisplayCloser {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

/// What ends the program as it was, once the application is made.
class KeptEndings {
  public:
    KeptEndings() : uncaught(NSGetUncaughtExceptionHandler()) {
        sigaction(SIGTERM, nullptr, &terminate);
        sigaction(SIGINT, nullptr, &interrupt);
    }
    ~KeptEndings() {
        sigaction(SIGTERM, &terminate, nullptr);
        sigaction(SIGINT, &interrupt, nullptr);
        NSSetUncaughtExceptionHandler(uncaught);
    }
    KeptEndings(const KeptEndings&) = delete;
    KeptEndings& operator=(const KeptEndings&) = delete;

  private:
    NSUncaughtExceptionHandler* const uncaught;
    struct sigaction terminate = {};
    struct sigaction interrupt = {};
};

void RegisterLook() {
    NSDictionary* look = [NSDictionary
        dictionaryWithObjectsAndKeys:@"YES", @"GSSuppressAppIcon", @"NSMacintoshInterfaceStyle",
                                     @"NSScrollViewInterfaceStyle", nil];
    [[NSUserDefaults standardUserDefaults] registerDefaults:look];
}

// Xlib's own one ends the program.
int NoteLoss(Display* /*display*/) {
    return 0;
}

// Xlib goes on without the display from here: nothing is drawn, no event arrives.
void LoseDisplay(Display* /*display*/, void* /*data*/) {
    isDisplayLost = true;
    [NSApp stopModal];
}

}  // namespace

extern "C" XModifierKeymap* XGetModifierMapping(Display* display) {
    static const auto original =
        reinterpret_cast<decltype(&XGetModifierMapping)>(dlsym(RTLD_NEXT, "XGetModifierMapping"));
    XModifierKeymap* map = original(display);
    return map ? map : XNewModifiermap(0);
}

@implementation NSApplication (MaybeWithoutDisplay)

// The framework's own connection may still be refused, by a display that has no room for one more.
+ (NSApplication*)applicationOrNil {
    @try {
        return [self mac_sharedApplication];
    } @catch (NSException* refused) {
        NSLog(@"No application: %@", [refused reason]);
        NSApp = nil;
        return nil;
    }
}

+ (NSApplication*)mac_sharedApplication {
    if (isDisplayLost) {
        return nil;
    }
    if (NSApp) {
        return NSApp;
    }
    // Open until the application has its own: a display starts afresh when its last program leaves.
    const std::unique_ptr<Display, DisplayCloser> display(XOpenDisplay(nullptr));
    if (!display) {
        return nil;
    }
    RegisterLook();
    const FrameOffsets offsets(display.get());
    const KeptEndings endings;
    NSApplication* application = [self applicationOrNil];
    if (application) {
        [application finishLaunching];
        XSetIOErrorHandler(NoteLoss);
        XSetIOErrorExitHandler(static_cast<Display*>([GSCurrentServer() serverDevice]), LoseDisplay,
                               nullptr);
    }
    return application;
}

- (NSArray*)mac__openFiles {
    return nil;
}

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    (void)policy;
    return YES;
}

@end

@implementation GSServicesManager (NoServices)

- (void)mac_registerAsServiceProvider {
}

@end
