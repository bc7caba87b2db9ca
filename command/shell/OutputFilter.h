// The lines of a command's output that the filters of the shell let through.
#pragma once

#include "command/shell/Pipeline.h"
#include "scrivo/Printer.h"

#include <cstdint>

namespace command::shell {

/// Keeps one line at a time. What it does not hold back it writes to standard output as it comes;
/// raises what a printer raises.
class OutputFilter {
 public:
  explicit OutputFilter(const std::vector<GivenFilter>& filters);

  /// Takes more of the output, which may end inside a line.
  void take(std::string_view output);
  /// Takes the end of the output.
  void end();

 private:
  struct Stage {
    GivenFilter filter;
    std::uint64_t count = 0;
  };

  bool holdsBack(Stage& stage, std::string_view line);
  void pass(std::string_view line, std::size_t first);

  std::vector<Stage> stages_;
  std::string line_; ///< the beginning of one
  scrivo::Printer printer_;
};

} // namespace command::shell
