// What a watcher has told of the routes of one VRF: a number for each route, made from its entry in
// the listing, so that a million of them need no copy of the listing.
#pragma once

#include "lumo/HashMap2018.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace command {

/// What becomes of a route in a listing.
enum class Op { added, removed, changed };

template <class Prefix>
class ToldRoutes {
 public:
  /// Enters how a route shows by now, empty for not at all; nothing when it shows as before.
  std::optional<Op> bringIn(const Prefix& prefix, std::string_view entry) {
    if (entry.empty()) {
      return marks_.erase(prefix) ? std::optional(Op::removed) : std::nullopt;
    }
    const std::uint64_t now = markOf(entry);
    std::uint64_t* const before = marks_.find(prefix);
    if (!before) return marks_.insertOrAssign(prefix, now), Op::added;
    return std::exchange(*before, now) == now ? std::nullopt : std::optional(Op::changed);
  }

  /// From here on the route counts as one that was shown in a way that nobody knows, or was not.
  void assume(const Prefix& prefix, bool wasShown) {
    if (wasShown) {
      marks_.insertOrAssign(prefix, unknown);
    } else {
      marks_.erase(prefix);
    }
  }

  /// The routes that are here and not there, in the listing's order.
  std::vector<Prefix> missingIn(const ToldRoutes& other) const {
    std::vector<Prefix> missing;
    marks_.forEach([&](const Prefix& prefix, std::uint64_t) {
      if (!other.marks_.find(prefix)) missing.push_back(prefix);
    });
    std::sort(missing.begin(), missing.end());
    return missing;
  }

 private:
  static constexpr std::uint64_t unknown = 0;

  static std::uint64_t markOf(std::string_view entry) {
    const std::uint64_t mark = std::hash<std::string_view>{}(entry);
    return mark == unknown ? 1 : mark;
  }

  Lumo::HashMap2018<Prefix, std::uint64_t> marks_;
};

} // namespace command
