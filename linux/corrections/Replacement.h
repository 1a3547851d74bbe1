// Puts a function in the place of a method of the framework's own.
#pragma once

#include <objc/runtime.h>

/// Makes `replacement` what instances of `owner` (or `owner` itself, given its metaclass) do for
/// the selector, and keeps what they did before in `*original`. The method must exist.
template <typename Original, typename Replacement>
void ReplaceMethod(Class owner, SEL selector, Replacement replacement, Original* original) {
    Method method = class_getInstanceMethod(owner, selector);
    *original = reinterpret_cast<Original>(
        method_setImplementation(method, reinterpret_cast<IMP>(replacement)));
}
