#include "tests/support/PrivateDisplay.h"

#include <X11/Xlib.h>

#include <cstdlib>
#include <memory>

namespace {

constexpr char kServer[] = "/usr/bin/Xvfb";

}  // namespace

PrivateDisplay::PrivateDisplay(const std::vector<std::string>& options) {
    Announcement number;
    std::vector<std::string> arguments{kServer,     "-displayfd", number.ChildEnd(),
                                       "-nolisten", "tcp",        "-noreset"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    server_.emplace(kServer, arguments);
    const std::string display = ":" + number.Read();
    if (const char* previous = std::getenv("DISPLAY")) {
        previous_ = previous;
    }
    setenv("DISPLAY", display.c_str(), 1);
}

PrivateDisplay::~PrivateDisplay() {
    if (previous_) {
        setenv("DISPLAY", previous_->c_str(), 1);
    } else {
        unsetenv("DISPLAY");
    }
}

void PrivateDisplay::MoveMouse() const {
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr),
                                                                     &XCloseDisplay);
    static int position = 0;
    position = (position + 10) % 100;
    XWarpPointer(display.get(), None, DefaultRootWindow(display.get()), 0, 0, 0, 0, position,
                 position);
    XSync(display.get(), False);
}

void PrivateDisplay::ChangeKeyboardAndFreeze() const {
    // Kept open: without it the display would answer again, and a display that is gone cannot be asked
    // to close it.
    static auto* const held = new std::vector<Display*>;  // until the process has ended
    Display* display = held->emplace_back(XOpenDisplay(nullptr));
    XGrabServer(display);
    int count = 0;
    const int first = 8;
    const std::unique_ptr<KeySym, decltype(&XFree)> symbols(
        XGetKeyboardMapping(display, static_cast<KeyCode>(first), 1, &count), &XFree);
    XChangeKeyboardMapping(display, first, count, symbols.get(), 1);
    XSync(display, False);
}
