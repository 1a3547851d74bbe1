#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>

/// Owns a Core Foundation object that a Create or Copy function returned, or nothing.
template <typename Ref>
class ScopedCFRef {
  public:
    explicit ScopedCFRef(Ref owned = nullptr) : ref(owned) {}
    ~ScopedCFRef() {
        if (ref != nullptr) {
            CFRelease(ref);
        }
    }
    ScopedCFRef(const ScopedCFRef&) = delete;
    ScopedCFRef& operator=(const ScopedCFRef&) = delete;

    Ref Get() const { return ref; }

    /// Where a Create function writes the object that it returns; nothing must be owned yet.
    Ref* Out() { return &ref; }

    explicit operator bool() const { return ref != nullptr; }

  private:
    Ref ref;
};

/// Owns an object of the I/O Kit (a service, an iterator), or nothing.
class ScopedIOObject {
  public:
    explicit ScopedIOObject(io_object_t owned = IO_OBJECT_NULL) : object(owned) {}
    ~ScopedIOObject() {
        if (object != IO_OBJECT_NULL) {
            IOObjectRelease(object);
        }
    }
    ScopedIOObject(const ScopedIOObject&) = delete;
    ScopedIOObject& operator=(const ScopedIOObject&) = delete;

    io_object_t Get() const { return object; }

    /// Where a function writes the object that it returns; nothing must be owned yet.
    io_object_t* Out() { return &object; }

    explicit operator bool() const { return object != IO_OBJECT_NULL; }

  private:
    io_object_t object;
};
