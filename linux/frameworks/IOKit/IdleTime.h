#pragma once

#include <cstdint>
#include <optional>

/// The nanoseconds since the user's last key or mouse event on the X display; nothing without one.
std::optional<int64_t> IdleNanoseconds();
