#pragma once

#include <string>
#include <vector>

/// What the alert has logged since the last call: "warning: …", "failure: …".
std::vector<std::string> TakeLoggedLines();
