#include "command/grammar/UsageError.h"

#include "scrivo/Shown.h"

#include <algorithm>

namespace command {

namespace {

/// The columns that a text takes on a terminal: those of its characters, not of its bytes.
std::size_t columnsOf(std::string_view text) {
  const auto startsCharacter = [](char byte) { return (byte & 0xc0) != 0x80; };
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

} // namespace

UsageError::UsageError(const std::string& message)
    : std::runtime_error(scrivo::shown(message, scrivo::LineEnds::kept)) {}

std::string withCaret(std::string_view line, std::size_t place) {
  const auto inside = std::min(place, line.size());
  const auto column = columnsOf(scrivo::shown(line.substr(0, inside))) + (place - inside);
  return "\n  " + scrivo::shown(line) + "\n  " + std::string(column, ' ') + "^";
}

} // namespace command
