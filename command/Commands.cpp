#include "command/Commands.h"

#include "command/RouteQuery.h"
#include "command/ShowRoute.h"
#include "command/SnapshotSave.h"

#include <algorithm>
#include <vector>

namespace command {

namespace {

constexpr std::string_view routeArguments =
    "[vrf NAME|all] [ADDRESS | PREFIX [longer-prefixes]] [detail] [PROTOCOL] [interface NAME] | "
    "[vrf NAME|all] host";

constexpr Command commands[] = {
    {"show ip route", routeArguments, "The IPv4 routing table of a VRF, or its host route table.",
     showIpRoute},
    {"show ipv6 route", routeArguments, "The IPv6 routing table of a VRF, or its host route table.",
     showIpv6Route},
    {"snapshot save", "FILE", "Write the state that is shown to a file, - for standard output.",
     saveSnapshot},
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
  std::string text = "usage: rova [OPTION...] COMMAND...\n\ncommands (words may be abbreviated):\n";
  for (const Command& command : commands) {
    text += "  " + std::string(command.path) + " " + std::string(command.arguments) + "\n      " +
            std::string(command.help) + "\n";
  }
  text += "\nPROTOCOL is one of:\n  " + protocolWordList() + "\n";
  text += R"(
options:
  --state SOURCE          where the state comes from: kernel (this machine, the default),
                          kernel:NAME (a network namespace), or the file of a snapshot
  --format text|json      how the output looks; a trailing "| json" does the same
  --timing                end a listing with the time that it took (text only)
  --older-nexthop-groups  show nexthop group routes in their older form
  --help, --version

examples:
  rova show ip route
  rova show ip route 10.1.2.3
  rova show ipv6 route vrf red bgp
  rova show ip route vrf all host
  rova --state lab.json --format json show ip route 10.0.0.0/8 longer-prefixes

exit status: 0 success, 1 failure, 2 wrong usage, 130 after an interrupt
)";
  return text;
}

} // namespace command
