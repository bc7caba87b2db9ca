// What a user is told of the state that a command shows.
#pragma once

#include "scrivo/Printer.h"
#include "sources/State.h"

#include <functional>

namespace command {

/// The notes as lines for standard error; `source` names the state.
std::vector<std::string> linesOf(const sources::Notes& notes, const std::string& source);

/// The notes in a document, ahead of everything else: the object "state", absent when there is
/// nothing to say.
void printNotes(scrivo::Printer& printer, const sources::Notes& notes);

/// Has `render` write a document of its own in that format, which goes to `fd` with the object
/// "state" as the first of its members.
void renderWithNotes(const sources::Notes& notes, int fd, unsigned format,
                     const std::function<void(int fd)>& render);

} // namespace command
