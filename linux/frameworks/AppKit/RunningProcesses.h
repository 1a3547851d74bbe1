#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

/// A process that runs a program of an application bundle.
struct RunningProcess {
    pid_t identifier = 0;
    std::string executable;  ///< "/…/X.app/Contents/MacOS/X"
    std::string bundle;      ///< "/…/X.app"
};

/// Reads the processes of the machine from /proc, by ascending identifier. A process belongs to the
/// bundle that its command line starts from; for a script, which the kernel starts through its
/// interpreter, the script's path counts. Programs of a bundle inside another one belong to the
/// inner one.
std::vector<RunningProcess> RunningProcessesOfBundles();
