// Where state comes from, by the name that a user gives it.
#pragma once

#include "sources/Progress.h"
#include "sources/SourceError.h"
#include "sources/State.h"

#include <string>

namespace sources {

/// The state of a device: "kernel" is this machine's own, "kernel:NAME" that of a network
/// namespace, and anything else is a file, "-" for the standard input: its first bytes tell a state
/// database from a snapshot. `progress`, if any, hears how far that has come where it takes long.
/// Raises SourceError.
State open(const std::string& source, const Needs& needs = {}, Progress* progress = nullptr);

/// A source with the reason why it is the one.
struct Choice {
  std::string source;
  std::string reason;
};

/// The source for who names none: the state database of this machine, when its agent lives and the
/// state is of this boot and network namespace; else the kernel. ROVA_STATE_DB names another file
/// for the database.
Choice defaultSource();

/// Whether that name means a kernel, which is shown and not written to.
bool isKernel(const std::string& source);
/// The network namespace that a kernel's name means, empty for this process's own. Raises
/// SourceError for a name without one.
std::string kernelNamespace(const std::string& source);

} // namespace sources
