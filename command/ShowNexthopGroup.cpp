#include "command/ShowNexthopGroup.h"

#include "command/OpenState.h"
#include "command/Signals.h"
#include "command/VrfChoice.h"
#include "rova/CliSupport.h"
#include "scrivo/Interrupt.h"
#include "sources/SourceError.h"
#include "state/NoSuch.h"

#include <set>
#include <type_traits>
#include <unistd.h>

namespace command {

namespace {

struct NexthopGroupQuery {
  bool summary = false;
  std::string name; ///< empty for all groups
  std::string vrf = L3::defaultVrfName;
};

/// Names of groups are the user's own, so the keywords among them are not abbreviated, and `name`
/// ahead of one takes it whatever it is.
NexthopGroupQuery parseQuery(Words& words) {
  NexthopGroupQuery query;
  while (!words.atEnd()) {
    const auto word = words.take("the name of a nexthop group, summary or vrf");
    if (word == "vrf") {
      query.vrf = words.take("the name of a VRF");
    } else if (word == "summary") {
      query.summary = true;
    } else if (!query.name.empty()) {
      words.failAtLast("\"" + std::string(word) + "\" is not understood: expected vrf or summary");
    } else {
      query.name = word == "name" ? words.take("the name of a nexthop group") : word;
    }
  }
  if (query.summary && !query.name.empty()) {
    words.failAtLast("the summary is of all nexthop groups; leave the name out");
  }
  return query;
}

/// Raises SourceError for a group that is neither configured nor has an identifier.
void requireGroup(const state::DeviceState& device, const std::string& name,
                  const Options& options) {
  std::set<std::string> known;
  device.nhgConfig->nexthopGroup.forEach(
      [&](const Lumo::Name& group, const auto&) { known.insert(group.str()); });
  const auto& table = device.nhEntryStatus->nexthopGroupEntry;
  for (std::decay_t<decltype(table)>::IteratorConst it(table); it; it.next()) {
    known.insert(it.value().key.nhgName().str());
  }
  if (known.contains(name)) return;
  throw sources::SourceError(sources::inputName(options.state) + ": " +
                             state::noSuch("nexthop group", name, {known.begin(), known.end()}));
}

Lumo::Ptr<Rova::NexthopGroupCounterHelper> makeCounters(const state::DeviceState& device) {
  const auto counters = Rova::nexthopGroupCounterHelperFactory();
  counters->mountCounterVantaes(device.entityManager);
  counters->counterEnabledIs(counters->counterKeyTable() && counters->counterTable() &&
                             counters->snapshotTable());
  return counters;
}

void renderSummary(const state::DeviceState& device, const L3::VrfName& vrf, int fd,
                   const Options& options) {
  Rova::NexthopGroupSummaryHelper summary(device.nhgConfig, device.nhEntryStatus,
                                          device.nhgHwStatus, device.routingHardwareStatus);
  summary.vrfNameIs(vrf);
  summary.render(static_cast<std::uint32_t>(fd), options.format);
}

void renderGroups(const state::DeviceState& device, const L3::VrfName& vrf, const std::string& name,
                  int fd, const Options& options) {
  Lumo::Ptr<Rova::NexthopGroupCounterHelper> counters;
  if (options.counters) counters = makeCounters(device);
  const auto helper =
      Rova::nexthopGroupHelperFactory(device.nhgConfig, device.nhEntryStatus, device.nhgHwStatus,
                                      device.routingHardwareStatus, counters, Lumo::String(name));
  helper->vrfNameIs(vrf);
  helper->render(static_cast<std::uint32_t>(fd), options.format);
}

} // namespace

ExitStatus showNexthopGroup(Words& words, const Options& options) {
  const auto query = parseQuery(words);
  sources::Needs needs;
  needs.routes = false;
  needs.vrf = query.vrf;
  const auto state = openState(options, needs);
  const auto& vrf = chosenVrf(state.device, query.vrf, options).name;
  if (!query.name.empty()) requireGroup(state.device, query.name, options);
  const RenderScope scope;
  renderWithNotes(state.notes, STDOUT_FILENO, options.format, [&](int fd) {
    if (query.summary) {
      renderSummary(state.device, vrf, fd, options);
    } else {
      renderGroups(state.device, vrf, query.name, fd, options);
    }
  });
  return scrivo::interruptRequested() ? interrupted : success;
}

} // namespace command
