#include "Input.h"

#include "Escapes.h"
#include "Utf8.h"

#include <algorithm>
#include <simdjson.h>
#include <vector>

namespace sources::snapshot {

namespace json = simdjson::ondemand;

namespace {

/// Enough of a found text to know it again, in bytes.
constexpr std::size_t shownBytes = 60;

constexpr std::string_view escapesExpected = "a text with the escapes of JSON";

std::string_view trimmed(std::string_view token) {
  const auto last = token.find_last_not_of(" \t\r\n");
  return token.substr(0, last == token.npos ? 0 : last + 1);
}

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

/// What no parser gives a place for, since it finds it while it looks for the tokens.
struct TextFault {
  std::size_t offset;
  std::string_view message;
};

/// Moves `at` from the first byte of a string to the quote behind it, or to a control character in
/// it, or to the end of the text.
void skipString(std::string_view text, std::size_t& at) {
  for (; at < text.size() && text[at] != '"'; ++at) {
    if (static_cast<unsigned char>(text[at]) < 0x20) return;
    if (text[at] == '\\') ++at;
  }
  at = std::min(at, text.size());
}

/// Nothing where the fault is that a text ends early.
std::optional<TextFault> findTextFault(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t bytes = characterBytes(text.substr(at));
    if (bytes == 0 && isCutCharacter(text.substr(at))) break;
    if (bytes == 0) return TextFault{at, "found bytes that are not UTF-8, expected UTF-8"};
    at += bytes;
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '"') continue;
    skipString(text, ++at);
    if (at == text.size()) return {};
    if (text[at] == '"') continue;
    return TextFault{at, "found a control character in a text, expected an escape such as \\n"};
  }
  return TextFault{0, "found text that is not JSON, expected a snapshot"};
}

/// Something that has begun.
struct Opened {
  std::size_t offset;
  std::string_view what;
};

/// What is innermost where a text ends early; nothing when all is closed, or not in its turn.
std::optional<Opened> openAtEnd(std::string_view text) {
  std::vector<std::size_t> open;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char byte = text[at];
    if (byte == '{' || byte == '[') open.push_back(at);
    if (byte == '}' || byte == ']') {
      if (open.empty() || (text[open.back()] == '{') != (byte == '}')) return {};
      open.pop_back();
    }
    if (byte != '"') continue;
    const std::size_t start = at;
    skipString(text, ++at);
    if (at == text.size()) return Opened{start, "text"};
  }
  if (open.empty()) return {};
  return Opened{open.back(), text[open.back()] == '{' ? "object" : "array"};
}

} // namespace

struct Input::Parser {
  json::parser parser;
  json::document document;
  simdjson::error_code error = simdjson::SUCCESS; ///< why the text cannot be JSON
};

struct Node::Value {
  json::value json;
};

const std::size_t Input::padding = simdjson::SIMDJSON_PADDING;

Input::Input(std::string name, std::string_view text)
    : name_(std::move(name)), text_(text), parser_(std::make_unique<Parser>()) {
  const simdjson::padded_string_view padded(text.data(), text.size(), text.size() + padding);
  parser_->error = parser_->parser.iterate(padded).get(parser_->document);
  if (parser_->error) failText();
}

Input::~Input() = default;

template <class Result>
auto Input::checked(Result&& result) {
  if (result.error()) failJson();
  return std::forward<Result>(result).value_unsafe();
}

void Input::readRoot(Lumo::FunctionRef<void(Node& node)> read) {
  auto root = parser_->document.get_value();
  if (root.error() == simdjson::SCALAR_DOCUMENT_AS_VALUE) fail("a lone value", "an object");
  Node::Value value{checked(std::move(root))};
  Node node(*this, value);
  read(node);
  checkEnd();
}

void Input::failText() const {
  const simdjson::error_code error = parser_->error;
  if (error == simdjson::EMPTY) failAt(0, "found nothing, expected a snapshot");
  if (error == simdjson::CAPACITY) failAt(0, "found more than 4 GB of text, expected less");
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  const auto fault = findTextFault(text_);
  if (fault) failAt(fault->offset, fault->message);
  failIfCut();
  failAt(text_.size(), "found the end of the text, expected the rest of a snapshot");
}

void Input::failIfCut() const {
  const auto open = openAtEnd(text_);
  if (!open) return;
  failAt(text_.size(), "the snapshot ends early, inside the " + std::string(open->what) +
                           " that begins at " + placeOf(open->offset));
}

void Input::failJson() {
  failIfCut();
  const char* place = text_.data() + text_.size();
  if (parser_->document.current_location().get(place)) place = text_.data() + text_.size();
  failAt(
      std::min(static_cast<std::size_t>(place - text_.data()), text_.size()),
      "found broken JSON at or before this place, expected values with commas, colons, quotes and "
      "matching brackets");
}

