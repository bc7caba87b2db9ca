// The texts of help, made of the table.
#pragma once

#include "command/grammar/Line.h"
#include "command/grammar/Path.h"

#include <string>

namespace command::grammar {

/// The help for the words of a path: for all commands without words, for those that begin so, for
/// one with its parts and options, or for a topic.
std::string helpText(const Grammar& grammar, const Path& path);

/// The help for the command that the words begin with, or for those that begin with them. Raises
/// UsageError for words that no command begins with.
std::string helpText(const Grammar& grammar, const std::vector<std::string>& words);

/// What may stand at a place, a row each, and "<cr>" where the line may end.
std::string choicesText(const Choices& choices, bool mayEnd);

} // namespace command::grammar
