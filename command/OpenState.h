// The state that a command shows.
#pragma once

#include "command/Notes.h"
#include "command/Options.h"

namespace command {

/// Opens the state that the options name; tells on standard error, in a line each, what is to be
/// known of it. Raises SourceError.
sources::State openState(const Options& options, const sources::Needs& needs = {});

/// What the names of VRFs and interfaces need.
sources::Needs namesAlone();

} // namespace command