std::string Input::placeOf(std::size_t offset) const {
  const std::string_view before = text_.substr(0, offset);
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const auto lineStart = before.rfind('\n') + 1; // npos + 1 is 0: the first line
  return "line " + std::to_string(lines + 1) + ", column " + std::to_string(offset - lineStart + 1);
}

void Input::failAt(std::size_t offset, std::string_view message) const {
  throw SourceError(name_ + ": " + placeOf(offset) + ": " + std::string(message));
}

// What is found where a text was cut off is no one's mistake.
void Input::fail(std::string_view found, std::string_view expected) const {
  failIfCut();
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

std::string_view Input::keyAt(const char* start) {
  const auto begin = static_cast<std::size_t>(start - text_.data());
  // Nearly every key ends at the first quote: one behind a backslash is part of it.
  std::size_t end = std::min(text_.find('"', begin), text_.size());
  if (text_.substr(begin, end - begin).find('\\') != text_.npos) skipString(text_, end = begin);
  const auto key = unescaped(text_.substr(begin, end - begin));
  if (!key) fail(text_.substr(begin - 1, end - begin + 2), escapesExpected);
  return *key;
}

// Behind its last value a text has no place to be at any more.
void Input::checkEnd() {
  const char* place = nullptr;
  if (parser_->document.current_location().get(place)) return;
  failAt(static_cast<std::size_t>(place - text_.data()),
         "found more text behind the snapshot, expected its end");
}

std::string_view Node::found() {
  const std::string_view token = trimmed(value_.json.raw_json_token());
  if (token.starts_with('{')) return "an object";
  if (token.starts_with('[')) return "an array";
  return token;
}

template <class Result>
auto Node::expect(Result&& result, std::string_view expected) {
  if (result.error() == simdjson::INCORRECT_TYPE) refuse(expected);
  return input_.checked(std::forward<Result>(result));
}

std::string_view Node::text() {
  const std::string_view token = found();
  if (!token.starts_with('"')) refuse("a text");
  const bool isWhole = token.size() >= 2 && token.ends_with('"');
  const auto text = input_.unescaped(token.substr(1, isWhole ? token.size() - 2 : token.npos));
  if (!isWhole || !text) refuse(escapesExpected);
  input_.checked(value_.json.get_raw_json_string());
  return *text;
}

std::uint64_t Node::number(std::uint64_t max, std::uint64_t min) {
  std::uint64_t value = 0;
  if (value_.json.get_uint64().get(value) || value < min || value > max) {
    refuse("a number from " + std::to_string(min) + " to " + std::to_string(max));
  }
  return value;
}

std::int64_t Node::integer(std::int64_t min, std::int64_t max) {
  std::int64_t value = 0;
  if (value_.json.get_int64().get(value) || value < min || value > max) {
    refuse("a number from " + std::to_string(min) + " to " + std::to_string(max));
  }
  return value;
}

bool Node::boolean() {
  bool value = false;
  if (value_.json.get_bool().get(value)) refuse("true or false");
  return value;
}

bool Node::null() { return value_.json.is_null().value_unsafe(); }

void Node::members(Lumo::FunctionRef<void(std::string_view key, Node& node)> visit) {
  auto object = expect(value_.json.get_object(), "an object");
  for (auto result : object) {
    auto field = input_.checked(std::move(result));
    const std::string_view key = input_.keyAt(field.key().raw());
    const Input::Inside inside(input_, {key});
    Value value{field.value()};
    Node node(input_, value);
    visit(key, node);
  }
}

void Node::elements(Lumo::FunctionRef<void(Node& node)> visit) {
  auto array = expect(value_.json.get_array(), "an array");
  std::size_t index = 0;
  for (auto result : array) {
    const Input::Inside inside(input_, {{}, index++});
    Value value{input_.checked(std::move(result))};
    Node node(input_, value);
    visit(node);
  }
}

void Node::peek(std::string_view key, Lumo::FunctionRef<void(Node& node)> visit) {
  auto object = expect(value_.json.get_object(), "an object");
  auto result = object.find_field_unordered(key);
  if (result.error() == simdjson::NO_SUCH_FIELD) failMissing(key);
  {
    const Input::Inside inside(input_, {key});
    Value value{input_.checked(std::move(result))};
    Node node(input_, value);
    visit(node);
  }
  input_.checked(object.reset());
}

void Node::failMissing(std::string_view key) {
  fail("no \"" + std::string(key) + "\"", "that key");
}

} // namespace sources::snapshot
