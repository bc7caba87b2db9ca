// Two states are opened as one and the same query wants them, and compared a VRF and a family at a
// time: no more routes are held than two listings hold. One state is loaded after the other, as the
// library has one work at a time on shared entities (lumo/ActivityLock.h).
#include "command/diff/Diff.h"

#include "command/OpenRoutes.h"
#include "command/Signals.h"
#include "command/diff/DiffOutput.h"
#include "command/shell/Reported.h"
#include "scrivo/Interrupt.h"

#include <algorithm>

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
  const std::string& vrf() const { return ip4 ? ip4->vrf : ip6->vrf; }
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
void refuseForeignProtocols(const grammar::Parsed& parsed,
                            const std::vector<std::string>& protocols) {
  for (const auto& word : grammar::rowOf(grammar::Kind::protocol6).words) {
    if (!word.refusal.empty() && std::ranges::count(protocols, word.meaning()) != 0) {
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
  if (!query.ip4) refuseForeignProtocols(parsed, query.ip6->protocols);
  return query;
}

sources::Needs needsOf(const DiffQuery& query) {
  auto needs =
      query.ip4 ? needsOf<Rova::Ip4Family>(*query.ip4) : needsOf<Rova::Ip6Family>(*query.ip6);
  needs.ip6 = query.ip6.has_value();
  return needs;
}

DiffSources sourcesOf(const grammar::Parsed& parsed, const DiffQuery& query) {
  const auto from = parsed.text("from"), to = parsed.text("to");
  if (from == "-" && to == "-") {
    parsed.fail("to", "standard input can be one of the two states alone");
  }
  auto sources = openSources(from, to, needsOf(query));
  if (parsed.has("interface")) requireInterface(sources, parsed.text("interface"));
  return sources;
}

/// The comparison of two opened states.
class Diff {
 public:
  Diff(const DiffSources& sources, const DiffQuery& query, const IgnoredFields& ignored,
       const Options& options)
      : sources_(sources),
        query_(query),
        ignored_(ignored),
        options_(options),
        output_(options.format, options.counts) {}

  /// `differs` is set as soon as that is known: a reader may go away behind it.
  void print(bool& differs) {
    output_.startWith(sources_);
    for (const auto& vrf : chosenVrfs(sources_, query_.vrf())) {
      compare<Rova::Ip4Family>(vrf, differs);
      compare<Rova::Ip6Family>(vrf, differs);
    }
    output_.end();
  }

 private:
  template <class Family>
  DiffSide<Family> side(const NamedState& named, const state::VrfState* vrf) const {
    if (!vrf) return DiffSide<Family>({});
    return DiffSide<Family>(
        openRoutes<Family>(named.state.device, *vrf, *query_.of<Family>(), options_));
  }

  template <class Family>
  RouteDifference<Family> differenceOf(const VrfPair& vrf) const {
    sources_.hold();
    RouteDifference<Family> difference{side<Family>(sources_.from, vrf.from),
                                       side<Family>(sources_.to, vrf.to)};
    findChanges(difference, ignored_);
    sources_.release();
    return difference;
  }

  template <class Family>
  void compare(const VrfPair& vrf, bool& differs) {
    if (!query_.of<Family>()) return;
    const auto difference = differenceOf<Family>(vrf);
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

  const DiffSources& sources_;
  const DiffQuery& query_;
  const IgnoredFields& ignored_;
  const Options& options_;
  DiffOutput output_;
};

void printDifferences(const grammar::Parsed& parsed, const Options& options, bool& differs) {
  const auto query = queryOf(parsed);
  const IgnoredFields ignored(options.ignored);
  const auto sources = sourcesOf(parsed, query);
  Diff(sources, query, ignored, options).print(differs);
}

} // namespace

ExitStatus diffRoutes(const grammar::Parsed& parsed, const Options& options) {
  bool differs = false;
  const auto status = shell::reported([&] {
    printDifferences(parsed, options, differs);
    return success;
  });
  if (status == failure) return trouble;
  return status == success && differs ? different : status;
}

} // namespace command
