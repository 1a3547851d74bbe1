#include "Security/Authorization.h"

#include <cstdint>
#include <mutex>
#include <set>

#include "Security/Administrator.h"

namespace {

// References are numbers, not memory: one that was freed is known as such, never followed.
std::mutex& Lock() {
    static std::mutex lock;
    return lock;
}

std::set<AuthorizationRef>& LiveReferences() {
    static std::set<AuthorizationRef> references;
    return references;
}

AuthorizationRef NewReference() {
    static uintptr_t count = 0;
    const std::lock_guard<std::mutex> guard(Lock());
    const AuthorizationRef reference = reinterpret_cast<AuthorizationRef>(++count);
    LiveReferences().insert(reference);
    return reference;
}

bool IsLive(AuthorizationRef reference) {
    const std::lock_guard<std::mutex> guard(Lock());
    return LiveReferences().count(reference) != 0;
}

OSStatus StatusOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::Allowed:
            return errAuthorizationSuccess;
        case Verdict::Cancelled:
            return errAuthorizationCanceled;
        default:
            return errAuthorizationDenied;
    }
}

}  // namespace

OSStatus AuthorizationCreate(const AuthorizationRights* /*rights*/,
                             const AuthorizationEnvironment* /*environment*/,
                             AuthorizationFlags /*flags*/, AuthorizationRef* authorization) {
    if (authorization == nullptr) {
        return errAuthorizationInvalidPointer;
    }
    *authorization = NewReference();
    return errAuthorizationSuccess;
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* /*environment*/,
                                 AuthorizationFlags flags,
                                 AuthorizationRights** /*authorizedRights*/) {
    if (!IsLive(authorization)) {
        return errAuthorizationInvalidRef;
    }
    if (rights == nullptr) {
        return errAuthorizationSuccess;
    }
    if ((flags & kAuthorizationFlagInteractionAllowed) == 0) {
        return errAuthorizationInteractionNotAllowed;
    }
    for (UInt32 i = 0; i < rights->count; ++i) {
        const OSStatus status = StatusOf(AskForRight(rights->items[i].name));
        if (status != errAuthorizationSuccess) {
            return status;
        }
    }
    return errAuthorizationSuccess;
}

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags /*flags*/) {
    const std::lock_guard<std::mutex> guard(Lock());
    return LiveReferences().erase(authorization) == 1 ? errAuthorizationSuccess
                                                      : errAuthorizationInvalidRef;
}
