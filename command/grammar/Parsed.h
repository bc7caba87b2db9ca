// A command as it was understood, for its handler.
#pragma once

#include "command/grammar/Arguments.h"
#include "command/grammar/Line.h"
#include "command/grammar/Path.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace command::grammar {

/// The parts of the command by their names. A name that the command does not have fails an
/// assertion.
class Parsed {
 public:
  Parsed(const Grammar& grammar, Line line)
      : line_(std::move(line)), subject_(grammar, grammar.topics) {}

  const Command& command() const { return *command_; }

  bool has(std::string_view part) const { return given(part).has_value(); }
  /// The argument of a part; null without it, and where it is a value of another type.
  template <class Type>
  const Type* find(std::string_view part) const {
    const auto& found = given(part);
    return found ? std::get_if<Type>(&found->value) : nullptr;
  }
  /// The argument of a part that is a text.
  std::string text(std::string_view part, std::string_view otherwise = {}) const {
    const auto* const found = find<std::string>(part);
    return found ? *found : std::string(otherwise);
  }
  /// The commands that an argument names, or a topic.
  const Path& subject() const { return subject_; }

  /// Raises UsageError, with the caret under the last word of a part that is there; `offset` bytes
  /// behind the beginning of one that is the words up to the end.
  [[noreturn]] void fail(std::string_view part, const std::string& message,
                         std::size_t offset = 0) const;

 private:
  friend class Reader;

  struct Given {
    std::size_t at; ///< its last word, or the first of those up to the end
    Value value;
  };

  std::size_t indexOf(std::string_view part) const;
  const std::optional<Given>& given(std::string_view part) const { return parts_[indexOf(part)]; }

  Line line_;
  const Command* command_ = nullptr;
  std::vector<std::optional<Given>> parts_; ///< in the order of those of the command
  Path subject_;
};

} // namespace command::grammar
