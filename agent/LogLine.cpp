#include "agent/LogLine.h"

#include "scrivo/Shown.h"

#include <algorithm>
#include <unistd.h>

namespace agent {

namespace {

bool isPlain(char c) { return c > ' ' && c < '\x7f' && c != '"' && c != '\\'; }

/// Names of files and interfaces are anybody's: what is no letter of a line does not end it.
std::string quoted(std::string_view value) {
  std::string text = "\"";
  for (const char c : scrivo::shown(value)) text += c == '"' ? '\'' : c;
  return text + '"';
}

} // namespace

LogLine::LogLine(std::string_view what) : text_("rova-agent: ") { text_ += what; }

LogLine::~LogLine() {
  text_ += '\n';
  // Nobody is left to be told when that fails.
  [[maybe_unused]] const auto written = write(STDERR_FILENO, text_.data(), text_.size());
}

LogLine& LogLine::with(std::string_view key, std::string_view value) {
  const bool plain = !value.empty() && std::all_of(value.begin(), value.end(), isPlain);
  text_ += ' ';
  text_ += key;
  text_ += '=';
  text_ += plain ? std::string(value) : quoted(value);
  return *this;
}

LogLine& LogLine::with(std::string_view key, std::int64_t value) {
  return with(key, std::to_string(value));
}

} // namespace agent
