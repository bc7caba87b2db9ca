// What a display works out of a FEC at the first route on it and needs again for every other, side
// by side with the output that its routes share. The entity of a FEC with its vias takes six cache
// misses a route to ask.
#pragma once

#include "lumo/HashMap2018.h"
#include "scrivo/Stretch.h"
#include "state/FecId.h"

#include <algorithm>
#include <array>

namespace Rova {

/// The looks of one display. A look has the member `output()`, a `scrivo::Stretch`.
template <class Look>
class FecLooks {
 public:
  using FecId = Vanta::Fib::FecId;

  /// The look of a FEC, from `make()` at first. Valid until the next call.
  template <class Make>
  Look& look(FecId fecId, Make&& make) {
    if (current_.look && current_.fecId == fecId && current_.looks == looks_.size()) {
      return *current_.look;
    }
    if (Look* const known = looks_.find(fecId)) return *known;
    return looks_.insertOrAssign(fecId, make());
  }

  /// Tells that the FEC will be looked at, and, later, that it will be soon.
  [[gnu::always_inline]] void expectLater(FecId fecId) const { looks_.prefetchPlace(fecId); }
  [[gnu::always_inline]] void expectSoon(FecId fecId) const { looks_.prefetch(fecId); }
  /// Tells that it will be looked at after the one that was told before, and its output be printed.
  void expectOutput(FecId fecId) {
    current_ = next_;
    next_ = {looks_.find(fecId), fecId, looks_.size()};
    if (next_.look && next_.look->output().isKept()) next_.look->output().prefetch();
  }

 private:
  /// A look that was found ahead of its use, null if it is not made. It stays where it is as long
  /// as there are that many.
  struct Found {
    Look* look = nullptr;
    FecId fecId;
    std::size_t looks = 0;
  };

  Lumo::HashMap2018<FecId, Look> looks_;
  Found current_, next_;
};

/// Calls `print(route)`, which leaves the routes as they are, for each of them in order. It reads
/// three routes ahead, so that the way to what is known of their FECs, that itself, and then the
/// output that it leads to are on their way from memory one after the other while other routes
/// print. `expect(route)` is called at that, for what else the print looks at.
template <class Routes, class Look, class Print, class Expect>
void printLookingAhead(const Routes& routes, FecLooks<Look>& looks, Print&& print,
                       Expect&& expect) {
  constexpr std::size_t depth = 4; // a power of two: the routes in hand go round in it
  std::array<const typename Routes::ValueType*, depth> coming;
  std::size_t read = 0;
  auto at = routes.begin();
  const auto end = routes.end();
  for (std::size_t printed = 0; at != end || printed != read; ++printed) {
    for (; at != end && read - printed < depth; ++at) {
      coming[read++ % depth] = &at->second;
      looks.expectLater(at->second.fecId);
      expect(at->second);
    }
    const auto fecAhead = [&](std::size_t steps) {
      return coming[(printed + steps) % depth]->fecId;
    };
    if (printed + 2 < read) looks.expectSoon(fecAhead(2));
    if (printed + 1 < read) looks.expectOutput(fecAhead(1));
    print(*coming[printed % depth]);
  }
}

} // namespace Rova
