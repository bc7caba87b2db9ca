#include "NexthopGroups.h"

#include "Descriptor.h"
#include "Measure.h"
#include "lumo/ActivityLock.h"
#include "rova/CliSupport.h"
#include "state/DeviceBuilder.h"

#include <sstream>

namespace bench {

namespace {

using Routing::Hardware::NexthopGroupAdj;
using Routing::Hardware::NexthopGroupVia;
using Routing::NexthopGroup::NexthopGroupConfigEntry;
using Routing::NexthopGroup::NexthopGroupType;

Kesh::IpGenAddr address(std::size_t number) {
  return Kesh::IpAddr::fromHost(0x0a000000u + static_cast<std::uint32_t>(number));
}

Kesh::IntfId interfaceOf(std::size_t number) {
  return Kesh::IntfId(Lumo::String("Ethernet" + std::to_string(number % 48 + 1)));
}

NexthopGroupVia viaOf(std::size_t number) {
  NexthopGroupVia via;
  via.route = Kesh::pfx(0x0a000000u + static_cast<std::uint32_t>(number), 24);
  via.hop = address(number / 64);
  via.l3Intf = interfaceOf(number);
  via.vlanId = 10;
  via.l2Intf = via.l3Intf;
  const std::uint8_t mac[] = {0, 0x1c, 0x73, 0, 0, static_cast<std::uint8_t>(number | 1)};
  via.macAddr = Kesh::EthAddr::fromBytes(mac);
  via.tunnelId = number / 2 + 1;
  return via;
}

/// Groups of GRE tunnels, two entries on each tunnel.
class Device {
 public:
  Device(std::size_t groups, std::size_t entries) : entries_(entries) {
    tables_.state.routingHardwareStatus->nexthopGroupEntryCounterSupported = true;
    for (std::size_t group = 0; group < groups; ++group) add(group);
    tables_.state.nhgHwStatus->vrfStatus.insertOrAssign(L3::VrfName(L3::defaultVrfName),
                                                        std::move(status_));
    tables_.counters->members(); // puts them in order
  }

  void render(int fd, unsigned format) const {
    const auto& state = tables_.state;
    const auto counters = Rova::nexthopGroupCounterHelperFactory();
    counters->mountCounterVantaes(state.entityManager);
    counters->counterEnabledIs(true);
    Rova::nexthopGroupHelperFactory(state.nhgConfig, state.nhEntryStatus, state.nhgHwStatus,
                                    state.routingHardwareStatus, counters, "")
        ->render(static_cast<std::uint32_t>(fd), format);
  }

 private:
  void add(std::size_t group) {
    const Lumo::Name name("group" + std::to_string(group));
    const auto id = static_cast<std::uint32_t>(group + 1);
    const auto config = Lumo::newEntity<NexthopGroupConfigEntry>(name);
    config->type = NexthopGroupType::gre;
    config->size = static_cast<std::uint32_t>(entries_);
    config->ttl = 64;
    config->addressFamily = Kesh::AddressFamily::ip4;
    NexthopGroupAdj adjacency;
    for (std::size_t entry = 0; entry < entries_; ++entry) {
      const std::size_t number = group * entries_ + entry;
      const auto index = static_cast<std::uint16_t>(entry);
      config->destinationIp.set(index, address(number));
      adjacency.via.insertOrAssign(index, viaOf(number));
      addCounter(id, index, number + 1);
    }
    tables_.state.nhgConfig->nexthopGroup.insertOrAssign(name, config);
    tables_.nexthopGroups->insert({NexthopGroup::NexthopGroupEntryKey(name), id});
    status_.nexthopGroupAdj.insertOrAssign(id, std::move(adjacency));
  }

  void addCounter(std::uint32_t group, std::uint16_t entry, std::uint64_t number) {
    const Gaugex::CounterIndex index(number);
    tables_.counterKeys->insert({{group, entry}, 1, number});
    tables_.counters->insert({index, 1000 * number, 64000 * number});
    tables_.counterSnapshots->insert({index, number, 64 * number});
  }

  const std::size_t entries_;
  state::DeviceBuilder tables_;
  Routing::Hardware::NexthopGroupVrfStatus status_;
};

void putCost(std::ostream& out, const char* name, const Cost& cost, std::size_t bytes) {
  out << ",\"" << name << "\":{\"wall\":" << cost.wall << ",\"cpu\":" << cost.cpu
      << ",\"bytes\":" << bytes << '}';
}

} // namespace

std::string measureNexthopGroups(std::size_t groups, std::size_t entries, int repeats) {
  const Lumo::ActivityLockHold hold;
  const Device device(groups, entries);
  const Descriptor null = Descriptor::null();
  Cost costs[2];
  const std::size_t before = settledMemory();
  resetPeakMemory();
  device.render(null.fd(), 1);
  const std::size_t grown = peakMemory() - before;
  for (int i = 0; i < repeats; ++i) {
    for (const unsigned format : {1u, 2u}) {
      costs[format - 1].lower(costOf([&] { device.render(null.fd(), format); }));
    }
  }
  std::size_t bytes[2];
  for (const unsigned format : {1u, 2u}) {
    const Descriptor file = Descriptor::temporary();
    device.render(file.fd(), format);
    bytes[format - 1] = file.bytes();
  }
  std::ostringstream out;
  out.precision(9);
  out << "{\"groups\":" << groups << ",\"entries\":" << groups * entries;
  putCost(out, "text", costs[0], bytes[0]);
  putCost(out, "model", costs[1], bytes[1]);
  out << ",\"memory\":" << grown << '}';
  return out.str();
}

} // namespace bench
