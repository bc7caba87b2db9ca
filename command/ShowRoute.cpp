#include "command/ShowRoute.h"

#include "command/InterfaceChoice.h"
#include "command/OpenRoutes.h"
#include "command/OpenState.h"
#include "command/ShowRouteSummary.h"
#include "command/Signals.h"
#include "command/VrfChoice.h"
#include "command/terminal/ProgressLine.h"
#include "scrivo/Interrupt.h"

namespace command {

namespace {

/// A loaded sorter, with its progress shown where nothing is on the screen yet that it could
/// disturb.
template <class Family>
auto watchedSorter(const state::DeviceState& device, const state::VrfState& vrf,
                   const QueryOf<Family>& query, const Options& options, bool isFirst) {
  std::optional<terminal::ProgressLine> progress;
  if (isFirst) progress.emplace(options.startTime).at("selecting routes");
  return openRoutes<Family>(device, vrf, query, options);
}

/// A listing ends early when the user interrupts it, and when its reader has seen enough.
ExitStatus endedEarly() {
  if (scrivo::interruptRequested()) leaveInterrupted();
  return success;
}

/// The listing of one VRF, a fragment that its entry in the document holds. False when it ended
/// early.
template <class Sorter>
bool showListing(scrivo::Printer& frame, const scrivo::StringAttrInfo& vrfName, Sorter& sorter) {
  frame.startDictEntry(vrfName);
  frame.ioflush();
  const RenderScope scope;
  if (!sorter.printRoutes(STDOUT_FILENO, frame.format())) return false;
  frame.endDictEntry();
  return true;
}

/// The host table of one VRF, a document of its own, or nothing at all when it is empty.
template <class Sorter>
bool showHostTable(scrivo::Printer& frame, const scrivo::StringAttrInfo& vrfName, Sorter& sorter) {
  if (sorter.sortedRoutes() == 0) {
    frame.startDictEntry(vrfName);
    frame.endDictEntry();
    return true;
  }
  frame.startSimpleDictEntry(vrfName);
  frame.awaitDocument();
  const RenderScope scope;
  if (!sorter.printRoutes(STDOUT_FILENO, frame.format())) return false;
  frame.endSimpleDictEntry();
  return true;
}

template <class Family>
ExitStatus showRoute(const grammar::Parsed& parsed, const Options& options) {
  auto query = routeQuery<typename Family::Prefix>(parsed);
  query.host = parsed.has("host");
  query.summary = parsed.has("summary");
  const auto state = openState(options, needsOf<Family>(query));
  const auto& [device, notes, moment] = state;
  const auto vrfs = chosenVrfs(device, query.vrf, options);
  if (query.interface) requireInterface(device, *query.interface, options);
  if (query.summary) {
    showRouteSummary<Family>(device, vrfs, notes, options.format);
    return success;
  }
  // The document around the listings, which write into it: it is flushed ahead of each of them.
  scrivo::Printer frame(STDOUT_FILENO, options.format);
  scrivo::StringAttrInfo vrfName(frame, "vrf");
  frame.start();
  printNotes(frame, notes);
  frame.startDict("vrfs");
  for (const auto* vrf : vrfs) {
    state.hold();
    const auto sorter = watchedSorter<Family>(device, *vrf, query, options, vrf == vrfs.front());
    state.release();
    vrfName.setValue(vrf->name.stringValue());
    // A listing names its VRF itself, a host table does not.
    if (query.host && query.vrf == "all") {
      frame.addFrills("\nVRF: %s\n", scrivo::asValue(vrf->name.stringValue()));
    }
    const bool isWhole =
        query.host ? showHostTable(frame, vrfName, *sorter) : showListing(frame, vrfName, *sorter);
    if (!isWhole || scrivo::interruptRequested()) return endedEarly();
  }
  frame.endDict();
  frame.end();
  frame.close();
  return success;
}

} // namespace

ExitStatus showIpRoute(const grammar::Parsed& parsed, const Options& options) {
  return showRoute<Rova::Ip4Family>(parsed, options);
}

ExitStatus showIpv6Route(const grammar::Parsed& parsed, const Options& options) {
  return showRoute<Rova::Ip6Family>(parsed, options);
}

} // namespace command
