// Where state comes from, by the name that a user gives it.
#pragma once

#include "sources/SourceError.h"
#include "sources/State.h"

#include <string>

namespace sources {

/// The state of a device: "kernel" is this machine's own, "kernel:NAME" that of a network
/// namespace, and anything else is the file of a snapshot, "-" for the standard input. Raises
/// SourceError.
State open(const std::string& source, const Needs& needs = {});

/// Whether that name means a kernel, which is shown and not written to.
bool isKernel(const std::string& source);

} // namespace sources
