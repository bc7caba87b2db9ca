// The words that name a command, or where help is asked for a topic, read one by one.
#pragma once

#include "command/grammar/Grammar.h"
#include "command/grammar/Line.h"

#include <string>
#include <vector>

namespace command::grammar {

class Path {
 public:
  explicit Path(const Grammar& grammar, std::span<const Topic> topics = {});

  /// Reads a word of the line, which may be abbreviated. Raises UsageError for one that no command
  /// has there.
  void take(const Line& line, std::size_t at);

  /// The command that the words name; null as long as some are missing.
  const Command* command() const;
  /// The topic that the word names; null for commands.
  const Topic* topic() const { return topic_; }
  /// All commands that begin with the words.
  const std::vector<const Command*>& commands() const { return commands_; }
  /// The words so far, in full.
  const std::string& words() const { return words_; }
  /// What the help says of them; empty for a command, and without words.
  std::string_view help() const;
  /// The words that may follow.
  Choices choices() const;

 private:
  const Grammar& grammar_;
  std::span<const Topic> topics_; ///< that may be the first word
  const Topic* topic_ = nullptr;
  std::vector<const Command*> commands_;
  std::string words_;
};

/// The command that the first of these words name; null where they name none.
const Command* commandOf(const Grammar& grammar, const std::vector<std::string>& words);

} // namespace command::grammar
