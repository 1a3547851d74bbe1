#pragma once

#include "tools/StatusReport.h"

/// The logs that are kept, and what failed in the last run.
LogStatus LookAtLogs();
