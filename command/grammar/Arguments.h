// The arguments of the program, told apart: the options, and the words of the command.
#pragma once

#include "command/grammar/Grammar.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace command::grammar {

struct GivenOption {
  const Option* option;
  std::string value;
};

struct Arguments {
  /// An argument with blanks in it is several words, so that a whole command can be given in
  /// quotes.
  std::vector<std::string> words;
  std::vector<GivenOption> options;
  const Option* open = nullptr; ///< the one at the end that lacks its value
  bool onlyWords = false;       ///< a "--" has ended the options
  bool piped = false;           ///< a "| json" has ended the words
  bool named = false;           ///< something stands where a command does, if only blanks

  /// The value of the last option of that name; null without one.
  const std::string* find(std::string_view name) const;
};

/// Raises UsageError for an option that does not exist or has a value that is none.
Arguments splitArguments(const Grammar& grammar, std::span<const char* const> arguments);

/// The same of the words of a shell's line, which are told apart already: blanks in one are its
/// own, and there is no "|" among them.
Arguments sortWords(const Grammar& grammar, std::span<const std::string> words);

/// What is wrong with an option.
[[noreturn]] void failOption(std::string_view name, const std::string& message);

} // namespace command::grammar
