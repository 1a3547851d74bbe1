#pragma once

#include <X11/Xlib.h>

/// Tells GNUstep how wide a window's frame is, which it otherwise finds out by putting up fifteen
/// windows, a fifth of a second long, and complains fifteen times where nobody frames windows.
/// Undone when the object goes; an application reads it while it is made.
class FrameOffsets {
  public:
    /// @param display must stay open as long as the object lives
    explicit FrameOffsets(Display* display);
    ~FrameOffsets();
    FrameOffsets(const FrameOffsets&) = delete;
    FrameOffsets& operator=(const FrameOffsets&) = delete;

  private:
    Display* display;
    Atom property;
    bool isOurs;
};
