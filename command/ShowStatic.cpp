#include "command/ShowStatic.h"

#include "command/OpenState.h"
#include "command/Signals.h"
#include "command/StaticLines.h"
#include "command/VrfChoice.h"
#include "rova/CliSupport.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Printer.h"

#include <algorithm>
#include <unistd.h>

namespace command {

namespace {

using InputPtr = Lumo::Ptr<Routing::RouteInput>;

/// The inputs of a VRF by the names of their agents, so that it does not depend on the order of a
/// file which of two agents is the later one.
std::vector<InputPtr> inputsByAgent(const state::RouteInputs& inputs) {
  std::vector<std::pair<Lumo::String, InputPtr>> named;
  inputs.forEach(
      [&](const Lumo::String& agent, const InputPtr& input) { named.emplace_back(agent, input); });
  std::sort(named.begin(), named.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<InputPtr> ordered;
  for (const auto& [agent, input] : named) ordered.push_back(input);
  return ordered;
}

/// What agents hand to routing in a VRF; where none does, the routes of its configuration.
std::vector<InputPtr> inputsOf(const state::VrfState& vrf) {
  std::vector<InputPtr> inputs;
  const auto configured = Lumo::newEntity<Routing::RouteInput>();
  for (const auto& family : staticFamilies) {
    const auto ofFamily = inputsByAgent(vrf.*family.inputs);
    inputs.insert(inputs.end(), ofFamily.begin(), ofFamily.end());
    if (const auto& config = vrf.*family.config) {
      config->route.forEach([&](const Routing::RouteKey& key, const auto& route) {
        configured->route.insertOrAssign(key, route);
      });
    }
  }
  if (inputs.empty()) inputs.push_back(configured);
  return inputs;
}

Rova::StaticRoutesRibCommon makeDump(const state::DeviceState& device, const state::VrfState& vrf,
                                     const grammar::Parsed& parsed, const Options& options) {
  const auto* const tag = parsed.find<std::uint32_t>("tag");
  Rova::StaticRoutesRibCommon dump(device.allIntfConfig);
  dump.dynamicIs(parsed.has("dynamic"));
  dump.tagIs(tag ? *tag : 0);
  dump.fdIs(STDOUT_FILENO);
  dump.fmtIs(options.format);
  for (const auto& input : inputsOf(vrf)) dump.routeInputConfIs(input, true);
  return dump;
}

/// Configured routes are among the routes of a kernel.
sources::State openRoutes(const Options& options, const std::string& vrf) {
  sources::Needs needs;
  needs.neighbours = needs.nexthopGroups = needs.addressConfig = false;
  needs.vrf = vrf;
  auto state = openState(options, needs);
  state.release(); // all that is printed was read
  return state;
}

} // namespace

ExitStatus showStaticConfig(const grammar::Parsed& parsed, const Options& options) {
  const auto name = parsed.text("vrf", L3::defaultVrfName);
  const auto [device, notes, moment] = openRoutes(options, name);
  Lines lines;
  for (const auto* vrf : chosenVrfs(device, name, options)) {
    for (auto& line : staticLines(*vrf, parsed.has("all"))) lines.push_back(std::move(line));
  }
  printLines(lines, options, notes);
  return success;
}

ExitStatus showStatic(const grammar::Parsed& parsed, const Options& options) {
  const auto name = parsed.text("vrf", L3::defaultVrfName);
  const auto [device, notes, moment] = openRoutes(options, name);
  const auto& vrf = chosenVrf(device, name, options);
  // The document around the dump, which writes into it: it is flushed ahead of it.
  scrivo::Printer frame(STDOUT_FILENO, options.format);
  scrivo::StringAttrInfo vrfName(frame, "vrf");
  vrfName.setValue(vrf.name.stringValue());
  frame.start();
  printNotes(frame, notes);
  frame.startDict("vrfs");
  frame.startDictEntry(vrfName);
  frame.ioflush();
  auto dump = makeDump(device, vrf, parsed, options);
  const RenderScope scope;
  dump.dump(Rova::RovaConsts());
  if (scrivo::interruptRequested()) return interrupted;
  frame.endDictEntry();
  frame.endDict();
  frame.end();
  frame.close();
  return success;
}

} // namespace command
