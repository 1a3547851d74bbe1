#pragma once

#include <Security/Security.h>

/// Whether the program runs in a session that may show windows. AppKit must not be asked for its
/// application where it may not: without a window server it ends the program, or waits for ever.
inline bool HasGraphicSession() {
    SessionAttributeBits attributes = 0;
    return SessionGetInfo(callerSecuritySession, NULL, &attributes) == errSessionSuccess &&
           (attributes & sessionHasGraphicAccess) != 0;
}
