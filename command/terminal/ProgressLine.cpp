#include "command/terminal/ProgressLine.h"

#include "lumo/System.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

namespace command::terminal {

namespace {

constexpr double secondsAhead = 0.5, secondsBetween = 0.1;
constexpr std::string_view lineStart = "\r", restOfLine = "\x1b[K";

std::atomic<bool> isDrawn{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait for a lock");

bool showsProgress() {
  const char* const kind = std::getenv("TERM");
  return isatty(STDERR_FILENO) && kind && std::strcmp(kind, "dumb") != 0;
}

/// 412000 as "412,000".
std::string grouped(std::uint64_t number) {
  auto digits = std::to_string(number);
  for (auto at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
  return digits;
}

std::string figure(std::uint64_t done, std::uint64_t all) {
  if (all != 0) return ": " + std::to_string(100 * done / all) + " %";
  return done != 0 ? ": " + grouped(done) : "";
}

} // namespace

ProgressLine::ProgressLine(double startTime)
    : isSeen_(showsProgress()), firstDue_(startTime + secondsAhead), due_(firstDue_) {}

ProgressLine::~ProgressLine() { removeProgressLine(); }

void ProgressLine::at(std::string_view what, std::uint64_t done, std::uint64_t all) {
  const double now = isSeen_ ? Lumo::System::currentTime() : 0;
  // What nobody counts is told of once: it could not come later.
  const bool isDue = now >= due_ || (done == 0 && now >= firstDue_);
  if (!isSeen_ || !isDue) return;
  due_ = now + secondsBetween;
  isDrawn = true;
  std::fprintf(stderr, "%s%s%s%s", lineStart.data(), std::string(what).c_str(),
               figure(done, all).c_str(), restOfLine.data());
}

void removeProgressLine() noexcept {
  if (!isDrawn.exchange(false)) return;
  constexpr std::string_view removal = "\r\x1b[K";
  [[maybe_unused]] const auto count = write(STDERR_FILENO, removal.data(), removal.size());
}

} // namespace command::terminal
