// The words of a command line, and the errors that show them: the line with a caret under the word,
// and what was expected there.
#pragma once

#include "command/grammar/Kind.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace command::grammar {

/// What may stand at a place: a word as it is, or an argument.
struct Choice {
  std::string_view word; ///< empty for an argument
  Kind kind = Kind::none;
  std::string_view help;
};

using Choices = std::vector<Choice>;

/// "A, B or C".
std::string listOf(std::span<const std::string> words, std::string_view lastJoin = " or ");
std::string listOf(const Choices& choices);

class Line {
 public:
  explicit Line(std::vector<std::string> words) : words_(std::move(words)) {}

  std::size_t size() const { return words_.size(); }
  const std::string& operator[](std::size_t at) const { return words_[at]; }

  /// The place among `keywords` of the one that a word is, or is short for; -1 if it is none of
  /// them. One that is short for several is an error.
  int findKeyword(std::size_t at, std::span<const std::string_view> keywords) const;

  /// Raises UsageError at a word, or behind the last one; `offset` bytes further on for a place
  /// inside of the words.
  [[noreturn]] void fail(std::size_t at, const std::string& message, std::size_t offset = 0) const;
  /// The error at a word that is none of those that may stand there, or at the end of the line.
  [[noreturn]] void failExpecting(std::size_t at, const Choices& choices) const;

 private:
  std::vector<std::string> words_;
};

} // namespace command::grammar
