// What a source gives: a device's state, and what is to be known of it.
#pragma once

#include "state/DeviceState.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sources {

/// The parts of a state that are wanted. A source may leave out the others, which it need not read
/// then; a display of what is wanted is the same as from everything.
struct Needs {
  bool ip4 = true;           ///< addresses, neighbours and routes of IPv4
  bool ip6 = true;           ///< those of IPv6
  bool routes = true;        ///< route tables
  bool configured = true;    ///< with them, the configured static routes, and those of agents
  bool neighbours = true;    ///< ARP entries and IPv6 neighbours
  bool nexthopGroups = true; ///< with their counters
  bool addressConfig = true; ///< configured addresses and route distinguishers
  bool descriptions = true;  ///< of interfaces
  std::string vrf = "all";   ///< the VRF whose routes are wanted, or "all"
};

/// What a reader of the state should know of it.
struct Notes {
  /// The tables that went on changing while they were read ("IPv6 routes"): what is there of them
  /// may lack or outdate some entries.
  std::vector<std::string> moved;
  /// Routes that a table by prefix has no place for: they lose against another of their prefix.
  std::uint64_t hiddenRoutes = 0;

  /// Who kept the state current and does no more; nothing while all is well.
  struct Silence {
    const char* agent;     ///< "gone", or "silent" for one that still runs
    std::string currentAt; ///< until when the state was kept current (RFC 3339)
    std::int64_t age;      ///< how long that is ago, in seconds
  };
  std::optional<Silence> silence = {};

  bool empty() const { return moved.empty() && hiddenRoutes == 0 && !silence; }
};

/// The time that a state is of, where others change it meanwhile.
class Moment {
 public:
  virtual ~Moment() = default;
  /// From now on all that is read is of this time; a source may end that when it takes long.
  virtual void hold() = 0;
  /// From now on each read gives what is there by then.
  virtual void release() noexcept = 0;
};

struct State {
  state::DeviceState device;
  Notes notes;
  std::shared_ptr<Moment> moment = {}; ///< held at first; null for a state that nobody changes

  void hold() const {
    if (moment) moment->hold();
  }
  /// To be called before the reader waits for anything, such as who takes its output.
  void release() const {
    if (moment) moment->release();
  }
};

} // namespace sources
