// The part of Darwin's <sys/sysctl.h> that the program meets; glibc has no such header.
#pragma once

#include <sys/types.h>

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Reads a value of the system by its name. Known is "hw.cpufrequency": the nominal clock rate of
/// the first processor in hertz, 8 bytes; like Apple silicon, a machine that does not tell it has
/// no such name.
/// @param oldp     where the value goes; NULL only asks for its size
/// @param oldlenp  in: the room at `oldp`; out: the value's size
/// @param newp     must be NULL: nothing can be set
/// @return 0, or -1 with errno: ENOENT for an unknown name, ENOMEM for too little room, EPERM for
/// an
///         attempt to set
int sysctlbyname(const char* name, void* oldp, size_t* oldlenp, void* newp, size_t newlen);

#ifdef __cplusplus
}
#endif
