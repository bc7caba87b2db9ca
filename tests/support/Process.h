// What is one for the whole process, changed for the life of an object.
#pragma once

#include "lumo/ActivityLock.h"
#include "lumo/Trace.h"
#include "scrivo/Interrupt.h"

#include <string>
#include <vector>

namespace support {

/// Makes every attempt to give up the activity lock raise.
struct Unreleasable {
  Unreleasable() { Lumo::ActivityUnlockAnchor::lock().releasableIs(false); }
  ~Unreleasable() { Lumo::ActivityUnlockAnchor::lock().releasableIs(true); }
};

/// The user's wish to stop.
struct Interrupted {
  Interrupted() { scrivo::requestInterrupt(); }
  ~Interrupted() { scrivo::clearInterrupt(); }
};

/// Switches trace levels of a handle on, and collects the lines of all handles.
struct Traced {
  explicit Traced(const char* name = "", std::vector<unsigned> switched = {})
      : handle(name), levels(std::move(switched)) {
    Lumo::traceSinkIs(
        [](void* self, const Lumo::TraceLine& line) { static_cast<Traced*>(self)->add(line); },
        this);
    for (const unsigned level : levels) Lumo::traceLevelIs(handle, level, true);
  }
  ~Traced() {
    for (const unsigned level : levels) Lumo::traceLevelIs(handle, level, false);
    Lumo::traceSinkIs(nullptr, nullptr);
  }
  void add(const Lumo::TraceLine& line) {
    texts.emplace_back(line.text);
    functions.emplace_back(line.function);
    place = std::string(line.handle) + " " + std::to_string(line.level) + " " +
            std::string(line.file) + ":" + std::to_string(line.line);
  }

  const char* handle;
  std::vector<unsigned> levels;
  std::vector<std::string> texts, functions;
  std::string place; ///< of the last line: "HANDLE LEVEL FILE:LINE"
};

} // namespace support
