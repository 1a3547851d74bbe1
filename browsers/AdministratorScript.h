#pragma once

#include <Foundation/Foundation.h>

/// Runs a shell script with administrator rights, with one empty argument; the system asks for
/// them. What the script writes is not looked at. Logs what ElevatedRights
/// runStringAsAdministrator:… logs: a script that cannot be saved, or not be deleted. A refusal has
/// no line.
/// @param script  the script's text
/// @return whether the rights were given and the script ended with status 0
BOOL RunAdministratorScript(NSString* script);
