#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>

/// Owns a handle of the platform, or nothing.
/// @tparam Handle   a pointer, or a number whose 0 is nothing
/// @tparam Release  gives the handle back; it is handed a Handle
template <typename Handle, auto Release>
class ScopedHandle {
  public:
    explicit ScopedHandle(Handle owned = {}) : handle(owned) {}
    ~ScopedHandle() {
        if (*this) {
            Release(handle);
        }
    }
    ScopedHandle(const ScopedHandle&) = delete;
    ScopedHandle& operator=(const ScopedHandle&) = delete;

    Handle Get() const { return handle; }

    /// Where a function writes the handle that it returns; nothing must be owned yet.
    Handle* Out() { return &handle; }

    explicit operator bool() const { return handle != Handle{}; }

  private:
    Handle handle;
};

/// An object that a Core Foundation function with Create or Copy in its name returned.
template <typename Ref>
using ScopedCFRef = ScopedHandle<Ref, CFRelease>;

/// An object of the I/O Kit: a service, an iterator.
using ScopedIOObject = ScopedHandle<io_object_t, IOObjectRelease>;
