// Reads a JSON text in one pass, value by value, without a tree of it. Every failure names the
// file and the place, "leaf1.json: $.vrfs.default.routes[2].tag: found -1, expected a number ...".
#pragma once

#include "Scan.h"

#include "lumo/FunctionRef.h"
#include "sources/Progress.h"
#include "sources/SourceError.h"

#include <cstdint>
#include <deque>
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
  /// Zero bytes that the buffer of a text must have behind it.
  static constexpr std::size_t padding = scanPadding;

  /// Error messages call the text `name`. `progress`, if any, hears how much of it is read.
  Input(std::string name, std::string_view text, Progress* progress = nullptr)
      : name_(std::move(name)),
        text_(text),
        at_(text.data()),
        progress_(progress),
        tellAt_(progress ? at_ : end()) {}
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// Calls `read(node)` for the outermost object and sees to it that nothing follows. Raises
  /// `SourceError`, as do all functions of nodes, for what is wrong with the text as a whole
  /// before all else.
  void readRoot(Lumo::FunctionRef<void(Node& node)> read);

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

  const char* end() const { return text_.data() + text_.size(); }
  /// Goes on to the next token.
  const char* next() { return at_ = skipBlanks(at_); }
  /// Goes behind the next token where it is that mark.
  bool take(char mark) {
    const bool isIt = *next() == mark;
    at_ += isIt;
    return isIt;
  }
  void require(char mark) {
    if (!take(mark)) failJson();
  }
  /// Goes behind the string that begins here and gives what it stands for; nothing for an escape
  /// that it cannot have.
  std::optional<std::string_view> takeText();
  std::string_view takeKey();
  void skipValue();
  /// Goes from behind the bracket of an object to the value of that member; false where there is
  /// none.
  bool passMembers(std::string_view key);

  /// Tells of the progress, once in a while.
  void tell();

  [[noreturn]] void failJson() const;
  [[noreturn]] void failAt(std::size_t offset, std::string_view message) const;
  void failIfFaulty() const;
  std::string pathText() const;
  /// What a string stands for, for as long as this lives; nothing for an escape that it cannot
  /// have.
  std::optional<std::string_view> unescaped(std::string_view inside);

  std::string name_;
  std::string_view text_;
  const char* at_; // the cursor
  Progress* progress_;
  const char* tellAt_; ///< where that is told next; the end where nobody listens
  std::vector<Step> path_;
  std::deque<std::string> unescaped_; // only texts with escapes are copied
};

/// One value of the text. It is read once, in the order of the text.
class Node {
 public:
  /// The value that comes next.
  explicit Node(Input& input) : input_(input), start_(input.next()) {}

  /// Each of these raises `SourceError` when the value is of another type or outside the range.
  std::string_view text();
  std::uint64_t number(std::uint64_t max, std::uint64_t min = 0);
  std::int64_t integer(std::int64_t min, std::int64_t max);
  bool boolean();
  /// Whether the value is null; any other value can still be read.
  bool null() { return takeWord("null"); }
  bool isText() const { return *start_ == '"'; }

  /// Calls `visit` for each member of an object.
  void members(Lumo::FunctionRef<void(std::string_view key, Node& node)> visit);
  /// Calls `visit` for each element of an array.
  void elements(Lumo::FunctionRef<void(Node& node)> visit);
  /// Calls `visit` for one member of an object ahead of its turn, and raises `SourceError` when
  /// there is none. All members can be read afterwards.
  void peek(std::string_view key, Lumo::FunctionRef<void(Node& node)> visit);

  /// Raises `SourceError` for this value.
  [[noreturn]] void refuse(std::string_view expected) const { input_.fail(found(), expected); }
  [[noreturn]] void fail(std::string_view found, std::string_view expected) const {
    input_.fail(found, expected);
  }
  [[noreturn]] void failMissing(std::string_view key) const;

 private:
  /// The value as an error message shows it.
  std::string_view found() const;
  /// Reads the value if it is that word.
  bool takeWord(std::string_view word);
  template <class Number>
  Number numberWithin(Number min, Number max);
  /// Calls `visit` for the value that comes next, and sees to it that it is read.
  template <class Visit>
  void visitNext(Input::Step step, Visit&& visit);

  Input& input_;
  const char* start_;
};

} // namespace sources::snapshot
