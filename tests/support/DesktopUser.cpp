#include "tests/support/DesktopUser.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <thread>

namespace {

constexpr auto kPatience = std::chrono::seconds(20);
constexpr auto kGlance = std::chrono::milliseconds(5);
constexpr const char* kWindowName = "Keystrel";
constexpr unsigned kLeftButton = 1;
constexpr unsigned kWheelDown = 5;

[[noreturn]] void GiveUp(const std::string& what) {
    std::fprintf(stderr, "FAILED: waited in vain for %s\n", what.c_str());
    std::fflush(nullptr);
    std::_Exit(1);
}

Display* ownDisplay = nullptr;
XErrorHandler othersHandler = nullptr;

// Windows come and go while somebody looks at them; what is gone is simply not seen. There is one
// handler for all connections of a program: the others' errors go to the handler they had.
int IgnoreOwnErrors(Display* display, XErrorEvent* event) {
    return display == ownDisplay || !othersHandler ? 0 : othersHandler(display, event);
}

void TakeErrors() {
    const XErrorHandler previous = XSetErrorHandler(IgnoreOwnErrors);
    if (previous != IgnoreOwnErrors) {
        othersHandler = previous;
    }
}

// A property of a window: its items, or nothing if the window has none of that name and size.
template <typename Item>
std::vector<Item> Property(Display* display, Window window, const char* name) {
    constexpr int kBits = sizeof(Item) == 1 ? 8 : 32;  // 32 bits come as longs
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    std::vector<Item> items;
    if (XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 64, False,
                           AnyPropertyType, &type, &format, &count, &rest, &data) == Success &&
        data && format == kBits) {
        const Item* first = reinterpret_cast<const Item*>(data);
        items.assign(first, first + count);
    }
    if (data) {
        XFree(data);
    }
    return items;
}

// The programs' own windows: those that the window manager knows, or, without one, all that stand
// on the screen.
std::vector<Window> Windows(Display* display) {
    const Window root = DefaultRootWindow(display);
    std::vector<Window> windows = Property<Window>(display, root, "_NET_CLIENT_LIST");
    Window parent = 0;
    Window same = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (windows.empty() && XQueryTree(display, root, &same, &parent, &children, &count)) {
        windows.assign(children, children + count);
    }
    if (children) {
        XFree(children);
    }
    return windows;
}

bool IsShown(Display* display, Window window) {
    XWindowAttributes attributes = {};
    return XGetWindowAttributes(display, window, &attributes) && attributes.map_state == IsViewable;
}

bool IsNamed(Display* display, Window window, const std::string& expected) {
    const std::vector<char> name = Property<char>(display, window, "_NET_WM_NAME");
    return std::string(name.begin(), name.end()) == expected;
}

}  // namespace

bool operator==(const Color& left, const Color& right) {
    return left.red == right.red && left.green == right.green && left.blue == right.blue;
}

std::ostream& operator<<(std::ostream& out, const Color& color) {
    return out << '(' << color.red << ", " << color.green << ", " << color.blue << ')';
}

Color Picture::At(int x, int yFromTop) const {
    return pixels.at(static_cast<size_t>(yFromTop) * static_cast<size_t>(width) +
                     static_cast<size_t>(x));
}

DesktopUser::DesktopUser() : display(XOpenDisplay(nullptr)) {
    if (!display) {
        GiveUp("a display; run this through tests/ui/run-with-display");
    }
    ownDisplay = display;
    root = DefaultRootWindow(display);
    if (std::getenv("KS_WINDOW_MANAGER")) {
        WaitFor("the window manager", [this] { return HasWindowManager(); });
    }
}

DesktopUser::~DesktopUser() {
    XCloseDisplay(display);
}

bool DesktopUser::HasWindowManager() const {
    return !Property<Window>(display, root, "_NET_SUPPORTING_WM_CHECK").empty();
}

void DesktopUser::WaitFor(const std::string& what, const std::function<bool()>& happened) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!happened()) {
        if (std::chrono::steady_clock::now() > end) {
            GiveUp(what);
        }
        std::this_thread::sleep_for(kGlance);
    }
}

