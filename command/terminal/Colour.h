// Whether what the program writes has colours.
#pragma once

#include <string_view>

namespace command::terminal {

/// Decides it from here on, by a word of `--color`: "always", "never", or "auto", which gives
/// standard output colours where `isSeen` says that a terminal shows it, and standard error where
/// it is one; none with NO_COLOR (https://no-color.org) or TERM=dumb.
void chooseColour(std::string_view choice, bool isSeen);

/// Whether messages on standard error have colours; as with "auto" as long as nobody has chosen.
bool coloursMessages();

} // namespace command::terminal
