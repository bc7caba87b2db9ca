#include "command/grammar/Path.h"

#include "command/grammar/UsageError.h"

#include <algorithm>

namespace command::grammar {

namespace {

/// What the help says of the commands that begin so.
std::string_view helpOf(const Grammar& grammar, std::string_view words) {
  for (const Beginning& beginning : grammar.beginnings) {
    if (beginning.path == words) return beginning.help;
  }
  for (const Command& command : grammar.commands) {
    if (command.path == words) return command.help;
  }
  return {};
}

bool beginsWith(const Command& command, std::string_view words) {
  return words.empty() || command.path == words ||
         (command.path.starts_with(words) && command.path[words.size()] == ' ');
}

/// The word behind the words that a command begins with; empty behind the last one.
std::string_view wordBehind(const Command& command, std::string_view words) {
  if (command.path.size() == words.size()) return {};
  const auto rest = command.path.substr(words.empty() ? 0 : words.size() + 1);
  return rest.substr(0, rest.find(' '));
}

} // namespace

Path::Path(const Grammar& grammar, std::span<const Topic> topics)
    : grammar_(grammar), topics_(topics) {
  for (const Command& command : grammar.commands) commands_.push_back(&command);
}

const Command* Path::command() const {
  return commands_.size() == 1 && commands_[0]->path == words_ ? commands_[0] : nullptr;
}

std::string_view Path::help() const { return command() ? "" : helpOf(grammar_, words_); }

Choices Path::choices() const {
  Choices choices;
  for (const Command* command : commands_) {
    const auto word = wordBehind(*command, words_);
    const auto isWord = [&](const Choice& choice) { return choice.word == word; };
    if (word.empty() || std::any_of(choices.begin(), choices.end(), isWord)) continue;
    const auto end = static_cast<std::size_t>(word.data() + word.size() - command->path.data());
    choices.push_back({word, Kind::none, helpOf(grammar_, command->path.substr(0, end))});
  }
  for (const Topic& topic : topics_) choices.push_back({topic.name, Kind::none, topic.help});
  return choices;
}

void Path::take(const Line& line, std::size_t at) {
  const auto choices = this->choices();
  std::vector<std::string_view> words;
  for (const Choice& choice : choices) words.push_back(choice.word);
  const int chosen = line.findKeyword(at, words);
  if (chosen < 0) line.failExpecting(at, choices);
  words_ += (words_.empty() ? "" : " ") + std::string(words[static_cast<std::size_t>(chosen)]);
  const auto isNamed = [&](const Topic& topic) { return topic.name == words_; };
  const auto named = std::find_if(topics_.begin(), topics_.end(), isNamed);
  if (named != topics_.end()) topic_ = &*named;
  topics_ = {};
  std::erase_if(commands_, [&](const Command* command) { return !beginsWith(*command, words_); });
}

const Command* commandOf(const Grammar& grammar, const std::vector<std::string>& words) {
  const Line line(words);
  Path path(grammar);
  try {
    for (std::size_t at = 0; at < line.size() && !path.command(); ++at) path.take(line, at);
  } catch (const UsageError&) {
    return nullptr;
  }
  return path.command();
}

} // namespace command::grammar
