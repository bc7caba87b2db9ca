#include "command/shell/CommandFile.h"

#include "command/terminal/Message.h"
#include "scrivo/Shown.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace command::shell {

std::optional<std::string> CommandFile::next() {
  const auto length = getline(&line_, &room_, stdin);
  if (length < 0 && std::ferror(stdin)) {
    throw std::system_error(errno, std::generic_category(), "standard input");
  }
  if (length < 0) return {};
  ++number_;
  std::string line(line_, static_cast<std::size_t>(length));
  if (line.ends_with('\n')) line.pop_back();
  return line;
}

bool CommandFile::goesOnAfter(const std::string& line, int status) {
  terminal::tell("rova: line " + std::to_string(number_) + " failed: " + scrivo::shown(line));
  if (status_ == success) status_ = status;
  return status != interrupted;
}

} // namespace command::shell
