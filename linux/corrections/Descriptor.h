#pragma once

#include <unistd.h>

/// Owns one file descriptor and closes it; -1 is none.
class Descriptor {
  public:
    explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

    /// Closes it now, for those who must know whether that worked (a full disk may show only here).
    /// @return false with errno set when the system refused
    bool Close() {
        if (descriptor_ < 0) {
            return true;
        }
        const int closing = descriptor_;
        descriptor_ = -1;
        return close(closing) == 0;
    }

  private:
    int descriptor_;
};