bool DesktopUser::FindAlert() {
    TakeErrors();
    for (Window window : Windows(display)) {
        if (IsShown(display, window) && IsNamed(display, window, kWindowName)) {
            alert = window;
            return true;
        }
    }
    return false;
}

// The light ground is there from one edge to the other and up to the texts, and so is a button.
bool DesktopUser::IsDrawn() const {
    const Picture picture = Look();
    if (picture.pixels.empty()) {
        return false;
    }
    const auto isLight = [](const Color& color) { return color.blue > 200; };
    const int row = picture.height - 1 - 26;  // through the lower part of the buttons
    const int right = picture.width - 1;
    for (int y : {picture.height / 2, row, picture.height - 1}) {
        if (!isLight(picture.At(0, y)) || !isLight(picture.At(right, y))) {
            return false;
        }
    }
    for (int x = 0; x < picture.width; ++x) {
        const Color color = picture.At(x, row);
        if (!isLight(color) && !(color == Color{0, 0, 0})) {
            return true;
        }
    }
    return false;
}

void DesktopUser::SeeAlert() {
    WaitFor("the alert", [this] { return FindAlert() && IsDrawn(); });
}

void DesktopUser::SeeKeyboardTaken() {
    WaitFor("the alert to take the keyboard", [this] { return HasKeyboard(); });
}

void DesktopUser::SeeNoAlert() {
    WaitFor("the alert to go", [this] { return !FindAlert(); });
}

bool DesktopUser::IsInState(const std::string& name) const {
    const std::vector<Atom> states = Property<Atom>(display, alert, "_NET_WM_STATE");
    const Atom state = XInternAtom(display, name.c_str(), False);
    return std::find(states.begin(), states.end(), state) != states.end();
}

void DesktopUser::SeeState(const std::string& name) {
    WaitFor("the state " + name, [=] { return IsInState(name); });
}

bool DesktopUser::IsOnTop() const {
    const std::vector<Window> stacking =
        Property<Window>(display, root, "_NET_CLIENT_LIST_STACKING");
    return !stacking.empty() && stacking.back() == alert;
}

void DesktopUser::SeeColor(int x, int y, const Color& color) {
    WaitFor("a colour", [=] { return ColorAt(x, y) == color; });
}

Color DesktopUser::ColorAt(int x, int y) const {
    const Picture picture = Look();
    return picture.pixels.empty() ? Color{-1, -1, -1} : picture.At(x, picture.height - 1 - y);
}

XRectangle DesktopUser::Place() const {
    XWindowAttributes attributes = {};
    int x = 0;
    int y = 0;
    Window child = 0;
    if (!XGetWindowAttributes(display, alert, &attributes) ||
        !XTranslateCoordinates(display, alert, root, 0, 0, &x, &y, &child)) {
        return {};
    }
    return {static_cast<short>(x), static_cast<short>(y),
            static_cast<unsigned short>(attributes.width),
            static_cast<unsigned short>(attributes.height)};
}

Picture DesktopUser::Look() const {
    return PictureOf(Place());
}

XRectangle DesktopUser::Frame() const {
    std::vector<long> extents = Property<long>(display, alert, "_NET_FRAME_EXTENTS");
    extents.resize(4);  // left, right, top, bottom; nothing where nobody frames windows
    return {static_cast<short>(extents[0]), static_cast<short>(extents[2]),
            static_cast<unsigned short>(extents[0] + extents[1]),
            static_cast<unsigned short>(extents[2] + extents[3])};
}

Picture DesktopUser::LookWithFrame() const {
    const XRectangle place = Place();
    const XRectangle frame = Frame();
    return PictureOf({static_cast<short>(place.x - frame.x), static_cast<short>(place.y - frame.y),
                      static_cast<unsigned short>(place.width + frame.width),
                      static_cast<unsigned short>(place.height + frame.height)});
}

