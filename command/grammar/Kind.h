// The kinds of arguments: how help calls each, what an error expects in its place, and how it is
// read. Names that a device gives (VRFs, interfaces, groups) are not checked here.
#pragma once

#include "command/grammar/Value.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace command::grammar {

enum class Kind : unsigned char {
  none, ///< no argument: the keyword says it all
  vrf,
  vrfOrAll,
  interface,
  nexthopGroup,
  type,
  ip4Target, ///< an address or a prefix
  ip6Target,
  target,  ///< of either family
  address, ///< of either family
  addressWithLength,
  routeDistinguisher,
  protocol,
  protocol6,
  table, ///< behind the word for a family
  tag,
  command, ///< the words of a command, as many as there are
  inputFile,
  outputFile,
  file, ///< the standard output has another use
  source,
  format,
  fields,   ///< names of what a route has, with commas between them
  logPlace, ///< a number of the log of changes, or its end
  colour,
  text,       ///< any words, to be looked for in lines
  expression, ///< all words up to the end, with blanks between them
};

/// A word that can stand for an argument.
struct Word {
  std::string_view text;
  std::string_view help;
  std::string_view value = {};   ///< what a handler gets for it; the word itself if empty
  std::string_view refusal = {}; ///< why it cannot be chosen, although it is known

  std::string meaning() const { return std::string(value.empty() ? text : value); }
};

/// The value of a word, or what is wrong with it.
struct Reading {
  std::optional<Value> value;
  std::string wrong;
};

struct KindRow {
  Kind kind;
  std::string_view placeholder = {};                ///< in a syntax line
  std::string_view expected = {};                   ///< behind "expected"
  std::string_view wrong = {};                      ///< behind the quoted word that is none
  Reading (*read)(std::string_view word) = nullptr; ///< null where any word will do
  /// Tells a word that is meant as one from a keyword; null where any word may be one.
  bool (*looksLike)(std::string_view word) = nullptr;
  std::span<const Word> words = {}; ///< beside other words, or alone if `closed`
  bool closed = false;
  bool takesRest = false; ///< it is the words up to the end of the line, at least one
};

const KindRow& rowOf(Kind kind);

/// Reads a word that must be of that kind; the words of a closed kind in full.
Reading read(Kind kind, std::string_view word);

/// What is wrong with a word that is none of its kind: `"10.0.0" is no IPv4 address or prefix`.
std::string wrongText(Kind kind, std::string_view word);

/// "an IPv4 address or prefix"; for a closed kind also the words that can be chosen.
std::string expectedText(Kind kind);

} // namespace command::grammar
