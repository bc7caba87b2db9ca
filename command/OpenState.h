// The state that a command shows, and what its user is told of it.
#pragma once

#include "command/Options.h"
#include "scrivo/Printer.h"
#include "sources/State.h"

#include <functional>

namespace command {

/// Opens the state that the options name; tells on standard error, in a line each, what is to be
/// known of it. Raises SourceError.
sources::State openState(const Options& options, const sources::Needs& needs = {});

/// The same in a document, ahead of everything else: the object "state", absent when there is
/// nothing to say.
void printNotes(scrivo::Printer& printer, const sources::Notes& notes);

/// Has `render` write its document, which is one with braces, to standard output, with the object
/// "state" as the first of its members.
void renderWithNotes(const sources::Notes& notes, const Options& options,
                     const std::function<void(int fd)>& render);

} // namespace command
