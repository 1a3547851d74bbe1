#pragma once

#include <Foundation/Foundation.h>
#include <objc/runtime.h>

/// Puts a function in the place of a class's method while it lives, for answers of the platform
/// that no machine gives on demand. The function takes the receiver, the selector and the
/// arguments.
class ReplacedMethod {
  public:
    enum Kind { ClassMethod, InstanceMethod };

    ReplacedMethod(Kind kind, Class owner, SEL selector, IMP function)
        : method(kind == ClassMethod ? class_getClassMethod(owner, selector)
                                     : class_getInstanceMethod(owner, selector)),
          original(method_setImplementation(method, function)) {}
    ~ReplacedMethod() { method_setImplementation(method, original); }

    /// What the function may call in its turn.
    IMP Original() const { return original; }

    ReplacedMethod(const ReplacedMethod&) = delete;
    ReplacedMethod& operator=(const ReplacedMethod&) = delete;

  private:
    Method method;
    IMP original;
};
