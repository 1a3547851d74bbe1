#pragma once

#include <Foundation/Foundation.h>

/// Runs a shell script with administrator rights, with one empty argument; the system asks for
/// them. What the script writes is not looked at.
/// @param script  the script's text
/// @return whether the rights were given and the script ended with status 0
BOOL RunAdministratorScript(NSString* script);