// From the screen, not from the window: what covers the alert would be seen.
Picture DesktopUser::PictureOf(const XRectangle& place) const {
    Picture picture;
    if (!place.width) {
        return picture;
    }
    XImage* image =
        XGetImage(display, root, place.x, place.y, place.width, place.height, AllPlanes, ZPixmap);
    if (!image) {
        return picture;
    }
    picture.width = place.width;
    picture.height = place.height;
    picture.pixels.reserve(static_cast<size_t>(place.width) * place.height);
    for (int y = 0; y < place.height; ++y) {
        for (int x = 0; x < place.width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            picture.pixels.push_back({static_cast<int>(pixel >> 16 & 255),
                                      static_cast<int>(pixel >> 8 & 255),
                                      static_cast<int>(pixel & 255)});
        }
    }
    XDestroyImage(image);
    return picture;
}

void DesktopUser::MoveTo(int x, int y) {
    const XRectangle place = Place();
    XTestFakeMotionEvent(display, -1, place.x + x, place.y + place.height - 1 - y, CurrentTime);
    XSync(display, False);
}

void DesktopUser::Press() {
    XTestFakeButtonEvent(display, kLeftButton, True, CurrentTime);
    XSync(display, False);
}

void DesktopUser::Release() {
    XTestFakeButtonEvent(display, kLeftButton, False, CurrentTime);
    XSync(display, False);
}

void DesktopUser::Click(int x, int y) {
    MoveTo(x, y);
    XTestFakeButtonEvent(display, kLeftButton, True, CurrentTime);
    XTestFakeButtonEvent(display, kLeftButton, False, CurrentTime);
    XSync(display, False);
}

void DesktopUser::Wheel(int steps) {
    for (int i = 0; i < steps; ++i) {
        XTestFakeButtonEvent(display, kWheelDown, True, CurrentTime);
        XTestFakeButtonEvent(display, kWheelDown, False, CurrentTime);
    }
    XSync(display, False);
}

bool DesktopUser::HasKeyboard() const {
    Window focused = 0;
    int revert = 0;
    XGetInputFocus(display, &focused, &revert);
    return focused == alert;
}

void DesktopUser::Type(unsigned long key, unsigned long held) {
    SeeKeyboardTaken();
    const KeyCode keyCode = XKeysymToKeycode(display, key);
    const KeyCode heldCode = held ? XKeysymToKeycode(display, held) : 0;
    if (heldCode) {
        XTestFakeKeyEvent(display, heldCode, True, CurrentTime);
    }
    XTestFakeKeyEvent(display, keyCode, True, CurrentTime);
    XTestFakeKeyEvent(display, keyCode, False, CurrentTime);
    if (heldCode) {
        XTestFakeKeyEvent(display, heldCode, False, CurrentTime);
    }
    XSync(display, False);
}

void DesktopUser::ClickCloseButton() {
    const int titleHeight = Frame().y;
    if (titleHeight == 0) {
        GiveUp("a frame with a close button");
    }
    const XRectangle place = Place();
    XTestFakeMotionEvent(display, -1, place.x + place.width - titleHeight / 2,
                         place.y - titleHeight / 2, CurrentTime);
    XTestFakeButtonEvent(display, kLeftButton, True, CurrentTime);
    XTestFakeButtonEvent(display, kLeftButton, False, CurrentTime);
    XSync(display, False);
}

void DesktopUser::Minimise() {
    XSelectInput(display, alert, StructureNotifyMask);
    XIconifyWindow(display, alert, DefaultScreen(display));
    XSync(display, False);
    WaitFor("the alert to be minimised", [this] {
        XEvent event = {};
        return XCheckTypedWindowEvent(display, alert, UnmapNotify, &event) == True;
    });
}

void DesktopUser::OpenAnotherWindow() {
    const XRectangle place = Place();
    const Window another =
        XCreateSimpleWindow(display, root, place.x, place.y, place.width, place.height, 0, 0, 0);
    XMapWindow(display, another);
    WaitFor("another window", [=] {
        const std::vector<Window> stacking =
            Property<Window>(display, root, "_NET_CLIENT_LIST_STACKING");
        return IsShown(display, another) &&
               std::find(stacking.begin(), stacking.end(), another) != stacking.end();
    });
}
