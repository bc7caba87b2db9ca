// What a word that was begun may become: words of the table, and names that the state has.
#pragma once

#include "command/grammar/Arguments.h"
#include "command/grammar/Line.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace command {

/// The words among the choices that begin so, then the names; options for a word that begins as
/// one. `source` is asked for the names of VRFs, interfaces and groups alone, without its routes. A
/// name that no shell takes as it stands, for a blank or a control character in it, is left out.
/// Ends the process, as a success, when that takes more than two seconds. Raises what a source
/// raises.
std::vector<std::string> candidates(const grammar::Choices& choices, std::string_view begun,
                                    const std::string& source);

/// Prints, a line each, the candidates for the last of the arguments behind the others: what the
/// completion of a shell asks for. Prints nothing where anything is wrong, or takes too long.
void printCandidates(std::span<const char* const> arguments);

/// The source of state that arguments name, or the default one.
std::string sourceOf(const grammar::Arguments& arguments);

} // namespace command
