#pragma once

#include <string>

#include "tools/ShadowTree.h"

/// Carries out in the shadow, as root, what a script of the installer would do: its `rm`, `mkdir -m`
/// and `cp -f -R`, word by word as the shell splits them. Any other command counts as one without
/// effect on files.
/// @param home  what "~" at a word's beginning stands for
void RunScript(const std::string& script, const std::string& home, ShadowTree* tree);
