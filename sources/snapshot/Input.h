// Reads a JSON text in one pass, value by value, without a tree of it. Every failure names the
// file and the place, "leaf1.json: $.vrfs.default.routes[2].tag: found -1, expected a number ...".
#pragma once

#include "sources/SourceError.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <simdjson.h>
#include <string>
#include <string_view>
#include <vector>

namespace sources::snapshot {

/// One JSON text with the way to the value that is being read. Keys and texts that its nodes give
/// are valid as long as it.
class Input {
 public:
  /// The buffer of `text` must have `simdjson::SIMDJSON_PADDING` bytes of room behind it. Error
  /// messages call the text `name`. Raises `SourceError` when it cannot be JSON.
  Input(std::string name, simdjson::padded_string_view text);
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// Calls `read(node)` for the outermost object and sees to it that nothing follows.
  template <class Read>
  void readRoot(Read&& read);

  [[noreturn]] void fail(std::string_view found, std::string_view expected) const;

 private:
  friend class Node;

  /// One key or, with a null key, one index on the way.
  struct Step {
    std::string_view key;
    std::size_t index = 0;
  };
  class Inside {
   public:
    Inside(Input& input, Step step) : path_(input.path_) { path_.push_back(step); }
    ~Inside() { path_.pop_back(); }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

   private:
    std::vector<Step>& path_;
  };

  [[noreturn]] void failJson();
  [[noreturn]] void failText(simdjson::error_code error) const;
  /// Raises `SourceError` when the text ends inside a value.
  void failIfCut() const;
  std::string placeOf(std::size_t offset) const;
  [[noreturn]] void failAt(std::size_t offset, std::string_view message) const;
  std::string pathText() const;
  /// The value of a parser's result; anything but a value is broken JSON.
  template <class Result>
  auto checked(Result&& result) {
    if (result.error()) failJson();
    return std::forward<Result>(result).value_unsafe();
  }
  std::string_view keyOf(simdjson::ondemand::field& field);
  /// What stands between the quotes of a JSON string, for as long as this lives; nothing for an
  /// escape that it cannot have.
  std::optional<std::string_view> unescaped(std::string_view inside);
  void checkEnd();

  std::string name_;
  std::string_view text_;
  simdjson::ondemand::parser parser_;
  simdjson::ondemand::document document_;
  std::vector<Step> path_;
  std::deque<std::string> unescaped_; // only texts with escapes are copied
};

/// One value of the text. It is read once, in the order of the text.
class Node {
 public:
  Node(Input& input, simdjson::ondemand::value value) : input_(input), value_(value) {}

  /// Each of these raises `SourceError` when the value is of another type or outside the range.
  std::string_view text();
  std::uint64_t number(std::uint64_t max, std::uint64_t min = 0);
  std::int64_t integer(std::int64_t min, std::int64_t max);
  bool boolean();
  /// Whether the value is null; any other value can still be read.
  bool null() { return value_.is_null().value_unsafe(); }
  bool isText() { return found().starts_with('"'); }

  /// Calls `visit(key, node)` for each member of an object.
  template <class Visit>
  void members(Visit&& visit);
  /// Calls `visit(node)` for each element of an array.
  template <class Visit>
  void elements(Visit&& visit);
  /// Calls `visit(node)` for one member of an object ahead of its turn, and raises `SourceError`
  /// when there is none. All members can be read afterwards.
  template <class Visit>
  void peek(std::string_view key, Visit&& visit);

  /// Raises `SourceError` for this value.
  [[noreturn]] void refuse(std::string_view expected) { input_.fail(found(), expected); }
  [[noreturn]] void fail(std::string_view found, std::string_view expected) {
    input_.fail(found, expected);
  }

  [[noreturn]] void failMissing(std::string_view key) {
    fail("no \"" + std::string(key) + "\"", "that key");
  }

 private:
  /// The value as an error message shows it.
  std::string_view found();
  template <class Result>
  auto expect(Result&& result, std::string_view expected) {
    if (result.error() == simdjson::INCORRECT_TYPE) refuse(expected);
    return input_.checked(std::forward<Result>(result));
  }

  Input& input_;
  simdjson::ondemand::value value_;
};

template <class Read>
void Input::readRoot(Read&& read) {
  auto root = document_.get_value();
  if (root.error() == simdjson::SCALAR_DOCUMENT_AS_VALUE) fail("a lone value", "an object");
  Node node(*this, checked(std::move(root)));
  read(node);
  checkEnd();
}

template <class Visit>
void Node::members(Visit&& visit) {
  auto object = expect(value_.get_object(), "an object");
  for (auto result : object) {
    auto field = input_.checked(std::move(result));
    const std::string_view key = input_.keyOf(field);
    const Input::Inside inside(input_, {key});
    Node node(input_, field.value());
    visit(key, node);
  }
}

template <class Visit>
void Node::elements(Visit&& visit) {
  auto array = expect(value_.get_array(), "an array");
  std::size_t index = 0;
  for (auto result : array) {
    const Input::Inside inside(input_, {{}, index++});
    Node node(input_, input_.checked(std::move(result)));
    visit(node);
  }
}

template <class Visit>
void Node::peek(std::string_view key, Visit&& visit) {
  auto object = expect(value_.get_object(), "an object");
  auto result = object.find_field_unordered(key);
  if (result.error() == simdjson::NO_SUCH_FIELD) failMissing(key);
  {
    const Input::Inside inside(input_, {key});
    Node node(input_, input_.checked(std::move(result)));
    visit(node);
  }
  input_.checked(object.reset());
}

} // namespace sources::snapshot
