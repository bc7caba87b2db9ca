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

std::set<std::string> nexthopGroupNames(const state::DeviceState& device) {
  std::set<std::string> known;
  device.nhgConfig->nexthopGroup.forEach(
      [&](const Lumo::Name& group, const auto&) { known.insert(group.str()); });
  const auto& table = device.nhEntryStatus->nexthopGroupEntry;
  for (std::decay_t<decltype(table)>::IteratorConst it(table); it; it.next()) {
    known.insert(it.value().key.nhgName().str());
  }
  return known;
}

namespace {

/// Raises SourceError for a group that is neither configured nor has an identifier.
void requireGroup(const state::DeviceState& device, const std::string& name,
                  const Options& options) {
  const auto known = nexthopGroupNames(device);
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

ExitStatus showNexthopGroup(const grammar::Parsed& parsed, const Options& options) {
  const auto group = parsed.text("name");
  const auto vrfName = parsed.text("vrf", L3::defaultVrfName);
  sources::Needs needs;
  needs.routes = false;
  needs.vrf = vrfName;
  const auto state = openState(options, needs);
  const auto& vrf = chosenVrf(state.device, vrfName, options).name;
  if (!group.empty()) requireGroup(state.device, group, options);
  state.release();
  const RenderScope scope;
  renderWithNotes(state.notes, STDOUT_FILENO, options.format, [&](int fd) {
    if (parsed.has("summary")) {
      renderSummary(state.device, vrf, fd, options);
    } else {
      renderGroups(state.device, vrf, group, fd, options);
    }
  });
  return scrivo::interruptRequested() ? interrupted : success;
}

} // namespace command
