#pragma once

#include <string>
#include <vector>

/// The bundles ("/…/X.app") that the machine's processes run programs of, one entry a process, by
/// ascending identifier. A process belongs to the bundle that its command line starts from; a script
/// is its interpreter's, and belongs to none. Programs of a bundle inside another one belong to the
/// inner one.
std::vector<std::string> BundlesOfProcesses();
