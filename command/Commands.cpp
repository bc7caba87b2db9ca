// The table of the commands. A new one is a row here, with its parts if it has any, and a handler.
#include "command/Commands.h"

#include "command/Check.h"
#include "command/ClearStatic.h"
#include "command/SessionChoice.h"
#include "command/ShowHelp.h"
#include "command/ShowNexthopGroup.h"
#include "command/ShowRoute.h"
#include "command/ShowState.h"
#include "command/ShowStatic.h"
#include "command/ShowTypes.h"
#include "command/SnapshotLoad.h"
#include "command/SnapshotSave.h"
#include "command/StaticLoad.h"
#include "command/diff/Diff.h"
#include "command/filter/Help.h"
#include "command/watch/Watch.h"

#include <algorithm>
#include <array>

namespace command {

namespace {

using grammar::Beginning;
using grammar::Command;
using grammar::Filter;
using grammar::FilterAction;
using grammar::Keyword;
using grammar::Kind;
using grammar::Option;
using grammar::Part;
using grammar::Scope;
using grammar::Topic;

constexpr Option options[] = {
    {.name = "--state",
     .kind = Kind::source,
     .scope = Scope::all,
     .help = "where the state comes from: kernel (this machine), kernel:NAME (a network "
             "namespace), or a file, a state database or a snapshot, - for standard input; without "
             "it the state database of this machine while its agent lives, else the kernel"},
    {.name = "--format",
     .kind = Kind::format,
     .scope = Scope::all,
     .piped = true,
     .help = "how the output looks; a trailing \"| json\" does the same"},
    {.name = "--color",
     .kind = Kind::colour,
     .scope = Scope::all,
     .help = "whether the text has colours; auto, where a terminal shows it, is usual"},
    {.name = "--no-pager",
     .scope = Scope::all,
     .help = "show what is longer than the screen without a stop"},
    {.name = "--timing", .help = "end a listing with the time that it took (text only)"},
    {.name = "--older-nexthop-groups", .help = "show nexthop group routes in their older form"},
    {.name = "--counters", .help = "show the packets and bytes of nexthop group entries"},
    {.name = "--into",
     .kind = Kind::file,
     .help = "the file that the changed snapshot goes to, and for static load the snapshot itself "
             "where --state names none; for snapshot load the state database"},
    {.name = "--ignore",
     .kind = Kind::fields,
     .help = "what of a route diff leaves out of the comparison, as in metric,hardware"},
    {.name = "--stat", .help = "how many routes differ, and none of them"},
    {.name = "--dry-run", .help = "show the lines, and write nothing"},
    {.name = "--from",
     .kind = Kind::logPlace,
     .help =
         "what to tell first: now for nothing, or what changed behind the number of a change, in "
         "place of the listing"},
    {.name = "--help",
     .shortName = "-h",
     .scope = Scope::all,
     .help = "what the command is for, and all that may stand in it"},
    {.name = "--version", .scope = Scope::itself, .help = "the version of the program"},
};

constexpr std::string_view listingOptions[] = {"--timing", "--older-nexthop-groups"};
constexpr std::string_view watchOptions[] = {"--from", "--older-nexthop-groups"};
constexpr std::string_view counterOptions[] = {"--counters"};
constexpr std::string_view loadOptions[] = {"--into"};
constexpr std::string_view diffOptions[] = {"--ignore", "--stat"};
constexpr std::string_view changeOptions[] = {"--into", "--dry-run"};

/// What chooses routes of a table. The families differ in what an address is, and in the protocols
/// that they have.
constexpr auto chosenRouteParts(Kind target, Kind protocol, std::string_view needsPrefix) {
  return std::array{
      Part{.name = "vrf",
           .kind = Kind::vrfOrAll,
           .help = "that VRF in place of the default one, or all"},
      Part{.name = "target",
           .keyword = Keyword::none,
           .kind = target,
           .help = "the route to an address, or a prefix; the longest one that covers it"},
      Part{.name = "longer-prefixes",
           .needs = "target",
           .why = needsPrefix,
           .help = "all routes inside the prefix"},
      Part{.name = "detail", .help = "more routes, and the descriptions of interfaces"},
      Part{.name = "interface", .kind = Kind::interface, .help = "the routes through an interface"},
      Part{.name = "protocol",
           .keyword = Keyword::none,
           .kind = protocol,
           .repeats = true,
           .help = "the routes of a protocol, or of several"},
  };
}

/// What parts of two kinds are together.
template <std::size_t some, std::size_t more>
constexpr auto joined(const std::array<Part, some>& ahead, const std::array<Part, more>& behind) {
  std::array<Part, some + more> parts{};
  std::ranges::copy(behind, std::ranges::copy(ahead, parts.begin()).out);
  return parts;
}

constexpr Part where{
    .name = "where",
    .kind = Kind::expression,
    .help = "the routes for which an expression over their fields holds, see rova help where"};

/// A listing may be of other tables too.
constexpr auto routeParts(Kind target, Kind protocol, std::string_view needsPrefix) {
  return joined(
      chosenRouteParts(target, protocol, needsPrefix),
      std::array{
          Part{.name = "host",
               .beside = "vrf",
               .why = "host goes with vrf alone: the host route table is shown as a whole",
               .help = "the host route table, with the neighbours"},
          Part{.name = "summary",
               .beside = "vrf",
               .why = "summary goes with vrf alone: it counts the whole table",
               .help = "how many routes there are of each kind and mask length"},
          where,
      });
}
constexpr std::string_view needsPrefix =
    "longer-prefixes needs a prefix ahead of it, as in 10.0.0.0/8 longer-prefixes";
constexpr std::string_view needsPrefix6 =
    "longer-prefixes needs a prefix ahead of it, as in 2001:db8::/32 longer-prefixes";
constexpr auto ip4RouteParts = routeParts(Kind::ip4Target, Kind::protocol, needsPrefix);
constexpr auto ip6RouteParts = routeParts(Kind::ip6Target, Kind::protocol6, needsPrefix6);
constexpr auto watchedIp4RouteParts =
    joined(chosenRouteParts(Kind::ip4Target, Kind::protocol, needsPrefix), std::array{where});
constexpr auto watchedIp6RouteParts =
    joined(chosenRouteParts(Kind::ip6Target, Kind::protocol6, needsPrefix6), std::array{where});

constexpr Part diffParts[] = {
    {.name = "from",
     .keyword = Keyword::none,
     .kind = Kind::source,
     .required = true,
     .help = "the state before: kernel, kernel:NAME, or a file, - for standard input"},
    {.name = "to",
     .keyword = Keyword::none,
     .kind = Kind::source,
     .required = true,
     .help = "the state after"},
    {.name = "ip", .kind = Kind::table, .help = "the IPv4 routes alone"},
    {.name = "ipv6", .kind = Kind::table, .help = "the IPv6 routes alone"},
    {.name = "vrf", .kind = Kind::vrfOrAll, .help = "that VRF in place of all"},
    {.name = "target",
     .keyword = Keyword::none,
     .kind = Kind::target,
     .help = "the routes to an address, or a prefix; the longest ones that cover it"},
    {.name = "longer-prefixes",
     .needs = "target",
     .why = "longer-prefixes needs a prefix ahead of it, as in 10.0.0.0/8 longer-prefixes",
     .help = "all routes inside the prefix"},
    {.name = "detail", .help = "more routes, and the descriptions of interfaces"},
    {.name = "interface", .kind = Kind::interface, .help = "the routes through an interface"},
    {.name = "protocol",
     .keyword = Keyword::none,
     .kind = Kind::protocol,
     .repeats = true,
     .help = "the routes of a protocol, or of several"},
    where,
};

constexpr Part nexthopGroupParts[] = {
    {.name = "name",
     .keyword = Keyword::optional,
     .kind = Kind::nexthopGroup,
     .help = "that group alone, with name ahead where it is called as a keyword"},
    {.name = "vrf", .kind = Kind::vrf, .help = "that VRF in place of the default one"},
    {.name = "summary",
     .beside = "vrf",
     .why = "the summary is of all nexthop groups; leave the name out",
     .help = "how many groups there are of each type and size"},
};

constexpr Part staticConfigParts[] = {
    {.name = "vrf", .kind = Kind::vrfOrAll, .help = "that VRF in place of the default one, or all"},
    {.name = "all", .help = "the preference and the tag also where they are the defaults"},
};

constexpr Part staticParts[] = {
    {.name = "dynamic", .help = "the routes that are no configuration, in place of those that are"},
    {.name = "tag", .kind = Kind::tag, .help = "the routes of that tag"},
    {.name = "vrf", .kind = Kind::vrf, .help = "that VRF in place of the default one"},
};

constexpr Part checkAddressParts[] = {
    {.name = "address",
     .keyword = Keyword::none,
     .kind = Kind::addressWithLength,
     .required = true,
     .help = "the address, IPv4 or IPv6, with its mask length"},
    {.name = "interface",
     .kind = Kind::interface,
     .required = true,
     .help = "the interface that is to get it"},
    {.name = "secondary", .help = "as a secondary address (IPv4)"},
    {.name = "replace", .help = "in place of the address that it has (IPv4)"},
};

constexpr Part checkNextHopParts[] = {
    {.name = "address",
     .keyword = Keyword::none,
     .kind = Kind::address,
     .required = true,
     .help = "the next hop"},
    {.name = "vrf", .kind = Kind::vrf, .help = "the VRF of the route, if not the default one"},
};

constexpr Part checkRdParts[] = {
    {.name = "rd",
     .keyword = Keyword::none,
     .kind = Kind::routeDistinguisher,
     .required = true,
     .help = "the route distinguisher, ASN:N or A.B.C.D:N"},
    {.name = "vrf",
     .kind = Kind::vrf,
     .required = true,
     .help = "the VRF that is to get it, which need not be there yet"},
};

constexpr Part clearStaticParts[] = {
    {.name = "interface",
     .keyword = Keyword::none,
     .kind = Kind::interface,
     .required = true,
     .help = "the interface that goes"},
};

constexpr Part staticLoadParts[] = {
    {.name = "file",
     .keyword = Keyword::none,
     .kind = Kind::inputFile,
     .required = true,
     .help = "the lines, as show running-config static writes them; - for standard input"},
};

constexpr Part snapshotSaveParts[] = {
    {.name = "file",
     .keyword = Keyword::none,
     .kind = Kind::outputFile,
     .required = true,
     .help = "the file; - for standard output"},
};

constexpr Part snapshotLoadParts[] = {
    {.name = "file",
     .keyword = Keyword::none,
     .kind = Kind::inputFile,
     .required = true,
     .help = "the snapshot; - for standard input"},
};

constexpr Part typesParts[] = {
    {.name = "type",
     .keyword = Keyword::none,
     .kind = Kind::type,
     .help = "that type, with or without its namespace"},
};

constexpr Part helpParts[] = {
    {.name = "command",
     .keyword = Keyword::none,
     .kind = Kind::command,
     .help = "the command, or the words that some commands begin with"},
};

constexpr Part stateParts[] = {
    {.name = "source",
     .keyword = Keyword::none,
     .kind = Kind::source,
     .required = true,
     .help = "kernel (this machine), kernel:NAME (a network namespace), or a file"},
};

constexpr Part vrfParts[] = {
    {.name = "name",
     .keyword = Keyword::none,
     .kind = Kind::vrf,
     .required = true,
     .help = "the VRF; default for the one of that name"},
};

/// Those of the shell alone come last.
constexpr Command commands[] = {
    {.path = "show ip route",
     .parts = ip4RouteParts,
     .options = listingOptions,
     .help = "The IPv4 routing table of a VRF, its host route table, or a summary of it.",
     .run = showIpRoute},
    {.path = "show ipv6 route",
     .parts = ip6RouteParts,
     .options = listingOptions,
     .help = "The IPv6 routing table of a VRF, its host route table, or a summary of it.",
     .run = showIpv6Route},
    {.path = "show nexthop-group",
     .parts = nexthopGroupParts,
     .options = counterOptions,
     .help = "The nexthop groups of a VRF, or how many there are of each type and size.",
     .run = showNexthopGroup},
    {.path = "show running-config static",
     .parts = staticConfigParts,
     .help = "The configuration lines of the static routes of a VRF, with all also the defaults in "
             "them.",
     .run = showStaticConfig},
    {.path = "show static",
     .parts = staticParts,
     .help = "The static routes that agents hand to routing in a VRF.",
     .run = showStatic},
    {.path = "diff",
     .parts = diffParts,
     .options = diffOptions,
     .refused = "--state",
     .why = "its two sources are words of it, as in diff OLD NEW",
     .help = "The routes that two states show differently: - those of the first, + those of the "
             "second. The exit status is 0 without a difference, 1 with any, 2 after a failure.",
     .run = diffRoutes},
    {.path = "check address",
     .parts = checkAddressParts,
     .help = "Whether an interface may get an address, beside or in place of those that it has.",
     .run = checkAddress},
    {.path = "check next-hop",
     .parts = checkNextHopParts,
     .help = "Whether a static route may lead to a next hop: to none that is the device itself.",
     .run = checkNextHop},
    {.path = "check rd",
     .parts = checkRdParts,
     .help = "Whether a route distinguisher is free for a VRF.",
     .run = checkRouteDistinguisher},
    {.path = "clear static interface",
     .parts = clearStaticParts,
     .options = changeOptions,
     .help = "Take the static routes through an interface out of a snapshot; shows their lines.",
     .run = clearStatic},
    {.path = "static load",
     .parts = staticLoadParts,
     .options = changeOptions,
     .help = "Enter the configuration lines of a file into a snapshot; shows those that are new.",
     .run = loadStatic},
    {.path = "show state",
     .help = "Where the state comes from, who keeps it, and how current it is.",
     .run = showState},
    {.path = "watch ip route",
     .parts = watchedIp4RouteParts,
     .options = watchOptions,
     .help = "The IPv4 routing table of a VRF, and then each change of it as it happens.",
     .run = watchIpRoute,
     .endless = true},
    {.path = "watch ipv6 route",
     .parts = watchedIp6RouteParts,
     .options = watchOptions,
     .help = "The IPv6 routing table of a VRF, and then each change of it as it happens.",
     .run = watchIpv6Route,
     .endless = true},
    {.path = "snapshot load",
     .parts = snapshotLoadParts,
     .options = loadOptions,
     .help = "Make a state database hold the state of a snapshot.",
     .run = loadSnapshot},
    {.path = "snapshot save",
     .parts = snapshotSaveParts,
     .help = "Write the state that is shown to a file.",
     .run = saveSnapshot},
    {.path = "types",
     .parts = typesParts,
     .help =
         "The library's types, or one of them with its attributes, as access by name sees them.",
     .run = showTypes},
    {.path = "help",
     .parts = helpParts,
     .help = "What a command is for, and all that may stand in it; the same as COMMAND --help.",
     .run = showHelp},
    {.path = "state",
     .parts = stateParts,
     .help = "In the shell: where the state comes from from now on.",
     .run = chooseState},
    {.path = "vrf",
     .parts = vrfParts,
     .help = "In the shell: the VRF of the commands that name none.",
     .run = chooseVrf},
    {.path = "exit", .help = "Leave the shell.", .run = leaveShell},
    {.path = "quit", .help = "Leave the shell.", .run = leaveShell},
};
constexpr std::size_t shellCommandCount = 4;
constexpr std::span programCommands(commands, std::size(commands) - shellCommandCount);

constexpr Filter filters[] = {
    {.name = "include",
     .action = FilterAction::include,
     .kind = Kind::text,
     .help = "the lines with a text in them alone"},
    {.name = "exclude",
     .action = FilterAction::exclude,
     .kind = Kind::text,
     .help = "the lines without a text in them alone"},
    {.name = "count", .action = FilterAction::count, .help = "how many lines there are"},
    {.name = "no-more",
     .action = FilterAction::none,
     .help = "all lines without a stop, as --no-pager"},
};

constexpr Topic topics[] = {
    {.name = "where",
     .help = "The expressions that choose routes, and the fields in them.",
     .text = filter::helpText},
};

constexpr Beginning beginnings[] = {
    {.path = "show", .help = "What the state has, as displays."},
    {.path = "show ip", .help = "What the state has of IPv4."},
    {.path = "show ipv6", .help = "What the state has of IPv6."},
    {.path = "show running-config", .help = "The configuration, as lines."},
    {.path = "check", .help = "Whether something may be configured: acceptable, or refused."},
    {.path = "clear", .help = "Take configuration out of a snapshot."},
    {.path = "clear static", .help = "Take static routes out of a snapshot."},
    {.path = "static", .help = "Static routes of a snapshot."},
    {.path = "snapshot", .help = "The state as a file."},
    {.path = "watch", .help = "What changes, as it happens."},
    {.path = "watch ip", .help = "What changes of IPv4."},
    {.path = "watch ipv6", .help = "What changes of IPv6."},
};

constexpr std::string_view notes = R"(
examples:
  rova show ip route
  rova show ip route 10.1.2.3
  rova show ipv6 route vrf red bgp
  rova show ip route vrf all host
  rova show ip route vrf all summary
  rova --state lab.json --format json show ip route 10.0.0.0/8 longer-prefixes
  rova diff before.json kernel ip route
  rova watch ip route vrf all
  rova show ip route where not hardware
  rova help show ip route

without a command, rova is a shell: Tab completes words and names, ? lists what may follow, and
"| include TEXT", "| exclude TEXT" and "| count" may stand behind a command. state SOURCE and vrf NAME
choose for the commands that follow, exit leaves. rova < FILE runs the commands of a file, one a line.

exit status: 0 success, 1 failure or a refused check, 2 wrong usage, 130 after an interrupt (129
after a hangup, 143 when terminated); of diff 0 without a difference, 1 with any, 2 after a failure
)";

constexpr grammar::Grammar programTable{programCommands, beginnings, options, notes, topics};
constexpr grammar::Grammar shellTable{commands, beginnings, options, notes, topics, filters};

} // namespace

const grammar::Grammar& commandGrammar() { return programTable; }
const grammar::Grammar& shellGrammar() { return shellTable; }

} // namespace command
