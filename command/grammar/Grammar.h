// What a command line may be: commands of words and parts, and options. The table itself stands in
// command/Commands.cpp. What reads it: the parser (Parser.h), the errors, the answer to what may
// come next (Next.h), and the help (Help.h).
#pragma once

#include "command/grammar/ExitStatus.h"
#include "command/grammar/Kind.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace command {

struct Options;

namespace grammar {

class Parsed;

/// Whether the argument of a part stands behind a keyword.
enum class Keyword : unsigned char {
  needed,
  optional, ///< it may stand by itself too, if it is no keyword of the command
  none,     ///< it stands by itself
};

/// A part of a command, which may stand once unless it `repeats`. Required arguments without a
/// keyword come first, in their order; all else may stand in any order.
struct Part {
  std::string_view name; ///< the keyword, or what the argument is asked for by
  Keyword keyword = Keyword::needed;
  Kind kind = Kind::none;
  bool required = false;
  bool repeats = false;         ///< the words of a closed kind, which become one text with blanks
  std::string_view needs = {};  ///< the part that it goes with
  std::string_view beside = {}; ///< the one other part that may stand beside it; any if empty
  std::string_view why = {};    ///< the error where `needs` or `beside` is broken
  std::string_view help;
};

/// The commands that an option goes with.
enum class Scope : unsigned char {
  named,  ///< those that name it
  all,    ///< all
  itself, ///< none: it is a command itself
};

/// A word with "-" or "--" ahead. It may stand anywhere; of several the last one counts.
struct Option {
  std::string_view name;
  std::string_view shortName = {};
  Kind kind = Kind::none; ///< of its value
  Scope scope = Scope::named;
  bool piped = false; ///< a word of its kind may stand behind a "|" at the end instead
  std::string_view help;
};

struct Command {
  std::string_view path; ///< the words that name it, each of which may be abbreviated
  std::span<const Part> parts = {};
  std::span<const std::string_view> options = {}; ///< the names of those of its own
  std::string_view refused = {}; ///< an option for all commands that is of no use to this one
  std::string_view why = {};     ///< the reason for that
  std::string_view help;
  ExitStatus (*run)(const Parsed& parsed, const command::Options& options);
  bool endless =
      false; ///< it tells what happens, until it is interrupted: no pager holds that back

  /// Whether it has a part of that name.
  bool has(std::string_view part) const {
    return std::ranges::find(parts, part, &Part::name) != parts.end();
  }
};

/// What the commands have in common that begin with these words.
struct Beginning {
  std::string_view path;
  std::string_view help;
};

/// What becomes of the lines that a command prints.
enum class FilterAction : unsigned char { include, exclude, count, none };

/// What may stand behind a command and a "|", beside the words of a piped option.
struct Filter {
  std::string_view name;
  FilterAction action;
  Kind kind = Kind::none; ///< of its argument
  std::string_view help;
};

/// What has a help of its own beside the commands.
struct Topic {
  std::string_view name;
  std::string_view help;
  std::string (*text)();
};

struct Grammar {
  std::span<const Command> commands;
  std::span<const Beginning> beginnings;
  std::span<const Option> options;
  std::string_view notes; ///< the end of the help for all commands
  std::span<const Topic> topics;
  std::span<const Filter> filters = {};
};

/// The option of that name, long or short; null if there is none.
const Option* findOption(const Grammar& grammar, std::string_view name);

bool takesOption(const Command& command, const Option& option);

} // namespace grammar
} // namespace command
