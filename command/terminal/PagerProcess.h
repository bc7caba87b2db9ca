// A pager that runs.
#pragma once

#include <string>
#include <sys/types.h>

namespace command::terminal {

class PagerProcess {
 public:
  /// Starts the command, a program with arguments, or for a shell where only that understands it.
  /// Raises std::system_error where that cannot be done.
  explicit PagerProcess(const std::string& command);
  /// Ends its input, and returns when the user has left it.
  ~PagerProcess();
  PagerProcess(const PagerProcess&) = delete;
  PagerProcess& operator=(const PagerProcess&) = delete;

  /// What it shows is written there.
  int input() const { return input_; }

 private:
  void wait() const;

  int input_ = -1;
  pid_t process_ = 0;
};

} // namespace command::terminal
