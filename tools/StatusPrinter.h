#pragma once

#include <string>

#include "tools/StatusOptions.h"
#include "tools/StatusReport.h"

/// The report, or the plans that the options name, for people.
/// @param colour  verdicts in colour, by the sequences of ECMA-48
std::string StatusForPeople(const StatusReport& report, const StatusOptions& options, bool colour);

/// The report as one JSON object, with the plans that the options name. docs/ksstatus.md has the
/// schema.
std::string StatusForPrograms(const StatusReport& report, const StatusOptions& options);

/// "created", "removed", "changed", "touched".
std::string WordOf(Change::Kind kind);
