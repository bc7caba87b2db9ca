// Reads the words of a command one by one, and knows at each place what may follow. The parser and
// the answer to what may come next are both made of it, so that they cannot differ.
#pragma once

#include "command/grammar/Parsed.h"

namespace command::grammar {

class Reader {
 public:
  /// Reads all the words. Raises UsageError for one that cannot stand where it does.
  Reader(const Grammar& grammar, std::vector<std::string> words);

  /// What may follow the words.
  Choices choices() const;
  /// Whether nothing need follow.
  bool mayEnd() const;
  /// What was read. Raises UsageError where something is missing.
  const Parsed& whole() const;
  /// Null as long as the words name none.
  const Command* command() const { return path_.command(); }

 private:
  struct Candidate;

  void take();
  void takePart();
  void takeArgument(const Part& part);
  void takeRest(const Part& part);
  void takeKeyword(const Candidate& candidate);
  void enter(const Part& part, Value value = {});

  const Path* path() const;
  const Part* awaited() const;
  const Part* meantBy(const std::string& word) const;
  const Part* anyWord() const;
  std::vector<Candidate> candidates() const;
  const Candidate* chosen(const std::vector<Candidate>& candidates) const;
  bool isGiven(const Part& part) const;
  bool isFree(const Part& part) const;
  bool isOpen() const;
  const Part* lacking() const;
  [[noreturn]] void fail(std::string_view message) const;

  Parsed parsed_;
  Path path_;
  std::size_t at_ = 0;
  /// The one whose keyword was read last and lacks its argument, or has it up to the end.
  const Part* open_ = nullptr;
};

} // namespace command::grammar
