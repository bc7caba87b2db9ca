// What may come next in a command line: for a shell that completes words or answers a "?".
#pragma once

#include "command/grammar/Arguments.h"
#include "command/grammar/Line.h"

#include <span>

namespace command::grammar {

struct Next {
  /// The words that may follow, and the arguments, each with its line of help. A word that can be
  /// chosen for an argument stands as a word. The options come last.
  Choices choices;
  bool mayEnd = false; ///< the command is complete as it is
};

/// What may stand behind a "|".
Choices pipedWords(const Grammar& grammar);

/// What may follow these arguments, all of which are written out or unambiguously abbreviated.
/// Raises UsageError where they cannot be understood themselves.
Next next(const Grammar& grammar, std::span<const char* const> arguments);
/// The same where they are told apart already.
Next next(const Grammar& grammar, const Arguments& arguments);

} // namespace command::grammar
