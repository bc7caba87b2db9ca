#include "command/terminal/Pager.h"

#include "command/terminal/Message.h"
#include "scrivo/Exception.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace command::terminal {

namespace {

std::string pagerCommand() {
  for (const char* const variable : {"ROVA_PAGER", "PAGER"}) {
    if (const char* const value = std::getenv(variable)) return value;
  }
  return "less -FRSX";
}

bool isDumb() {
  const char* const kind = std::getenv("TERM");
  return kind && kind == std::string_view("dumb");
}

void writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(fd, bytes.data(), bytes.size());
    if (count >= 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    if (count < 0 && errno == EPIPE) throw scrivo::sigintException("the pager was left");
    if (count < 0 && errno != EINTR) throw scrivo::WriteException(errno);
  }
}

} // namespace

std::optional<Paging> pagingHere() {
  const auto screen = screenOf(STDOUT_FILENO);
  auto command = pagerCommand();
  const bool isNone = command.find_first_not_of(' ') == command.npos || command == "cat";
  if (!screen || isNone || isDumb()) return {};
  return Paging{*screen, std::move(command)};
}

void Pager::take(std::string_view output) {
  if (!holds_) return writeAll(process_ ? process_->input() : STDOUT_FILENO, output);
  held_ += output;
  rows_.add(output);
  if (rows_.rows() < paging_.screen.rows) return; // one is for the prompt behind it
  start();
  release();
}

void Pager::start() {
  try {
    process_.emplace(paging_.command);
  } catch (const std::system_error& error) {
    tell("rova: the pager \"" + paging_.command + "\" " + error.what() +
         "; ROVA_PAGER names another one, or none when it is empty");
  }
}

void Pager::release() {
  holds_ = false;
  take(std::exchange(held_, {}));
}

void Pager::end() {
  if (holds_) release();
  process_.reset();
}

} // namespace command::terminal
