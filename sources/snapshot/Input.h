// Reads a JSON text in one pass, value by value, without a tree of it. Every failure names the
// file and the place, "leaf1.json: $.vrfs.default.routes[2].tag: found -1, expected a number ...".
#pragma once

#include "lumo/FunctionRef.h"
#include "sources/SourceError.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sources::snapshot {

class Node;

/// One JSON text with the way to the value that is being read. Keys and texts that its nodes give
/// are valid as long as it.
class Input {
 public:
  /// Bytes of room that the buffer of a text must have behind it: the parser reads ahead.
  static const std::size_t padding;

  /// Error messages call the text `name`. Raises `SourceError` when it cannot be JSON.
  Input(std::string name, std::string_view text);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// Calls `read(node)` for the outermost object and sees to it that nothing follows.
  void readRoot(Lumo::FunctionRef<void(Node& node)> read);

  [[noreturn]] void fail(std::string_view found, std::string_view expected) const;

 private:
  friend class Node;
  struct Parser; ///< the one of the JSON library, which only the source file sees

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
  [[noreturn]] void failText() const;
  /// Raises `SourceError` when the text ends inside a value.
  void failIfCut() const;
  std::string placeOf(std::size_t offset) const;
  [[noreturn]] void failAt(std::size_t offset, std::string_view message) const;
  std::string pathText() const;
  /// The value of a parser's result; anything but a value is broken JSON.
  template <class Result>
  auto checked(Result&& result);
  /// The key whose text begins there.
  std::string_view keyAt(const char* start);
  /// What stands between the quotes of a JSON string, for as long as this lives; nothing for an
  /// escape that it cannot have.
  std::optional<std::string_view> unescaped(std::string_view inside);
  void checkEnd();

  std::string name_;
  std::string_view text_;
  std::unique_ptr<Parser> parser_;
  std::vector<Step> path_;
  std::deque<std::string> unescaped_; // only texts with escapes are copied
};

/// One value of the text. It is read once, in the order of the text.
class Node {
 public:
  struct Value; ///< as the parser gives it

  Node(Input& input, Value& value) : input_(input), value_(value) {}

  /// Each of these raises `SourceError` when the value is of another type or outside the range.
  std::string_view text();
  std::uint64_t number(std::uint64_t max, std::uint64_t min = 0);
  std::int64_t integer(std::int64_t min, std::int64_t max);
  bool boolean();
  /// Whether the value is null; any other value can still be read.
  bool null();
  bool isText() { return found().starts_with('"'); }

  /// Calls `visit` for each member of an object.
  void members(Lumo::FunctionRef<void(std::string_view key, Node& node)> visit);
  /// Calls `visit` for each element of an array.
  void elements(Lumo::FunctionRef<void(Node& node)> visit);
  /// Calls `visit` for one member of an object ahead of its turn, and raises `SourceError` when
  /// there is none. All members can be read afterwards.
  void peek(std::string_view key, Lumo::FunctionRef<void(Node& node)> visit);

  /// Raises `SourceError` for this value.
  [[noreturn]] void refuse(std::string_view expected) { input_.fail(found(), expected); }
  [[noreturn]] void fail(std::string_view found, std::string_view expected) {
    input_.fail(found, expected);
  }
  [[noreturn]] void failMissing(std::string_view key);

 private:
  /// The value as an error message shows it.
  std::string_view found();
  template <class Result>
  auto expect(Result&& result, std::string_view expected);

  Input& input_;
  Value& value_;
};

} // namespace sources::snapshot
