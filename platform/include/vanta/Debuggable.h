// Debug streams of the shared tables: numbered levels that are on or off, and a place for their
// lines.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace Tembra {

/// A named set of enabled debug levels (0 to 63) with the sink for their lines. All levels are off
/// at first, and without a sink lines go to standard error.
class Debuggable {
 public:
  using Sink = std::function<void(std::string_view line)>;

  explicit Debuggable(std::string name = {}) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  /// Whether lines of the level are wanted.
  bool enabled(unsigned level) const { return level < 64 && ((levels_ >> level) & 1) != 0; }
  void enabledIs(unsigned level, bool on);
  /// Where lines go in place of standard error.
  void sinkIs(Sink sink) { sink_ = std::move(sink); }

  /// Writes one line, whatever its level: the caller has asked `enabled` before it built the text.
  void write(std::string_view line) const;

 private:
  std::string name_;
  std::uint64_t levels_ = 0;
  Sink sink_;
};

} // namespace Tembra
