// Commands and their parts as help shows them, made of the table.
#pragma once

#include "command/grammar/Grammar.h"

#include <string>
#include <vector>

namespace command::grammar {

/// "vrf NAME|all", "ADDRESS | PREFIX", "host".
std::string syntaxOf(const Part& part);

/// "--into FILE"; with its short name, if it has one, "--help, -h".
std::string syntaxOf(const Option& option);

/// A line for each form of a command: "show ip route [vrf NAME|all] host|summary" has the parts
/// that go beside one other alone.
std::vector<std::string> syntaxOf(const Grammar& grammar, const Command& command);

} // namespace command::grammar
