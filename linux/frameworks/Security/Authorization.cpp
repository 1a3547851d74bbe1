#include <Security/Security.h>

#include <cstdio>
#include <cstdlib>
#include <set>

#include "Security/Administrator.h"

namespace {

// References are numbers and not memory, so that one that was freed is never a younger one as well.
std::set<AuthorizationRef>& LiveReferences() {
    static std::set<AuthorizationRef> references;
    return references;
}

void RequireLive(AuthorizationRef reference, const char* caller) {
    if (LiveReferences().count(reference) == 0) {
        std::fprintf(stderr, "%s: this authorization was freed before, or never made\n", caller);
        std::abort();
    }
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
    static uintptr_t count = 0;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a number that nobody follows
    *authorization = reinterpret_cast<AuthorizationRef>(++count);
    LiveReferences().insert(*authorization);
    return errAuthorizationSuccess;
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* /*environment*/,
                                 AuthorizationFlags /*flags*/,
                                 AuthorizationRights** /*authorizedRights*/) {
    RequireLive(authorization, "AuthorizationCopyRights");
    OSStatus status = errAuthorizationSuccess;
    for (UInt32 i = 0; i < rights->count && status == errAuthorizationSuccess; ++i) {
        status = StatusOf(AskForRight(rights->items[i].name));
    }
    return status;
}

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags /*flags*/) {
    RequireLive(authorization, "AuthorizationFree");
    LiveReferences().erase(authorization);
    return errAuthorizationSuccess;
}
