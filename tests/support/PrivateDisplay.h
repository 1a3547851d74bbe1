#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

/// An X display of a test's own, which DISPLAY names while it lives.
class PrivateDisplay {
  public:
    /// @param options  further options of Xvfb
    explicit PrivateDisplay(const std::vector<std::string>& options = {});
    ~PrivateDisplay();
    PrivateDisplay(const PrivateDisplay&) = delete;
    PrivateDisplay& operator=(const PrivateDisplay&) = delete;

    /// Moves the mouse, as a user would.
    void MoveMouse() const;

    /// Tells every program that the keyboard has changed, and answers none of them from then on.
    void ChangeKeyboardAndFreeze() const;

  private:
    std::optional<ChildProcess> server_;
    std::optional<std::string> previous_;
};
