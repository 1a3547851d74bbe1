#pragma once

#include <Foundation/Foundation.h>

#include <string>
#include <string_view>

/// The text of preferences as the edit below leaves it.
std::string EditedChromePreferences(std::string_view text, BOOL on);

/// Switches Chrome's own password manager by editing its preferences as plain text; what the edit
/// does not name stays byte for byte. The write is atomic, and its result is not looked at. Nothing
/// is logged. Meant: only one blank behind a colon is understood. A file written otherwise is
/// written back unchanged.
///
/// The edit fits Chrome of years ago. Chrome of today writes its preferences without blanks and
/// without these keys, so it keeps what it had: its switch is "credentials_enable_service", which
/// is not touched. A Chrome that runs overwrites the edit when it ends. See docs/real-browsers.md.
///
/// A Chrome that runs writes them at any time. Where it did so since they were read, they are read
/// and edited again, at most three times; when that reading fails, nothing is written.
/// @param on     the switch
/// @param error  gets the platform's error when the file cannot be read, or is not UTF-8 (RFC
///               3629); else untouched; may be NULL
/// @return whether the file could be read at first; one that cannot stays as it is
BOOL SwitchChromePasswordManager(BOOL on, NSError** error);
