#include "command/grammar/Line.h"

#include "command/grammar/UsageError.h"

#include <algorithm>

namespace command::grammar {

std::string listOf(std::span<const std::string> words, std::string_view lastJoin) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i) text += i + 1 == words.size() ? lastJoin : ", ";
    text += words[i];
  }
  return text;
}

std::string listOf(const Choices& choices) {
  std::vector<std::string> words;
  for (const Choice& choice : choices) {
    words.push_back(choice.word.empty() ? expectedText(choice.kind) : std::string(choice.word));
  }
  return listOf(words);
}

int Line::findKeyword(std::size_t at, std::span<const std::string_view> keywords) const {
  const auto& word = words_[at];
  const auto exact = std::find(keywords.begin(), keywords.end(), word);
  if (exact != keywords.end()) return static_cast<int>(exact - keywords.begin());
  std::vector<std::string> fitting;
  int found = -1;
  for (std::size_t i = 0; i < keywords.size(); ++i) {
    if (!keywords[i].starts_with(word)) continue;
    found = static_cast<int>(i);
    fitting.emplace_back(keywords[i]);
  }
  if (fitting.size() < 2) return found;
  fail(at, "\"" + word + "\" is short for several words: " + listOf(fitting));
}

void Line::fail(std::size_t at, const std::string& message, std::size_t offset) const {
  if (words_.empty()) throw UsageError("rova: " + message + "\n  rova --help shows the commands");
  std::string line;
  std::size_t place = 0;
  for (std::size_t i = 0; i < words_.size(); ++i) {
    if (i) line += ' ';
    if (i == at) place = line.size();
    line += words_[i];
  }
  if (at >= words_.size()) place = line.size() + 1;
  throw UsageError("rova: " + message + withCaret(line, place + offset));
}

void Line::failExpecting(std::size_t at, const Choices& choices) const {
  if (at < words_.size()) {
    const auto wrong = "\"" + words_[at] + "\" is not understood: ";
    if (!choices.empty()) fail(at, wrong + "expected " + listOf(choices));
    fail(at, wrong + "nothing is expected behind \"" + words_[at - 1] + "\"");
  }
  // A single argument says best what is missing.
  const bool isArgument = choices.size() == 1 && choices[0].word.empty();
  fail(at, (isArgument ? "expected " : "the command is not complete: expected ") + listOf(choices));
}

} // namespace command::grammar
