#include <Security/Security.h>
#include <X11/Xlib.h>

OSStatus SessionGetInfo(SecuritySessionId session, SecuritySessionId* sessionId,
                        SessionAttributeBits* attributes) {
    if (session != callerSecuritySession || sessionId != nullptr) {
        return errSessionInvalidId;
    }
    Display* const display = XOpenDisplay(nullptr);
    *attributes = display != nullptr ? sessionHasGraphicAccess : 0;
    if (display != nullptr) {
        XCloseDisplay(display);
    }
    return errSessionSuccess;
}
