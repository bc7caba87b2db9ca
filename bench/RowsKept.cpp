#include "RowsKept.h"

#include "Descriptor.h"
#include "Listing.h"

#include <string>

namespace bench {

namespace {

std::string textOf(Rova::RouteSorter& sorter) {
  const Descriptor file = Descriptor::temporary();
  print(sorter, file.fd(), Form::text);
  return file.content();
}

/// Gives the FEC as many vias as it has, on interfaces that it never had: a line that is built from
/// them now has their names, and how many vias there are tells nothing.
void replaceVias(Rova::CachedFec& fec) {
  const std::size_t vias = fec.vias();
  fec.viaDelAll();
  for (std::size_t at = 0; at < vias; ++at) {
    Rova::CachedVia via;
    via.intfIdIs(Kesh::IntfId(Lumo::String("Loopback" + std::to_string(at))));
    fec.viaIs(via, true);
  }
}

} // namespace

RowsKept findRowsKept(state::DeviceBuilder& device, Rova::RouteSorter& sorter) {
  RowsKept result;
  const auto forEachFec = [&](auto visit) {
    sorter.fecMap().forEach([&](Vanta::Fib::FecId, const auto& fec) { visit(*fec); });
  };
  const std::string first = textOf(sorter);
  forEachFec([&](Rova::CachedFec& fec) { result.fecs += fec.numEntries() != 0; });
  device.state.tunnelFib->entries = {};
  forEachFec(replaceVias);
  result.areKept = textOf(sorter) == first;
  forEachFec([](Rova::CachedFec& fec) { fec.numEntriesIs(0); });
  result.wouldTell = textOf(sorter) != first;
  return result;
}

} // namespace bench
