// What a stretch of a database's log asks who watches routes to look at. The log says where to
// look, never what is there: that is read from the tables.
#pragma once

#include "sources/database/ChangeLog.h"

#include "lumo/HashMap2018.h"

#include <map>
#include <vector>

namespace command {

/// When something changed: the number of its entry in the log, and the time in milliseconds since
/// 1970.
struct Stamp {
  std::int64_t seq = 0;
  std::int64_t time = 0;
};

/// What a listing of routes looks at.
struct WatchedParts {
  int family; ///< 4 or 6
  bool descriptions;
};

template <class Prefix>
class WatchedLog {
 public:
  using VrfId = Vrf::VrfIdMap::VrfId;

  struct Touched {
    Prefix prefix{};
    Stamp stamp{};         ///< of its last change
    bool wasThere = false; ///< ahead of its first one
  };
  using TouchedRoutes = Lumo::HashMap2018<Prefix, Touched>;

  explicit WatchedLog(const WatchedParts& parts) : parts_(parts) {}

  void add(const sources::database::LoggedChange& change);

  const std::map<VrfId, TouchedRoutes>& routes() const { return routes_; }
  /// FECs with other vias than before: the routes that lead there, which stand there unchanged, are
  /// not among those. Where FECs come or go, their routes are.
  const Lumo::HashMap2018<Vanta::Fib::FecId, Stamp>& fecs() const { return fecs_; }
  /// Whether something else changed that any route may show.
  bool touchesAll() const { return touchesAll_; }
  /// Whether FECs of the IPv6 table went, or became others.
  bool touchesIp6Fecs() const { return touchesIp6Fecs_; }

 private:
  void addFec(const sources::database::LoggedChange& change);
  bool isShown(std::string_view name) const;

  const WatchedParts parts_;
  std::map<VrfId, TouchedRoutes> routes_;
  Lumo::HashMap2018<Vanta::Fib::FecId, Stamp> fecs_;
  bool touchesAll_ = false, touchesIp6Fecs_ = false;
};

} // namespace command
