#include "command/Words.h"

#include "scrivo/Shown.h"

#include <algorithm>
#include <sstream>

namespace command {

namespace {

/// The columns that a text takes on a terminal: those of its characters, not of its bytes.
std::size_t columnsOf(std::string_view text) {
  const auto startsCharacter = [](char byte) { return (byte & 0xc0) != 0x80; };
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

} // namespace

UsageError::UsageError(const std::string& message)
    : std::runtime_error(scrivo::shown(message, scrivo::LineEnds::kept)) {}

std::string withCaret(std::string_view line, std::size_t place) {
  const auto inside = std::min(place, line.size());
  const auto column = columnsOf(scrivo::shown(line.substr(0, inside))) + (place - inside);
  return "\n  " + scrivo::shown(line) + "\n  " + std::string(column, ' ') + "^";
}

Words::Words(std::span<const char* const> arguments) {
  for (const char* argument : arguments) {
    std::istringstream parts(argument);
    for (std::string word; parts >> word;) words_.push_back(word);
  }
}

std::string_view Words::take(std::string_view what) {
  if (atEnd()) fail("expected " + std::string(what));
  return words_[next_++];
}

int Words::takeKeyword(std::span<const std::string_view> keywords) {
  const auto word = peek();
  if (word.empty()) return -1;
  std::vector<std::string_view> fitting;
  int found = -1;
  for (std::size_t i = 0; i < keywords.size(); ++i) {
    if (!keywords[i].starts_with(word)) continue;
    found = static_cast<int>(i);
    fitting.push_back(keywords[i]);
    if (keywords[i] == word) {
      fitting.resize(1);
      break;
    }
  }
  if (fitting.size() > 1) {
    fail("\"" + std::string(word) + "\" is short for several words: " + listOf(fitting));
  }
  if (found >= 0) ++next_;
  return found;
}

std::size_t Words::takeOnce(std::span<const std::string_view> keywords, Seen& seen) {
  const int found = takeKeyword(keywords);
  if (found < 0) failExpecting(keywords);
  const auto keyword = static_cast<std::size_t>(found);
  if (seen[keyword]) failAtLast(std::string(keywords[keyword]) + " stands twice");
  seen.set(keyword);
  return keyword;
}

bool Words::dropTrailingPipe(std::string_view word) {
  const auto count = words_.size();
  if (count < 2 || words_[count - 2] != "|" || words_[count - 1] != word) return false;
  words_.resize(count - 2);
  return true;
}

void Words::failExpecting(std::span<const std::string_view> alternatives) const {
  const std::string expected = "expected " + listOf(alternatives);
  if (atEnd()) fail("the command is not complete: " + expected);
  fail("\"" + std::string(peek()) + "\" is not understood: " + expected);
}

void Words::failAt(std::size_t index, const std::string& message) const {
  if (words_.empty()) throw UsageError("rova: " + message + "\n  rova --help shows the commands");
  std::string line;
  std::size_t place = 0;
  for (std::size_t i = 0; i < words_.size(); ++i) {
    if (i) line += ' ';
    if (i == index) place = line.size();
    line += words_[i];
  }
  if (index >= words_.size()) place = line.size() + 1;
  throw UsageError("rova: " + message + withCaret(line, place));
}

std::string listOf(std::span<const std::string_view> words, std::string_view lastJoin) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i) text += i + 1 == words.size() ? lastJoin : ", ";
    text += words[i];
  }
  return text;
}

} // namespace command
