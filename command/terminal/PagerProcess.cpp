#include "command/terminal/PagerProcess.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace command::terminal {

namespace {

[[noreturn]] void failSystem(int error) {
  throw std::system_error(error, std::generic_category(), "cannot be started");
}

/// The flags of a `less` that has none: colours as they are (R), long lines cut (S), the screen
/// left with what was shown (X), and an end with what fits on the screen (F).
constexpr const char* usualFlags = "FRSX";

std::vector<std::string> wordsOf(const std::string& command) {
  if (command.find_first_of("|&;<>()$`\\\"'*?[#~=%") != command.npos) {
    return {"/bin/sh", "-c", command};
  }
  std::vector<std::string> words;
  for (std::size_t at = 0; (at = command.find_first_not_of(' ', at)) != command.npos;) {
    const auto end = std::min(command.find(' ', at), command.size());
    words.push_back(command.substr(at, end - at));
    at = end;
  }
  return words;
}

/// As a program expects them: the keys of the terminal are the pager's too.
void restoreSignals() {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int number : {SIGPIPE, SIGXFSZ}) std::signal(number, SIG_DFL);
  prctl(PR_SET_PDEATHSIG, SIGTERM); // it leaves no terminal behind that only it can read
}

/// Becomes the pager; tells by `report` why it cannot.
[[noreturn]] void become(const std::vector<std::string>& words, int input, int report) {
  std::vector<char*> arguments;
  for (const auto& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  restoreSignals();
  dup2(input, STDIN_FILENO);
  setenv("LESS", usualFlags, 0);
  execvp(arguments[0], arguments.data());
  const int error = errno;
  [[maybe_unused]] const auto count = write(report, &error, sizeof error);
  _exit(127);
}

/// Its ends are closed with it, and where a program takes the place of this one.
struct Pipe {
  Pipe() {
    if (pipe2(ends, O_CLOEXEC) != 0) failSystem(errno);
  }
  ~Pipe() {
    closeEnd(0);
    closeEnd(1);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void closeEnd(int end) {
    if (ends[end] >= 0) close(ends[end]);
    ends[end] = -1;
  }
  /// The number that was written before the last writer closed it; 0 without one.
  int number() {
    closeEnd(1);
    int number = 0;
    while (read(ends[0], &number, sizeof number) < 0 && errno == EINTR) continue;
    return number;
  }

  int ends[2];
};

} // namespace

PagerProcess::PagerProcess(const std::string& command) {
  Pipe pipe, report;
  const auto words = wordsOf(command);
  process_ = fork();
  if (process_ < 0) failSystem(errno);
  if (process_ == 0) become(words, pipe.ends[0], report.ends[1]);
  if (const int error = report.number()) {
    wait();
    failSystem(error);
  }
  input_ = std::exchange(pipe.ends[1], -1);
}

PagerProcess::~PagerProcess() {
  close(input_);
  wait();
}

void PagerProcess::wait() const {
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
}

} // namespace command::terminal
