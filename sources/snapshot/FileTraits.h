// What a file has beside its bytes: owner, group, mode and extended attributes.
#pragma once

#include "sources/snapshot/Descriptor.h"

namespace sources::snapshot {

/// Gives `file`, which nobody else may read yet, the traits of `old`. Raises `SourceError` with the
/// path for what cannot be kept.
void keepTraits(const Descriptor& old, const Descriptor& file, const std::string& path);

} // namespace sources::snapshot
