#include "command/diff/DiffSources.h"

#include "command/InterfaceChoice.h"
#include "command/Notes.h"
#include "scrivo/Shown.h"
#include "sources/Source.h"
#include "state/NoSuch.h"

#include <algorithm>
#include <cstdio>

namespace command {

namespace {

NamedState openNamed(const std::string& name, const sources::Needs& needs) {
  NamedState named{name, sources::open(name, needs)};
  for (const auto& line : linesOf(named.state.notes, name)) {
    const auto whole = line.starts_with(name + ": ") ? line : named.said(line);
    std::fprintf(stderr, "rova: %s\n", scrivo::shown(whole).c_str());
  }
  return named;
}

std::vector<VrfPair> allVrfs(const DiffSources& sources) {
  const auto& from = sources.from.state.device;
  const auto& to = sources.to.state.device;
  std::vector<VrfPair> pairs;
  for (const auto& vrf : from.vrfs) {
    const auto name = vrf.name.stringValue().str();
    pairs.push_back({name, &vrf, to.vrf(name)});
  }
  for (const auto& vrf : to.vrfs) {
    const auto name = vrf.name.stringValue().str();
    if (!from.vrf(name)) pairs.push_back({name, nullptr, &vrf});
  }
  return pairs;
}

bool namesInterface(const NamedState& named, const std::string& name) {
  const auto known = interfaceNames(named.state.device);
  return std::find(known.begin(), known.end(), name) != known.end();
}

} // namespace

std::string NamedState::said(const std::string& message) const {
  return sources::inputName(name) + ": " + message;
}

DiffSources openSources(const std::string& from, const std::string& to,
                        const sources::Needs& needs) {
  return {openNamed(from, needs), openNamed(to, needs)};
}

std::vector<VrfPair> chosenVrfs(const DiffSources& sources, const std::string& name) {
  if (name == "all") return allVrfs(sources);
  const auto& [from, to] = sources;
  const VrfPair pair{name, from.state.device.vrf(name), to.state.device.vrf(name)};
  if (pair.from || pair.to) return {pair};
  throw sources::SourceError(from.said(state::noSuchVrf(from.state.device, name)) + "; " +
                             to.said(state::noSuchVrf(to.state.device, name)));
}

void requireInterface(const DiffSources& sources, const std::string& name) {
  const auto& [from, to] = sources;
  if (namesInterface(from, name) || namesInterface(to, name)) return;
  const auto said = [&](const NamedState& named) {
    return named.said(state::noSuch("interface", name, interfaceNames(named.state.device)));
  };
  throw sources::SourceError(said(from) + "; " + said(to));
}

} // namespace command
