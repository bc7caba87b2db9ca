// The database that the agent writes, and what it does when that cannot be written: it says so
// once, and tries again after a second, then after twice as long each time, up to half a minute. A
// damaged file is started anew.
#pragma once

#include "agent/Rights.h"
#include "sources/database/Lock.h"
#include "sources/database/Writer.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace agent {

using Time = std::chrono::steady_clock::time_point;

/// Times between tries: a second, then twice as long each time, up to half a minute.
class Backoff {
 public:
  Time next(Time now) {
    const auto wait = wait_;
    wait_ = std::min(2 * wait_, std::chrono::seconds(30));
    return now + wait;
  }
  void reset() { wait_ = std::chrono::seconds(1); }

 private:
  std::chrono::seconds wait_{1};
};

class Store {
 public:
  /// Takes the lock of the database at `path`; raises `SourceError` when another has it. Calls
  /// `pulse` every now and then while it writes; that raises nothing.
  Store(std::string path, const Rights& rights, sources::database::Log log,
        std::function<void()> pulse);

  /// Tells that the writer lives.
  void beat() { lock_.beat(); }

  /// Calls `write`; false when that failed, and has been told. What it would have written lacks
  /// then: the next one has to write the whole state. Raises `SourceError` for a file that never
  /// was a database of ours.
  /// Who waits for the change is woken.
  bool attempt(const std::function<void(sources::database::Writer&)>& write);
  /// When the next attempt is worth it; nothing unless the last one failed.
  const std::optional<Time>& retryAt() const { return retryAt_; }

  /// Whether the file that is written still has its name; tells when it has not, and closes it.
  bool isInPlace();
  /// Keeps the log small. To be called behind each attempt.
  void checkpoint();

 private:
  bool tryTo(const std::function<void(sources::database::Writer&)>& write);
  void open();
  void failed(const std::string& what, bool damaged);

  const std::string path_;
  const Rights rights_;
  const sources::database::Log log_;
  sources::database::WriterLock lock_;
  const std::function<void()> pulse_;
  std::optional<sources::database::Writer> writer_;
  std::uint64_t device_ = 0, file_ = 0; ///< of the file that is open
  std::optional<Time> retryAt_;
  Backoff backoff_;
  Time checkpointAt_{};
};

} // namespace agent
