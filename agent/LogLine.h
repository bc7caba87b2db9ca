// Lines of the agent's log, on standard error: "rova-agent: WHAT key=value ...".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace agent {

/// One line, written when the object ends. Values with spaces stand in quotes; no value begins a
/// line of its own.
class LogLine {
 public:
  explicit LogLine(std::string_view what);
  ~LogLine();
  LogLine(const LogLine&) = delete;
  LogLine& operator=(const LogLine&) = delete;

  LogLine& with(std::string_view key, std::string_view value);
  LogLine& with(std::string_view key, std::int64_t value);

 private:
  std::string text_;
};

} // namespace agent
