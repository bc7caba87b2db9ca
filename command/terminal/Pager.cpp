#include "command/terminal/Pager.h"

#include "command/terminal/Message.h"
#include "scrivo/Exception.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace command::terminal {

namespace {

/// Colours as they are (R), long lines cut (S), the screen left with what was shown (X), and an end
/// with what fits on the screen (F).
constexpr const char* usualPager = "less -FRSX";
constexpr const char* usualFlags = "FRSX";

std::string pagerCommand() {
  for (const char* const name : {"ROVA_PAGER", "PAGER"}) {
    if (const char* const value = std::getenv(name)) return value;
  }
  return usualPager;
}

bool isDumb() {
  const char* const kind = std::getenv("TERM");
  return kind && std::strcmp(kind, "dumb") == 0;
}

void writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(fd, bytes.data(), bytes.size());
    if (count >= 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    if (count < 0 && errno == EPIPE) throw scrivo::sigintException("the pager was left");
    if (count < 0 && errno != EINTR) throw scrivo::WriteException(errno);
  }
}

/// What only a shell understands is its; all else is a program with arguments.
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

/// Signals as a program expects them: the keys of the terminal are the pager's too.
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
  setenv("LESS", usualFlags, 0); // so that PAGER=less shows colours
  execvp(arguments[0], arguments.data());
  const int error = errno;
  [[maybe_unused]] const auto count = ::write(report, &error, sizeof error);
  _exit(127);
}

struct Pipe {
  Pipe() {
    if (pipe2(ends, O_CLOEXEC) != 0) throw scrivo::WriteException(errno);
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
  /// The number that was written before the other end was closed; 0 without one.
  int number() {
    closeEnd(1);
    int number = 0;
    while (read(ends[0], &number, sizeof number) < 0 && errno == EINTR) continue;
    return number;
  }

  int ends[2];
};

} // namespace

std::optional<Paging> pagingHere() {
  const auto screen = screenOf(STDOUT_FILENO);
  auto command = pagerCommand();
  const bool isNone = command.find_first_not_of(' ') == command.npos || command == "cat";
  if (!screen || isNone || isDumb()) return {};
  return Paging{*screen, std::move(command)};
}

void Pager::start() {
  holds_ = false;
  Pipe pipe, report;
  const auto words = wordsOf(paging_.command);
  process_ = fork();
  if (process_ == 0) become(words, pipe.ends[0], report.ends[1]);
  const int error = process_ < 0 ? errno : report.number();
  if (error != 0) {
    tell("rova: the pager \"" + paging_.command + "\" cannot be started: " + std::strerror(error) +
         "; ROVA_PAGER names another one, or none when it is empty");
    return wait();
  }
  input_ = std::exchange(pipe.ends[1], -1);
}

void Pager::take(std::string_view output) {
  if (!holds_) return writeAll(input_ < 0 ? STDOUT_FILENO : input_, output);
  held_ += output;
  rows_.add(output);
  if (rows_.rows() < paging_.screen.rows) return; // one is for the prompt behind it
  start();
  take(std::exchange(held_, {}));
}

void Pager::end() {
  if (std::exchange(holds_, false)) take(std::exchange(held_, {}));
  wait();
}

void Pager::wait() {
  if (input_ >= 0) close(std::exchange(input_, -1));
  while (process_ > 0 && waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
  process_ = 0;
}

} // namespace command::terminal
