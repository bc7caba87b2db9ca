#include "sources/database/SnapshotText.h"

#include "sources/database/SectionRows.h"
#include "sources/database/StaticRows.h"
#include "sources/database/VrfRows.h"
#include "sources/snapshot/Parts.h"

namespace sources::database {

namespace {

constexpr const char* everyRoute =
    "select json from static_route where vrf = ? and family = ? and agent = ?";
// Without statistics SQLite takes the longest key for the best one.
constexpr const char* listedRoutes =
    "select json from static_route indexed by listed_static_route where vrf = ? and family = ? and "
    "agent = ? and listed = 1";

class SnapshotText {
 public:
  SnapshotText(Connection& connection, const Needs& needs)
      : connection_(connection),
        needs_(needs),
        lists_(readLists(connection)),
        routes_(connection, needs.configured ? everyRoute : listedRoutes) {}

  std::string text() {
    out_ = "{\"rovaSnapshot\":1,\"vrfs\":{";
    const char* separator = "";
    for (const auto& vrf : readVrfs(connection_)) {
      if (!isWanted(vrf)) continue;
      out_ += std::exchange(separator, ",");
      addVrf(vrf);
    }
    out_ += '}';
    return std::move(out_) + sectionMembers(connection_, needs_) + "}";
  }

 private:
  /// Who lists the VRFs of one family does not meet tables that have no routes of it.
  bool isWanted(const VrfRow& vrf) {
    const bool listsAll = needs_.routes && needs_.vrf == "all";
    if (!vrf.plain || !listsAll || needs_.ip4 == needs_.ip6) return true;
    return hasRoutes(connection_, vrf.id, needs_.ip4 ? 4 : 6);
  }

  void addVrf(const VrfRow& vrf) {
    out_ += snapshot::quotedText(vrf.name) + ":{\"id\":" + std::to_string(vrf.id);
    addFamily(vrf.id, 4, "routingConfig", "routeInput");
    addFamily(vrf.id, 6, "routing6Config", "route6Input");
    out_ += '}';
  }

  void addFamily(std::int64_t vrf, std::int64_t family, const char* config, const char* input) {
    auto at = lists_.lower_bound({vrf, family, {}});
    const auto isOurs = [&] {
      return at != lists_.end() && at->first.vrf == vrf && at->first.family == family;
    };
    if (isOurs() && at->first.agent.empty()) {
      out_ += std::string(",\"") + config + "\":";
      addConfig(*at++);
    }
    if (!isOurs() || !needs_.configured) return;
    out_ += std::string(",\"") + input + "\":";
    char separator = '{';
    for (; isOurs(); ++at) {
      out_ += std::exchange(separator, ',') + snapshot::quotedText(at->first.agent) + ":";
      addRoutes(at->first);
    }
    out_ += '}';
  }

  void addConfig(const std::pair<const ListKey, RoutingOn>& list) {
    if (!list.second) {
      out_ += "null";
      return;
    }
    out_ += std::string("{\"routing\":") + (*list.second ? "true" : "false") + ",\"routes\":";
    addRoutes(list.first);
    out_ += '}';
  }

  void addRoutes(const ListKey& list) {
    const Run run(routes_);
    bindKey(routes_, list);
    out_ += '[';
    for (const char* separator = ""; routes_.step(); separator = ",") {
      out_ += separator;
      out_ += routes_.text("json");
    }
    out_ += ']';
  }

  Connection& connection_;
  const Needs& needs_;
  std::map<ListKey, RoutingOn> lists_;
  Statement routes_;
  std::string out_;
};

} // namespace

std::string snapshotText(Connection& connection, const Needs& needs) {
  return SnapshotText(connection, needs).text();
}

} // namespace sources::database
