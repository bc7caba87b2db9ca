#include "command/ShowStatic.h"

#include "command/OpenState.h"
#include "command/Signals.h"
#include "command/StaticLines.h"
#include "command/VrfChoice.h"
#include "rova/CliSupport.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Printer.h"

#include <algorithm>
#include <charconv>
#include <unistd.h>

namespace command {

namespace {

struct ConfigQuery {
  std::string vrf = L3::defaultVrfName; ///< "all" for every VRF
  bool saveAll = false;
};

ConfigQuery parseConfigQuery(Words& words) {
  enum { all, vrf };
  constexpr std::string_view keywords[] = {"all", "vrf"};
  ConfigQuery query;
  for (Words::Seen seen; !words.atEnd();) {
    switch (words.takeOnce(keywords, seen)) {
    case all:
      query.saveAll = true;
      break;
    case vrf:
      query.vrf = words.take("the name of a VRF, or all");
      break;
    }
  }
  return query;
}

struct StaticQuery {
  std::string vrf = L3::defaultVrfName;
  bool dynamic = false;
  std::uint32_t tag = 0; ///< 0 for all
};

/// A tag to select routes by. 0 is that of a route without one, which no selection is for.
std::uint32_t takeTag(Words& words) {
  const auto word = words.take("a tag, 1 to 4294967295");
  std::uint32_t tag = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), tag);
  if (error != std::errc() || end != word.data() + word.size() || tag == 0) {
    words.failAtLast("\"" + std::string(word) + "\" is no tag: expected 1 to 4294967295");
  }
  return tag;
}

StaticQuery parseStaticQuery(Words& words) {
  enum { dynamic, tag, vrf };
  constexpr std::string_view keywords[] = {"dynamic", "tag", "vrf"};
  StaticQuery query;
  for (Words::Seen seen; !words.atEnd();) {
    switch (words.takeOnce(keywords, seen)) {
    case dynamic:
      query.dynamic = true;
      break;
    case tag:
      query.tag = takeTag(words);
      break;
    case vrf:
      query.vrf = words.take("the name of a VRF");
      break;
    }
  }
  return query;
}

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
                                     const StaticQuery& query, const Options& options) {
  Rova::StaticRoutesRibCommon dump(device.allIntfConfig);
  dump.dynamicIs(query.dynamic);
  dump.tagIs(query.tag);
  dump.fdIs(STDOUT_FILENO);
  dump.fmtIs(options.format);
  for (const auto& input : inputsOf(vrf)) dump.routeInputConfIs(input, true);
  return dump;
}

/// Configured routes are among the routes of a kernel.
sources::Needs routesOf(const std::string& vrf) {
  sources::Needs needs;
  needs.neighbours = needs.nexthopGroups = false;
  needs.vrf = vrf;
  return needs;
}

} // namespace

ExitStatus showStaticConfig(Words& words, const Options& options) {
  const auto query = parseConfigQuery(words);
  const auto [device, notes] = openState(options, routesOf(query.vrf));
  Lines lines;
  for (const auto* vrf : chosenVrfs(device, query.vrf, options)) {
    for (auto& line : staticLines(*vrf, query.saveAll)) lines.push_back(std::move(line));
  }
  printLines(lines, options, notes);
  return success;
}

ExitStatus showStatic(Words& words, const Options& options) {
  const auto query = parseStaticQuery(words);
  const auto [device, notes] = openState(options, routesOf(query.vrf));
  const auto& vrf = chosenVrf(device, query.vrf, options);
  // The document around the dump, which writes into it: it is flushed ahead of it.
  scrivo::Printer frame(STDOUT_FILENO, options.format);
  scrivo::StringAttrInfo vrfName(frame, "vrf");
  vrfName.setValue(vrf.name.stringValue());
  frame.start();
  printNotes(frame, notes);
  frame.startDict("vrfs");
  frame.startDictEntry(vrfName);
  frame.ioflush();
  auto dump = makeDump(device, vrf, query, options);
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
