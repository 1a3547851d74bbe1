#pragma once

#include <Foundation/Foundation.h>

/// Switches Chrome's own password manager by editing its preferences as plain text, read and
/// written as UTF-8, atomically; the write's result is not looked at. A preferences file whose keys
/// are not followed by exactly one blank is written back unchanged: that is meant.
/// @param on     the switch
/// @param error  gets the platform's error when the file cannot be read as UTF-8; else untouched
/// @return whether the file could be read; one that cannot stays as it is
BOOL SwitchChromePasswordManager(BOOL on, NSError** error);
