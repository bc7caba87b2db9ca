// Who watches compares what a listing would show of a route with what was told of it last. The log
// of the database only says which routes to look at, so a route that is looked at in vain, or in a
// later state than the log's, does no harm: a change that comes meanwhile is in the log too, behind
// the number up to which it was read.
//
// While output is on its way no state is held. A reader that takes its time makes the watcher read
// a longer stretch of the log next time, and a gap once that does not go back so far; what waits
// to be written is a piece of bounded size.
#include "command/watch/Watch.h"

#include "command/InterfaceChoice.h"
#include "command/VrfChoice.h"
#include "command/watch/WatchLines.h"
#include "command/watch/WatchSource.h"
#include "command/watch/WatchedVrf.h"

#include <charconv>
#include <set>

namespace command {

namespace {

using Vrf::VrfIdMap::VrfId;

/// The number of lines from which nobody can go on: there are listings to come.
constexpr std::int64_t fromNowhere = 0;

std::string beginningOf(const sources::database::LogRange& range) {
  return "the log of changes begins at " + std::to_string(range.first);
}

template <class Family>
class Watch {
 public:
  Watch(const QueryOf<Family>& query, const Options& options)
      : query_(query),
        options_(options),
        source_(options, needsOf<Family>(query)),
        lines_(options.format) {
    chosenVrfs(device(), query.vrf, options); // raises where there is none
    if (query.interface) requireInterface(device(), *query.interface, options);
  }

  ExitStatus run() {
    begin();
    while (source_.wait()) step();
    return success;
  }

 private:
  using Prefix = typename Family::Prefix;
  using Log = WatchedLog<Prefix>;

  /// A route to look at. Who goes on from the stamp misses nothing behind it.
  struct Candidate {
    VrfId vrf;
    Prefix prefix;
    Stamp stamp;
    bool wasThere;
  };
  using Candidates = std::vector<Candidate>;

  const state::DeviceState& device() const { return source_.state().device; }
  std::vector<const state::VrfState*> vrfs() const;
  std::set<VrfId> vrfIds() const;
  Stamp logEnd();

  void begin();
  void step();
  void list();
  void lose(const std::string& reason);
  void resume();

  Log readLog();
  bool knowsVrfs(const Log& log) const;
  bool isAsked(const Prefix& prefix) const;
  bool looksUpOne() const { return !query_.prefix.isNullPrefix() && !query_.longerPrefixes; }
  Candidates candidates(const Log& log) const;
  void addUsers(const Log& log, Candidates& candidates) const;

  template <class Visit>
  void forEachShown(const state::VrfState& vrf, Visit&& visit);
  void listVrf(const state::VrfState& vrf, const Stamp& stamp);
  void learnVrf(const state::VrfState& vrf);
  void assume(const Candidates& candidates);
  void follow(const Candidates& candidates, const Log& log, const Stamp& now);
  void lookAtSome(const Candidates& candidates, std::size_t& at, std::set<VrfId>& changed);
  void lookAtAll();
  void lookAtVrf(const state::VrfState& vrf, const Stamp& stamp);
  void leaveOthers(const Stamp& stamp);
  void tell(WatchedVrf<Family>& vrf, const Stamp& stamp, const Prefix& prefix,
            std::string_view entry);
  void tellRemoved(const WatchedVrf<Family>& vrf, const std::vector<Prefix>& prefixes,
                   const Stamp& stamp);
  void toldUpTo(const Stamp& stamp);

