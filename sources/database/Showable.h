// Whether displays can show a state: some records, which no writer makes, end them in a fatal
// error.
#pragma once

#include "sources/SourceError.h"
#include "state/DeviceState.h"

namespace sources::database {

/// Raises `SourceError`, which begins with `place`, for an entity at which a display would stop.
/// The tables are held against their own rules as they are read.
void requireShowable(const state::DeviceState& device, const std::string& place);

/// Whether the interface stands for a FEC of a type that there is not.
bool isStrangeFec(const Kesh::IntfId& intfId);

} // namespace sources::database
