#include "command/shell/Child.h"

#include "command/terminal/Message.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace command::shell {

namespace {

constexpr int signalStatus = 128; // what a shell adds to the number of a signal

[[noreturn]] void failSystem(const char* call) {
  throw std::system_error(errno, std::generic_category(), call);
}

/// A descriptor that is closed with its owner.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return fd_; }
  void close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

 private:
  int fd_ = -1;
};

/// The process, which outlives neither its work nor the shell.
[[noreturn]] void live(const Work& work) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  setKeySignals(SIG_UNBLOCK);
  const int status = work();
  std::fflush(stdout);
  // Without the shell's own ends: its line editor, and its place in a file of commands.
  _exit(status);
}

/// Waits for the process, also when something is thrown.
class Child {
 public:
  /// Starts one with `output`, unless it is -1, as its standard output and `unused` closed.
  Child(const Work& work, int output, Descriptor& unused) {
    std::fflush(stdout);
    std::signal(SIGCHLD, SIG_DFL); // who started the shell may have it ignored: no status then
    process_ = fork();
    if (process_ < 0) failSystem("cannot start a process for the command");
    if (process_ > 0) return;
    unused.close();
    if (output >= 0) dup2(output, STDOUT_FILENO);
    if (output >= 0) close(output);
    live(work);
  }
  ~Child() { wait(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  int wait() {
    while (process_ > 0 && waitpid(process_, &status_, 0) < 0 && errno == EINTR) {
    }
    process_ = 0;
    return status_;
  }

 private:
  pid_t process_ = 0;
  int status_ = 0;
};

int exitStatusOf(int status) {
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  const int number = WTERMSIG(status);
  terminal::tell("rova: the command was ended by signal " + std::to_string(number) + " (" +
                 strsignal(number) + ")");
  return signalStatus + number;
}

void readAll(int fd, const TakeOutput& take) {
  std::array<char, 1 << 16> bytes;
  for (;;) {
    const auto count = read(fd, bytes.data(), bytes.size());
    if (count == 0) return;
    if (count > 0) take({bytes.data(), static_cast<std::size_t>(count)});
    if (count < 0 && errno != EINTR) failSystem("cannot read the output of the command");
  }
}

} // namespace

void setKeySignals(int how) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGINT, SIGQUIT}) sigaddset(&signals, number);
  sigprocmask(how, &signals, nullptr);
}

int runApart(const Work& work) {
  Descriptor none;
  return exitStatusOf(Child(work, -1, none).wait());
}

int runApart(const Work& work, const TakeOutput& take) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) failSystem("cannot make a pipe for the output");
  Descriptor writer(ends[1]);
  // Waits last: who still writes then has no reader any more.
  std::optional<Child> child;
  Descriptor reader(ends[0]);
  child.emplace(work, writer.get(), reader);
  writer.close();
  readAll(reader.get(), take);
  return exitStatusOf(child->wait());
}

} // namespace command::shell
