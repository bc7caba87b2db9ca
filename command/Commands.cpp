#include "command/Commands.h"

#include "command/Check.h"
#include "command/ClearStatic.h"
#include "command/RouteQuery.h"
#include "command/ShowNexthopGroup.h"
#include "command/ShowRoute.h"
#include "command/ShowStatic.h"
#include "command/ShowTypes.h"
#include "command/SnapshotSave.h"
#include "command/StaticLoad.h"

#include <algorithm>
#include <vector>

namespace command {

namespace {

constexpr std::string_view routeArguments =
    "[vrf NAME|all] [ADDRESS | PREFIX [longer-prefixes]] [detail] [PROTOCOL] [interface NAME] | "
    "[vrf NAME|all] host|summary";

constexpr Command commands[] = {
    {"show ip route", routeArguments,
     "The IPv4 routing table of a VRF, its host route table, or a summary of it.", showIpRoute},
    {"show ipv6 route", routeArguments,
     "The IPv6 routing table of a VRF, its host route table, or a summary of it.", showIpv6Route},
    {"show nexthop-group", "[NAME | summary] [vrf NAME]",
     "The nexthop groups of a VRF, or how many there are of each type and size.", showNexthopGroup},
    {"show running-config static", "[vrf NAME|all] [all]",
     "The configuration lines of the static routes of a VRF, with all also the defaults in them.",
     showStaticConfig},
    {"show static", "[dynamic] [tag N] [vrf NAME]",
     "The static routes that agents hand to routing in a VRF.", showStatic},
    {"check address", "ADDRESS/LENGTH interface NAME [secondary] [replace]",
     "Whether an interface may get an address, beside or in place of those that it has.",
     checkAddress},
    {"check next-hop", "ADDRESS [vrf NAME]",
     "Whether a static route may lead to a next hop: to none that is the device itself.",
     checkNextHop},
    {"check rd", "RD vrf NAME", "Whether a route distinguisher is free for a VRF.",
     checkRouteDistinguisher},
    {"clear static interface", "NAME [--into FILE] [--dry-run]",
     "Take the static routes through an interface out of a snapshot; shows their lines.",
     clearStatic},
    {"static load", "FILE --into SNAPSHOT [--dry-run]",
     "Enter the configuration lines of a file, - for standard input, into a snapshot; shows them.",
     loadStatic},
    {"snapshot save", "FILE", "Write the state that is shown to a file, - for standard output.",
     saveSnapshot},
    {"types", "[NAME]",
     "The library's types, or one of them with its attributes, as access by name sees them.",
     showTypes},
};

/// The word at a level of a command's path; empty behind its end.
std::string_view pathWord(const Command& command, std::size_t level) {
  std::string_view rest = command.path;
  for (; level > 0 && !rest.empty(); --level) {
    const auto blank = rest.find(' ');
    rest = blank == rest.npos ? std::string_view() : rest.substr(blank + 1);
  }
  return rest.substr(0, rest.find(' '));
}

/// The different words of the candidates at a level.
std::vector<std::string_view> wordsAt(const std::vector<const Command*>& candidates,
                                      std::size_t level) {
  std::vector<std::string_view> words;
  for (const Command* candidate : candidates) {
    const auto word = pathWord(*candidate, level);
    if (std::find(words.begin(), words.end(), word) == words.end()) words.push_back(word);
  }
  return words;
}

const Command& findCommand(Words& words) {
  std::vector<const Command*> candidates;
  for (const Command& command : commands) candidates.push_back(&command);
  for (std::size_t level = 0;; ++level) {
    const auto alternatives = wordsAt(candidates, level);
    if (alternatives.size() == 1 && alternatives[0].empty()) return *candidates[0];
    const int chosen = words.takeKeyword(alternatives);
    if (chosen < 0) words.failExpecting(alternatives);
    const auto word = alternatives[static_cast<std::size_t>(chosen)];
    std::erase_if(candidates, [&](const Command* c) { return pathWord(*c, level) != word; });
  }
}

} // namespace

ExitStatus runCommand(Words& words, const Options& options) {
  return findCommand(words).run(words, options);
}

std::string helpText() {
  std::string text =
      "usage: rova [OPTION...] COMMAND... [OPTION...]\n\ncommands (words may be abbreviated):\n";
  for (const Command& command : commands) {
    text += "  " + std::string(command.path) + " " + std::string(command.arguments) + "\n      " +
            std::string(command.help) + "\n";
  }
  text += "\nPROTOCOL is one of:\n  " + protocolWordList(false) + "\nor for IPv6 one of:\n  " +
          protocolWordList(true) + "\n";
  text += R"(
options:
  --state SOURCE          where the state comes from: kernel (this machine, the default),
                          kernel:NAME (a network namespace), or the file of a snapshot, - for
                          standard input
  --format text|json      how the output looks; a trailing "| json" does the same
  --timing                end a listing with the time that it took (text only)
  --older-nexthop-groups  show nexthop group routes in their older form
  --counters              show the packets and bytes of nexthop group entries
  --into FILE             clear and static load: the file that the changed snapshot goes to, and
                          the snapshot itself where --state names none
  --dry-run               clear and static load: show the lines, and write nothing
  --help, --version

examples:
  rova show ip route
  rova show ip route 10.1.2.3
  rova show ipv6 route vrf red bgp
  rova show ip route vrf all host
  rova show ip route vrf all summary
  rova --state lab.json --format json show ip route 10.0.0.0/8 longer-prefixes

exit status: 0 success, 1 failure or a refused check, 2 wrong usage, 130 after an interrupt (129
after a hangup, 143 when terminated)
)";
  return text;
}

} // namespace command
