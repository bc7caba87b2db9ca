// The words of a command line and what goes wrong with them: every error shows the line with a
// caret under the word and says what was expected there.
#pragma once

#include <bitset>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace command {

/// The command line cannot be understood; the exit status is 2. `what()` is the message with the
/// line and the caret, what does not show as it is in them escaped.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& message);
};

/// Lines for an error: the line as it shows and a caret below its byte `place`, or behind its end.
std::string withCaret(std::string_view line, std::size_t place);

/// The words of a command, read from left to right.
class Words {
 public:
  /// One word per argument; an argument with blanks in it is several words, so that a whole command
  /// can be given in quotes.
  explicit Words(std::span<const char* const> arguments);

  bool atEnd() const { return next_ >= words_.size(); }
  /// The next word; empty at the end.
  std::string_view peek() const { return atEnd() ? std::string_view() : words_[next_]; }
  /// Reads the next word; an error that expects `what` at the end of the line.
  std::string_view take(std::string_view what);
  /// Reads the next word if it is `word` itself or an abbreviation that no other of `keywords`
  /// shares; -1 if it is none of them. An abbreviation of several is an error.
  int takeKeyword(std::span<const std::string_view> keywords);
  /// The keywords of a list that were read, a bit for each.
  using Seen = std::bitset<32>;
  /// Reads one of the keywords and gives its place. Any other word, and a keyword that was seen
  /// before, are errors.
  std::size_t takeOnce(std::span<const std::string_view> keywords, Seen& seen);
  /// Drops the last two words if they are "|" and the given one.
  bool dropTrailingPipe(std::string_view word);

  /// The error at the next word, or behind the last one.
  [[noreturn]] void fail(const std::string& message) const { failAt(next_, message); }
  /// The error at the word that was read last.
  [[noreturn]] void failAtLast(const std::string& message) const { failAt(next_ - 1, message); }
  /// "expected A, B or C", found the next word.
  [[noreturn]] void failExpecting(std::span<const std::string_view> alternatives) const;

 private:
  [[noreturn]] void failAt(std::size_t index, const std::string& message) const;
  std::vector<std::string> words_;
  std::size_t next_ = 0;
};

/// "A, B or C".
std::string listOf(std::span<const std::string_view> words, std::string_view lastJoin = " or ");

} // namespace command
