// What is longer than the screen goes through a pager; all else is shown as it is. So output is
// held back until it is longer than the screen, whatever the pager could do about it itself.
#pragma once

#include "command/terminal/PagerProcess.h"
#include "command/terminal/Screen.h"

#include <optional>
#include <string>

namespace command::terminal {

/// A pager, and the screen that output has to be longer than.
struct Paging {
  Screen screen;
  std::string command; ///< with its arguments
};

/// How output on standard output is paged. Nothing where it is no terminal, or a "dumb" one, and
/// where ROVA_PAGER, or without it PAGER, is empty or `cat`.
std::optional<Paging> pagingHere();

/// One output on its way to standard output, which is a terminal.
class Pager {
 public:
  explicit Pager(const Paging& paging) : paging_(paging), rows_(paging.screen.columns) {}

  /// Takes more of the output. Raises scrivo::sigintException once the user has left the pager, and
  /// scrivo::WriteException.
  void take(std::string_view output);
  /// Takes the end of the output; returns when the user has left the pager. Raises the same.
  void end();

 private:
  void start();
  void release();

  Paging paging_;
  RowCounter rows_;
  bool holds_ = true;
  std::string held_;
  std::optional<PagerProcess> process_; ///< none while output is held, and where it cannot be had
};

} // namespace command::terminal