  const QueryOf<Family> query_;
  const Options& options_;
  WatchSource source_;
  WatchLines lines_;
  std::map<VrfId, WatchedVrf<Family>> watched_;
  Stamp told_;       ///< up to where all is told
  std::string lost_; ///< why what was told is void, until it is listed anew; empty for nothing
};

/// The VRFs that the query means by now, none for one that is gone.
template <class Family>
std::vector<const state::VrfState*> Watch<Family>::vrfs() const {
  if (query_.vrf != "all" && !device().vrf(query_.vrf)) return {};
  return chosenVrfs(device(), query_.vrf, options_);
}

template <class Family>
std::set<VrfId> Watch<Family>::vrfIds() const {
  std::set<VrfId> ids;
  for (const auto* vrf : vrfs()) ids.insert(vrf->id);
  return ids;
}

template <class Family>
Stamp Watch<Family>::logEnd() {
  const auto range = source_.log().range();
  return {range.last, range.time};
}

template <class Family>
void Watch<Family>::begin() {
  const auto range = source_.log().range();
  told_ = {range.last, range.time};
  if (options_.from.empty()) return list();
  std::int64_t seq = range.last;
  std::from_chars(options_.from.data(), options_.from.data() + options_.from.size(), seq);
  if (seq > range.last) return lose("the log of changes ends at " + std::to_string(range.last));
  told_.seq = seq;
  resume();
}

/// What there is counts as told, but for what the log has behind the number: it is read last, so
/// that nothing that changes meanwhile counts as told.
template <class Family>
void Watch<Family>::resume() {
  for (const auto* vrf : vrfs()) learnVrf(*vrf);
  source_.state().hold();
  const auto range = source_.log().range();
  if (told_.seq < range.first - 1) return lose(beginningOf(range));
  const Log log = readLog();
  if (log.touchesAll() || !knowsVrfs(log)) return lose("more than routes has changed");
  const Candidates some = candidates(log);
  source_.state().release();
  // Any route that covers the address may have been the one.
  if (looksUpOne() && !some.empty()) return lose("another route may have been the one");
  assume(some);
  follow(some, log, {range.last, range.time});
}

template <class Family>
void Watch<Family>::step() {
  if (!lost_.empty()) return lose(lost_);
  if (source_.isOutdated() && !source_.reload()) return;
  source_.state().hold();
  const auto range = source_.log().range();
  // Without a word in the log its writer is still at the beginning.
  if (range.last == told_.seq || range.last == 0) return source_.state().release();
  if (told_.seq == 0) return lookAtAll();
  if (range.first > told_.seq + 1 || range.last < told_.seq) return lose(beginningOf(range));
  const Log log = readLog();
  if (log.touchesAll() || !knowsVrfs(log)) return lookAtAll();
  const Candidates some = candidates(log);
  source_.state().release();
  follow(some, log, {range.last, range.time});
}

template <class Family>
void Watch<Family>::toldUpTo(const Stamp& stamp) {
  lines_.settle(stamp);
  told_ = stamp;
  lines_.write();
}

template <class Family>
void Watch<Family>::lose(const std::string& reason) {
  lost_ = reason;
  if (!source_.reload()) return; // the next step tries again
  told_ = logEnd();
  lines_.gap({fromNowhere, told_.time}, lost_);
  list();
  lost_.clear();
}

template <class Family>
void Watch<Family>::list() {
  watched_.clear();
  const auto all = vrfs();
  for (const auto* vrf : all) {
    listVrf(*vrf, {vrf == all.back() ? told_.seq : fromNowhere, told_.time});
  }
  source_.state().release();
  lines_.write();
}

template <class Family>
auto Watch<Family>::readLog() -> Log {
  Log log({std::is_same_v<Family, Rova::Ip4Family> ? 4 : 6, query_.detail});
  source_.log().read(told_.seq, [&](const auto& change) { log.add(change); });
  return log;
}

/// A table without routes of the family is no VRF of a listing of all: with its first one it is,
/// and behind the last one it was.
template <class Family>
bool Watch<Family>::knowsVrfs(const Log& log) const {
  if (query_.vrf != "all") return true;
  const auto isKnown = [ids = vrfIds()](const auto& vrf) { return ids.contains(vrf.first); };
  return std::ranges::all_of(log.routes(), isKnown);
}

template <class Family>
bool Watch<Family>::isAsked(const Prefix& prefix) const {
  if (query_.prefix.isNullPrefix()) return true;
  return query_.longerPrefixes ? query_.prefix.contains(prefix) : prefix.contains(query_.prefix);
}

/// In the order of the log.
template <class Family>
auto Watch<Family>::candidates(const Log& log) const -> Candidates {
  Candidates all;
  const auto ids = vrfIds();
  for (const auto& [vrf, routes] : log.routes()) {
    if (!ids.contains(vrf)) continue;
    routes.forEach([&, id = vrf](const Prefix& prefix, const auto& touched) {
      if (isAsked(prefix)) all.push_back({id, prefix, touched.stamp, touched.wasThere});
    });
  }
  if (!log.fecs().empty()) addUsers(log, all);
  std::ranges::stable_sort(all, {}, [](const Candidate& one) { return one.stamp.seq; });
  // Of those by one entry of the log, only behind the last are all told.
  for (std::size_t i = 1; i < all.size(); ++i) {
    Stamp& before = all[i - 1].stamp;
    if (before.seq == all[i].stamp.seq) --before.seq;
  }
  return all;
}

/// Adds the routes that lead to FECs with other vias.
template <class Family>
void Watch<Family>::addUsers(const Log& log, Candidates& candidates) const {
  for (const auto* vrf : vrfs()) {
    const auto& routes = (vrf->*Family::routingStatus)->route;
    using View = std::remove_cvref_t<decltype(routes)>;
    for (typename View::IteratorConst it(routes); it; it.next()) {
      const auto& route = it.value();
      const Stamp* const stamp = log.fecs().find(route.fecId);
      if (stamp && isAsked(route.key)) candidates.push_back({vrf->id, route.key, *stamp, true});
    }
  }
}

/// Hands each route that the listing of a VRF shows to `visit`, with its entry. The state is held
/// for the selection alone.
template <class Family>
template <class Visit>
void Watch<Family>::forEachShown(const state::VrfState& vrf, Visit&& visit) {
  source_.state().hold();
  const auto sorter = openRoutes<Family>(device(), vrf, query_, options_);
  source_.state().release();
  WatchedVrf<Family>& watched = watched_[vrf.id];
  watched.name = vrf.name.stringValue().str();
  watched.hasV6Nexthop = hasV6Nexthop(*sorter);
  forEachEntry(*sorter, options_.format, [&](const Prefix& prefix, std::string_view entry) {
    visit(watched, prefix, entry);
    if (lines_.isFull()) lines_.write();
  });
}

template <class Family>
void Watch<Family>::listVrf(const state::VrfState& vrf, const Stamp& stamp) {
  lines_.beginListing(stamp, vrf.name.stringValue().str());
  forEachShown(vrf, [&](auto& watched, const Prefix& prefix, std::string_view entry) {
    watched.shown.bringIn(prefix, entry);
    lines_.listed(entry);
  });
  lines_.endListing();
}

/// Takes what there is for told.
template <class Family>
void Watch<Family>::learnVrf(const state::VrfState& vrf) {
  forEachShown(vrf, [](auto& watched, const Prefix& prefix, std::string_view entry) {
    watched.shown.bringIn(prefix, entry);
  });
}

/// Goes back to what was told ahead of the log, as far as that is known.
template <class Family>
void Watch<Family>::assume(const Candidates& candidates) {
  for (const auto& one : candidates) watched_[one.vrf].shown.assume(one.prefix, one.wasThere);
}

template <class Family>
void Watch<Family>::follow(const Candidates& candidates, const Log& log, const Stamp& now) {
  std::set<VrfId> changed;
  if (looksUpOne()) {
    // One address is looked up sooner than it is said which change may matter to it.
    if (!candidates.empty()) changed = vrfIds();
  } else {
    for (std::size_t at = 0; at < candidates.size();) {
      lookAtSome(candidates, at, changed);
      lines_.write();
    }
  }
  for (const auto* vrf : vrfs()) {
    const bool mayLoseLook = log.touchesIp6Fecs() && watched_[vrf->id].hasV6Nexthop;
    if (mayLoseLook || changed.contains(vrf->id)) lookAtVrf(*vrf, {told_.seq, now.time});
  }
  toldUpTo(now);
}

/// At as many as there is room for their lines; adds the VRFs all of whose routes look different.
template <class Family>
void Watch<Family>::lookAtSome(const Candidates& candidates, std::size_t& at,
                               std::set<VrfId>& changed) {
  source_.state().hold();
  std::map<VrfId, std::unique_ptr<RouteLook<Family>>> looks;
  for (const auto* vrf : vrfs()) {
    looks[vrf->id] =
        std::make_unique<RouteLook<Family>>(device(), *vrf, query_, options_, watched_[vrf->id]);
  }
  for (; at < candidates.size() && !lines_.isFull(); ++at) {
    const Candidate& one = candidates[at];
    auto& look = *looks.at(one.vrf);
    tell(look.watched(), one.stamp, one.prefix, look.entryUnder(one.prefix));
  }
  for (const auto& [id, look] : looks) {
    if (look->changesAll()) changed.insert(id);
  }
  source_.state().release();
}

/// Where the log does not tell what a listing shows otherwise.
template <class Family>
void Watch<Family>::lookAtAll() {
  if (!source_.reload()) return;
  const Stamp now = logEnd();
  leaveOthers({told_.seq, now.time});
  for (const auto* vrf : vrfs()) lookAtVrf(*vrf, {told_.seq, now.time});
  source_.state().release();
  toldUpTo(now);
}

template <class Family>
void Watch<Family>::lookAtVrf(const state::VrfState& vrf, const Stamp& stamp) {
  ToldRoutes<Prefix> now;
  forEachShown(vrf, [&](auto& watched, const Prefix& prefix, std::string_view entry) {
    now.bringIn(prefix, entry);
    tell(watched, stamp, prefix, entry);
  });
  WatchedVrf<Family>& watched = watched_[vrf.id];
  tellRemoved(watched, watched.shown.missingIn(now), stamp);
  watched.shown = std::move(now);
}

/// VRFs that are gone, or are others by now.
template <class Family>
void Watch<Family>::leaveOthers(const Stamp& stamp) {
  std::map<VrfId, std::string> names;
  for (const auto* vrf : vrfs()) names[vrf->id] = vrf->name.stringValue().str();
  for (auto at = watched_.begin(); at != watched_.end();) {
    const auto& [id, vrf] = *at;
    const auto now = names.find(id);
    const bool stays = now != names.end() && now->second == vrf.name;
    if (!stays) tellRemoved(vrf, vrf.shown.missingIn({}), stamp);
    at = stays ? std::next(at) : watched_.erase(at);
  }
}

template <class Family>
void Watch<Family>::tell(WatchedVrf<Family>& vrf, const Stamp& stamp, const Prefix& prefix,
                         std::string_view entry) {
  const auto op = vrf.shown.bringIn(prefix, entry);
  if (op) lines_.change(stamp, vrf.name, *op, prefix.stringValue().view(), entry);
}

template <class Family>
void Watch<Family>::tellRemoved(const WatchedVrf<Family>& vrf, const std::vector<Prefix>& prefixes,
                                const Stamp& stamp) {
  for (const Prefix& prefix : prefixes) {
    lines_.change(stamp, vrf.name, Op::removed, prefix.stringValue().view(), {});
    if (lines_.isFull()) lines_.write();
  }
}

template <class Family>
ExitStatus watchRoute(const grammar::Parsed& parsed, const Options& options) {
  return Watch<Family>(routeQuery<typename Family::Prefix>(parsed), options).run();
}

} // namespace

ExitStatus watchIpRoute(const grammar::Parsed& parsed, const Options& options) {
  return watchRoute<Rova::Ip4Family>(parsed, options);
}

ExitStatus watchIpv6Route(const grammar::Parsed& parsed, const Options& options) {
  return watchRoute<Rova::Ip6Family>(parsed, options);
}

} // namespace command
