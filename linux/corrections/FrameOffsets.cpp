#include "linux/corrections/FrameOffsets.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <poll.h>

#include <array>
#include <chrono>
#include <optional>
#include <vector>

namespace {

using Frame = std::array<unsigned short, 4>;  // left, right, top, bottom

// GNUstep counts fifteen styles of a framed window. Alerts are of one of them, which cannot be
// resized: its frame stands for all.
constexpr int kStyles = 15;

constexpr const char* kOffsets = "_GNUSTEP_FRAME_OFFSETS";
constexpr auto kPatience = std::chrono::milliseconds(50);

// What the property holds of 32-bit numbers; nothing where it is not set.
std::optional<std::vector<long>> Longs(Display* display, Window window, const char* name) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    const int status =
        XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 4, False,
                           AnyPropertyType, &type, &format, &count, &rest, &data);
    std::optional<std::vector<long>> longs;
    if (status == Success && type != None) {
        const long* first = reinterpret_cast<const long*>(data);
        longs.emplace(first, first + (format == 32 ? count : 0));
    }
    if (data) {
        XFree(data);
    }
    return longs;
}

// Waits for news of the display; false when the time is up.
bool HasNews(Display* display, std::chrono::steady_clock::time_point end) {
    if (XPending(display)) {
        return true;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        end - std::chrono::steady_clock::now());
    pollfd connection = {ConnectionNumber(display), POLLIN, 0};
    return left.count() > 0 && poll(&connection, 1, static_cast<int>(left.count())) > 0;
}

void AskForFrame(Display* display, Window window) {
    XEvent request = {};
    request.xclient.type = ClientMessage;
    request.xclient.window = window;
    request.xclient.message_type = XInternAtom(display, "_NET_REQUEST_FRAME_EXTENTS", False);
    request.xclient.format = 32;
    XSendEvent(display, DefaultRootWindow(display), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &request);
}

// What the window manager says that it puts around a window; nothing if it does not say.
std::optional<Frame> FrameOfManager(Display* display) {
    constexpr const char* kExtents = "_NET_FRAME_EXTENTS";
    const Window window =
        XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
    XSizeHints hints = {};
    hints.flags = PMinSize | PMaxSize;
    hints.min_width = hints.min_height = hints.max_width = hints.max_height = 1;
    XSetWMNormalHints(display, window, &hints);
    XSelectInput(display, window, PropertyChangeMask);
    AskForFrame(display, window);
    std::optional<std::vector<long>> extents;
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!extents && HasNews(display, end)) {
        XEvent event = {};
        XNextEvent(display, &event);
        extents = Longs(display, window, kExtents);
    }
    XDestroyWindow(display, window);
    if (!extents || extents->size() != Frame().size()) {
        return std::nullopt;
    }
    Frame frame = {};
    for (size_t side = 0; side < frame.size(); ++side) {
        frame[side] = static_cast<unsigned short>((*extents)[side]);
    }
    return frame;
}

}  // namespace

FrameOffsets::FrameOffsets(Display* connection)
    : display(connection), property(XInternAtom(connection, kOffsets, False)), isOurs(false) {
    if (Longs(display, DefaultRootWindow(display), kOffsets)) {
        return;
    }
    const bool isManaged =
        Longs(display, DefaultRootWindow(display), "_NET_SUPPORTING_WM_CHECK").has_value();
    const std::optional<Frame> frame = isManaged ? FrameOfManager(display) : Frame{};
    if (!frame) {
        return;
    }
    std::vector<unsigned short> offsets;
    for (int style = 0; style < kStyles; ++style) {
        offsets.insert(offsets.end(), frame->begin(), frame->end());
    }
    XChangeProperty(display, DefaultRootWindow(display), property, XA_CARDINAL, 16, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(offsets.data()),
                    static_cast<int>(offsets.size()));
    XSync(display, False);
    isOurs = true;
}

FrameOffsets::~FrameOffsets() {
    if (isOurs) {
        XDeleteProperty(display, DefaultRootWindow(display), property);
    }
}
