// A modal window among those of other programs, as on a Mac: above them, not to be minimised, always
// to be found again, and with the keyboard.
//
// GNUstep tells the window manager of none of this. It leaves a window of a high level out of the
// task bar; and it asks to be asked before each window gets the keyboard, so that an answer that is
// late leaves the window without.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSDisplayServer.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <array>
#include <memory>

namespace {

enum StateChange : long { kRemove = 0, kAdd = 1 };

const long kAskedByUser = 2;  // window managers may withhold the keyboard from whom nobody asked

class ManagedWindow {
  public:
    explicit ManagedWindow(NSWindow* owner)
        : display(static_cast<Display*>([GSCurrentServer() serverDevice])),
          window(reinterpret_cast<Window>(
              [GSCurrentServer() windowDevice:static_cast<int>([owner windowNumber])])) {}

    void TakeKeyboardUnasked() const {
        const std::unique_ptr<XWMHints, decltype(&XFree)> hints(XGetWMHints(display, window),
                                                                &XFree);
        if (hints) {
            hints->flags |= InputHint;
            hints->input = True;
            XSetWMHints(display, window, hints.get());
        }
    }

    void Change(StateChange change, const char* one, const char* other) const {
        Send("_NET_WM_STATE", {change, static_cast<long>(XInternAtom(display, one, False)),
                               static_cast<long>(XInternAtom(display, other, False))});
    }

    void Activate() const { Send("_NET_ACTIVE_WINDOW", {kAskedByUser}); }

  private:
    void Send(const char* message, const std::array<long, 3>& data) const {
        XEvent request = {};
        request.xclient.type = ClientMessage;
        request.xclient.window = window;
        request.xclient.message_type = XInternAtom(display, message, False);
        request.xclient.format = 32;
        std::copy(data.begin(), data.end(), request.xclient.data.l);
        XSendEvent(display, DefaultRootWindow(display), False,
                   SubstructureNotifyMask | SubstructureRedirectMask, &request);
    }

    Display* const display;
    const Window window;
};

}  // namespace

@implementation NSApplication (ModalWindows)

- (NSModalSession)mac_beginModalSessionForWindow:(NSWindow*)window {
    const NSModalSession session = [self mac_beginModalSessionForWindow:window];
    const ManagedWindow managed(window);
    managed.TakeKeyboardUnasked();
    managed.Change(kRemove, "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER");
    managed.Change(kAdd, "_NET_WM_STATE_ABOVE", "_NET_WM_STATE_MODAL");
    managed.Activate();
    return session;
}

// A window that is closed loses the keyboard, of which GNUstep hears when the next one stands: that
// one would be without until it is told that it has it, and keys that come between would be lost.
- (void)mac_deactivate {
    if (![self modalWindow]) {
        [self mac_deactivate];
    }
}

@end

@implementation NSWindow (ModalWindows)

// Some window managers let every window be minimised: this one comes back.
- (void)mac_performMiniaturize:(id)sender {
    if ([NSApp modalWindow] == self) {
        ManagedWindow(self).Activate();
    } else {
        [self mac_performMiniaturize:sender];
    }
}

@end
