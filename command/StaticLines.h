// Static routes as lines of the running configuration: "ip route vrf red 10.0.0.0/8 10.1.0.1".
#pragma once

#include "command/Options.h"
#include "sources/State.h"
#include "state/Families.h"

#include <string>
#include <string_view>
#include <vector>

namespace command {

/// What a family has to do with static routes.
struct StaticFamily {
  std::string_view words; ///< a line begins with them
  Lumo::Ptr<Routing::ConfigGen> state::VrfState::*config;
  state::RouteInputs state::VrfState::*inputs;
};

inline constexpr StaticFamily staticFamilies[] = {
    {"ip route ", state::Ip4::routingConfig, state::Ip4::routeInput},
    {"ipv6 route ", state::Ip6::routingConfig, state::Ip6::routeInput},
};

/// What stands ahead of the prefix in a line: "ip route ", "ipv6 route vrf red ".
std::string routeCommand(const StaticFamily& family, const L3::VrfName& vrf);

using Lines = std::vector<std::string>;

/// The lines of a text, without line ends.
Lines splitLines(std::string_view text);

/// The lines of a VRF, without line ends, IPv4 ahead of IPv6. With `saveAll` they have the
/// preference and the tag also where these are the defaults. A family whose configuration is not
/// known has none.
Lines staticLines(const state::VrfState& vrf, bool saveAll);

/// The lines that `others` lacks.
Lines linesWithout(const Lines& lines, const Lines& others);

/// Prints the lines; in JSON the document {"lines":[...]}, with what is to be known of the state.
void printLines(const Lines& lines, const Options& options, const sources::Notes& notes = {});

} // namespace command
