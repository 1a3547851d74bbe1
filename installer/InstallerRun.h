#pragma once

/// Runs the installer once, for the logged-in user: removes every integration that an earlier
/// version may have left in any browser, then installs the current one into Safari and into each
/// other browser that is registered with the system. All removals come before any install. A step's
/// failure is logged by the step and never stops the next one, so there is no result.
void RunInstaller();
