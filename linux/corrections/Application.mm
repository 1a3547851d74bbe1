// A program that shows a window now and then, on a machine that may have no display.
//
// GNUstep's application object is made for programs with a bundle, an icon and a main loop:
//  - without a display its making ends in a crash, where a program wants a nil to act on;
//  - it shows a tile of its own beside the windows, and the scrollers on the left of theirs;
//  - it ends the whole program when the display goes away, where only its windows are lost;
//  - until the launching is finished no window becomes the key window, so none takes the keyboard;
//    a Mac's modal window takes it in any case;
//  - finishing takes the command line for names of files, and says in a panel that it cannot open
//    them.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSDisplayServer.h>
#include <X11/Xlib.h>

#include <memory>

#include "linux/corrections/ApplicationParts.h"
#include "linux/corrections/FrameOffsets.h"
#include "linux/corrections/Replacement.h"

namespace {

NSApplication* (*makeApplication)(id, SEL) = nullptr;
bool isDisplayLost = false;

struct DisplayCloser {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

void RegisterLook() {
    NSDictionary* look = [NSDictionary
        dictionaryWithObjectsAndKeys:@"YES", @"GSSuppressAppIcon", @"NSMacintoshInterfaceStyle",
                                     @"NSScrollViewInterfaceStyle", nil];
    [[NSUserDefaults standardUserDefaults] registerDefaults:look];
}

// The framework's own connection may still be refused, by a display that has no room for one more.
NSApplication* MakeApplication(id self, SEL selector) {
    @try {
        return makeApplication(self, selector);
    } @catch (NSException* refused) {
        NSLog(@"No application: %@", [refused reason]);
        NSApp = nil;
        return nil;
    }
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

NSApplication* ApplicationOrNil(id self, SEL selector) {
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
    NSApplication* application = MakeApplication(self, selector);
    if (application) {
        CorrectEventWaits();
        CorrectInterfaceFiles();
        CorrectControls();
        CorrectScrollers();
        [application finishLaunching];
        XSetIOErrorHandler(NoteLoss);
        XSetIOErrorExitHandler(static_cast<Display*>([GSCurrentServer() serverDevice]), LoseDisplay,
                               nullptr);
    }
    return application;
}

}  // namespace

@interface NSApplication (NoFilesToOpen)
- (NSArray*)_openFiles;
@end

@implementation NSApplication (NoFilesToOpen)

- (NSArray*)_openFiles {
    return nil;
}

@end

@implementation NSApplication (ActivationPolicy)

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    (void)policy;
    return YES;
}

@end

@interface KSApplicationCorrection : NSObject
@end

@implementation KSApplicationCorrection

+ (void)load {
    // No message may be sent yet: it would initialise classes while this library is half loaded.
    ReplaceMethod(object_getClass(objc_getClass("NSApplication")), @selector(sharedApplication),
                  ApplicationOrNil, &makeApplication);
}

@end
