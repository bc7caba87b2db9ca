// A slot belongs to whoever moved it out of the state `unused` or `named`, so that a handler never
// reads a name that a thread is writing.
#include "sources/Unfinished.h"

#include <atomic>
#include <climits>
#include <cstring>
#include <unistd.h>

namespace sources {

namespace {

enum class Use : unsigned char { unused, taken, named };

struct Slot {
  std::atomic<Use> use{Use::unused};
  char path[PATH_MAX] = {};

  bool move(Use from, Use to) noexcept { return use.compare_exchange_strong(from, to); }
};

constexpr std::size_t slotCount = 8;
static_assert(std::atomic<Use>::is_always_lock_free, "a signal handler may not wait for a lock");

constinit Slot slots[slotCount];

/// `slotCount` when none is free.
std::size_t takeSlot() noexcept {
  std::size_t slot = 0;
  while (slot < slotCount && !slots[slot].move(Use::unused, Use::taken)) ++slot;
  return slot;
}

} // namespace

Unfinished::Unfinished(const std::string& path) noexcept
    : slot_(path.size() < PATH_MAX ? takeSlot() : slotCount) {
  if (slot_ == slotCount) return;
  std::memcpy(slots[slot_].path, path.c_str(), path.size() + 1);
  slots[slot_].use = Use::named;
}

// A slot that a handler has taken stays with it.
Unfinished::~Unfinished() {
  if (slot_ < slotCount) slots[slot_].move(Use::named, Use::unused);
}

void removeUnfinished() noexcept {
  for (Slot& slot : slots) {
    if (slot.move(Use::named, Use::taken)) unlink(slot.path);
  }
}

} // namespace sources
