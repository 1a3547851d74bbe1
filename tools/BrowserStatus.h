#pragma once

#include <vector>

#include "tools/StatusReport.h"

/// The four browsers as they stand, without leftovers.
std::vector<BrowserStatus> LookAtBrowsers();
