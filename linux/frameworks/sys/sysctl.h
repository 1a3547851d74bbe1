// The part of Darwin's <sys/sysctl.h> that the program meets; glibc has no such header.
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Reads "hw.cpufrequency", the nominal clock rate of the first processor in hertz, 8 bytes. Like
/// Apple silicon, a machine that does not tell it has no such name. Nothing can be set.
/// @param oldp     where the value goes
/// @param oldlenp  in: the room at `oldp`; out: the value's size
/// @return 0, or -1 with errno: ENOENT for an unknown name, ENOMEM for too little room
int sysctlbyname(const char* name, void* oldp, size_t* oldlenp, void* newp, size_t newlen);

#ifdef __cplusplus
}
#endif
