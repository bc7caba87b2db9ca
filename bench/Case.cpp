#include "Case.h"

#include "Descriptor.h"
#include "Listing.h"
#include "RowsKept.h"
#include "SnapshotText.h"
#include "lumo/ActivityLock.h"

#include <iostream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace bench {

namespace {

template <class Prefix>
std::vector<Prefix> prefixesOf(const CaseOptions& options) {
  if (!options.prefixFile.empty()) return readPrefixes<Prefix>(options.prefixFile);
  if constexpr (std::is_same_v<Prefix, Kesh::Prefix>) {
    if (options.shape == Shape::host) return makeHostPrefixes(options.routes);
  }
  return makePrefixes<Prefix>(options.routes);
}

void fill(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes, Shape shape) {
  switch (shape) {
  case Shape::plain:
    return fillDevice(device, prefixes);
  case Shape::tunnels:
    return fillTunnelDevice(device, prefixes);
  case Shape::policies:
    return fillPolicyDevice(device, prefixes);
  case Shape::host:
    return fillHostDevice(device, prefixes);
  }
}

void fill(state::DeviceBuilder& device, const std::vector<Kesh::Ip6Prefix>& prefixes, Shape shape) {
  if (shape != Shape::plain) throw std::runtime_error("this shape has IPv4 routes alone");
  fillDevice(device, prefixes);
}

template <class Prefix>
using FamilyOf =
    std::conditional_t<std::is_same_v<Prefix, Kesh::Prefix>, Rova::Ip4Family, Rova::Ip6Family>;

/// A sorter over all routes of the default VRF, or over its host table, loaded.
template <class Prefix>
auto sorterOver(const state::DeviceState& device, const CaseOptions& options) {
  return Rova::openSorter<FamilyOf<Prefix>>(device, device.vrfs.front(),
                                            {.host = options.shape == Shape::host});
}

template <class Prefix>
std::size_t routesOf(const state::DeviceState& device) {
  return (device.vrfs.front().*FamilyOf<Prefix>::routingStatus)->route.members();
}

/// The length of a listing, from a file that takes it.
template <class Prefix>
std::size_t bytesOf(const state::DeviceState& device, const CaseOptions& options, Form form) {
  const Descriptor file = Descriptor::temporary();
  print(*sorterOver<Prefix>(device, options), file.fd(), form);
  return file.bytes();
}

/// Selection and one render. The sorter dies here, outside the measurement.
template <class Prefix>
void measureListing(const state::DeviceState& device, const CaseOptions& options, Form form,
                    CaseResult& result, Cost& render) {
  const Descriptor null = Descriptor::null();
  decltype(sorterOver<Prefix>(device, options)) sorter;
  result.selection.lower(costOf([&] { sorter = sorterOver<Prefix>(device, options); }));
  result.selected = sorter->sortedRoutes();
  render.lower(costOf([&] { print(*sorter, null.fd(), form); }));
}

/// The first listing of the process, so that no memory of an earlier one is used again.
template <class Prefix>
void measureMemory(const state::DeviceState& device, const CaseOptions& options,
                   CaseResult& result) {
  result.tableMemory = settledMemory();
  resetPeakMemory();
  measureListing<Prefix>(device, options, Form::text, result, result.text);
  result.listingMemory = peakMemory() - result.tableMemory;
}

/// How often the selection yields: once in so many records that it walks over.
template <class Prefix>
std::size_t yieldsOf(const state::DeviceState& device, const CaseOptions& options) {
  constexpr std::size_t stepsToYield = 2001;
  const bool walksNeighbors = options.shape == Shape::host;
  return (routesOf<Prefix>(device) + (walksNeighbors ? device.arpVanta->arpEntry.members() : 0)) /
         stepsToYield;
}

template <class Prefix>
CaseResult measureFamily(const CaseOptions& options) {
  CaseResult result;
  state::DeviceBuilder device;
  {
    const auto prefixes = prefixesOf<Prefix>(options);
    result.load = costOf([&] { fill(device, prefixes, options.shape); });
    result.fecs = fecCount(options.shape, prefixes.size());
  }
  result.routes = routesOf<Prefix>(device.state);
  result.yields = yieldsOf<Prefix>(device.state, options);
  measureMemory<Prefix>(device.state, options, result);
  for (int i = 0; i < options.repeats; ++i) {
    measureListing<Prefix>(device.state, options, Form::text, result, result.text);
    measureListing<Prefix>(device.state, options, Form::model, result, result.model);
  }
  result.textBytes = bytesOf<Prefix>(device.state, options, Form::text);
  result.modelBytes = bytesOf<Prefix>(device.state, options, Form::model);
  return result;
}

template <class Prefix>
void writeFamily(const CaseOptions& options, const std::string& what) {
  state::DeviceBuilder device;
  fill(device, prefixesOf<Prefix>(options), options.shape);
  if (what == "snapshot") return writeSnapshot(device.state, std::cout);
  print(*sorterOver<Prefix>(device.state, options), STDOUT_FILENO,
        what == "json" ? Form::model : Form::text);
}

void putCost(std::ostream& out, const char* name, const Cost& cost) {
  out << ",\"" << name << "\":{\"wall\":" << cost.wall << ",\"cpu\":" << cost.cpu << '}';
}

} // namespace

