#include "SnapshotText.h"

namespace bench {

namespace {

/// A member of an object on a line of its own; the comma comes ahead of all but the first.
class Members {
 public:
  explicit Members(std::ostream& out) : out_(out) {}
  std::ostream& next() {
    out_ << (first_ ? "\n" : ",\n");
    first_ = false;
    return out_;
  }

 private:
  std::ostream& out_;
  bool first_ = true;
};

std::ostream& operator<<(std::ostream& out, Vanta::Fib::FecId id) {
  constexpr std::uint64_t numberBits = (std::uint64_t{1} << Vanta::Fib::adjTypePos()) - 1;
  return out << '"' << id.rawAdjType() << '.' << (id.value() & numberBits) << '"';
}

template <class Map, class Write>
void writeTable(std::ostream& out, const char* name, const Map& map, Write write) {
  out << '"' << name << "\":{";
  Members members(out);
  for (typename Map::IteratorConst it(map); it; it.next()) write(members.next(), it.value());
  out << '}';
}

template <class Route>
void writeRoute(std::ostream& out, const Route& route) {
  out << '"' << route.key.stringValue() << "\":{\"type\":\""
      << state::routeTypeName(route.routeType) << "\",\"fec\":" << route.fecId
      << ",\"metric\":" << route.metric << ",\"preference\":" << unsigned{route.preference()}
      << '}';
}

template <class Fec>
void writeFec(std::ostream& out, const Fec& fec) {
  out << fec.key << ":{\"vias\":[";
  for (std::uint32_t i = 0; i < fec.viaCount; ++i) {
    const auto& via = fec.via(Vanta::Fib::ViaIndex(i));
    out << (i ? "," : "") << "{\"hop\":\"" << via.hop.stringValue() << "\",\"interface\":\""
        << via.intfId.stringValue() << "\",\"weight\":" << via.weight << '}';
  }
  out << "]}";
}

} // namespace

void writeSnapshot(const state::DeviceState& device, std::ostream& out) {
  const state::VrfState& vrf = device.vrfs.front();
  const auto route = [](std::ostream& to, const auto& record) { writeRoute(to, record); };
  const auto fec = [](std::ostream& to, const auto& record) { writeFec(to, record); };
  out << "{\"rovaSnapshot\":1,\n\"vrfs\":{\"" << L3::defaultVrfName << "\":{\"id\":0,\n";
  writeTable(out, "routingStatus", vrf.routingStatus->route, route);
  writeTable(out << ",\n", "routing6Status", vrf.routing6Status->route, route);
  writeTable(out << "}},\n", "forwardingStatus", device.forwardingStatus->fec, fec);
  writeTable(out << ",\n", "forwarding6Status", device.forwarding6Status->fec, fec);
  out << "}\n";
}

} // namespace bench
