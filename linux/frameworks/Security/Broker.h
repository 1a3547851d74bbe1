#pragma once

#include <optional>
#include <string>

#include "Security/Administrator.h"

/// Asks the broker of a Mac root, which answers on a socket of its own.
/// @param kind  "command" or "right"
/// @param text  the shell command, or the right's name
/// @return nothing where there is no broker; a broker that breaks off counts as a refusal
std::optional<CommandResult> AskBroker(const std::string& kind, const std::string& text);