CaseResult measure(const CaseOptions& options) {
  const Lumo::ActivityLockHold hold;
  return options.ip6 ? measureFamily<Kesh::Ip6Prefix>(options)
                     : measureFamily<Kesh::Prefix>(options);
}

void writeOutput(const CaseOptions& options, const std::string& what) {
  if (what == "snapshot" && options.shape != Shape::plain) {
    throw std::runtime_error("snapshot: only the plain shape has one");
  }
  const Lumo::ActivityLockHold hold;
  return options.ip6 ? writeFamily<Kesh::Ip6Prefix>(options, what)
                     : writeFamily<Kesh::Prefix>(options, what);
}

std::string checkRows(const CaseOptions& options) {
  if (options.shape != Shape::tunnels && options.shape != Shape::host) {
    throw std::runtime_error("rows: only tunnels and host show all their routes by rows");
  }
  const Lumo::ActivityLockHold hold;
  state::DeviceBuilder device;
  fill(device, prefixesOf<Kesh::Prefix>(options), options.shape);
  const auto sorter = sorterOver<Kesh::Prefix>(device.state, options);
  const RowsKept rows = findRowsKept(device, *sorter);
  if (!rows.wouldTell) throw std::runtime_error("rows: no line of this shape depends on them");
  return "{\"fecsWithRows\":" + std::to_string(rows.fecs) +
         ",\"areKept\":" + (rows.areKept ? "true}" : "false}");
}

template <class Prefix>
Cost summaryCost(const CaseOptions& options, std::size_t& counted) {
  using Family = FamilyOf<Prefix>;
  state::DeviceBuilder device;
  fillDevice(device, prefixesOf<Prefix>(options));
  const state::VrfState& vrf = device.state.vrfs.front();
  Cost cost;
  for (int i = 0; i < options.repeats; ++i) {
    Rova::Summary<Family> summary(vrf.*Family::routingConfig, vrf.*Family::routingStatus,
                                  device.state.arpVanta, device.state.vrfIdMap, vrf.name);
    cost.lower(costOf([&] { summary.loadInternalStructures(); }));
    counted = static_cast<std::size_t>(summary.totalNumRoutes());
  }
  return cost;
}

std::string measureSummary(const CaseOptions& options) {
  const Lumo::ActivityLockHold hold;
  std::size_t counted = 0;
  const Cost cost = options.ip6 ? summaryCost<Kesh::Ip6Prefix>(options, counted)
                                : summaryCost<Kesh::Prefix>(options, counted);
  std::ostringstream out;
  out.precision(9);
  out << "{\"family\":\"" << (options.ip6 ? "IPv6" : "IPv4") << "\",\"routes\":" << counted;
  putCost(out, "summary", cost);
  out << '}';
  return out.str();
}

std::string toJson(const CaseOptions& options, const CaseResult& result) {
  std::ostringstream out;
  out.precision(9);
  out << "{\"family\":\"" << (options.ip6 ? "IPv6" : "IPv4") << "\",\"routes\":" << result.routes
      << ",\"fecs\":" << result.fecs << ",\"selected\":" << result.selected;
  putCost(out, "load", result.load);
  putCost(out, "selection", result.selection);
  putCost(out, "text", result.text);
  putCost(out, "model", result.model);
  out << ",\"textBytes\":" << result.textBytes << ",\"modelBytes\":" << result.modelBytes
      << ",\"yields\":" << result.yields << ",\"tableMemory\":" << result.tableMemory
      << ",\"listingMemory\":" << result.listingMemory << '}';
  return out.str();
}

} // namespace bench
