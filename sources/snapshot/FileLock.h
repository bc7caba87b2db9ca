// Locks of files that are replaced: the lock is on the old file, which its path must still lead to.
#pragma once

#include "sources/snapshot/Descriptor.h"

#include <functional>
#include <string>

namespace sources::snapshot {

/// Opens the regular file at `path` and keeps all others out that do the same, until it is closed.
/// Where another has it, calls `waiting`, if there is such a function, and waits. Nothing is opened
/// where there is no file, or one that is not regular. Raises `SourceError`.
Descriptor lockFile(const std::string& path, const std::function<void()>& waiting);

} // namespace sources::snapshot
