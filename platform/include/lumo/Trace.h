// The trace facility: named handles with levels, off by default.
#pragma once

#include "lumo/Export.h"

#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace Lumo {

/// One line of trace as it goes to the sink.
struct TraceLine {
  std::string_view handle;
  unsigned level;
  std::string_view text;
  std::string_view file;
  int line;
  std::string_view function;
};

using TraceSink = void (*)(void* context, const TraceLine& line);

/// A named source of trace. Handles with one name share nothing; levels (0 to 31) are off at first.
class LUMO_EXPORT TraceHandle {
 public:
  explicit TraceHandle(std::string name);
  ~TraceHandle();
  TraceHandle(const TraceHandle&) = delete;
  TraceHandle& operator=(const TraceHandle&) = delete;

  const std::string& name() const { return name_; }
  /// Whether the level is traced.
  bool enabled(unsigned level) const { return ((levels_ >> level) & 1) != 0; }
  void enabledIs(unsigned level, bool on);

 private:
  std::string name_;
  std::uint32_t levels_ = 0;
};

/// Where trace lines of the process go: standard error unless a program sets a sink.
LUMO_EXPORT void traceSinkIs(TraceSink sink, void* context);

/// Switches one level of every handle of that name, those that exist and those still to come.
LUMO_EXPORT void traceLevelIs(std::string_view handleName, unsigned level, bool on);

/// Collects the text of one trace point whose level is on.
class LUMO_EXPORT TraceHelper {
 public:
  using Buffer = std::optional<TraceHelper>;

  TraceHelper(const TraceHandle& handle, unsigned level) : handle_(handle), level_(level) {}

  /// Null when the level is off, which costs one test; else a helper that lives in `buffer`.
  static TraceHelper* createIfEnabled(const TraceHandle& handle, unsigned level, Buffer& buffer) {
    if (__builtin_expect(!handle.enabled(level), 1)) return nullptr;
    return &buffer.emplace(handle, level);
  }

  /// Takes the text of the line.
  std::ostream& stream() { return text_; }
  /// Writes the line with the place that it is of.
  void trace(const char* file, int line, const char* function);

 private:
  const TraceHandle& handle_;
  unsigned level_;
  std::ostringstream text_;
};

} // namespace Lumo

/// A trace point: `text` is a chain for a stream ("a " << b), not evaluated while the level is off.
/// The test stands ahead of the buffer, which the compiler clears, all 400 bytes of it.
#define LUMO_TRACE(handle, level, source, text)                                                    \
  do {                                                                                             \
    const ::Lumo::TraceHandle& lumoTraceHandle = handle;                                           \
    if (!lumoTraceHandle.enabled(level)) break;                                                    \
    ::Lumo::TraceHelper::Buffer lumoTraceBuffer;                                                   \
    if (auto* lumoTrace =                                                                          \
            ::Lumo::TraceHelper::createIfEnabled(lumoTraceHandle, level, lumoTraceBuffer)) {       \
      lumoTrace->stream() << text;                                                                 \
      lumoTrace->trace(source, __LINE__, __func__);                                                \
    }                                                                                              \
  } while (false)
