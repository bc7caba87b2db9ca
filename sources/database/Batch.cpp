#include "sources/database/Batch.h"

#include "sources/database/HiddenRows.h"

namespace sources::database {

namespace {

std::int64_t familyOf(const Routing::RouteKey& key) {
  return key.prefix.af() == Kesh::AddressFamily::ip4 ? 4 : 6;
}

} // namespace

Batch::Batch(Writer& writer)
    : connection_(writer.connection()),
      transaction_(connection_),
      now_(timeNow()),
      log_(connection_),
      fecs_(connection_, FecRows<Vanta::Fib::Fec>("fec4"), now_, log_),
      fecs6_(connection_, FecRows<Vanta::Fib6::Fec>("fec6"), now_, log_),
      neighbours_(connection_, NeighbourRows("neighbour4"), now_, log_),
      neighbours6_(connection_, NeighbourRows("neighbour6"), now_, log_),
      static_(connection_, log_),
      name_(connection_, "insert or ignore into interface values (?, ?)") {}

void Batch::removeFec(Vanta::Fib::FecId id) {
  Vanta::Fib::isV6FecId(id) ? fecs6_.remove(id) : fecs_.remove(id);
}

void Batch::configure(VrfId vrf, const Routing::Route& route) {
  static_.enter(vrf.value(), familyOf(route.key), route);
}

void Batch::unconfigure(VrfId vrf, const Routing::RouteKey& key) {
  static_.remove(vrf.value(), familyOf(key), key);
}

void Batch::hide(VrfId vrf, int family, std::uint64_t routes) {
  writeHidden(connection_, log_, vrf, family, routes);
}

RowWriter<NeighbourRows>& Batch::neighbours(const Arp::Table::ArpKey& key) {
  return key.address.af() == Kesh::AddressFamily::ip4 ? neighbours_ : neighbours6_;
}

void Batch::enter(const Arp::Table::ArpEntry& neighbour) {
  neighbours(neighbour.key).enter(neighbour, What::other);
  nameInterface(neighbour.key.intfId);
}

void Batch::remove(const Arp::Table::ArpKey& key) { neighbours(key).remove(key); }

void Batch::nameInterface(const Kesh::IntfId& id) {
  if (id) name_.bind(signedInterface(id)).bindText(id.stringValue().view()).run();
}

void Batch::section(const state::DeviceState& device, const char* name) {
  replaceSection(connection_, log_, device, name);
}

void Batch::commit(const Facts& facts) {
  writeFacts(connection_, facts);
  log_.finish();
  transaction_.commit();
}

} // namespace sources::database
