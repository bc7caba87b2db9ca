// The size of a terminal, and how much of it a text takes.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace command::terminal {

struct Screen {
  std::size_t rows;
  std::size_t columns;
};

/// Nothing for what is no terminal, and for one that does not know its size, as where a program
/// holds its other end.
std::optional<Screen> screenOf(int fd);

/// Counts the rows that a text takes whose escapes are colours alone.
class RowCounter {
 public:
  explicit RowCounter(std::size_t columns) : columns_(columns) {}

  /// Takes more of the text, which may end anywhere.
  void add(std::string_view text);
  /// Those that are full or have ended.
  std::size_t rows() const { return rows_; }

 private:
  std::size_t columns_;
  std::size_t rows_ = 0;
  std::size_t column_ = 0;
  bool inEscape_ = false;
};

} // namespace command::terminal
