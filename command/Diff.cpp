// Two states are opened as one and the same query wants them, and compared a VRF and a family at a
// time: no more routes are held than two listings hold.
#include "command/Diff.h"

#include "command/DiffOutput.h"
#include "command/InterfaceChoice.h"
#include "command/Notes.h"
#include "command/OpenRoutes.h"
#include "command/Signals.h"
#include "command/shell/Reported.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Shown.h"
#include "sources/Source.h"
#include "state/NoSuch.h"

#include <cstdio>

namespace command {

namespace {

/// What is compared; a family that is not has no query.
struct DiffQuery {
  std::optional<QueryOf<Rova::Ip4Family>> ip4;
  std::optional<QueryOf<Rova::Ip6Family>> ip6;

  template <class Family>
  const auto& of() const {
    if constexpr (std::is_same_v<Family, Rova::Ip4Family>) {
      return ip4;
    } else {
      return ip6;
    }
  }
};

/// A state with its name.
struct Source {
  std::string name;
  sources::State state;

  std::string error(const std::string& message) const {
    return sources::inputName(name) + ": " + message;
  }
};

struct Sources {
  Source from, to;

  void hold() const { from.state.hold(), to.state.hold(); }
  void release() const { from.state.release(), to.state.release(); }
};

/// A VRF of both states; null where there is none of its name.
struct VrfPair {
  std::string name;
  const state::VrfState* from;
  const state::VrfState* to;
};

template <class Family>
std::optional<QueryOf<Family>> queryOf(const grammar::Parsed& parsed, const char* ownWord,
                                       const char* otherWord) {
  using Prefix = typename Family::Prefix;
  if (parsed.has(otherWord) && !parsed.has(ownWord)) return {};
  if (parsed.has("target") && !parsed.find<grammar::Target<Prefix>>("target")) return {};
  auto query = routeQuery<Prefix>(parsed);
  if (!parsed.has("vrf")) query.vrf = "all";
  return query;
}

/// IPv6 lacks some of the protocols.
void refuseForeignProtocol(const grammar::Parsed& parsed) {
  for (const auto& word : grammar::rowOf(grammar::Kind::protocol6).words) {
    if (!word.refusal.empty() && word.meaning() == parsed.text("protocol")) {
      parsed.fail("protocol", std::string(word.refusal));
    }
  }
}

DiffQuery queryOf(const grammar::Parsed& parsed) {
  DiffQuery query{queryOf<Rova::Ip4Family>(parsed, "ip", "ipv6"),
                  queryOf<Rova::Ip6Family>(parsed, "ipv6", "ip")};
  if (!query.ip4 && !query.ip6) {
    parsed.fail("target", "an address of the other family: expected one of the routes compared");
  }
  if (!query.ip4) refuseForeignProtocol(parsed);
  return query;
}

sources::Needs needsOf(const DiffQuery& query) {
  auto needs =
      query.ip4 ? needsOf<Rova::Ip4Family>(*query.ip4) : needsOf<Rova::Ip6Family>(*query.ip6);
  needs.ip6 = query.ip6.has_value();
  return needs;
}

/// Tells on standard error what is to be known of the state, each line with its name ahead.
Source openSource(const std::string& name, const sources::Needs& needs) {
  Source source{name, sources::open(name, needs)};
  for (const auto& line : linesOf(source.state.notes, name)) {
    const auto whole = line.starts_with(name + ": ") ? line : source.error(line);
    std::fprintf(stderr, "rova: %s\n", scrivo::shown(whole).c_str());
  }
  return source;
}

Sources openSources(const grammar::Parsed& parsed, const DiffQuery& query) {
  const auto from = parsed.text("from"), to = parsed.text("to");
  if (from == "-" && to == "-") {
    parsed.fail("to", "standard input can be one of the two states alone");
  }
  return {openSource(from, needsOf(query)), openSource(to, needsOf(query))};
}

/// Those of the first state in its order, and then those that the second one has alone.
std::vector<VrfPair> allVrfs(const Sources& sources) {
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

std::vector<VrfPair> chosenVrfs(const Sources& sources, const std::string& name) {
  if (name == "all") return allVrfs(sources);
  const auto& [from, to] = sources;
  const VrfPair pair{name, from.state.device.vrf(name), to.state.device.vrf(name)};
  if (pair.from || pair.to) return {pair};
  throw sources::SourceError(from.error(state::noSuchVrf(from.state.device, name)) + "; " +
                             to.error(state::noSuchVrf(to.state.device, name)));
}

/// It is enough that one of the states names it.
void requireInterface(const Sources& sources, const std::string& name, Options options) {
  const auto known = interfaceNames(sources.to.state.device);
  if (std::find(known.begin(), known.end(), name) != known.end()) return;
  options.state = sources.from.name;
  command::requireInterface(sources.from.state.device, name, options);
}

template <class Family>
RouteDifference<Family> differenceOf(const Sources& sources, const VrfPair& vrf,
                                     const QueryOf<Family>& query, const Options& options,
                                     const IgnoredFields& ignored) {
  const auto open = [&](const Source& source, const state::VrfState* own) {
    return DiffSide<Family>(own ? openRoutes<Family>(source.state.device, *own, query, options)
                                : Lumo::Ptr<Rova::Sorter<Family>>());
  };
  sources.hold();
  RouteDifference<Family> difference{open(sources.from, vrf.from), open(sources.to, vrf.to)};
  findChanges(difference, ignored);
  sources.release();
  return difference;
}

/// The comparison of two opened states.
class Diff {
 public:
  Diff(const Sources& sources, const DiffQuery& query, const Options& options,
       const IgnoredFields& ignored)
      : sources_(sources),
        query_(query),
        options_(options),
        ignored_(ignored),
        output_(options.format, options.counts) {}

  /// `differs` is set as soon as that is known: a reader may go away behind it.
  void print(const std::vector<VrfPair>& vrfs, bool& differs) {
    output_.startWith(sources_.from.name, sources_.from.state.notes, sources_.to.name,
                      sources_.to.state.notes);
    for (const auto& vrf : vrfs) {
      compare<Rova::Ip4Family>(vrf, differs);
      compare<Rova::Ip6Family>(vrf, differs);
    }
    output_.end();
  }

 private:
  template <class Family>
  void compare(const VrfPair& vrf, bool& differs) {
    const auto& query = query_.of<Family>();
    if (!query) return;
    const auto difference = differenceOf<Family>(sources_, vrf, *query, options_, ignored_);
    if (difference.changes.empty()) return;
    differs = true;
    const RenderScope scope;
    try {
      output_.print(vrf.name, difference);
    } catch (const scrivo::sigintException&) {
      if (scrivo::interruptRequested()) leaveInterrupted();
      throw;
    }
  }

  const Sources& sources_;
  const DiffQuery& query_;
  const Options& options_;
  const IgnoredFields& ignored_;
  DiffOutput output_;
};

void compare(const grammar::Parsed& parsed, const Options& options, bool& differs) {
  const auto query = queryOf(parsed);
  const IgnoredFields ignored(options.ignored);
  const auto sources = openSources(parsed, query);
  if (parsed.has("interface")) requireInterface(sources, parsed.text("interface"), options);
  const auto vrfs = chosenVrfs(sources, query.ip4 ? query.ip4->vrf : query.ip6->vrf);
  Diff(sources, query, options, ignored).print(vrfs, differs);
}

} // namespace

ExitStatus diffRoutes(const grammar::Parsed& parsed, const Options& options) {
  bool differs = false;
  const auto status = shell::reported([&] {
    compare(parsed, options, differs);
    return success;
  });
  if (status == failure) return trouble;
  return status == success && differs ? different : status;
}

} // namespace command
