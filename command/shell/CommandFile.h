// Commands from standard input, a line each.
#pragma once

#include "command/shell/LineSource.h"

#include <cstdlib>

namespace command::shell {

/// Tells on standard error which lines failed; the exit status is that of the first one. An
/// interrupt ends it.
class CommandFile : public LineSource {
 public:
  CommandFile() = default;
  ~CommandFile() override { std::free(line_); }
  CommandFile(const CommandFile&) = delete;
  CommandFile& operator=(const CommandFile&) = delete;

  std::optional<std::string> next() override;
  bool goesOnAfter(const std::string& line, int status) override;
  int status() const override { return status_; }

 private:
  char* line_ = nullptr; ///< what getline(3) has made
  std::size_t room_ = 0;
  std::size_t number_ = 0;
  int status_ = success;
};

} // namespace command::shell
