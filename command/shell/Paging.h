// The output of a command, through a pager where it is longer than the screen.
#pragma once

#include "command/grammar/Arguments.h"
#include "command/shell/Child.h"
#include "command/terminal/Pager.h"

namespace command::shell {

/// Decides about colours by the `--color` of the arguments; `isSeen` says whether a terminal shows
/// the output, if through a pager.
void chooseColour(const grammar::Arguments& arguments, bool isSeen);

/// How the output of the command with these arguments is paged; nothing where it is not.
std::optional<terminal::Paging> pagingOf(const grammar::Grammar& grammar,
                                         const grammar::Arguments& arguments);

/// Does the work in a process of its own, with its output paged, whose end is waited for; the
/// exit status as `runApart` gives it, and success once the user has left the pager. Blocks the
/// signals that keys send: they are for the work and the pager.
int runPaged(const terminal::Paging& paging, const Work& work);

} // namespace command::shell
