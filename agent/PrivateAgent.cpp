// The agent tells over a socket what it tells a service manager, and why it ended. It removes the
// folder itself, since it outlives a caller that a signal ended: the system tells it of that.
#include "agent/PrivateAgent.h"

#include "agent/Agent.h"
#include "sources/kernel/Namespace.h"
#include "sources/snapshot/FileError.h"

#include <csignal>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>

namespace agent {

namespace {

using sources::SourceError;
using sources::snapshot::Descriptor;

constexpr std::string_view failed = "FAILED=";

std::string temporaryFolder() {
  std::error_code error;
  auto path = (std::filesystem::temp_directory_path(error) / "rova-watch-XXXXXX").string();
  if (!mkdtemp(path.data())) sources::snapshot::failErrno(path, "cannot be made");
  return path;
}

void removeFolder(const std::string& folder) {
  std::error_code ignored; // nobody is left to be told
  std::filesystem::remove_all(folder, ignored);
}

/// Its log is nobody's.
void closeOutputs() {
  const Descriptor none = sources::snapshot::openFile("/dev/null", O_RDWR);
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(none.number(), fd);
}

void follow(const Options& options, const Descriptor& socket) {
  ServiceManager manager(sources::snapshot::copyOf(socket.number()));
  const sources::kernel::NamespaceStay stay(
      options.netns.empty() || isIn(options.netns) ? "" : options.netns);
  const Rights rights("");
  Agent(options, rights, manager).run();
}

[[noreturn]] void live(const Options& options, const std::string& folder, const Descriptor& socket,
                       pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const Signals signals; // from here on they wait
  closeOutputs();
  try {
    if (getppid() == parent) follow(options, socket);
  } catch (const std::exception& error) {
    const auto text = std::string(failed) + error.what();
    send(socket.number(), text.data(), text.size(), MSG_NOSIGNAL);
  }
  removeFolder(folder);
  _exit(0);
}

/// The next message, empty at the end.
std::string receive(const Descriptor& socket) {
  char text[4096];
  for (;;) {
    const auto size = recv(socket.number(), text, sizeof text, 0);
    if (size >= 0) return {text, static_cast<std::size_t>(size)};
    if (errno != EINTR) return {};
  }
}

} // namespace

PrivateAgent::PrivateAgent(const std::string& netns)
    : folder_(temporaryFolder()), state_(folder_ + "/state.db") {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
    sources::snapshot::failErrno(folder_, "no socket for its agent");
  }
  socket_ = Descriptor(ends[0]);
  Descriptor others(ends[1]);
  const pid_t parent = getpid();
  process_ = fork();
  if (process_ == 0) {
    socket_.close();
    live({.netns = netns, .state = state_, .group = {}, .once = false}, folder_, others, parent);
  }
  others.close();
  requireAlive();
}

void PrivateAgent::requireAlive() {
  const auto message = receive(socket_);
  if (message.starts_with(failed)) throw SourceError(message.substr(failed.size()));
  if (message.empty()) throw SourceError("the process that followed the kernel has ended");
}

PrivateAgent::~PrivateAgent() {
  if (process_ < 0) return;
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
}

} // namespace agent
