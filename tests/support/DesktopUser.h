#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A colour on the screen, 0 to 255 each.
struct Color {
    int red;
    int green;
    int blue;
};
bool operator==(const Color& left, const Color& right);
std::ostream& operator<<(std::ostream& out, const Color& color);

/// What the screen shows of a window.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Color> pixels;  // row by row from the top

    Color At(int x, int yFromTop) const;
};

/// Somebody in front of the display, with a connection of their own: sees the alert as anyone sees
/// it, and answers with real events of mouse and keyboard. Points are in the alert's content, from
/// its lower left corner, as in the product.
///
/// Whatever does not happen within twenty seconds ends the whole program, loudly: an alert that
/// nobody closes would wait for ever.
class DesktopUser {
  public:
    DesktopUser();
    ~DesktopUser();
    DesktopUser(const DesktopUser&) = delete;
    DesktopUser& operator=(const DesktopUser&) = delete;

    /// Whether a window manager frames the windows; the one that is expected has been waited for.
    bool HasWindowManager() const;

    /// Waits until an alert is on the screen and drawn.
    void SeeAlert();
    /// Waits until keys go to the alert.
    void SeeKeyboardTaken();
    /// Waits until no alert is on the screen.
    void SeeNoAlert();
    /// Waits until the window manager has the alert in a state of this name.
    void SeeState(const std::string& name);
    bool IsInState(const std::string& name) const;
    /// Whether no other window covers the alert, as the window manager says.
    bool IsOnTop() const;
    /// Waits for a colour at a point.
    void SeeColor(int x, int y, const Color& color);

    Color ColorAt(int x, int y) const;
    Picture Look() const;
    /// The same with the frame.
    Picture LookWithFrame() const;
    /// The window's whole rectangle on the screen, from the top left corner, without the frame.
    XRectangle Place() const;

    /// What stands around the content: on the left and on top, and on both sides together.
    XRectangle Frame() const;

    void MoveTo(int x, int y);
    void Press();
    void Release();
    /// A click as short as the display takes it: press and release in one breath.
    void Click(int x, int y);
    void Wheel(int steps);
    /// As soon as keys go to the alert, presses and releases one, with another held down if given.
    void Type(unsigned long key, unsigned long held = 0);
    /// Presses the close button in the frame; needs a window manager.
    void ClickCloseButton();
    /// Minimises the alert, and waits until it is.
    void Minimise();
    /// Opens another window where the alert stands.
    void OpenAnotherWindow();

  private:
    bool FindAlert();
    Picture PictureOf(const XRectangle& place) const;
    bool IsDrawn() const;
    bool HasKeyboard() const;
    void WaitFor(const std::string& what, const std::function<bool()>& happened);

    Display* display = nullptr;
    Window root = 0;
    Window alert = 0;
};
