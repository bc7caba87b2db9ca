#include "command/terminal/Screen.h"

#include <sys/ioctl.h>

namespace command::terminal {

namespace {

constexpr char escape = '\x1b';

/// Every byte of a character in UTF-8 but its first.
bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

} // namespace

std::optional<Screen> screenOf(int fd) {
  winsize size{};
  if (ioctl(fd, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) return {};
  return Screen{size.ws_row, size.ws_col};
}

void RowCounter::add(std::string_view text) {
  for (const char byte : text) {
    if (byte == '\n') {
      ++rows_;
      column_ = 0;
    } else if (inEscape_ || byte == escape) {
      inEscape_ = byte != 'm';
    } else if (!continuesCharacter(byte) && ++column_ > columns_) {
      ++rows_;
      column_ = 1;
    }
  }
}

} // namespace command::terminal
