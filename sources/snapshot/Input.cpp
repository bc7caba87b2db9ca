// The text is private memory that nobody changes meanwhile, with zero bytes behind it: the cursor
// stops there, since a NUL is part of no token.
#include "Input.h"

#include "Escapes.h"
#include "Fault.h"
#include "Utf8.h"

#include <algorithm>
#include <charconv>

namespace sources::snapshot {

namespace {

/// Enough of a found text to know it again, in bytes.
constexpr std::size_t shownBytes = 60;

constexpr std::string_view escapesExpected = "a text with the escapes of JSON";

std::string shortened(std::string_view text) {
  if (text.size() <= shownBytes) return std::string(text);
  std::size_t end = 0;
  while (end < shownBytes) end += std::max<std::size_t>(characterBytes(text.substr(end)), 1);
  return std::string(text.substr(0, end)) + "...";
}

bool isWord(std::string_view key) {
  return !key.empty() && std::all_of(key.begin(), key.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
}

std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t bytes = characterBytes(text);
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

/// The number that stands there: JSON has no leading zeros. The end is null when there is none.
template <class Number>
const char* parseNumber(const char* begin, const char* end, Number& value) {
  const auto [stop, error] = std::from_chars(begin, end, value);
  const char* const digits = begin + (*begin == '-');
  const bool isCanonical = *digits != '0' || stop == digits + 1;
  const bool isWhole = stop == end || isBlank(*stop) || isMark(*stop);
  return error == std::errc() && isCanonical && isWhole ? stop : nullptr;
}

} // namespace

void Input::readRoot(Lumo::FunctionRef<void(Node& node)> read) {
  if (next() == end()) failAt(0, "found nothing, expected a snapshot");
  if (*at_ != '{' && *at_ != '[') fail("a lone value", "an object");
  Node node(*this);
  read(node);
  if (next() == end()) return;
  failIfFaulty();
  failAt(static_cast<std::size_t>(at_ - text_.data()),
         "found more text behind the snapshot, expected its end");
}

std::optional<std::string_view> Input::takeText() {
  const char* const begin = at_ + 1;
  const char* last = skipPlain(begin);
  const bool isPlain = *last == '"';
  if (!isPlain) last = skipString(last, end());
  const auto inside = between(begin, last);
  if (*last != '"' || (!isPlain && !isUtf8(inside))) failJson();
  at_ = last + 1;
  return isPlain ? inside : unescaped(inside);
}

std::string_view Input::takeKey() {
  if (*next() != '"') failJson();
  const char* const start = at_;
  const auto key = takeText();
  if (!key) fail(between(start, at_), escapesExpected);
  return *key;
}

// What is found where a text was cut off is no one's mistake.
void Input::failIfFaulty() const {
  if (const auto fault = findFault(text_)) failAt(fault->offset, fault->message);
}

void Input::tell() {
  constexpr std::ptrdiff_t step = 256 * 1024;
  tellAt_ = end() - at_ > step ? at_ + step : end();
  const auto done = static_cast<std::uint64_t>(at_ - text_.data());
  if (progress_) progress_->at("reading the snapshot", done, text_.size());
}

void Input::failJson() const {
  failIfFaulty();
  failAt(
      static_cast<std::size_t>(at_ - text_.data()),
      "found broken JSON at or before this place, expected values with commas, colons, quotes and "
      "matching brackets");
}

void Input::failAt(std::size_t offset, std::string_view message) const {
  throw SourceError(name_ + ": " + lineAndColumn(text_, offset) + ": " + std::string(message));
}

void Input::fail(std::string_view found, std::string_view expected) const {
  failIfFaulty();
  throw SourceError(name_ + ": " + pathText() + ": found " + shortened(found) + ", expected " +
                    std::string(expected));
}

std::string Input::pathText() const {
  std::string text = "$";
  for (const Step& step : path_) {
    if (!step.key.data()) {
      text += "[" + std::to_string(step.index) + "]";
    } else if (isWord(step.key)) {
      text += "." + shortened(step.key);
    } else {
      text += "[";
      appendQuoted(text, shortened(step.key));
      text += "]";
    }
  }
  return text;
}

std::optional<std::string_view> Input::unescaped(std::string_view inside) {
  if (inside.find('\\') == inside.npos) return inside;
  std::string& text = unescaped_.emplace_back();
  return appendUnescaped(text, inside) ? std::optional<std::string_view>(text) : std::nullopt;
}

// Only whole strings and matching brackets count here: what is inside is read in its turn.
void Input::skipValue() {
  std::size_t depth = 0;
  do {
    const char* const start = next();
    if (start == end()) failJson();
    if (*start == '"') {
      takeText();
      continue;
    }
    if (*start == '{' || *start == '[') ++depth;
    if (*start == '}' || *start == ']') --depth;
    at_ = skipScalar(start, end());
  } while (depth > 0);
}

bool Input::passMembers(std::string_view key) {
  if (take('}')) return false;
  do {
    const bool isIt = takeKey() == key;
    require(':');
    if (isIt) return true;
    skipValue();
  } while (take(','));
  require('}');
  return false;
}

std::string_view Node::found() const {
  if (*start_ == '{') return "an object";
  if (*start_ == '[') return "an array";
  const char* const end = input_.end();
  if (!isText()) return between(start_, skipScalar(start_, end));
  return between(start_, std::min(skipString(start_ + 1, end) + 1, end));
}

std::string_view Node::text() {
  if (!isText()) refuse("a text");
  const auto text = input_.takeText();
  if (!text) refuse(escapesExpected);
  return *text;
}

template <class Number>
Number Node::numberWithin(Number min, Number max) {
  Number value = 0;
  const char* const stop = parseNumber(start_, input_.end(), value);
  if (!stop || value < min || value > max) {
    refuse("a number from " + std::to_string(min) + " to " + std::to_string(max));
  }
  input_.at_ = stop;
  return value;
}

std::uint64_t Node::number(std::uint64_t max, std::uint64_t min) { return numberWithin(min, max); }

std::int64_t Node::integer(std::int64_t min, std::int64_t max) { return numberWithin(min, max); }

bool Node::takeWord(std::string_view word) {
  const char* const stop = skipScalar(start_, input_.end());
  if (between(start_, stop) != word) return false;
  input_.at_ = stop;
  return true;
}

bool Node::boolean() {
  const bool isTrue = takeWord("true");
  if (!isTrue && !takeWord("false")) refuse("true or false");
  return isTrue;
}

template <class Visit>
void Node::visitNext(Input::Step step, Visit&& visit) {
  const Input::Inside inside(input_, step);
  Node node(input_);
  visit(node);
  if (input_.at_ == node.start_) input_.skipValue();
}

void Node::members(Lumo::FunctionRef<void(std::string_view key, Node& node)> visit) {
  if (*start_ != '{') refuse("an object");
  input_.at_ = start_ + 1;
  if (input_.take('}')) return;
  do {
    if (input_.at_ >= input_.tellAt_) input_.tell();
    const std::string_view key = input_.takeKey();
    input_.require(':');
    visitNext({key}, [&](Node& node) { visit(key, node); });
  } while (input_.take(','));
  input_.require('}');
}

void Node::elements(Lumo::FunctionRef<void(Node& node)> visit) {
  if (*start_ != '[') refuse("an array");
  input_.at_ = start_ + 1;
  if (input_.take(']')) return;
  std::size_t index = 0;
  do {
    visitNext({{}, index++}, visit);
  } while (input_.take(','));
  input_.require(']');
}

void Node::peek(std::string_view key, Lumo::FunctionRef<void(Node& node)> visit) {
  if (*start_ != '{') refuse("an object");
  input_.at_ = start_ + 1;
  if (!input_.passMembers(key)) failMissing(key);
  visitNext({key}, visit);
  input_.at_ = start_;
}

void Node::failMissing(std::string_view key) const {
  fail("no \"" + std::string(key) + "\"", "that key");
}

} // namespace sources::snapshot
